#include "apps/vireo-view/MaterialColours.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/TextLines.h"
#include "apps/vireo-view/words.h"

namespace vireo_view {

namespace {

// Of a single number all three channels are that; nothing if it is no number, but a spectrum.
std::optional<std::array<std::uint8_t, 3>> colourOf(std::string_view text)
{
    std::array<std::uint8_t, 3> colour{};
    std::optional<double> channel;
    for (std::uint8_t& byte : colour) {
        const std::string_view word = takeWord(text);
        if (!word.empty() || !channel)
            channel = numberOf(word);
        if (!channel || std::isnan(*channel))
            return {};
        byte = static_cast<std::uint8_t>(std::lround(255 * std::clamp(*channel, 0.0, 1.0)));
    }
    return colour;
}

} // namespace

void addMaterialColours(MaterialColours& materials, const std::filesystem::path& file)
{
    InputBuffer input(file, InputBuffer::LineEnds::UNIVERSAL, nullptr);
    TextLines lines(input);
    std::string name;
    while (lines.next()) {
        std::string_view text = lines.get();
        const std::string_view word = takeWord(text);
        if (word == "newmtl")
            name = withoutIndent(text);
        else if (word == "map_Kd")
            materials.haveTextures = true;
        else if (word == "Kd")
            if (const auto colour = colourOf(text))
                materials.colours[name] = *colour;
    }
    input.checkEnd();
}

} // namespace vireo_view
