#include "tavo/base/debug/DebugOutput.h"

#include <QCoreApplication>
#include <cstdint>
#include <filesystem>
#include <gmock/gmock.h>
#include <iomanip>
#include <limits>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <vector>

#include "tavo/base/debug/EventDisplayer.h"
#include "tavo/base/debug/displayException.h"
#include "tests/tavo/base/debug/TextDisplayer.h"

namespace tavo {
namespace {

using testing::HasSubstr;

// What a piece of code writes to the debug output.
template <typename Code>
std::string textOf(Code code)
{
    const std::size_t before = debugOutput.getText().size();
    code();
    return debugOutput.getText().substr(before);
}

// Written to before main, and from a destructor after it.
struct EarlyAndLate
{
    EarlyAndLate() { debugOutput << "early\n"; }
    ~EarlyAndLate() { debugOutput << ""; }
} earlyAndLate;

TEST(DebugOutputTest, CanBeUsedByStaticInitialisers)
{
    EXPECT_EQ(debugOutput.getText().substr(0, 6), "early\n");
}

TEST(DebugOutputTest, KeepsTextInOrder)
{
    EXPECT_EQ(textOf([] {
        debugOutput << std::string("one ") << "two"
                    << "\n";
    }),
        "one two\n");
    EXPECT_EQ(textOf([] { debugOutput << static_cast<const char*>(nullptr) << "\n"; }), "(null)\n");
}

TEST(DebugOutputTest, TakesNumbers)
{
    EXPECT_EQ(textOf([] { debugOutput << 0; }), "0") << "no null pointer";
    EXPECT_EQ(textOf([] { debugOutput << 1u << ' ' << -2L << ' ' << 3ULL << ' ' << short{-4}; }), "1 -2 3 -4");
    EXPECT_EQ(textOf([] { debugOutput << std::uint8_t{200} << ' ' << std::int8_t{-1}; }), "200 -1") << "as of colours";
    EXPECT_EQ(textOf([] { debugOutput << 0.1f << ' ' << 2.0 << ' ' << 1e300 << ' ' << 0.5L; }), "0.1 2 1e+300 0.5");
    EXPECT_EQ(textOf([] { debugOutput << 1700000000.25; }), "1.70000000025e+09") << "with all its digits";
    EXPECT_EQ(textOf([] { debugOutput << std::numeric_limits<std::int64_t>::min(); }), "-9223372036854775808");
    EXPECT_EQ(textOf([] { debugOutput << std::numeric_limits<float>::infinity(); }), "inf");
    const std::vector<int> numbers{7};
    EXPECT_EQ(textOf([&] { debugOutput << numbers.size() << numbers[0]; }), "17");
}

TEST(DebugOutputTest, TakesTruthValuesAndCharacters)
{
    const std::vector<bool> answers{false, true};
    EXPECT_EQ(textOf([&] { debugOutput << true << ' ' << answers[0] << '\n'; }), "true false\n");
}

TEST(DebugOutputTest, TakesEveryKindOfText)
{
    char array[] = "array";
    char* const pointer = array;
    const std::string string = "string";
    EXPECT_EQ(textOf([&] { debugOutput << array << ' ' << pointer << ' ' << string; }), "array array string");
    EXPECT_EQ(textOf([] { debugOutput << std::string_view("a view", 3); }), "a v");
    EXPECT_EQ(textOf([] { debugOutput << nullptr; }), "(null)");
    EXPECT_EQ(textOf([] { debugOutput << std::string_view(); }), "");
}

struct Length
{
    int millimetres;

    friend std::ostream& operator<<(std::ostream& stream, const Length& length)
    {
        if (length.millimetres < 0)
            throw PException("a negative length");
        return stream << length.millimetres << " mm";
    }
};

enum Fruit
{
    APPLE,
    PEAR
};

TEST(DebugOutputTest, TakesWhateverAStreamTakes)
{
    EXPECT_EQ(textOf([] { debugOutput << Length{5} << ", " << Length{7}; }), "5 mm, 7 mm");
    EXPECT_EQ(textOf([] { debugOutput << PEAR; }), "1");
    const int number = 0;
    std::ostringstream address;
    address << &number;
    EXPECT_EQ(textOf([&] { debugOutput << &number; }), address.str());
    EXPECT_EQ(textOf([] { debugOutput << "a line" << std::endl << std::flush; }), "a line\n");
}

// As values of JSON libraries do, which throw unless they hold a text.
struct ConvertsToAnything
{
    template <typename T>
    operator T() const
    {
        throw PException("not of this type");
    }

    friend std::ostream& operator<<(std::ostream& stream, const ConvertsToAnything&) { return stream << "{}"; }
};

// Where the compiler could not choose among the texts.
struct ConvertsToTwoTexts
{
    operator std::string() const { return "string"; }
    operator std::string_view() const { return "view"; }

