#include "vireo/show/scenes/pickIds.h"

#include <cassert>

namespace tavo {

const char* const PICK_PROGRAM = R"(!!ARBvp1.0
OPTION ARB_position_invariant;
ADD result.color, vertex.color, program.local[0];
END)";

std::vector<RGBA8> coloursOfPlaces()
{
    std::vector<RGBA8> colours;
    colours.reserve(PickId::PLACES);
    for (std::uint32_t place = 0; place < PickId::PLACES; ++place)
        colours.emplace_back(place & 0xFF, place >> 8, 0, 0);
    return colours;
}

std::array<float, 4> constantOfChunk(std::uint32_t chunk)
{
    assert(chunk < PickId::MOST_CHUNKS);
    const std::uint32_t number = chunk + 1;
    return {0, 0, static_cast<float>(number & 0xFF) / 255, static_cast<float>(number >> 8) / 255};
}

std::optional<PickId> idOfPixel(const RGBA8& pixel)
{
    const std::uint32_t number = static_cast<std::uint32_t>(pixel[2]) | static_cast<std::uint32_t>(pixel[3]) << 8;
    if (number == 0)
        return std::nullopt;
    return PickId{number - 1, static_cast<std::uint32_t>(pixel[0]) | static_cast<std::uint32_t>(pixel[1]) << 8};
}

std::optional<PickedPixel> nearestPicked(std::span<const RGBA8, PICK_SIDE * PICK_SIDE> pixels)
{
    constexpr int MIDDLE = PICK_SIDE / 2;
    const auto distance = [](int x, int y) { return x * x + y * y; };
    std::optional<PickedPixel> nearest;
    for (int y = -MIDDLE; y <= MIDDLE; ++y)
        for (int x = -MIDDLE; x <= MIDDLE; ++x) {
            const auto pixel = static_cast<std::size_t>((y + MIDDLE) * PICK_SIDE + x + MIDDLE);
            const std::optional<PickId> id = idOfPixel(pixels[pixel]);
            if (id && (!nearest || distance(x, y) < distance(nearest->x, nearest->y)))
                nearest = PickedPixel{*id, x, y};
        }
    return nearest;
}

} // namespace tavo
