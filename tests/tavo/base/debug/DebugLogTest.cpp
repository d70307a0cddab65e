#include <QApplication>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <algorithm>
#include <array>
#include <atomic>
#include <gtest/gtest.h>
#include <sstream>
#include <thread>
#include <vector>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tests/tavo/base/debug/TextDisplayer.h"

namespace tavo {
namespace {

constexpr int NUM_THREADS = 8;
constexpr int NUM_KEPT = 9999; // lines with an end: the last of 10,000 is empty

// The log of the debug window, and how often it was laid out.
class DebugLogTest : public testing::Test
{
protected:
    DebugLogTest() { TextDisplayer::init(EventDisplayer::getClass()); }
    ~DebugLogTest() override { delete debugOutput.getWindow(); }

    void open()
    {
        const TextEvent event("text");
        ASSERT_TRUE(debugOutput.displayEvent(TextDisplayer::getClass(), "name", &event));
        m_Document = log().document();
        QObject::connect(m_Document, &QTextDocument::contentsChange, m_Document, [this] { ++m_NumAppends; });
    }

    static QPlainTextEdit& log() { return *debugOutput.getWindow()->findChild<QPlainTextEdit*>("log"); }
    // Whether the log holds the end of all text. It would be too much to print.
    static bool holdsTheText() { return logText() == expectedText(); }
    static std::string logText() { return log().toPlainText().toStdString(); }

    void waitForAppend() const
    {
        while (m_NumAppends == 0)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    // What the log holds of all text: its last lines.
    static std::string expectedText()
    {
        const std::string text = debugOutput.getText();
        std::size_t begin = text.size();
        for (int i = 0; i <= NUM_KEPT; ++i) {
            if (begin == 0)
                return text;
            begin = text.rfind('\n', begin - 1);
            if (begin == std::string::npos)
                return text;
        }
        return text.substr(begin + 1);
    }

    QTextDocument* m_Document = nullptr;
    int m_NumAppends = 0;
};

// Threads that write numbered lines, each "thread number\n", until they have written all or are to stop.
class Writers
{
public:
    explicit Writers(int numLines, int numThreads = NUM_THREADS)
    {
        for (int thread = 0; thread < numThreads; ++thread)
            m_Threads.emplace_back([this, thread, numLines] {
                for (int i = 0; i < numLines && !m_Stop; ++i)
                    debugOutput << std::to_string(thread) + " " + std::to_string(i) + "\n";
            });
    }
    ~Writers()
    {
        m_Stop = true;
        join();
    }
    Writers(const Writers&) = delete;
    Writers& operator=(const Writers&) = delete;

