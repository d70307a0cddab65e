#include "vireo/show/colours/colourOfLabel.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include "vireo/show/colours/cielab.h"

namespace tavo {

namespace {

constexpr std::size_t NUM_COLOURS = 256;
constexpr double DARKEST = 35;
constexpr double LIGHTEST = 85;
constexpr double LEAST_CHROMA = 25;
constexpr double LEAST_DISTANCE = 10; // of neighbours, for everyone

using Palette = std::array<RGBA8, NUM_COLOURS>;

struct Candidate
{
    RGBA8 colour;
    std::array<Lab, ALL_VISIONS.size()> seen;
    double distance = std::numeric_limits<double>::infinity(); // to the nearest of those that are taken
};

Candidate candidateOf(const RGBA8& colour)
{
    Candidate candidate{colour, {}};
    for (std::size_t i = 0; i < ALL_VISIONS.size(); ++i)
        candidate.seen[i] = toLab(colour, ALL_VISIONS[i]);
    return candidate;
}

std::vector<Candidate> allCandidates()
{
    constexpr double STEP = 5;
    constexpr double END = 130; // no showable colour lies beyond
    std::vector<Candidate> candidates;
    for (double l = DARKEST + 1; l < LIGHTEST; l += STEP)
        for (double a = -END; a <= END; a += STEP)
            for (double b = -END; b <= END; b += STEP)
                if (const Lab colour{l, a, b}; chromaOf(colour) > LEAST_CHROMA + 1 && isShowable(colour))
                    candidates.push_back(candidateOf(toSRGB(colour)));
    return candidates;
}

// Whether everyone can tell two colours apart.
bool areApart(const Candidate& one, const Candidate& other)
{
    for (std::size_t i = 0; i < ALL_VISIONS.size(); ++i)
        if (distance(one.seen[i], other.seen[i]) < LEAST_DISTANCE)
            return false;
    return true;
}

// Farthest first: each colour is the one least like all before it. The last is also a neighbour of the first.
Palette makePalette()
{
    std::vector<Candidate> candidates = allCandidates();
    const Candidate seed = candidateOf(RGBA8(0, 114, 178, 255));
    Palette palette;
    Candidate last = seed;
    for (std::size_t i = 0; i < NUM_COLOURS; ++i) {
        palette[i] = last.colour;
        const Candidate* farthest = nullptr;
        for (Candidate& candidate : candidates) {
            candidate.distance = std::min(candidate.distance, distance(candidate.seen[0], last.seen[0]));
            const bool isLast = i + 2 == NUM_COLOURS;
            if (areApart(candidate, last) && (!isLast || areApart(candidate, seed)) &&
                (!farthest || candidate.distance > farthest->distance))
                farthest = &candidate;
        }
        last = *farthest;
    }
    return palette;
}

} // namespace

RGBA8 colourOfLabel(std::int64_t label)
{
    static const Palette PALETTE = makePalette();
    return PALETTE[static_cast<std::uint64_t>(label) % NUM_COLOURS];
}

} // namespace tavo
