#pragma once

namespace tavo {

// Faults of the processor, which no compiler sees coming.

[[gnu::noinline]] inline void writeThroughNull()
{
    volatile int* volatile null = nullptr;
    *null = 1;
}

[[gnu::noinline]] inline void callNull()
{
    void (*volatile null)() = nullptr;
    null();
}

[[gnu::noinline]] inline void divideByZero()
{
    volatile int zero = 0;
    volatile int quotient = 7 / zero;
    static_cast<void>(quotient);
}

} // namespace tavo
