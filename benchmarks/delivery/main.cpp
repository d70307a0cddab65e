// vireo-bench-delivery [SECONDS]
//
// What it costs a program to send, beside what it cannot do without: the copy of its numbers. Then, for so many seconds
// each, the window under a thread that appends a million samples a second, of which ten seconds are in view, and under
// threads that send 10 curves of 100,000 samples without a pause: the memory of the process, and how long the window
// takes to answer an event. With VIREO_SHOW=off only what a call costs then.
#include <QApplication>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/support/bytesInUse.h"
#include "vireo/show/show.h"

namespace {

using vireo_bench::bytesInUse;

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
    std::vector<double> changing(NUM_SAMPLES);
    double now = 0;
    const auto change = [&] { std::generate(changing.begin(), changing.end(), [&now] { return now += 0.001; }); };
    const tavo::Plot kept = tavo::plot("calls");
    std::printf("| call | µs | floor, µs | more, µs | ratio |\n|---|---:|---:|---:|---:|\n");
    // What is sent again is compared with what was sent, and copied only if it has changed.
    compare(
        "`curve` of 100,000 samples that have all changed, and their copy; both change them", 200, 5,
        [&] {
            change();
            tavo::plot("calls").curve("y", changing);
        },
        [&, copy = Copy(changing)]() mutable {
            change();
            copy();
        });
    compare(
        "`curve` of the same 100,000 samples again, and their copy", 200, 5,
        [&] { tavo::plot("calls").curve("y", many); }, Copy(many));
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

void sendUntil(const std::atomic<bool>& isOver, std::atomic<long>& numSent, std::vector<double>& samples)
{
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

// What the window and the process are like in the course of a second.
struct Second
{
    double slowestAnswer = 0;
    double mostBytes = 0;
};

Second watchForASecond()
{
    Second second;
    for (const auto start = Clock::now(); secondsSince(start) < 1;) {
        second.slowestAnswer = std::max(second.slowestAnswer, secondsToAnswer());
        second.mostBytes = std::max(second.mostBytes, bytesInUse());
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return second;
}

// Counts what is painted, in the window's thread.
class PaintCounter : public QObject
{
public:
    PaintCounter()
    {
        moveToThread(qApp->thread());
        QMetaObject::invokeMethod(
            this, [this] { qApp->installEventFilter(this); }, Qt::BlockingQueuedConnection);
    }
    ~PaintCounter() override
    {
        QMetaObject::invokeMethod(
            this, [this] { qApp->removeEventFilter(this); }, Qt::BlockingQueuedConnection);
    }

    int takeNumber() { return m_Number.exchange(0); }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        m_Number += event->type() == QEvent::Paint && object->inherits("QwtPlotCanvas");
        return false;
    }

private:
    std::atomic<int> m_Number{0};
};

// The processor time of this thread.
double secondsOfThread()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

constexpr std::size_t PIECE = 1000;
constexpr double SAMPLES_PER_SECOND = 1e6;
constexpr double SECONDS_IN_VIEW = 10;

void appendUntil(const std::atomic<bool>& isOver, std::atomic<double>& secondsBusy)
{
    const tavo::Plot plot = tavo::plot("stream");
    std::vector<double> x(PIECE);
    std::vector<double> y(PIECE);
    const auto start = Clock::now();
    for (double sent = 0; !isOver; sent += PIECE) {
        for (std::size_t i = 0; i < PIECE; ++i) {
            x[i] = (sent + static_cast<double>(i)) / SAMPLES_PER_SECOND;
            y[i] = static_cast<double>(i);
        }
        plot.append("y", x, y);
        secondsBusy = secondsOfThread();
        std::this_thread::sleep_until(
            start + std::chrono::microseconds(static_cast<long>((sent + PIECE) / SAMPLES_PER_SECOND * 1e6)));
    }
}

void stream(int seconds)
{
    std::printf(
        "\n| second | memory, MiB | of a core, %% | frames | slowest answer, ms |\n|---:|---:|---:|---:|---:|\n");
    tavo::clear();
    tavo::plot("stream").keep("y", static_cast<std::size_t>(SAMPLES_PER_SECOND * SECONDS_IN_VIEW));
    tavo::plot("stream").window(SECONDS_IN_VIEW).append("y", 0, 0);
    watchForASecond();
    PaintCounter paints;
    std::atomic<bool> isOver{false};
    std::atomic<double> secondsBusy{0};
    const double before = bytesInUse();
    std::thread thread([&] { appendUntil(isOver, secondsBusy); });
    for (int i = 1; i <= seconds; ++i) {
        const double busyBefore = secondsBusy;
        const Second second = watchForASecond();
        std::printf("| %d | %.0f | %.1f | %d | %.0f |\n", i, (second.mostBytes - before) / MEBIBYTE,
            (secondsBusy - busyBefore) * 1e2, paints.takeNumber(), second.slowestAnswer * 1e3);
        std::fflush(stdout);
    }
    isOver = true;
    thread.join();
    constexpr double samples = SECONDS_IN_VIEW * SAMPLES_PER_SECOND * 2 * sizeof(double) / MEBIBYTE;
    std::printf("\nThe samples are %.0f MiB, once there are ten seconds of them.\n", samples);
}

void flood(int seconds)
{
    constexpr double curves = NUM_CURVES * NUM_SAMPLES * sizeof(double) / MEBIBYTE;
    std::printf("\n| second | memory, MiB | curves sent | slowest answer, ms |\n|---:|---:|---:|---:|\n");
    tavo::clear();
    for (int curve = 0; curve < NUM_CURVES; ++curve)
        tavo::plot("flood").curve(std::to_string(curve), {0, 1});
    watchForASecond();
    std::vector<std::vector<double>> samples(NUM_THREADS, std::vector<double>(NUM_SAMPLES));
    std::atomic<bool> isOver{false};
    std::atomic<long> numSent{0};
    const double before = bytesInUse();
    std::vector<std::thread> threads;
    for (std::vector<double>& own : samples)
        threads.emplace_back([&] { sendUntil(isOver, numSent, own); });
    for (int i = 1; i <= seconds; ++i) {
        const Second second = watchForASecond();
        std::printf("| %d | %.1f | %ld | %.0f |\n", i, (second.mostBytes - before) / MEBIBYTE, numSent.load(),
            second.slowestAnswer * 1e3);
        std::fflush(stdout);
    }
    isOver = true;
    for (std::thread& thread : threads)
        thread.join();
    std::printf("\nWhat is shown is %.1f MiB, and with a newer version and a copy for each thread %.1f MiB; the plot "
                "takes at most a tenth of what it shows besides.\n",
        curves, 2 * curves + NUM_THREADS * curves / NUM_CURVES);
}

} // namespace

int main(int argc, char** argv)
{
    const bool isOpen = tavo::openWindow();
    measureCalls();
    const int seconds = argc > 1 ? std::atoi(argv[1]) : 10;
    if (isOpen) {
        stream(seconds);
        flood(seconds);
    }
}
