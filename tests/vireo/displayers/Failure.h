#pragma once

#include <functional>
#include <vector>

namespace tavo {

// A way in which the code of an object may fail, and what the report of it begins with.
struct Failure
{
    std::function<void()> code;
    const char* report;
};

// The faults of the processor that a view survives on this platform.
std::vector<Failure> survivableFaults();

} // namespace tavo
