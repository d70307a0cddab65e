#include "vireo/show/delivery/FrontDoor.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <chrono>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <vector>

#include "vireo/show/plots/PlotUpdate.h"
#include "vireo/show/show.h"

// What waits comes into views. There is no window.
namespace tavo {
namespace {

using testing::ElementsAre;

class FrontDoorTest : public testing::Test
{
protected:
    ~FrontDoorTest() override
    {
        clear();
        FrontDoor::get()->showWaiting();
    }

    // Sends a curve that notes when it is freed whether its successor still waits.
    void send(const std::string& curve)
    {
        static const double number = 1;
        const std::shared_ptr<const double> owner(
            &number, [this](const double*) { m_WasWaiting.push_back(inbox::hasWaiting()); });
        Batch batch;
        auto update = std::make_unique<PlotUpdate>();
        update->curve(curve).send({{}, NumberArray(owner, &number, 1, NumberType::Float64), {}, CurveKind::Line});
        batch[inbox::findSlot(ViewKind::Plot, "plot")].update = std::move(update);
        inbox::deliver(batch);
    }

    void sendAndShow(const std::string& curve)
    {
        send(curve);
        FrontDoor::get()->showWaiting();
    }

    std::vector<bool> m_WasWaiting;

private:
    char m_Name[5] = "test";
    char* m_Arguments[2] = {m_Name, nullptr};
    int m_NumArguments = 1;
    QApplication m_Application{m_NumArguments, m_Arguments};
};

// Otherwise there were three versions: what was shown, what is taken, and what comes meanwhile.
TEST_F(FrontDoorTest, WhatIsReplacedGoesBeforeItsSuccessorIsTaken)
{
    sendAndShow("a");
    sendAndShow("a");
    EXPECT_THAT(m_WasWaiting, ElementsAre(true));
}

TEST_F(FrontDoorTest, WhatIsClearedGoesBeforeItsSuccessorIsTaken)
{
    sendAndShow("a");
    plot("plot").clear();
    sendAndShow("b");
    EXPECT_THAT(m_WasWaiting, ElementsAre(true));
}

TEST_F(FrontDoorTest, AViewThatIsRemovedGoesBeforeItsSuccessorIsTaken)
{
    sendAndShow("a");
    tavo::remove("plot");
    sendAndShow("b");
    EXPECT_THAT(m_WasWaiting, ElementsAre(true));
}

TEST_F(FrontDoorTest, WhatIsNotReplacedStays)
{
    sendAndShow("a");
    sendAndShow("b");
    plot("plot").title("title").append("c", 1, 2).colour("a", {1, 2, 3, 255});
    FrontDoor::get()->showWaiting();
    EXPECT_THAT(m_WasWaiting, ElementsAre());
}

// However often it comes, and however often events are served.
TEST_F(FrontDoorTest, ShowsWhatIsSentAtMostOnceInAFrame)
{
    using Clock = std::chrono::steady_clock;
    int numShown = 0;
    const auto begin = Clock::now();
    for (int i = 0; i < 300; ++i) {
        plot("plot").title("a");
        QCoreApplication::processEvents();
        numShown += !inbox::hasWaiting();
    }
    const auto numFrames = (Clock::now() - begin) / std::chrono::milliseconds(16);
    EXPECT_LE(numShown, numFrames + 1);
}

TEST_F(FrontDoorTest, PicturesWithoutPixelsAreRefused)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("picture.png");
    plot("plot").curve("a", {1, 2, 3});
    image("image", std::vector<float>(12), 4, 3);
    scene("scene").cloud("a", {1, 2, 3});
    FrontDoor& door = *FrontDoor::get();
    door.showWaiting();
    for (const char* name : {"plot", "image", "scene"}) {
        EXPECT_EQ(door.savePicture(name, file, {0, 100}), "there are no pictures of 0 x 100 pixels");
        EXPECT_EQ(door.savePicture(name, file, {100, -7}), "there are no pictures of 100 x -7 pixels");
        EXPECT_FALSE(QFile::exists(file));
        EXPECT_EQ(door.savePicture(name, file, {100, 70}), "");
        EXPECT_TRUE(QFile::remove(file));
    }
}

} // namespace
} // namespace tavo
