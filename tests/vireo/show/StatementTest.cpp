#include "vireo/show/delivery/Statement.h"

#include <gmock/gmock.h>
#include <stdexcept>
#include <thread>
#include <utility>

#include "tests/vireo/show/taken.h"
#include "vireo/show/delivery/currentBatch.h"
#include "vireo/show/show.h"

// What one statement sends arrives together, and what two send does not.
namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const double NUMBERS[] = {1, 2};

// A number that tells what has arrived before it is asked for.
std::size_t numWaiting()
{
    return inbox::hasWaiting() ? takeCurves("plot").size() : 0;
}

TEST(StatementTest, FromATemporaryIsOneDelivery)
{
    std::vector<double> numbers;
    plot("plot").curve("a", NUMBERS).curve("b", (numbers.push_back(static_cast<double>(numWaiting())), numbers));
    EXPECT_THAT(numbers, ElementsAre(0)) << "nothing is there in the middle of the statement";
    EXPECT_THAT(takeCurves("plot"), ElementsAre("a", "b"));
}

TEST(StatementTest, FromAKeptHandleIsOneDelivery)
{
    const Plot kept = plot("plot");
    bool wasWaiting = true;
    kept.curve("a", NUMBERS).curve("b", (wasWaiting = inbox::hasWaiting(), NUMBERS));
    EXPECT_FALSE(wasWaiting);
    EXPECT_THAT(takeCurves("plot"), ElementsAre("a", "b"));
}

TEST(StatementTest, IsOverThoughItsHandleIsKept)
{
    const auto kept = plot("plot").curve("a", NUMBERS);
    EXPECT_THAT(takeCurves("plot"), ElementsAre("a"));
    const auto more = kept.curve("b", NUMBERS);
    EXPECT_THAT(takeCurves("plot"), ElementsAre("b"));
}

void sendAnother()
{
    plot("plot").curve("inner", NUMBERS);
}

TEST(StatementTest, WithinAnotherIsDeliveredWithIt)
{
    const auto send = [](const char* name) {
        sendAnother();
        EXPECT_FALSE(inbox::hasWaiting());
        return name;
    };
    // The operation before it has begun the outer statement.
    plot("plot").curve("outer", NUMBERS).curve(send("last"), NUMBERS);
    EXPECT_THAT(takeCurves("plot"), testing::UnorderedElementsAre("outer", "inner", "last"));
}

TEST(StatementTest, OfAScopeHoldsSeveral)
{
    {
        const Statement together;
        plot("plot").curve("a", NUMBERS);
        plot("other").curve("b", NUMBERS);
        EXPECT_FALSE(inbox::hasWaiting());
        {
            const Statement nested;
            plot("plot").curve("c", NUMBERS);
        }
        EXPECT_FALSE(inbox::hasWaiting());
    }
    const auto parts = inbox::take();
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_THAT(curvesOf(parts[0]), ElementsAre("a", "c"));
    EXPECT_THAT(curvesOf(parts[1]), ElementsAre("b"));
}

TEST(StatementTest, OfAnotherThreadIsAnother)
{
    const Statement ours;
    plot("plot").curve("ours", NUMBERS);
    std::thread([] { plot("plot").curve("theirs", NUMBERS); }).join();
    EXPECT_THAT(takeCurves("plot"), ElementsAre("theirs"));
}

TEST(StatementTest, IsOverWhenAnExceptionLeavesIt)
{
    const auto fail = [](bool fails) -> std::string_view {
        return fails ? throw std::runtime_error("failed") : "title";
    };
    EXPECT_THROW(plot("plot").curve("a", NUMBERS).title(fail(true)), std::runtime_error);
    EXPECT_THAT(takeCurves("plot"), ElementsAre("a"));
    EXPECT_EQ(currentBatch(), nullptr);
}

TEST(StatementTest, WithAMistakeSendsTheRest)
{
    plot("plot").curve("wrong", {1, 2, 3}, NUMBERS).curve("right", NUMBERS);
    EXPECT_THAT(takeCurves("plot"), ElementsAre("right"));
}

TEST(StatementTest, OfAHandleOfNoPlotSendsNothing)
{
    Plot().curve("a", NUMBERS).title("title");
    EXPECT_FALSE(inbox::hasWaiting());
}

} // namespace
} // namespace tavo
