#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "tavo/base/math/vectors.h"

namespace tavo {

// What is under the pointer is found by drawing ids instead of colours: the chunk of each point, and its place in
// it (see PointPhases). The four bytes of a pixel are such an id, 0 where nothing was drawn.
//
// Red and green are the place, which all chunks of all objects take from one buffer of colours. Blue and alpha are the
// chunk, counted from 1, a constant of the program that draws it. So points have nothing to carry.
//
// To draw ids, switch off blending, dithering, smoothing, lighting and multisampling.
struct PickId
{
    // The chunks of all objects that are drawn together, at most so many.
    static constexpr std::uint32_t MOST_CHUNKS = 65535;
    static constexpr std::uint32_t PLACES = 65536;

    std::uint32_t chunk = 0;
    std::uint32_t place = 0;

    bool operator==(const PickId&) const = default;
};

// The colours of all places, for the colours of vertices: 256 KiB.
std::vector<RGBA8> coloursOfPlaces();

// What a chunk adds to them, for program.local[0].
std::array<float, 4> constantOfChunk(std::uint32_t chunk);

// An ARB program for vertices that adds them. It transforms as GL does without a program.
extern const char* const PICK_PROGRAM;

// What was drawn at a pixel, if anything.
std::optional<PickId> idOfPixel(const RGBA8& pixel);

// What was found in a square of pixels around the pointer.
struct PickedPixel
{
    PickId id;
    int x = 0; // from the middle of the square
    int y = 0;
};

// As many pixels a side as are drawn to pick: those who point at something are seldom farther off.
inline constexpr int PICK_SIDE = 9;

// The pixel nearest to the middle of PICK_SIDE x PICK_SIDE pixels at which something was drawn; none if it is all
// empty. Rows go as they were read.
std::optional<PickedPixel> nearestPicked(std::span<const RGBA8, PICK_SIDE * PICK_SIDE> pixels);

} // namespace tavo
