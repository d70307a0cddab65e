#pragma once

#include <optional>

#include "vireo/show/images/PixelColours.h"
#include "vireo/show/slices/SliceLayer.h"
#include "vireo/show/slices/SlicesUpdate.h"

namespace tavo {

// A layer and how its numbers become colours, as the program says or a person has chosen.
//
// Unless a window is said or chosen, it is that of nearly all numbers: all but the lowest and the highest 200th. It
// stays while as many numbers of the same type come, lest the view flickers; unless all were the same, or not finite.
class ShownLayer
{
public:
    ShownLayer(const char* colourMap, double opacity);

    bool isEmpty() const { return m_Layer.samples.numbers.isEmpty(); }
    const SliceLayer& layer() const { return m_Layer; }

    // Frees the samples, which others will replace.
    void makeRoom() { m_Layer.samples.numbers = {}; }

    void send(const SliceLayer& layer);
    void say(const SliceSettings& settings);

    // What a person has chosen, which precedes what the program says.
    const SliceSettings& getChoice() const { return m_Choice; }
    void choose(const SliceSettings& choice);

    // Finds the window afresh.
    void refreshWindow();

    const ImageLook& look() const { return m_Look; }
    const PixelColours& colours() const { return m_Colours; }
    double opacity() const;

private:
    using Range = std::pair<double, double>;

    void findWindow();
    void settle();

    SliceLayer m_Layer;
    const char* m_ColourMap; // unless one is said; empty for grey
    double m_Opacity;
    SliceSettings m_Said;
    SliceSettings m_Choice;
    Range m_Automatic{0, 1};
    bool m_IsKept = false; // the automatic window
    ImageLook m_Look;
    PixelColours m_Colours{m_Look};
};

} // namespace tavo
