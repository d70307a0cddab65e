#include "vireo/show/scenes/PointShare.h"

#include <algorithm>
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

PointShare PointShare::behind(std::size_t numPoints) const
{
    PointShare share = *this;
    share.beginPoint -= std::min(share.beginPoint, numPoints);
    share.endPoint -= std::min(share.endPoint, numPoints);
    return share;
}

std::size_t PointRanges::numPoints() const
{
    return std::accumulate(counts.begin(), counts.end(), std::size_t(0));
}

PointRanges PointRanges::within(std::size_t begin, std::size_t end) const
{
    PointRanges ranges;
    const auto after = std::upper_bound(firsts.begin(), firsts.end(), static_cast<int>(begin));
    const auto next = static_cast<std::size_t>(after - firsts.begin());
    for (std::size_t i = next > 0 ? next - 1 : 0; i < firsts.size() && static_cast<std::size_t>(firsts[i]) < end; ++i) {
        const std::size_t from = std::max(static_cast<std::size_t>(firsts[i]), begin);
        const std::size_t to = std::min(static_cast<std::size_t>(firsts[i] + counts[i]), end);
        if (from < to)
            ranges.add(from - begin, to - from);
    }
    return ranges;
}

void PointRanges::add(std::size_t first, std::size_t count)
{
    if (count == 0)
        return;
    const bool goesOn = !firsts.empty() && firsts.back() + counts.back() == static_cast<int>(first);
    if (goesOn) {
        counts.back() += static_cast<int>(count);
    } else {
        firsts.push_back(static_cast<int>(first));
        counts.push_back(static_cast<int>(count));
    }
}

PointRanges rangesOf(const PointPhases& phases, const std::vector<SceneBox>& chunks, const PointShare& share,
    const ToClipSpace& toClipSpace)
{
    PointRanges ranges;
    for (std::size_t chunk = 0; chunk < chunks.size(); ++chunk) {
        const std::size_t begin = std::max(PointPhases::CHUNK * chunk, share.beginPoint);
        const std::size_t end = std::min(PointPhases::CHUNK * chunk + phases.sizeOfChunk(chunk), share.endPoint);
        if (begin >= end || isOutside(Box3d(chunks[chunk].getMin(), chunks[chunk].getMax()), toClipSpace))
            continue;
        if (share.hasAllPhases())
            ranges.add(begin, end - begin);
        else
            ranges.add(phases.sizeOfPhases(0, share.numPhases) * chunk, phases.sizeOfPhases(chunk, share.numPhases));
    }
    return ranges;
}

} // namespace tavo
