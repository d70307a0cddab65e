#pragma once

#include <chrono>

namespace tavo {

// Goes from when it is made.
class Stopwatch
{
public:
    double seconds() const { return std::chrono::duration<double>(Clock::now() - m_Start).count(); }

private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point m_Start = Clock::now();
};

} // namespace tavo
