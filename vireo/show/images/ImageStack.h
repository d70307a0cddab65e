#pragma once

#include <string>
#include <vector>

#include "vireo/show/images/ImageUpdate.h"

namespace tavo {

// The images of one name: a single one, or several as a stack, of which one is shown.
class ImageStack
{
public:
    // Frees the pixels, which others will replace. What is shown keeps its place.
    void makeRoom() { m_Layers.clear(); }

    // Takes over what was sent. Returns whether the pixels that are shown are others now.
    bool apply(const ImageUpdate& update);

    int size() const { return static_cast<int>(m_Layers.size()); }
    bool isStack() const { return size() > 1; }

    // Which one is shown, counted from 0: what a person has chosen, or the last one if there are not so many. Choosing
    // returns whether that is another one.
    int shown() const;
    bool show(int layer);

    // Of the one that is shown.
    const ImagePixels& pixels() const;
    const std::string& name() const;

private:
    std::vector<ImagePixels> m_Layers;
    std::vector<std::string> m_Names; // may be fewer
    int m_Wanted = 0;
};

} // namespace tavo
