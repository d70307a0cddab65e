// What sending a curve of a million samples costs a program in C++: prints the milliseconds of the middle call.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "vireo/show/show.h"

int main(int argc, char** argv)
{
    const std::size_t numCalls = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 51;
    constexpr std::size_t NUM_SAMPLES = 1000000;
    std::vector<double> x(NUM_SAMPLES);
    std::vector<double> y(NUM_SAMPLES);
    for (std::size_t i = 0; i < NUM_SAMPLES; ++i)
        x[i] = y[i] = static_cast<double>(i);
    std::vector<double> milliseconds;
    for (std::size_t i = 0; i < numCalls; ++i) {
        x[0] = y[0] = -static_cast<double>(i); // there is no earlier copy that could be shared
        const auto start = std::chrono::steady_clock::now();
        tavo::plot("p").curve("c", x, y);
        const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - start;
        milliseconds.push_back(passed.count());
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    std::printf("%g\n", milliseconds[milliseconds.size() / 2]);
    tavo::clear();
}
