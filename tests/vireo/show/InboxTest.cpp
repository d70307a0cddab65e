#include "vireo/show/delivery/Inbox.h"

#include <chrono>
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <memory>
#include <numeric>
#include <vector>

#include "tests/vireo/show/taken.h"
#include "vireo/show/show.h"

// What waits for the window, of what threads have sent. There is no window: the tests take what waits.
namespace tavo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::vector<double> read(const NumberArray& numbers)
{
    return numbers.visit([](const auto* first, std::size_t size) { return std::vector<double>(first, first + size); });
}

// The appended samples of the only curve.
std::vector<double> appended(const PlotUpdate& plot)
{
    std::vector<double> all;
    for (const AppendedSamples& piece : plot.curves.at(0).appended)
        for (const double y : read(piece.y()))
            all.push_back(y);
    return all;
}

const void* addressOf(const NumberArray& numbers)
{
    return numbers.visit([](const auto* first, std::size_t) { return static_cast<const void*>(first); });
}

TEST(InboxTest, KeepsTheNewestOfAName)
{
    plot("plot").curve("a", {1}).title("old");
    plot("plot").curve("a", {2}).xAxis("x", "s");
    plot("plot").curve("a", {3}).title("new");
    const auto waiting = takePlot("plot");
    ASSERT_TRUE(waiting);
    ASSERT_EQ(waiting->curves.size(), 1u);
    EXPECT_THAT(read(waiting->curves[0].samples->y), ElementsAre(3));
    EXPECT_EQ(waiting->title, "new");
    EXPECT_EQ(waiting->x.name->unit, "s") << "what was said of other things is kept";
}

TEST(InboxTest, FreesWhatIsReplaced)
{
    std::weak_ptr<int> old;
    {
        const auto owner = std::make_shared<int>();
        old = owner;
        static const double number = 1;
        PlotUpdate update;
        Batch batch;
        batch[inbox::findSlot(ViewKind::Plot, "plot")].update = std::make_unique<PlotUpdate>();
        static_cast<PlotUpdate&>(*batch.parts[0].pending.update).curve("a").samples =
            CurveSamples{{}, NumberArray(owner, &number, 1, NumberType::Float64), {}, CurveKind::Line};
        inbox::deliver(batch);
    }
    EXPECT_FALSE(old.expired());
    plot("plot").curve("a", {2});
    EXPECT_TRUE(old.expired());
    takePlot("plot");
}

