#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tavo/base/math/vectors.h"

namespace tavo {

// The colours of numbers: 256 of them, opaque, from the least number to the greatest.
class ColourMap
{
public:
    static constexpr std::size_t SIZE = 256;
    using Entries = std::array<RGBA8, SIZE>;

    // How lightness tells numbers apart.
    enum class Kind
    {
        SEQUENTIAL, // it rises all the way
        DIVERGING,  // it rises to the middle and falls again
        CYCLIC      // the last colour is a neighbour of the first
    };

    // Grey, for what is no number.
    static RGBA8 colourOfNaN() { return RGBA8(128, 128, 128, 255); }

    ColourMap(Kind kind, const Entries& entries);

    Kind kind() const { return m_Kind; }
    const Entries& entries() const { return m_Entries; }

    // The colour at a place from 0 to 1. Places outside have the colour of the nearer end.
    RGBA8 sample(double place) const;

private:
    Kind m_Kind;
    Entries m_Entries;
};

// The map of a name, unless there is none.
std::optional<ColourMap> findColourMap(std::string_view name);

// In the order in which they are offered. The first one is for those who do not choose.
const std::vector<std::string_view>& namesOfColourMaps();

// Why a name is refused: there is no such map, but there are others.
std::string whyNoColourMap(std::string_view name);

} // namespace tavo
