#include <QTimer>
#include <thread>

#include "tests/vireo/show/window/ShowWindowTest.h"

namespace tavo {
namespace {

class ClosingTest : public ShowWindowTest
{
protected:
    // Whether closing the window ends the program.
    static bool endsTheProgram()
    {
        QTimer::singleShot(0, [] { window()->close(); });
        bool ended = true;
        QTimer longEnough;
        QObject::connect(&longEnough, &QTimer::timeout, [&ended] {
            ended = false;
            QCoreApplication::quit();
        });
        longEnough.start(500);
        QApplication::exec();
        return ended;
    }
};

TEST_F(ClosingTest, EndsAProgramWithoutOtherWindows)
{
    show({"a", "b"});
    dock("b")->setFloating();
    EXPECT_TRUE(endsTheProgram());
}

TEST_F(ClosingTest, LeavesAProgramWithOtherWindowsRunning)
{
    QWidget other;
    other.show();
    show({"a"});
    EXPECT_FALSE(endsTheProgram());
}

TEST_F(ClosingTest, HidesWhatIsDetachedAndOpeningShowsIt)
{
    QWidget other;
    other.show();
    show({"a", "b"});
    dock("b")->setFloating();
    EXPECT_TRUE(viewIn("b")->isVisible());
    window()->close();
    EXPECT_FALSE(viewIn("b")->isVisible());
    EXPECT_FALSE(viewIn("a")->isVisible());
    window()->show();
    settle();
    EXPECT_TRUE(viewIn("b")->isVisible());
    EXPECT_TRUE(viewIn("a")->isVisible());
    EXPECT_TRUE(dock("b")->isFloating());
}

TEST_F(ClosingTest, IsUndoneByANewView)
{
    QWidget other;
    other.show();
    show({"a"});
    closeWindow();
    EXPECT_TRUE(QTest::qWaitFor([] { return !window()->isVisible(); }));
    plot("a").curve("y", {5, 6});
    settle();
    EXPECT_FALSE(window()->isVisible()) << "news of what is there do not disturb";
    show({"b"});
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(viewIn("a")->isVisible());
}

TEST_F(ClosingTest, IsUndoneByANewSection)
{
    QWidget other;
    other.show();
    show({"a"});
    window()->close();
    send("event", "hello");
    EXPECT_TRUE(window()->isVisible());
}

TEST_F(ClosingTest, IsUndoneByEveryWayToOpen)
{
    QWidget other;
    other.show();
    show({"a"});
    window()->close();
    EXPECT_FALSE(pump()) << "it was closed";
    window()->show();
    EXPECT_TRUE(pump()) << "it is open again";

    window()->close();
    EXPECT_TRUE(openWindow());
    EXPECT_TRUE(window()->isVisible());
    EXPECT_TRUE(pump());

    window()->close();
    QTimer::singleShot(0, [] {
        EXPECT_TRUE(window()->isVisible());
        window()->close();
    });
    tavo::show();
    EXPECT_FALSE(window()->isVisible());
}

TEST_F(ClosingTest, OfTheLastWindowLetsTheNextShowOpenIt)
{
    show({"a"});
    for (int i = 0; i < 2; ++i) {
        bool wasOpen = false;
        QTimer::singleShot(0, window(), [&wasOpen] {
            wasOpen = window()->isVisible();
            window()->close();
        });
        tavo::show();
        EXPECT_TRUE(wasOpen) << i;
        EXPECT_FALSE(window()->isVisible()) << i;
    }
}

TEST_F(ClosingTest, LetsThreadsGoThatWaitForIt)
{
    QWidget other;
    other.show();
    show({"a"});
    std::atomic<bool> hasReturned = false;
    std::thread waiting([&hasReturned] {
        tavo::show();
        hasReturned = true;
    });
    QTest::qWait(50);
    EXPECT_FALSE(hasReturned);
    delete window(); // in whatever way it goes
    EXPECT_TRUE(QTest::qWaitFor([&hasReturned] { return hasReturned.load(); }));
    waiting.join();
}

TEST_F(ClosingTest, OpensAgainForSectionsAlone)
{
    send("event", "hello");
    window()->close();
    QTimer::singleShot(0, [] {
        EXPECT_TRUE(window()->isVisible());
        window()->close();
    });
    tavo::show();
    EXPECT_THAT(debugOutput.getText(), testing::Not(testing::HasSubstr("nothing was sent")));
}

} // namespace
} // namespace tavo
