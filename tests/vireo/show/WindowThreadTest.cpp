#include "vireo/show/delivery/WindowThread.h"

#include <QEventLoop>
#include <QTimer>
#include <future>
#include <gtest/gtest.h>

#include "vireo/show/delivery/Inbox.h"

namespace tavo {
namespace {

class WindowThreadTest : public testing::Test
{
protected:
    WindowThreadTest() { windowThread::start({}); }
    ~WindowThreadTest() override { windowThread::stop(); }

    // What it handles just now may take a while.
    static bool isHeldSoon()
    {
        constexpr int MOST_TRIALS = 40;
        bool isHeld = false;
        for (int i = 0; i < MOST_TRIALS && !isHeld; ++i)
            isHeld = windowThread::holdForFork();
        return isHeld;
    }
};

// As in a menu, or a dialog.
TEST_F(WindowThreadTest, IsHeldWhereItWaitsWithinAnEvent)
{
    std::promise<QEventLoop*> begun;
    std::promise<void> ended;
    inbox::post([&] {
        QEventLoop loop;
        QTimer::singleShot(0, [&] { begun.set_value(&loop); });
        loop.exec();
        ended.set_value();
    });
    QEventLoop* const loop = begun.get_future().get();
    ASSERT_TRUE(isHeldSoon());
    std::future<void> end = ended.get_future();
    QMetaObject::invokeMethod(loop, "quit", Qt::QueuedConnection);
    EXPECT_EQ(end.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout)
        << "it goes on though it is held";
    windowThread::releaseAfterFork();
    end.get();
    EXPECT_TRUE(isHeldSoon());
    windowThread::releaseAfterFork();
}

TEST_F(WindowThreadTest, IsNotHeldWhileItHandlesAnEvent)
{
    std::promise<void> begun;
    std::promise<void> end;
    std::promise<void> ended;
    inbox::post([&] {
        begun.set_value();
        end.get_future().get();
        ended.set_value();
    });
    begun.get_future().get();
    EXPECT_FALSE(windowThread::holdForFork());
    end.set_value();
    ended.get_future().get();
    EXPECT_TRUE(isHeldSoon());
    windowThread::releaseAfterFork();
}

TEST_F(WindowThreadTest, DoesNotHoldItself)
{
    std::promise<bool> isHeld;
    inbox::post([&] { isHeld.set_value(windowThread::holdForFork()); });
    EXPECT_FALSE(isHeld.get_future().get());
}

} // namespace
} // namespace tavo
