#pragma once

#include <cstddef>
#include <limits>
#include <vector>

#include "vireo/show/scenes/PointPhases.h"
#include "vireo/show/scenes/SceneBox.h"
#include "vireo/show/scenes/clipSpace.h"

namespace tavo {

class CutOut;

// Of the points of a cloud, those that are drawn: some phases of the chunks that may be in view.
struct PointShare
{
    std::size_t numPhases = PointPhases::ALL;
    double enlargement = 1;     // of points, where few stand for many
    unsigned int sliceStep = 1; // of so many slices of volumes one is drawn
    bool mayBeCoarse = false;   // of large volumes, rather than late
    Matrix4 projection;         // to clip space
    double width = 1;           // of the picture, in pixels
    double height = 1;
    const CutOut* cutOut = nullptr; // what is not drawn, of everything; null if nothing is

    // Of all phases, only these points; of fewer, what they have of the chunks in which these are.
    std::size_t beginPoint = 0;
    std::size_t endPoint = std::numeric_limits<std::size_t>::max();

    bool hasAllPhases() const { return numPhases >= PointPhases::ALL; }

    // Whether it is some of the points, and the others come before and behind them.
    bool isSlice() const { return hasAllPhases() && endPoint != std::numeric_limits<std::size_t>::max(); }

    // The same of a cloud that has so many points before it, if points are counted through several.
    PointShare behind(std::size_t numPoints) const;

    // From the coordinates of an object to clip space, with a margin around the view for points of that size.
    ToClipSpace clipSpaceOf(const Matrix4& modelView, double pointSize) const;
};

// Consecutive vertices.
struct PointRanges
{
    std::vector<int> firsts;
    std::vector<int> counts;

    std::size_t numPoints() const;

    // What of them is from `begin` to before `end`, counted from `begin`.
    PointRanges within(std::size_t begin, std::size_t end) const;

    // What follows what is there goes on with it.
    void add(std::size_t first, std::size_t count);
};

// Of a share with all phases, the vertices. Otherwise those of its phases alone, where those of one chunk stand behind
// those of the chunk before (see drawnPhases). Each chunk has a box, in the coordinates of the object.
PointRanges rangesOf(const PointPhases& phases, const std::vector<SceneBox>& chunks, const PointShare& share,
    const ToClipSpace& toClipSpace);

} // namespace tavo