TEST(InboxTest, KeepsAllThatIsAppended)
{
    std::vector<double> expected(10'000);
    std::iota(expected.begin(), expected.end(), 0);
    for (const double x : expected)
        plot("plot").append("a", x, x);
    EXPECT_EQ(appended(*takePlot("plot")), expected);
}

TEST(InboxTest, KeepsAppendedRangesAsTheyWereMade)
{
    std::vector<double> moved(1000, 1);
    const double* const address = moved.data();
    const Numbers copied = std::vector<float>(1000, 2);
    plot("plot").append("a", 0, 0).append("a", std::move(moved), copied);
    plot("plot").append("a", copied, copied);
    const auto waiting = takePlot("plot");
    const std::list<AppendedSamples>& pieces = waiting->curves.at(0).appended;
    ASSERT_EQ(pieces.size(), 3u);
    EXPECT_EQ(addressOf(std::next(pieces.begin())->x()), address);
    EXPECT_EQ(addressOf(std::next(pieces.begin())->y()), addressOf(copied));
    EXPECT_EQ(addressOf(pieces.back().x()), addressOf(copied));
}

TEST(InboxTest, PutsSmallRangesTogether)
{
    std::vector<double> expected;
    for (int i = 0; i < 1000; ++i) {
        plot("plot").append("a", {i, i}, {i, -i}).append("a", i, 0.5);
        expected.insert(expected.end(), {double(i), double(-i), 0.5});
    }
    const auto waiting = takePlot("plot");
    EXPECT_EQ(appended(*waiting), expected);
    EXPECT_EQ(waiting->curves.at(0).appended.size(), 1u);
}

TEST(InboxTest, KeepsNoMoreOfWhatIsAppendedThanIsShown)
{
    const std::vector<double> piece(5000, 1);
    plot("plot").keep("a", 12'000);
    for (int i = 0; i < 100; ++i)
        plot("plot").append("a", piece, piece);
    EXPECT_EQ(appended(*takePlot("plot")).size(), 15'000u) << "as many pieces as make up for them";

    for (int i = 0; i < 100; ++i)
        plot("plot").append("a", piece, piece);
    EXPECT_EQ(appended(*takePlot("plot")).size(), 15'000u) << "a frame later";
}

TEST(InboxTest, KeepsAMillionAppendedSamplesUnlessMoreAreAskedFor)
{
    const std::vector<double> piece(100'000, 1);
    const auto appendTwoMillion = [&piece] {
        for (int i = 0; i < 20; ++i)
            plot("plot").append("a", piece, piece);
        return appended(*takePlot("plot")).size();
    };
    EXPECT_EQ(appendTwoMillion(), 1'000'000u);
    plot("plot").keep("a", 1'500'000);
    EXPECT_EQ(appendTwoMillion(), 1'500'000u);
    EXPECT_EQ(appendTwoMillion(), 1'500'000u) << "also behind what was taken";
    plot("plot").remove("a");
    EXPECT_EQ(appendTwoMillion(), 1'000'000u) << "of a new curve of that name";
}

TEST(InboxTest, SendsWhatReplacesWhatWasAppended)
{
    plot("plot").append("a", 1, 2);
    plot("plot").curve("a", {5, 6});
    plot("plot").append("a", 3, 4);
    const auto waiting = takePlot("plot");
    EXPECT_THAT(read(waiting->curves.at(0).samples->y), ElementsAre(5, 6));
    EXPECT_THAT(appended(*waiting), ElementsAre(4));
}

TEST(InboxTest, RemovesACurve)
{
    plot("plot").curve("a", {1}).curve("b", {1});
    plot("plot").remove("a");
    const auto waiting = takePlot("plot");
    EXPECT_TRUE(waiting->curve("a").isRemoved);
    EXPECT_FALSE(waiting->curve("a").samples);
    EXPECT_TRUE(waiting->curve("b").samples);
}

TEST(InboxTest, ClearsAPlot)
{
    plot("plot").curve("a", {1}).title("title");
    plot("plot").clear().curve("b", {1});
    const auto waiting = takePlot("plot");
    EXPECT_TRUE(waiting->isCleared);
    EXPECT_EQ(waiting->curves.size(), 1u);
    EXPECT_EQ(waiting->curves[0].name, "b");
    EXPECT_EQ(waiting->title, "title");
}

TEST(InboxTest, RemovesAView)
{
    plot("plot").curve("a", {1});
    inbox::take();
    EXPECT_TRUE(inbox::hasAnything());
    tavo::remove("plot");
    EXPECT_FALSE(inbox::hasAnything());
    plot("plot").curve("b", {1});
    EXPECT_TRUE(inbox::hasAnything());
    const auto parts = inbox::take();
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_TRUE(parts[0].pending.isRemoved) << "the old one goes";
    EXPECT_THAT(curvesOf(parts[0]), ElementsAre("b"));
}

TEST(InboxTest, RemovesWhatWasNeverShown)
{
    plot("plot").curve("a", {1});
    tavo::remove(std::string("plot"));
    EXPECT_FALSE(inbox::hasWaiting());
    EXPECT_FALSE(inbox::hasAnything());
    tavo::remove("never heard of");
    tavo::remove(static_cast<const char*>(nullptr));
    EXPECT_EQ(takePlot("plot"), nullptr);
}

TEST(InboxTest, ClearsAllViews)
{
    plot("a").curve("a", {1});
    inbox::take();
    plot("b").curve("b", {1});
    clear();
    EXPECT_FALSE(inbox::hasAnything());
    EXPECT_EQ(inbox::take().size(), 2u);
}

TEST(InboxTest, ForgetsTheNamesOfViewsThatAreNoMore)
{
    const Plot kept = plot("kept");
    for (int i = 0; i < 10'000; ++i) {
        plot(std::to_string(i)).curve("a", {1});
        tavo::remove(std::to_string(i));
        inbox::take();
    }
    int numKept = 0;
    for (int i = 0; i < 10'000; ++i)
        numKept += inbox::findSlot(std::to_string(i)) != nullptr;
    EXPECT_LT(numKept, 200);
    EXPECT_NE(inbox::findSlot("kept"), nullptr) << "its handle is there";
}

TEST(InboxTest, KeepsNoNameForAHandleAlone)
{
    const Plot alone = plot("name");
    scene("name").cloud("cloud", {{1.0, 2.0, 3.0}});
    const auto parts = inbox::take();
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_EQ(parts[0].slot->kind, ViewKind::Scene);
    testing::internal::CaptureStderr();
    alone.curve("a", {1});
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("\"name\" is a view of another kind"));
    EXPECT_FALSE(inbox::hasWaiting());
}

TEST(InboxTest, GivesTheNameOfARemovedViewToOneOfAnotherKind)
{
    const Plot removed = plot("name").curve("a", {1});
    inbox::take();
    tavo::remove("name");
    scene("name").cloud("cloud", {{1.0, 2.0, 3.0}});
    const auto parts = inbox::take();
    ASSERT_EQ(parts.size(), 2u) << "the plot goes, and the scene comes";
    EXPECT_TRUE(parts[0].pending.isRemoved);
    EXPECT_EQ(parts[1].slot->kind, ViewKind::Scene);
}

TEST(InboxTest, TakesNamesOfAnyBytes)
{
    const std::string names[] = {"", std::string(100'000, 'x'), "\xFF\xFE", "a/b", "a\nb", std::string("a\0b", 3)};
    for (const std::string& name : names)
        plot(name).curve(name, {1});
    for (const auto& part : inbox::take())
        EXPECT_THAT(curvesOf(part), ElementsAre(part.slot->name));
}

TEST(InboxTest, SaysAMistakeOnceAndKeepsWhatWasSent)
{
    plot("plot").curve("a", {1, 2});
    testing::internal::CaptureStderr();
    for (int i = 0; i < 3; ++i)
        plot("plot").curve("a\n", {1, 2, 3}, {1, 2});
    plot("plot").append("a", {1, 2, 3}, {1, 2});
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "warning: tavo: plot(\"plot\").curve(\"a\\x0a\"): 3 x and 2 y; what was shown stays\n"
        "warning: tavo: plot(\"plot\").append(\"a\"): 3 x and 2 y; what was shown stays\n");
    EXPECT_THAT(read(takePlot("plot")->curve("a").samples->y), ElementsAre(1, 2));
}

TEST(InboxTest, SaysAMistakeWithOtherNumbersTenTimes)
{
    testing::internal::CaptureStderr();
    std::string expected;
    for (const std::string name : {"growing 1", "growing 2"})
        for (std::size_t size = 1; size < 3000; ++size) {
            plot("plot").curve(name, std::vector<int>(size), std::vector<int>(2 * size));
            if (size <= 10)
                expected += "warning: tavo: plot(\"plot\").curve(\"" + name + "\"): " + std::to_string(size) +
                            " x and " + std::to_string(2 * size) + " y; what was shown stays\n";
        }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), expected);
}

// Whoever says the same again and again, and is never taken, does not fill the memory.
TEST(InboxTest, KeepsOfLinesAndLinksTheNewest)
{
    for (int i = 0; i < 100; ++i)
        plot("plot").horizontal(i, "limit").vertical(2 * i, "limit").horizontal(-i).link(plot("other")).remove("gone");
    const auto waiting = takePlot("plot");
    std::vector<std::pair<bool, double>> places;
    for (const LineAcross& line : waiting->lines)
        places.emplace_back(line.isVertical, line.place);
    EXPECT_THAT(places, ElementsAre(std::pair(false, 99.0), std::pair(true, 198.0), std::pair(false, -99.0)));
    EXPECT_THAT(waiting->links, ElementsAre("other"));
    EXPECT_THAT(waiting->removedLines, ElementsAre("gone"));
}

TEST(InboxTest, KeepsTheNewestThousandLines)
{
    for (int i = 0; i < 5000; ++i)
        plot("plot").horizontal(i, std::to_string(i));
    const auto waiting = takePlot("plot");
    ASSERT_EQ(waiting->lines.size(), 1000u);
    EXPECT_EQ(waiting->lines.front().place, 4000);
    EXPECT_EQ(waiting->lines.back().place, 4999);
}

TEST(InboxTest, TakesTimePoints)
{
    using namespace std::chrono_literals;
    const std::chrono::sys_seconds start{1'700'000'000s};
    const std::vector<std::chrono::sys_time<std::chrono::milliseconds>> times{start, start + 1500ms};
    plot("dates").curve("a", times, {1, 2}).xRange(start, start + 2min).vertical(start + 250ms, "event");
    const auto dates = takePlot("dates");
    EXPECT_THAT(read(dates->curve("a").samples->x), ElementsAre(1.7e9, 1.7e9 + 1.5));
    EXPECT_EQ(dates->x.isTime, true);
    EXPECT_EQ(dates->x.range->from, 1.7e9);
    EXPECT_EQ(dates->x.range->to, 1.7e9 + 120);
    EXPECT_EQ(dates->lines.at(0).place, 1.7e9 + 0.25);

    plot("appended").append("a", times, {1, 2}).append("a", start + 2s, 3);
    EXPECT_EQ(takePlot("appended")->x.isTime, true);

    const std::chrono::steady_clock::time_point sinceStart{90s};
    plot("distances").points("a", {sinceStart, sinceStart + 30s}, {1, 2}).append("b", sinceStart, 1);
    const auto distances = takePlot("distances");
    EXPECT_THAT(read(distances->curve("a").samples->x), ElementsAre(90, 120));
    EXPECT_FALSE(distances->x.isTime) << "nobody knows when such a clock began";
}

TEST(InboxTest, EachOperationReachesItsPart)
{
    const std::vector<double> x{1, 2};
    plot("plot").steps("steps", x, {3, 4}).bars("bars", x, {5, 6}).histogram("histogram", {7, 8});
    plot("plot").points("points", x, {1, 1}).band("band", x, {1, 2}, {3, 4}).curve("line", {9});
    plot("plot").logX().logY(false).timeX().window(5).yRange(1, 2).title("title").style("line", "y2 dashed");
    plot("plot").xAxis("a", "s").yAxis("b", "m").y2Axis("c", "K");
    const auto sent = takePlot("plot");
    const auto kindOf = [&](const char* name) { return sent->curve(name).samples->kind; };
    EXPECT_EQ(kindOf("steps"), CurveKind::Steps);
    EXPECT_EQ(kindOf("bars"), CurveKind::Bars);
    EXPECT_EQ(kindOf("histogram"), CurveKind::Histogram);
    EXPECT_EQ(kindOf("points"), CurveKind::Points);
    EXPECT_EQ(kindOf("line"), CurveKind::Line);
    EXPECT_EQ(kindOf("band"), CurveKind::Band);
    EXPECT_THAT(read(sent->curve("band").samples->low), ElementsAre(1, 2));
    EXPECT_THAT(read(sent->curve("band").samples->y), ElementsAre(3, 4));
    EXPECT_EQ(sent->x.isLog, true);
    EXPECT_EQ(sent->y.isLog, false);
    EXPECT_EQ(sent->x.isTime, true);
    EXPECT_EQ(sent->window, 5);
    EXPECT_EQ(sent->y.range->to, 2);
    EXPECT_EQ(sent->title, "title");
    EXPECT_EQ(sent->curve("line").style, "y2 dashed");
    EXPECT_EQ(sent->x.name->label + sent->y.name->label + sent->y2.name->label, "abc");
    EXPECT_EQ(sent->x.name->unit + sent->y.name->unit + sent->y2.name->unit, "smK");
}

TEST(InboxTest, RefusesRangesThatNoAxisCanShow)
{
    const double infinity = std::numeric_limits<double>::infinity();
    plot("plot").xRange(3, 1).yRange(-1, 2);
    testing::internal::CaptureStderr();
    plot("plot").xRange(NAN, 10).xRange(1, NAN).yRange(infinity, -infinity).yRange(0, infinity).xRange(5, 5);
    const std::string why = ": a range goes from one number to another; what was shown stays\n";
    const std::string begin = "warning: tavo: plot(\"plot\").";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), begin + "xRange(nan, 10)" + why + begin + "xRange(1, nan)" + why +
                                                          begin + "yRange(inf, -inf)" + why + begin + "yRange(0, inf)" +
                                                          why + begin + "xRange(5, 5)" + why);
    const auto waiting = takePlot("plot");
    EXPECT_EQ(waiting->x.range->from, 1);
    EXPECT_EQ(waiting->x.range->to, 3);
    EXPECT_EQ(waiting->y.range->from, -1);
    EXPECT_EQ(waiting->y.range->to, 2);
}

TEST(InboxTest, RefusesWindowsThatShowNothing)
{
    plot("plot").window(10);
    testing::internal::CaptureStderr();
    plot("plot").window(-3).window(0).window(NAN);
    const std::string why = ": a window is longer than nothing; what was shown stays\n";
    const std::string begin = "warning: tavo: plot(\"plot\").";
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        begin + "window(-3)" + why + begin + "window(0)" + why + begin + "window(nan)" + why);
    EXPECT_EQ(takePlot("plot")->window, 10);
}

TEST(InboxTest, SaysWordsOfStylesThatMeanNothing)
{
    testing::internal::CaptureStderr();
    for (int i = 0; i < 2; ++i)
        plot("plot").curve("a", {1}).style("a", "thick dahsed  y2").style("a", "dashed dotted marks").style("a", "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "warning: tavo: plot(\"plot\").style(\"a\"): \"dahsed\" means "
                                                      "nothing: the words are dashed, dotted, thick, marks "
                                                      "and y2\n");
    inbox::take();
}

// More than there is memory for.
struct Endless
{
    const double* data() const { return &number; }
    std::size_t size() const { return std::numeric_limits<std::size_t>::max() / sizeof(double); }
    double number = 1;
};

TEST(InboxTest, SaysThatThereIsNoMemory)
{
    testing::internal::CaptureStderr();
    plot("plot").curve("a", Endless()).points("a", {1}, Endless());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "warning: tavo: plot(\"plot\").curve(\"a\"): there is no memory for so many numbers; what was shown stays\n"
        "warning: tavo: plot(\"plot\").points(\"a\"): there is no memory for so many numbers; what was shown stays\n");
    EXPECT_FALSE(inbox::hasWaiting());
}

} // namespace
} // namespace tavo
