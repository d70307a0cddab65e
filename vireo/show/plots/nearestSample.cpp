#include "vireo/show/plots/nearestSample.h"

#include <algorithm>
#include <cmath>

namespace tavo {

namespace {

class Search
{
public:
    Search(const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap, const QPointF& place, double radius)
        : m_Curve(curve)
        , m_XMap(xMap)
        , m_YMap(yMap)
        , m_Place(place)
        , m_Radius(radius)
    {}

    std::optional<NearestSample> find()
    {
        std::size_t first = 0;
        std::size_t last = m_Curve.size();
        if (m_Curve.isSorted()) {
            const double a = m_XMap.toValue(m_Place.x() - m_Radius);
            const double b = m_XMap.toValue(m_Place.x() + m_Radius);
            first = m_Curve.lowerBound(std::min(a, b));
            last = m_Curve.lowerBound(std::nextafter(std::max(a, b), INFINITY), first);
        }
        m_Curve.visit(
            first, last, [this](const Extent& extent) { return canBeNearer(extent); },
            [this](std::size_t from, std::size_t to) { look(from, to); });
        return m_Found;
    }

private:
    // Whether a sample in that stretch of y may be nearer than the nearest so far.
    bool canBeNearer(const Extent& extent) const
    {
        if (extent.isEmpty())
            return false;
        const double a = m_YMap.toPixel(extent.from);
        const double b = m_YMap.toPixel(extent.to);
        if (!std::isfinite(a) || !std::isfinite(b))
            return true;
        const double distance = std::max({0.0, std::min(a, b) - m_Place.y(), m_Place.y() - std::max(a, b)});
        return distance < m_Radius;
    }

    void look(std::size_t first, std::size_t last)
    {
        for (std::size_t i = first; i < last; ++i) {
            const QPointF pixel(m_XMap.toPixel(m_Curve.x(i)), m_YMap.toPixel(m_Curve.y(i)));
            const double distance = std::hypot(pixel.x() - m_Place.x(), pixel.y() - m_Place.y());
            if (distance <= m_Radius && !(m_Found && distance == m_Radius)) {
                m_Found = NearestSample{i, pixel, distance};
                m_Radius = distance;
            }
        }
    }

    const CurveStore& m_Curve;
    const PixelMap& m_XMap;
    const PixelMap& m_YMap;
    QPointF m_Place;
    double m_Radius; // of the nearest so far
    std::optional<NearestSample> m_Found;
};

} // namespace

std::optional<NearestSample> nearestSample(
    const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap, const QPointF& place, double radius)
{
    return Search(curve, xMap, yMap, place, radius).find();
}

} // namespace tavo
