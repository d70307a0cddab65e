#include "benchmarks/support/Comparison.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstddef>
#include <map>
#include <utility>

namespace vireo_bench {

namespace {

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

double secondsOf(Contestant& contestant)
{
    using Clock = std::chrono::steady_clock;
    contestant.prepare();
    const Clock::time_point start = Clock::now();
    contestant.run();
    const std::chrono::duration<double> duration = Clock::now() - start;
    contestant.cleanUp();
    return duration.count() / contestant.repetitions();
}

// The seconds of each contestant in one round. Every other round runs backwards.
std::vector<double> runRound(Contestants& contestants, bool backwards)
{
    std::vector<double> seconds(contestants.size());
    for (std::size_t i = 0; i < contestants.size(); ++i) {
        const std::size_t turn = backwards ? contestants.size() - 1 - i : i;
        seconds[turn] = secondsOf(*contestants[turn]);
    }
    return seconds;
}

double quantile(std::vector<double> values, double fraction)
{
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(fraction * static_cast<double>(values.size() - 1));
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

Measurement measurementOf(const std::vector<std::vector<double>>& rounds, std::size_t contestant)
{
    std::vector<double> seconds;
    std::vector<double> ratios;
    for (const std::vector<double>& round : rounds) {
        seconds.push_back(round[contestant]);
        ratios.push_back(round[0] / round[contestant]);
    }
    return {quantile(seconds, 0.5), quantile(ratios, 0.5), (quantile(ratios, 0.75) - quantile(ratios, 0.25)) / 2};
}

// The comparison that Google Benchmark is at: it comes back to it for more and more rounds, until they last long
// enough.
struct Contest
{
    const Added* added = nullptr;
    Contestants contestants;
    std::vector<std::vector<double>> rounds;
};

Contest& currentContest()
{
    static Contest contest;
    return contest;
}

// Says who makes another result, if anyone does; there is no contest then.
std::string beginContest(const Added& added)
{
    currentContest() = Contest();
    Contestants contestants = makeContestants(added.comparison);
    const std::string different = warmUp(added.comparison, contestants);
    if (different.empty())
        currentContest() = {&added, std::move(contestants), {}};
    return different;
}

// The seconds that a round took.
double addRound(Contest& contest)
{
    contest.rounds.push_back(runRound(contest.contestants, contest.rounds.size() % 2 == 1));
    double sum = 0;
    for (std::size_t i = 0; i < contest.contestants.size(); ++i)
        sum += contest.rounds.back()[i] * contest.contestants[i]->repetitions();
    return sum;
}

void compare(benchmark::State& state, Added& added)
{
    constexpr int FEWEST_ROUNDS = 7;
    Contest& contest = currentContest();
    if (contest.added != &added) {
        if (const std::string different = beginContest(added); !different.empty()) {
            state.SkipWithError((different + " makes another result").c_str());
            return;
        }
        for (int i = 1; i < FEWEST_ROUNDS; ++i)
            addRound(contest);
    }
    for ([[maybe_unused]] auto iteration : state)
        state.SetIterationTime(addRound(contest));

    added.measurements.clear();
    for (std::size_t i = 0; i < contest.contestants.size(); ++i) {
        added.measurements.push_back(measurementOf(contest.rounds, i));
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
    })->UseManualTime();
}

void dismissContestants()
{
    currentContest() = Contest();
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
