#include "tests/tavo/base/debug/faults.h"
#include "tests/vireo/displayers/Failure.h"

namespace tavo {

std::vector<Failure> survivableFaults()
{
    return {
        {writeThroughNull, "error: operating-system exception 0xC0000005"},
        {divideByZero, "error: operating-system exception 0xC0000094"},
    };
}

} // namespace tavo
