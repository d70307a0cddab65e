#include "vireo/show/scenes/PointShare.h"

#include <numeric>

namespace tavo {

ToClipSpace PointShare::clipSpaceOf(const Matrix4& modelView, double pointSize) const
{
    ToClipSpace toClipSpace = (projection * modelView).numbers;
    for (std::size_t column = 0; column < 16; column += 4) {
        toClipSpace[column] /= 1 + pointSize / width;
        toClipSpace[column + 1] /= 1 + pointSize / height;
    }
    return toClipSpace;
}

std::size_t PointRanges::numPoints() const
{
    return std::accumulate(counts.begin(), counts.end(), std::size_t(0));
}

PointRanges rangesOf(const PointOrder& order, const std::vector<SceneBox>& chunks, const PointShare& share,
    const ToClipSpace& toClipSpace)
{
    PointRanges ranges;
    for (std::size_t chunk = 0; chunk < chunks.size(); ++chunk) {
        const std::size_t begin = PointOrder::CHUNK * chunk;
        const auto first = static_cast<int>(begin + order.sizeOfPhases(chunk, share.firstPhase));
        const auto count = static_cast<int>(begin + order.sizeOfPhases(chunk, share.endPhase)) - first;
        const SceneBox& box = chunks[chunk];
        if (count == 0 || isOutside(Box3d(box.getMin(), box.getMax()), toClipSpace))
            continue;
        const bool goesOn = !ranges.firsts.empty() && ranges.firsts.back() + ranges.counts.back() == first;
        if (goesOn) {
            ranges.counts.back() += count;
        } else {
            ranges.firsts.push_back(first);
            ranges.counts.push_back(count);
        }
    }
    return ranges;
}

} // namespace tavo
