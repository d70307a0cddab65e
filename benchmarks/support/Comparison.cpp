#include "benchmarks/support/Comparison.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <ctime>
#include <map>
#include <utility>

namespace vireo_bench {

namespace {

constexpr std::size_t ENOUGH_ROUNDS = 25;
constexpr double MOST_EXTENSION = 10;

struct Added
{
    Comparison comparison;
    std::vector<Measurement> measurements;
};

std::map<std::string, Added>& allAdded()
{
    static std::map<std::string, Added> all;
    return all;
}

using Contestants = std::vector<std::unique_ptr<Contestant>>;

Contestants makeContestants(const Comparison& comparison)
{
    Contestants contestants;
    for (const Entry& entry : comparison.entries)
        contestants.push_back(entry.make());
    return contestants;
}

// Runs each once, so that what happens only once has happened. Returns the name of who makes another result than the
// first one, or nothing.
std::string warmUp(const Comparison& comparison, Contestants& contestants)
{
    Bytes expected;
    std::string different;
    for (std::size_t i = 0; i < contestants.size(); ++i) {
        contestants[i]->prepare();
        contestants[i]->run();
        const Bytes result = contestants[i]->result();
        contestants[i]->cleanUp();
        if (i == 0)
            expected = result;
        else if (!comparison.entries[i].agrees(expected, result))
            different = comparison.entries[i].name;
    }
    return different;
}

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

bool isProcessorTime = false;

double secondsOfWork()
{
    if (isProcessorTime)
        return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
    return std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
}

double secondsOf(Contestant& contestant)
{
    contestant.prepare();
    const double start = secondsOfWork();
    contestant.run();
    const double seconds = secondsOfWork() - start;
    contestant.cleanUp();
    return seconds / contestant.repetitions();
}

// The seconds of each contestant.
using Round = std::vector<double>;

// Every other round runs backwards.
Round runRound(Contestants& contestants, bool backwards)
{
    Round seconds(contestants.size());
    for (std::size_t i = 0; i < contestants.size(); ++i) {
        const std::size_t turn = backwards ? contestants.size() - 1 - i : i;
        seconds[turn] = secondsOf(*contestants[turn]);
    }
    return seconds;
}

double secondsOfComparison = 0.5;

// So many as are said at setSecondsOfComparison.
std::vector<Round> runRounds(Contestants& contestants)
{
    std::vector<Round> rounds;
    const Clock::time_point start = Clock::now();
    double seconds = 0;
    while (seconds < secondsOfComparison ||
           (rounds.size() < ENOUGH_ROUNDS && seconds < MOST_EXTENSION * secondsOfComparison)) {
        rounds.push_back(runRound(contestants, rounds.size() % 2 == 1));
        seconds = secondsSince(start);
    }
    return rounds;
}

// What so large a part of the values is below; between two of them, both count according to how near they are.
double quantile(std::vector<double> values, double fraction)
{
    std::sort(values.begin(), values.end());
    const double place = fraction * static_cast<double>(values.size() - 1);
    const auto below = static_cast<std::size_t>(place);
    const std::size_t above = std::min(below + 1, values.size() - 1);
    return std::lerp(values[below], values[above], place - static_cast<double>(below));
}

Measurement measurementOf(const std::vector<Round>& rounds, std::size_t contestant)
{
    std::vector<double> seconds;
    std::vector<double> ratios;
    for (const Round& round : rounds) {
        seconds.push_back(round[contestant]);
        ratios.push_back(round[0] / round[contestant]);
    }
    return {quantile(seconds, 0.5), quantile(ratios, 0.5), (quantile(ratios, 0.75) - quantile(ratios, 0.25)) / 2,
        rounds.size()};
}

void compare(benchmark::State& state, Added& added)
{
    Contestants contestants = makeContestants(added.comparison);
    if (const std::string different = warmUp(added.comparison, contestants); !different.empty()) {
        state.SkipWithError((different + " makes another result").c_str());
        return;
    }
    std::vector<Round> rounds;
    for ([[maybe_unused]] auto iteration : state) // there is one
        rounds = runRounds(contestants);

    added.measurements.clear();
    for (std::size_t i = 0; i < contestants.size(); ++i) {
        added.measurements.push_back(measurementOf(rounds, i));
        state.counters[added.comparison.entries[i].name] = added.measurements.back().seconds;
    }
}

} // namespace

std::string withCommas(std::size_t number)
{
    std::string text = std::to_string(number);
    for (std::size_t digits = 3; digits < text.size(); digits += 4)
        text.insert(text.size() - digits, 1, ',');
    return text;
}

void add(Comparison comparison)
{
    const std::string work = comparison.work;
    Added& added = allAdded()[work];
    added.comparison = std::move(comparison);
    benchmark::RegisterBenchmark(work.c_str(), [&added](benchmark::State& state) {
        compare(state, added);
    })->Iterations(1); // of as many rounds as are wanted
}

void setSecondsOfComparison(double seconds)
{
    secondsOfComparison = seconds;
}

void measureProcessorTime()
{
    isProcessorTime = true;
}

const Comparison& comparisonOf(const std::string& work)
{
    return allAdded().at(work).comparison;
}

const std::vector<Measurement>& measurementsOf(const std::string& work)
{
    return allAdded().at(work).measurements;
}

} // namespace vireo_bench