    void join()
    {
        for (std::thread& thread : m_Threads)
            if (thread.joinable())
                thread.join();
    }

private:
    std::atomic<bool> m_Stop{false};
    std::vector<std::thread> m_Threads;
};

TEST_F(DebugLogTest, AppendsPiecesWithoutLineEndsOnce)
{
    open();
    debugOutput << "\n";
    for (int i = 0; i < 2000; ++i)
        debugOutput << "a piece of text ";
    EXPECT_EQ(m_NumAppends, 0) << "until the next frame";
    waitForAppend();
    EXPECT_EQ(m_NumAppends, 1);
    QString written;
    for (QTextBlock block = m_Document->lastBlock(); !block.text().isEmpty(); block = block.previous())
        written.prepend(block.text());
    EXPECT_TRUE(written == QString("a piece of text ").repeated(2000));
}

TEST_F(DebugLogTest, AppendsTheLinesOfManyThreadsOnce)
{
    open();
    Writers(300000 / NUM_THREADS).join();
    EXPECT_EQ(m_NumAppends, 0) << "until the next frame";
    waitForAppend();
    EXPECT_EQ(m_NumAppends, 1);
    EXPECT_EQ(m_Document->blockCount(), 10000);
    EXPECT_TRUE(holdsTheText());
}

TEST_F(DebugLogTest, KeepsTheOrderOfEachThread)
{
    open();
    Writers(2000).join();
    std::array<int, NUM_THREADS> last;
    last.fill(-1);
    std::istringstream lines(logText());
    for (int thread = 0, number = 0; lines >> thread >> number;) {
        ASSERT_TRUE(last.at(thread) == -1 || number == last[thread] + 1) << thread;
        last[thread] = number;
    }
    EXPECT_EQ(std::count(last.begin(), last.end(), 1999), std::count_if(last.begin(), last.end(), [](int number) {
        return number >= 0;
    })) << "and the end of what it wrote";
}

// How many rounds there are in a frame depends on the machine; that no more frames are shown than there were does not.
TEST_F(DebugLogTest, AppendsNoMoreThanOnceInAFrame)
{
    constexpr qint64 SHORTEST_FRAME = 30;
    open();
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 200; ++i) {
        debugOutput << "a line\n";
        QCoreApplication::processEvents();
    }
    EXPECT_LE(m_NumAppends, 1 + timer.elapsed() / SHORTEST_FRAME);
}

TEST_F(DebugLogTest, SchedulesOneFrameForAllPieces)
{
    // Counts the calls that are posted to the application.
    class Counter : public QObject
    {
    public:
        bool eventFilter(QObject*, QEvent* event) override
        {
            numCalls += event->type() == QEvent::MetaCall ? 1 : 0;
            return false;
        }
        int numCalls = 0;
    };
    open();
    Counter counter;
    qApp->installEventFilter(&counter);
    Writers(1000).join();
    waitForAppend();
    EXPECT_LT(counter.numCalls, 100) << "with those of Qt";
}

TEST_F(DebugLogTest, HoldsAllTextWhenAskedForTheWindow)
{
    open();
    debugOutput << "without a line end";
    EXPECT_TRUE(holdsTheText());
    std::thread([] { debugOutput << " and from afar\n"; }).join();
    EXPECT_TRUE(holdsTheText());
    EXPECT_EQ(m_NumAppends, 2);
}

TEST_F(DebugLogTest, BeginsWithTheTextFromBeforeTheWindowOpened)
{
    testing::internal::CaptureStderr();
    for (int i = 0; i < 20000; ++i)
        debugOutput << "line " + std::to_string(i) + "\n";
    testing::internal::GetCapturedStderr();
    open();
    EXPECT_EQ(m_Document->blockCount(), 10000);
    EXPECT_TRUE(holdsTheText());
}

TEST_F(DebugLogTest, KeepsTheNewestLinesFrameAfterFrame)
{
    open();
    for (const int numLines : {9000, 3000, 1, 20000, 500}) {
        for (int i = 0; i < numLines; ++i)
            debugOutput << std::to_string(i) + "\n";
        EXPECT_TRUE(holdsTheText());
    }
    EXPECT_EQ(m_Document->blockCount(), 10000);
}

TEST_F(DebugLogTest, FollowsTheTextUnlessSomeIsSelected)
{
    open();
    debugOutput << "\nselected\n";
    QTextCursor selection = log().textCursor();
    selection.movePosition(QTextCursor::PreviousBlock, QTextCursor::KeepAnchor);
    log().setTextCursor(selection);
    debugOutput << "more\n";
    EXPECT_TRUE(log().textCursor().selectedText().startsWith("selected"));
    selection.clearSelection();
    log().setTextCursor(selection);
    debugOutput << "more\n";
    EXPECT_TRUE(log().textCursor().atEnd());
}

TEST_F(DebugLogTest, IsReplacedWhileThreadsWrite)
{
    constexpr int WITHOUT_END = 1 << 30;
    testing::internal::CaptureStderr(); // where the text goes while there is no window
    {
        const Writers writers(WITHOUT_END, 2);
        for (int i = 0; i < 5; ++i) {
            open();
            QCoreApplication::processEvents();
            delete log().window();
        }
        open();
    }
    testing::internal::GetCapturedStderr();
    EXPECT_TRUE(holdsTheText());
}

TEST_F(DebugLogTest, DoesNotContinueALineWithAnotherWhenLinesBetweenAreDropped)
{
    open();
    debugOutput << "\nthe beginning of a line, ";
    EXPECT_TRUE(holdsTheText());
    debugOutput << "its end\n";
    for (int i = 0; i < 9999; ++i)
        debugOutput << "another line\n";
    EXPECT_TRUE(holdsTheText());
    debugOutput << "the beginning of a line, ";
    EXPECT_TRUE(holdsTheText());
    debugOutput << "its end\n";
    for (int i = 0; i < 30000; ++i)
        debugOutput << "another line\n";
    EXPECT_TRUE(holdsTheText());
}

TEST_F(DebugLogTest, BreaksALineWithoutEnd)
{
    open();
    debugOutput << "\n";
    for (int i = 0; i < 300; ++i)
        debugOutput << std::string(10000, 'x');
    EXPECT_EQ(log().document()->lastBlock().length(), 1001) << "with its end";
    EXPECT_GE(m_Document->characterCount(), 3000000) << "and loses nothing of it";
    for (int i = 0; i < 1000; ++i)
        debugOutput << std::string(10000, 'x');
    EXPECT_EQ(log().document()->blockCount(), 10000);
    EXPECT_EQ(m_Document->characterCount(), 10000 * 1001) << "nor keeps more than 10,000 lines";
    debugOutput << "\n";
}

} // namespace
} // namespace tavo
