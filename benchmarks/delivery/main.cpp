// vireo-bench-delivery [SECONDS]
//
// What it costs a program to send, beside what it cannot do without: the copy of its numbers. Then the window under
// threads that send 10 curves of 100,000 samples for so many seconds without a pause: the memory of the process, and
// how long the window takes to answer an event. With VIREO_SHOW=off only what a call costs then.
#include <QApplication>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <string>
#include <thread>
#include <vector>

#include "vireo/show/show.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t NUM_SAMPLES = 100'000;
constexpr int NUM_CURVES = 10;
constexpr int NUM_THREADS = 8;
constexpr double MEBIBYTE = 1024 * 1024;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double medianOf(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// The median seconds that a call takes, and its floor, in turns.
template <typename Call, typename Floor>
void compare(const char* name, int numRounds, int numCalls, Call call, Floor floor)
{
    std::vector<double> ofCall;
    std::vector<double> ofFloor;
    for (int round = 0; round < numRounds; ++round) {
        auto start = Clock::now();
        for (int i = 0; i < numCalls; ++i)
            call();
        ofCall.push_back(secondsSince(start) / numCalls);
        start = Clock::now();
        for (int i = 0; i < numCalls; ++i)
            floor();
        ofFloor.push_back(secondsSince(start) / numCalls);
    }
    const double micros = medianOf(ofCall) * 1e6;
    const double floorMicros = medianOf(ofFloor) * 1e6;
    std::printf("| %s | %.3f | %.3f | %.3f | %.2f |\n", name, micros, floorMicros, micros - floorMicros,
        micros / std::max(floorMicros, 1e-3));
}

// The floor of a call: a copy, and the one before it stays until then, as with what is sent.
class Copy
{
public:
    explicit Copy(const std::vector<double>& numbers)
        : m_Numbers(&numbers)
    {}

    void operator()()
    {
        std::vector<double> copied(*m_Numbers);
        copied.swap(m_Copied);
    }

private:
    const std::vector<double>* m_Numbers;
    std::vector<double> m_Copied;
};

void measureCalls()
{
    const std::vector<double> few(10, 1);
    const std::vector<double> many(NUM_SAMPLES, 1);
    const tavo::Plot kept = tavo::plot("calls");
    std::printf("| call | µs | floor, µs | more, µs | ratio |\n|---|---:|---:|---:|---:|\n");
    compare(
        "`curve` of 100,000 samples, and their copy", 200, 5, [&] { tavo::plot("calls").curve("y", many); },
        Copy(many));
    compare(
        "`curve` of 10 samples, and their copy", 100, 200, [&] { tavo::plot("calls").curve("y", few); }, Copy(few));
    compare(
        "`curve` of a kept handle", 100, 200, [&] { kept.curve("y", few); }, Copy(few));
    compare(
        "`curve` of 100,000 samples that are made and moved in, and their making", 200, 5,
        [&] { kept.curve("y", std::vector<double>(many)); }, Copy(many));
    const auto nothing = [] {};
    compare(
        "`append` of one sample", 100, 200, [&] { kept.append("z", 1, 2); }, nothing);
    compare(
        "`pump` when nothing is due", 100, 200, [] { tavo::pump(); }, nothing);
}

// What the program has asked for and not given back; what malloc keeps for later is not ours.
double bytesInUse()
{
    const auto memory = mallinfo2();
    return static_cast<double>(memory.uordblks + memory.hblkhd);
}

void sendUntil(const std::atomic<bool>& isOver, std::atomic<long>& numSent)
{
    std::vector<double> samples(NUM_SAMPLES);
    for (int i = 0; !isOver; ++i) {
        for (int curve = 0; curve < NUM_CURVES; ++curve)
            tavo::plot("flood").curve(std::to_string(curve), samples);
        samples[static_cast<std::size_t>(i) % NUM_SAMPLES] += 1;
        numSent += NUM_CURVES;
    }
}

// How long the window takes to answer.
double secondsToAnswer()
{
    const auto start = Clock::now();
    QMetaObject::invokeMethod(
        qApp, [] {}, Qt::BlockingQueuedConnection);
    return secondsSince(start);
}

void flood(int seconds)
{
    constexpr double curves = NUM_CURVES * NUM_SAMPLES * sizeof(double) / MEBIBYTE;
    std::printf("\n| second | memory, MiB | curves sent | slowest answer, ms |\n|---:|---:|---:|---:|\n");
    std::atomic<bool> isOver{false};
    std::atomic<long> numSent{0};
    const double before = bytesInUse() / MEBIBYTE;
    std::vector<std::thread> threads;
    for (int i = 0; i < NUM_THREADS; ++i)
        threads.emplace_back([&] { sendUntil(isOver, numSent); });
    for (int second = 1; second <= seconds; ++second) {
        double slowest = 0;
        for (const auto start = Clock::now(); secondsSince(start) < 1;) {
            slowest = std::max(slowest, secondsToAnswer());
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        std::printf(
            "| %d | %.0f | %ld | %.0f |\n", second, bytesInUse() / MEBIBYTE - before, numSent.load(), slowest * 1e3);
        std::fflush(stdout);
    }
    isOver = true;
    for (std::thread& thread : threads)
        thread.join();
    std::printf("\nWhat is shown is %.1f MiB, and with a newer version and a copy for each thread %.1f MiB.\n", curves,
        2 * curves + NUM_THREADS * curves / NUM_CURVES);
}

} // namespace

int main(int argc, char** argv)
{
    const bool isOpen = tavo::openWindow();
    measureCalls();
    if (isOpen)
        flood(argc > 1 ? std::atoi(argv[1]) : 10);
}
