#include "tavo/base/debug/DebugOutput.h"

#include <QCoreApplication>
#include <gmock/gmock.h>
#include <stdexcept>
#include <thread>

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
