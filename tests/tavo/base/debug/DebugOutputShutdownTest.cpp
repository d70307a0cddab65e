#include <QApplication>
#include <QPlainTextEdit>
#include <QTextDocument>
#include <atomic>
#include <gmock/gmock.h>
#include <memory>
#include <thread>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tests/support/qtWindowSystem.h"
#include "tests/tavo/base/debug/TextDisplayer.h"

namespace tavo {
namespace {

// Makes and ends QApplications, which the main function of other tests has for all of them.
class DebugOutputShutdownTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!chooseQtWindowSystem())
            GTEST_SKIP() << "there is no X server: DISPLAY is not set";
        TextDisplayer::init(EventDisplayer::getClass());
    }

    void start() { m_Application = std::make_unique<QApplication>(m_NumArguments, m_Arguments); }
    void end() { m_Application.reset(); }

    static QTextDocument* openLog()
    {
        const TextEvent event("text");
        debugOutput.displayEvent(TextDisplayer::getClass(), "name", &event);
        return debugOutput.getWindow()->findChild<QPlainTextEdit*>("log")->document();
    }

private:
    char m_Name[5] = "test";
    char* m_Arguments[2] = {m_Name, nullptr};
    int m_NumArguments = 1;
    std::unique_ptr<QApplication> m_Application;
};

TEST_F(DebugOutputShutdownTest, ShowsTextInTheNextApplicationsWindow)
{
    start();
    openLog();
    debugOutput << "for a frame that does not come\n";
    end();
    EXPECT_EQ(debugOutput.getWindow(), nullptr);

    start();
    const QTextDocument* const log = openLog();
    EXPECT_TRUE(log->toPlainText().endsWith("for a frame that does not come\n"));
    debugOutput << "for one that comes\n";
    while (!log->toPlainText().endsWith("for one that comes\n"))
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    end();
}

TEST_F(DebugOutputShutdownTest, WritesToTheErrorStreamWhatTheLogHasNotShown)
{
    testing::internal::CaptureStderr();
    start();
    openLog();
    debugOutput << "seen\n";
    debugOutput.getWindow(); // brings its log up to date
    debugOutput << "for a frame that does not come\n";
    end();
    const std::string written = testing::internal::GetCapturedStderr(); // maybe behind what Qt has to say
    EXPECT_THAT(written, testing::EndsWith("for a frame that does not come\n"));
    EXPECT_THAT(written, testing::Not(testing::HasSubstr("seen")));
}

TEST_F(DebugOutputShutdownTest, GoesOnWritingToTheErrorStream)
{
    testing::internal::CaptureStderr();
    start();
    openLog();
    std::atomic<bool> stop{false};
    std::thread writer([&stop] {
        while (!stop)
            debugOutput << "a line\n";
    });
    QCoreApplication::processEvents();
    end();
    debugOutput << "after the end\n";
    stop = true;
    writer.join();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("after the end\n"));
    EXPECT_THAT(debugOutput.getText(), testing::HasSubstr("after the end\n"));
}

} // namespace
} // namespace tavo
