#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "vireo/show/images/ImageSight.h"
#include "vireo/show/images/ImageUpdate.h"

namespace tavo {

// What a person has chosen of an image: which part is seen, and how numbers become colours.
struct ImageChoice
{
    std::optional<ImageSight> sight; // nothing for all of the image
    ImageSettings settings;
};

// What was chosen before, and can be gone back to.
class ImageHistory
{
public:
    enum class Gesture
    {
        None,
        Zoom,
        Move,
        ShowAll,
        Colours
    };

    // Before a gesture. Steps of the wheel one after the other are one gesture, and so are changes of colours.
    void remember(const ImageChoice& now, Gesture gesture)
    {
        const bool isOneWithLast = gesture == m_Last && (gesture == Gesture::Zoom || gesture == Gesture::Colours);
        m_Last = gesture;
        if (isOneWithLast)
            return;
        m_After.clear();
        m_Before.push_back(now);
        if (m_Before.size() > MOST)
            m_Before.erase(m_Before.begin());
    }

    // Nothing if there is nothing to go to.
    std::optional<ImageChoice> back(const ImageChoice& now) { return go(m_Before, m_After, now); }
    std::optional<ImageChoice> forward(const ImageChoice& now) { return go(m_After, m_Before, now); }

private:
    using Choices = std::vector<ImageChoice>;

    static constexpr std::size_t MOST = 1000;

    std::optional<ImageChoice> go(Choices& from, Choices& to, const ImageChoice& now)
    {
        m_Last = Gesture::None;
        if (from.empty())
            return {};
        to.push_back(now);
        ImageChoice choice = from.back();
        from.pop_back();
        return choice;
    }

    Choices m_Before;
    Choices m_After;
    Gesture m_Last = Gesture::None;
};

} // namespace tavo
