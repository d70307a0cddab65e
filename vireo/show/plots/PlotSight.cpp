#include "vireo/show/plots/PlotSight.h"

#include <algorithm>
#include <cmath>

namespace tavo {

namespace {

constexpr double SMALLEST_LENGTH = 1e-290;
constexpr std::size_t MOST_REMEMBERED = 100;

bool areEqual(const std::optional<AxisUpdate::Range>& a, const std::optional<AxisUpdate::Range>& b)
{
    return a.has_value() == b.has_value() && (!a || (a->from == b->from && a->to == b->to));
}

double smallestLength(double from, double to)
{
    return std::max(std::max(std::abs(from), std::abs(to)) * PlotSight::SMALLEST_PART, SMALLEST_LENGTH);
}

// A part of an axis that can be shown, whatever was asked for. A logarithmic one that would begin with zero or below
// begins with what is fitted, if that can be.
AxisUpdate::Range showable(AxisUpdate::Range range, bool isLog, double smallestFitted)
{
    if (std::isnan(range.from) || std::isnan(range.to))
        return {1, 10};
    const double from = std::clamp(range.from, -PlotSight::LARGEST, PlotSight::LARGEST);
    const double to = std::clamp(range.to, -PlotSight::LARGEST, PlotSight::LARGEST);
    if (isLog && to < SMALLEST_LENGTH)
        return {1, 10};
    const auto canBegin = [to](double first) { return first > 0 && to / first <= PlotSight::LARGEST_RATIO; };
    if (isLog && from > 0 && !canBegin(from))
        return {to / PlotSight::LARGEST_RATIO, to};
    if (isLog && !canBegin(from))
        return {canBegin(smallestFitted) && smallestFitted < to ? smallestFitted : to * 1e-6, to};
    const double least = smallestLength(from, to);
    return to - from >= least ? AxisUpdate::Range{from, to} : AxisUpdate::Range{from - least, to + least};
}

} // namespace

bool PlotSight::Choice::operator==(const Choice& other) const
{
    return std::equal(ranges.begin(), ranges.end(), other.ranges.begin(), areEqual) &&
           followedLength == other.followedLength;
}

PlotSight::Range PlotSight::range(Axis axis) const
{
    if (m_Chosen.ranges[axis])
        return showable(*m_Chosen.ranges[axis], m_IsLog[axis], m_Fitted[axis].from);
    const bool isWanted = m_Wanted[axis] && !(axis == X && m_Chosen.followedLength);
    return showable(isWanted ? *m_Wanted[axis] : m_Fitted[axis], m_IsLog[axis], m_Fitted[axis].from);
}

void PlotSight::zoom(Axis axis, double factor, double fixed)
{
    const Range seen = range(axis);
    if (axis == X && isFollowing()) {
        m_Chosen.followedLength = (seen.to - seen.from) * factor;
        return;
    }
    const double place = placeOf(axis, fixed);
    const double from = placeOf(axis, seen.from);
    const double to = placeOf(axis, seen.to);
    choose(axis, fromPlaces(axis, place + (from - place) * factor, place + (to - place) * factor));
}

void PlotSight::move(Axis axis, double part)
{
    const Range seen = range(axis);
    const double from = placeOf(axis, seen.from);
    const double to = placeOf(axis, seen.to);
    choose(axis, fromPlaces(axis, from + part * (to - from), to + part * (to - from)));
}

void PlotSight::choose(Axis axis, const Range& range)
{
    const double from = std::max(std::min(range.from, range.to), -LARGEST);
    const double to = std::min(std::max(range.from, range.to), LARGEST);
    if (to - from >= smallestLength(from, to))
        m_Chosen.ranges[axis] = Range{from, to};
}

void PlotSight::fit()
{
    m_Chosen = {};
}

void PlotSight::fit(Axis axis)
{
    m_Chosen.ranges[axis].reset();
    if (axis == X)
        m_Chosen.followedLength.reset();
}

void PlotSight::setFrozen(bool isFrozen)
{
    if (isFrozen)
        choose(X, range(X));
    else
        m_Chosen.ranges[X].reset();
}

void PlotSight::remember()
{
    m_After.clear();
    if (!m_Before.empty() && m_Before.back() == m_Chosen)
        return;
    m_Before.push_back(m_Chosen);
    if (m_Before.size() > MOST_REMEMBERED)
        m_Before.erase(m_Before.begin());
}

void PlotSight::back()
{
    if (m_Before.empty())
        return;
    m_After.push_back(m_Chosen);
    m_Chosen = m_Before.back();
    m_Before.pop_back();
}

void PlotSight::forward()
{
    if (m_After.empty())
        return;
    m_Before.push_back(m_Chosen);
    m_Chosen = m_After.back();
    m_After.pop_back();
}

void PlotSight::takeX(const PlotSight& other)
{
    m_Chosen.ranges[X] = other.m_Chosen.ranges[X];
    m_Chosen.followedLength = other.m_Chosen.followedLength;
}

double PlotSight::placeOf(Axis axis, double value) const
{
    return m_IsLog[axis] ? std::log10(std::max(value, SMALLEST_LENGTH)) : value;
}

double PlotSight::valueOf(Axis axis, double place) const
{
    return m_IsLog[axis] ? std::pow(10.0, std::clamp(place, -300.0, 307.0)) : place;
}

PlotSight::Range PlotSight::fromPlaces(Axis axis, double from, double to) const
{
    return {valueOf(axis, from), valueOf(axis, to)};
}

} // namespace tavo
