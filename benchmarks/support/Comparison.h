#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vireo_bench {

// What a piece of work leaves behind, a picture or a buffer, as bytes.
using Bytes = std::vector<unsigned char>;

// One way to do a piece of work. It is made when the work's turn has come, and does it again and again; the next work's
// turn, or the end, destroys it.
class Contestant
{
public:
    Contestant() = default;
    virtual ~Contestant() = default;
    Contestant(const Contestant&) = delete;
    Contestant& operator=(const Contestant&) = delete;

    // The work, which alone is measured. What draws or uploads ends with glFinish.
    virtual void run() = 0;

    // What is to be done before and after each run, without being measured.
    virtual void prepare() {}
    virtual void cleanUp() {}

    // What the last run made, asked for before cleanUp; by it contestants that shall do the same are compared.
    virtual Bytes result() { return {}; }

    // How many times a run does the work: what takes nanoseconds does it many times, and is shown divided by this.
    virtual double repetitions() const { return 1; }
};

// Who takes part. The first one is measured against each of the others.
struct Entry
{
    std::string name; // "vireo", "floor", or the name of a peer
    std::function<std::unique_ptr<Contestant>()> make;

    // What the first one's time divided by this one's should be at most; nothing if that is only of interest.
    std::optional<double> ratioToReach = std::nullopt;

    // Whether its result, the second argument, is the one that the first contestant's says it must be.
    std::function<bool(const Bytes& first, const Bytes& own)> agrees = std::equal_to<>();

    // How much longer the first one may take instead.
    std::optional<double> secondsMore = std::nullopt;
};

// For Entry::agrees: there is nothing to compare.
inline bool anyResult(const Bytes&, const Bytes&)
{
    return true;
}

// A row, or several, of the table of results.
struct Comparison
{
    std::string work;
    std::vector<Entry> entries;
};

// The medians of a comparison: of the seconds that the work took, and of the first one's time divided by this one's,
// taken in each round for itself, so that what disturbs a whole round does no harm. Half of all rounds' ratios are
// within the spread around theirs.
struct Measurement
{
    double seconds = 0;
    double ratio = 0;
    double spread = 0;
    std::size_t numRounds = 0;
};

// A number as it stands in the name of a work: 1,000,000.
std::string withCommas(std::size_t number);

// Hands a comparison to Google Benchmark, which runs it when its filter says so. In every round all contestants run
// once, in one order and then in the reverse, so that all of them meet the machine in the same mood. A comparison whose
// contestants make different results is reported as an error.
void add(Comparison comparison);

// How long a comparison lasts, half a second if nobody says: at least so long, and until there are 25 rounds, but with
// these at most ten times as long. So little time is for a single round.
void setSecondsOfComparison(double seconds);

// From then on the time is measured that all threads of the process have spent on a processor: on a machine that does
// other things, too, its ratios are steadier than those of the time that has passed.
void measureProcessorTime();

// The comparison of that name, and what was measured last, for each entry. They live as long as the program.
const Comparison& comparisonOf(const std::string& work);
const std::vector<Measurement>& measurementsOf(const std::string& work);

} // namespace vireo_bench