    friend std::ostream& operator<<(std::ostream& stream, const ConvertsToTwoTexts&) { return stream << "streamed"; }
};

TEST(DebugOutputTest, PrefersTheOperatorOfWhatConvertsToSeveralTexts)
{
    EXPECT_EQ(textOf([] { debugOutput << ConvertsToAnything() << ConvertsToTwoTexts(); }), "{}streamed");
}

TEST(DebugOutputTest, WritesPathsWithoutQuotes)
{
    if (!std::is_convertible_v<std::filesystem::path, std::string>)
        GTEST_SKIP() << "paths are of wide characters here";
    EXPECT_EQ(textOf([] { debugOutput << std::filesystem::path("a/b"); }), "a/b");
}

TEST(DebugOutputTest, TakesVolatileValues)
{
    volatile bool flag = true;
    volatile int number = 5;
    volatile char letter = 'A';
    EXPECT_EQ(textOf([&] { debugOutput << flag << number << letter; }), "true5A");
}

TEST(DebugOutputTest, PassesOnWhatTheOperatorOfAValueThrows)
{
    EXPECT_EQ(textOf([] { EXPECT_THROW(debugOutput << Length{-1}, PException); }), "");
}

template <typename T>
concept IsTaken = requires(const T& value)
{
    debugOutput << value;
};

TEST(DebugOutputTest, TurnsAwayWhatWouldBeLostOrMakesNoSense)
{
    enum class Scoped
    {
        NOTHING
    };
    struct NotStreamable
    {};
    EXPECT_TRUE(IsTaken<int>);
    EXPECT_FALSE(IsTaken<Scoped>);
    EXPECT_FALSE(IsTaken<NotStreamable>);
    EXPECT_FALSE(IsTaken<wchar_t>);
    EXPECT_FALSE(IsTaken<decltype(std::setw(8))>) << "the next piece would not know of it";
    EXPECT_FALSE(IsTaken<decltype(std::setprecision(8))>);
    EXPECT_FALSE(IsTaken<decltype(std::hex)>);
    EXPECT_FALSE(IsTaken<int()>) << "a call without its brackets";
    EXPECT_FALSE(IsTaken<int (*)()>);
}

TEST(DebugOutputTest, WritesToTheErrorStreamWhileThereIsNoWindow)
{
    testing::internal::CaptureStderr();
    debugOutput << "to the error stream\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "to the error stream\n");
}

TEST(DebugOutputTest, KeepsTheNewestTextOnly)
{
    testing::internal::CaptureStderr();
    const std::string line(999, 'x');
    for (int i = 0; i < 3000; ++i)
        debugOutput << line + "\n";
    debugOutput << "the last\n";
    testing::internal::GetCapturedStderr();
    const std::string text = debugOutput.getText();
    EXPECT_LE(text.size(), 1u << 20);
    EXPECT_GE(text.size(), 1u << 18);
    EXPECT_EQ(text.substr(0, 1000), line + "\n") << "cut at the start of a line";
    EXPECT_EQ(text.substr(text.size() - 9), "the last\n");
}

TEST(DebugOutputTest, TakesTextFromAnyThread)
{
    testing::internal::CaptureStderr();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (int j = 0; j < 100; ++j)
                debugOutput << "a line\n";
        });
    for (std::thread& thread : threads)
        thread.join();
    const std::string text = testing::internal::GetCapturedStderr();
    EXPECT_EQ(text.size(), 4u * 100u * 7u);
}

TEST(DebugOutputTest, DropsEventsWithoutAnApplicationAndSaysSoOnce)
{
    TextDisplayer::init(EventDisplayer::getClass());
    const TextEvent event("dropped");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(debugOutput.displayEvent(TextDisplayer::getClass(), "name", &event));
    EXPECT_FALSE(debugOutput.displayEvent(TextDisplayer::getClass(), "name", &event));
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
        "tavo: events sent to the debug output are dropped: there is no QApplication\n");
    EXPECT_EQ(debugOutput.getWindow(), nullptr);
}

TEST(DebugOutputTest, DropsEventsWhereTheApplicationHasNoWidgets)
{
    int argc = 1;
    char name[] = "test";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    const TextEvent event("dropped");
    EXPECT_FALSE(debugOutput.displayEvent(TextDisplayer::getClass(), "name", &event));
}

TEST(DisplayExceptionTest, ReportsEachKindInALine)
{
    EXPECT_EQ(textOf([] { displayPException(PException("GLBuffer::bind() - invalid context")); }),
        "error: GLBuffer::bind() - invalid context\n");
    EXPECT_EQ(textOf([] { displaySTLException(std::runtime_error("no luck")); }), "error: no luck\n");
    EXPECT_THAT(textOf([] { displayOSException(0xC0000005u, nullptr); }), HasSubstr("0xC0000005"));
    EXPECT_EQ(textOf([] { warning("mind the gap"); }), "warning: mind the gap\n");
}

TEST(DisplayExceptionTest, GuardsAgainstEverythingThatIsThrown)
{
    EXPECT_EQ(textOf([] { EXPECT_FALSE(runGuarded([] { throw PException("of ours"); })); }), "error: of ours\n");
    EXPECT_THAT(textOf([] { EXPECT_FALSE(runGuarded([] { throw SE_Exception(0xC0000094u, nullptr); })); }),
        HasSubstr("0xC0000094"));
    EXPECT_EQ(
        textOf([] { EXPECT_FALSE(runGuarded([] { throw std::logic_error("standard"); })); }), "error: standard\n");
    EXPECT_EQ(textOf([] { EXPECT_FALSE(runGuarded([] { throw 5; })); }), "error: an exception of unknown type\n");
    EXPECT_EQ(textOf([] { EXPECT_TRUE(runGuarded([] {})); }), "");
}

TEST(PExceptionTest, IsAStandardExceptionToo)
{
    const PException exception("why");
    const std::exception& standard = exception;
    EXPECT_STREQ(standard.what(), "why");
    EXPECT_EQ(exception.getMessage(), "why");
}

} // namespace
} // namespace tavo
