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

// The last sample at x or before it, of a sorted curve.
std::optional<std::size_t> lastUpTo(const CurveStore& curve, double x)
{
    const std::size_t next = curve.isSorted() ? curve.lowerBound(std::nextafter(x, INFINITY)) : 0;
    return next > 0 ? std::optional(next - 1) : std::nullopt;
}

} // namespace

std::optional<NearestSample> nearestSample(
    const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap, const QPointF& place, double radius)
{
    return Search(curve, xMap, yMap, place, radius).find();
}

std::optional<NearestSample> holdingSample(
    const CurveStore& curve, const PixelMap& xMap, const PixelMap& yMap, const QPointF& place, double radius)
{
    const std::optional<std::size_t> held = lastUpTo(curve, xMap.toValue(place.x()));
    if (!held)
        return {};
    const auto pixelOf = [&](std::size_t i) { return QPointF(xMap.toPixel(curve.x(i)), yMap.toPixel(curve.y(i))); };
    const QPointF sample = pixelOf(*held);
    const bool isLast = *held + 1 == curve.size();
    const QPointF next = isLast ? sample : pixelOf(*held + 1);
    const QPointF step(std::min(place.x(), next.x()), sample.y());
    // How far the jump is away from there to the next sample, or from the one before to this one.
    const auto distanceOfJump = [&](const QPointF& from, const QPointF& to) {
        const auto [top, bottom] = std::minmax({from.y(), to.y()});
        return std::hypot(to.x() - place.x(), std::clamp(place.y(), top, bottom) - place.y());
    };
    double distance = std::hypot(step.x() - place.x(), step.y() - place.y());
    for (const double jump : {isLast ? INFINITY : distanceOfJump(sample, next),
             *held > 0 ? distanceOfJump(pixelOf(*held - 1), sample) : INFINITY})
        if (jump < distance)
            distance = jump;
    if (!(distance <= radius) || !std::isfinite(step.y()))
        return {};
    return NearestSample{*held, step, distance};
}

std::optional<std::size_t> sampleAtX(
    const CurveStore& curve, bool isSteps, const PixelMap& xMap, double x, double radius)
{
    const std::optional<std::size_t> before = lastUpTo(curve, x);
    const std::size_t next = before ? *before + 1 : 0;
    if (isSteps && before && (next < curve.size() || curve.x(*before) == x))
        return before;
    std::optional<std::size_t> nearest;
    for (const std::optional<std::size_t>& i : {before, std::optional(next)}) {
        if (!i || *i >= curve.size() || !curve.isSorted())
            continue;
        const double distance = std::abs(xMap.toPixel(curve.x(*i)) - xMap.toPixel(x));
        if (distance <= radius && !(nearest && distance == radius)) {
            nearest = i;
            radius = distance;
        }
    }
    return nearest;
}

} // namespace tavo
