#pragma once

#include <optional>
#include <string>
#include <utility>

#include "vireo/show/images/ImageLevels.h"
#include "vireo/show/images/ImageUpdate.h"
#include "vireo/show/images/PixelColours.h"
#include "vireo/show/images/imageStatistics.h"

namespace tavo {

// What an image shows: its pixels or their difference from others, and how numbers become colours, as the program says
// or a person has chosen.
//
// The automatic range and that of percentiles stay while the image changes, lest it flickers; the automatic one grows
// with the numbers. They are found afresh for pixels of another kind or size, and on wish, and as long as the numbers
// are all the same or not finite.
class ImageModel
{
public:
    using Range = std::pair<long double, long double>;

    // Frees the pixels, which others will replace.
    void makeRoom();

    // `update` without its links and its difference, which concern other images, too.
    void apply(const ImageUpdate& update);

    // Shows other pixels, such as the next image of a stack. Those of the same type keep the range, whatever their
    // size.
    void setPixels(const ImagePixels& pixels);

    // Of these pixels the own ones are the difference; none for no difference. Those of another size count as none.
    void setOther(const std::optional<ImagePixels>& other);
    bool isDifference() const { return m_IsDifference; }

    // As they were sent.
    const ImagePixels& pixels() const { return m_Pixels; }

    // What is shown of them.
    ImageLevels& levels() { return m_Levels; }
    const ImagePixels& shownPixels() const { return m_Levels.pixels(); }

    const ImageLook& look() const { return m_Look; }
    const PixelColours& colours() const { return m_Colours; }
    const ImageStatistics& statistics() const { return m_Statistics; }
    ValueCounts counts() const { return countPixels(shownPixels(), m_Look.channel, m_Statistics); }

    // The kind of range that holds.
    ImageRange range() const;

    // What a person has chosen, which precedes what the program says.
    const ImageSettings& getChoice() const { return m_Choice; }
    void choose(const ImageSettings& choice);

    // Finds the range afresh.
    void refreshRange();

private:
    void showPixels();
    void settle();
    int channel() const;
    bool areOfSameSize(const ImagePixels& pixels) const;
    bool areOfSameType(const ImagePixels& pixels) const;
    // Empty where there is a single number, or none.
    Range wantedRange() const;
    Range automaticRange() const;

    ImagePixels m_Pixels;
    std::optional<ImagePixels> m_Other;
    ImageLevels m_Levels; // of what is shown
    bool m_IsDifference = false;
    ImageSettings m_Said; // by the program
    ImageSettings m_Choice;
    ImageStatistics m_Statistics; // of the channel that is shown
    ImageLook m_Look;
    PixelColours m_Colours{m_Look};
    bool m_IsBgr = false;
    bool m_IsBottomUp = false;

    // For what the range was found that is kept.
    struct Kept
    {
        ImageRange range;
        int channel;
        bool isDifference;

        bool operator==(const Kept& other) const = default;
    };
    std::optional<Kept> m_Kept;
};

} // namespace tavo
