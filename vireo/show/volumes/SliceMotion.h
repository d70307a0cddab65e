#pragma once

#include <algorithm>

#include "vireo/show/scenes/PointBudget.h"

namespace tavo {

// Of how many slices of volumes one is drawn while a view moves, by what they took before. In a gesture there may get
// fewer, and never more, so that nothing flickers.
class SliceMotion
{
public:
    // What all slices of all volumes took, in seconds.
    void measure(double seconds) { m_Seconds = seconds; }

    void move()
    {
        constexpr unsigned int MOST = 8;
        while (m_Step < MOST && m_Seconds > m_Step * PointBudget::FRAME)
            m_Step *= 2;
        m_IsMoving = true;
    }

    // Nothing has moved for a while; the gesture may go on. Returns whether slices were left out.
    bool rest(bool isGestureOver)
    {
        const bool wereFew = step() > 1;
        m_IsMoving = false;
        if (isGestureOver)
            m_Step = 1;
        return wereFew;
    }

    unsigned int step() const { return m_IsMoving ? m_Step : 1; }

private:
    double m_Seconds = 0;
    unsigned int m_Step = 1;
    bool m_IsMoving = false;
};

} // namespace tavo
