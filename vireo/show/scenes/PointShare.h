#pragma once

#include <cstddef>
#include <vector>

#include "vireo/show/scenes/PointOrder.h"
#include "vireo/show/scenes/SceneBox.h"
#include "vireo/show/scenes/clipSpace.h"

namespace tavo {

// Of the points of all clouds, those that are drawn: some phases of the chunks that may be in view.
struct PointShare
{
    std::size_t firstPhase = 0;
    std::size_t endPhase = PointOrder::PHASES;
    double enlargement = 1; // of points, where few stand for many
    Matrix4 projection;     // to clip space
    double width = 1;       // of the picture, in pixels
    double height = 1;

    bool isWhole() const { return firstPhase == 0 && endPhase == PointOrder::PHASES; }

    // From the coordinates of an object to clip space, with a margin around the view for points of that size.
    ToClipSpace clipSpaceOf(const Matrix4& modelView, double pointSize) const;
};

// Consecutive vertices, as glMultiDrawArrays takes them.
struct PointRanges
{
    std::vector<int> firsts;
    std::vector<int> counts;

    std::size_t numPoints() const;
};

// Each chunk has a box, in the coordinates of the object.
PointRanges rangesOf(const PointOrder& order, const std::vector<SceneBox>& chunks, const PointShare& share,
    const ToClipSpace& toClipSpace);

} // namespace tavo
