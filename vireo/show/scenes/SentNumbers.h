#pragma once

#include <optional>
#include <utility>

#include "vireo/show/scenes/SceneUpdate.h"

namespace tavo {

// Numbers that were sent for the points of an item. Those that fit the points are used; others wait for points that
// they fit.
class SentNumbers
{
public:
    // Takes over what was sent, if anything.
    void send(const std::optional<NumberTuples>& numbers)
    {
        if (numbers)
            m_Waiting = numbers;
    }

    // What waits and fits takes its place; what was there and fits no more goes. Returns whether anything did.
    template <typename Fits>
    bool settle(Fits fits)
    {
        const bool takes = m_Waiting && fits(*m_Waiting);
        if (takes)
            m_Used = std::exchange(m_Waiting, {});
        const bool goes = m_Used && !fits(*m_Used);
        if (goes && !m_Waiting)
            m_Waiting = m_Used;
        if (goes)
            m_Used.reset();
        return takes || goes;
    }

    // Null if there are none.
    const NumberTuples* used() const { return m_Used ? &*m_Used : nullptr; }
    const NumberTuples* waiting() const { return m_Waiting ? &*m_Waiting : nullptr; }

private:
    std::optional<NumberTuples> m_Used;
    std::optional<NumberTuples> m_Waiting;
};

} // namespace tavo
