#include "vireo/show/plots/denseLines.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tavo {

double coveredPixels(const QPolygonF& line, const QRectF& view)
{
    double covered = 0;
    for (int i = 1; i < line.size(); ++i) {
        const QRectF around = QRectF(line[i - 1], line[i]).normalized();
        const double width = std::min(around.right(), view.right()) - std::max(around.left(), view.left());
        const double height = std::min(around.bottom(), view.bottom()) - std::max(around.top(), view.top());
        if (width >= 0 && height >= 0)
            covered += 1 + std::max(width, height);
    }
    return covered;
}

QPolygonF thinnedOut(const QPolygonF& line, int numTogether)
{
    QPolygonF thin;
    for (int first = 0; first < line.size(); first += numTogether) {
        const int last = std::min(first + numTogether, line.size());
        const auto [left, right] = std::minmax_element(line.begin() + first, line.begin() + last,
            [](const QPointF& a, const QPointF& b) { return a.x() < b.x(); });
        const auto [top, bottom] = std::minmax_element(line.begin() + first, line.begin() + last,
            [](const QPointF& a, const QPointF& b) { return a.y() < b.y(); });
        std::array kept{line.begin() + first, left, right, top, bottom, line.begin() + (last - 1)};
        std::sort(kept.begin(), kept.end());
        std::for_each(kept.begin(), std::unique(kept.begin(), kept.end()),
            [&thin](const auto& point) { thin.push_back(*point); });
    }
    return thin;
}

} // namespace tavo
