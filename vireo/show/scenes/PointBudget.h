#pragma once

#include <algorithm>
#include <cstddef>

#include "vireo/show/scenes/PointPhases.h"

namespace tavo {

// How many points can be drawn in a time, by what earlier frames took.
class PointBudget
{
public:
    // In seconds: 30 frames in one, and something is left for events.
    static constexpr double FRAME = 0.028;

    // What a frame took: for its points, and for everything else.
    void measure(std::size_t numPoints, double secondsOfPoints, double secondsOfRest)
    {
        if (numPoints >= FEWEST)
            take(m_PerPoint, secondsOfPoints / static_cast<double>(numPoints), m_IsMeasured);
        take(m_Rest, secondsOfRest, m_IsMeasured);
        m_IsMeasured = m_IsMeasured || numPoints >= FEWEST;
    }

    std::size_t numPointsIn(double seconds) const
    {
        return static_cast<std::size_t>(std::max(seconds, 0.0) / m_PerPoint);
    }

    // Of all that so many points have, the phases that a frame has time for.
    std::size_t phasesOf(std::size_t numPoints) const
    {
        constexpr double LEAST = 0.25 * FRAME; // for points, however long the rest takes
        return phasesIn(std::max(FRAME - m_Rest, LEAST), numPoints);
    }

    // Of all that so many points have, the phases that there is time for; at least so many that what they take is
    // measured, and one.
    std::size_t phasesIn(double seconds, std::size_t numPoints) const
    {
        const std::size_t most = std::max(numPointsIn(seconds), 2 * FEWEST);
        if (numPoints <= most)
            return PointPhases::ALL;
        return std::max<std::size_t>(1, PointPhases::ALL * most / numPoints);
    }

private:
    static constexpr std::size_t FEWEST = 20000; // points that say anything

    static void take(double& value, double measured, bool isKnown)
    {
        value = isKnown ? (value + measured) / 2 : measured;
    }

    double m_PerPoint = 5e-8; // a guess
    double m_Rest = 0;
    bool m_IsMeasured = false;
};

// Which share of the points is drawn while a view moves. It is chosen when a gesture begins and then stays the same, so
// that nothing flickers; only if far more points come into view, it gets smaller.
class PointMotion
{
public:
    // The view has moved, and so many points are in view.
    void move(std::size_t numInView, const PointBudget& budget)
    {
        const bool isNew = m_NumPhases == 0;
        if (isNew || numInView > 2 * m_NumInView) {
            const std::size_t phases = budget.phasesOf(numInView);
            m_NumPhases = isNew ? phases : std::min(phases, m_NumPhases);
            m_NumInView = numInView;
        }
        m_IsMoving = true;
    }

    // Nothing has moved for a while; the gesture may go on.
    void rest(bool isGestureOver)
    {
        m_IsMoving = false;
        if (isGestureOver)
            m_NumPhases = 0;
    }

    bool isMoving() const { return m_IsMoving; }

    // That are drawn now.
    std::size_t numPhases() const { return m_IsMoving ? m_NumPhases : PointPhases::ALL; }

private:
    bool m_IsMoving = false;
    std::size_t m_NumPhases = 0; // of the gesture; 0 if there is none
    std::size_t m_NumInView = 0; // when they were chosen
};

} // namespace tavo
