#include <QApplication>
#include <QMouseEvent>
#include <cmath>
#include <gtest/gtest.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/scenes/sceneUpdates.h"

// Clouds of more points than a frame has time for, while somebody turns the view.
namespace tavo {
namespace {

class MovingCloudTest : public testing::Test
{
protected:
    MovingCloudTest()
    {
        SceneUpdate plain;
        plain.hasBearings = false;
        m_View.apply(plain);
        m_View.resize(300, 200);
        m_View.show();
        sendHill(300000);
        grab();
        makeSlow();
    }

    static ItemUpdate hill(int numPoints)
    {
        std::vector<Vector3f> points;
        std::vector<float> heights;
        const int width = int(std::sqrt(numPoints));
        for (int i = 0; i < numPoints; ++i) {
            const float x = 6 * float(i % width) / float(width) - 3;
            const float y = 6 * float(i / width) / float(width) - 3;
            points.emplace_back(x, y, std::exp(-x * x - y * y));
            heights.push_back(points.back()[2]);
        }
        ItemUpdate update = item(ItemKind::Cloud, Points(points));
        SceneField field{"height", {Numbers(heights), 1}, false};
        update.addField(field);
        return update;
    }

    void sendHill(int numPoints) { send(m_View, "hill", hill(numPoints)); }

    // As if a phase were all that there is time for.
    void makeSlow()
    {
        for (int i = 0; i < 60; ++i)
            m_View.getPointBudget().measure(1000000, 10, 0);
    }

    // Without what is said of what is under the pointer.
    QImage grab()
    {
        QEvent leaves(QEvent::Leave);
        QApplication::sendEvent(&m_View, &leaves);
        return m_View.grab().toImage().convertToFormat(QImage::Format_RGB32);
    }

    void waitForRest()
    {
        EXPECT_TRUE(QTest::qWaitFor([this] { return !m_View.isBusy(); }, 60000));
    }

    SceneView m_View{"test"};
};

// Of squares of 10 x 10 pixels.
double meanDifference(const QImage& one, const QImage& other)
{
    const QSize small = one.size() / 10;
    const QImage a = one.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage b = other.scaled(small, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    double sum = 0;
    for (int y = 0; y < small.height(); ++y)
        for (int x = 0; x < small.width(); ++x)
            sum += std::abs(qRed(a.pixel(x, y)) - qRed(b.pixel(x, y))) +
                   std::abs(qGreen(a.pixel(x, y)) - qGreen(b.pixel(x, y))) +
                   std::abs(qBlue(a.pixel(x, y)) - qBlue(b.pixel(x, y)));
    return sum / (3.0 * small.width() * small.height());
}

TEST_F(MovingCloudTest, AShareIsDrawnWhileItTurnsAndAllWhenItRests)
{
    dragMouse(&m_View, Qt::LeftButton, {150, 100}, {170, 110});
    const QImage moving = grab();
    const QImage whole = m_View.picture({300, 200});
    EXPECT_NE(moving, whole);
    waitForRest();
    EXPECT_EQ(grab(), whole);
}

TEST_F(MovingCloudTest, TheShareLooksLikeTheWhole)
{
    dragMouse(&m_View, Qt::LeftButton, {150, 100}, {170, 110});
    const QImage moving = grab();
    const QImage whole = m_View.picture({300, 200});
    QImage ground = whole;
    ground.fill(m_View.palette().color(QPalette::Base));
    EXPECT_LT(meanDifference(moving, whole), 0.25 * meanDifference(ground, whole));
}

TEST_F(MovingCloudTest, NothingFlickersInADrag)
{
    const auto dragTo = [this](const QPoint& place) {
        moveMouse(&m_View, Qt::LeftButton, place);
        return grab();
    };
    pressMouse(&m_View, Qt::LeftButton, {150, 100});
    const QImage there = dragTo({170, 110});
    for (int i = 0; i < 20; ++i) {
        dragTo({180, 100 + i});
        if (i == 10)
            for (int j = 0; j < 100; ++j)
                m_View.getPointBudget().measure(1000000, 1e-3, 0); // others end in the meantime
        ASSERT_EQ(dragTo({170, 110}), there) << i;
    }
    releaseMouse(&m_View, Qt::LeftButton, {170, 110});
}

TEST_F(MovingCloudTest, TheWheelDrawsAShareToo)
{
    QWheelEvent event({150, 100}, m_View.mapToGlobal(QPoint(150, 100)), QPoint(), QPoint(0, 120), Qt::NoButton, {},
        Qt::NoScrollPhase, false);
    QApplication::sendEvent(&m_View, &event);
    const QImage moving = grab();
    EXPECT_NE(moving, m_View.picture({300, 200}));
    waitForRest();
    EXPECT_EQ(grab(), m_View.picture({300, 200}));
}

// One slice after the other, the smallest that there are, in between the events of the user.
TEST_F(MovingCloudTest, APauseDrawsTheRestBitByBit)
{
    dragMouse(&m_View, Qt::LeftButton, {150, 100}, {170, 110});
    SceneModel model("test");
    SceneRenderer renderer(SceneContext::get(), model);
    SceneUpdate update;
    update.items["hill"] = hill(300000);
    model.apply(update);
    const SceneLook look{Qt::white, Qt::black, QApplication::font(), 1, false};
    const QImage whole = renderer.draw(m_View.getCamera(), {300, 200}, look);
    const QImage few = renderer.draw(m_View.getCamera(), {300, 200}, look, 1);
    renderer.beginRefinement(m_View.getCamera(), {300, 200}, look);
    int numSlices = 1;
    double last = meanDifference(few, whole);
    while (!renderer.refine(1e-9, m_View.getPointBudget())) {
        if (++numSlices % 16 != 0)
            continue;
        const double next = meanDifference(renderer.drawRefined(1), whole);
        EXPECT_LT(next, last) << "after " << numSlices << " slices";
        last = next;
        renderer.draw(m_View.getCamera(), {100, 100}, look, 1); // others draw meanwhile
    }
    EXPECT_EQ(numSlices, 300000 / 4096 + 1);
    EXPECT_EQ(renderer.drawRefined(1), whole);
}

// So that the picture after it does not.
TEST_F(MovingCloudTest, TheLastSliceIsWaitedForOnce)
{
    SceneModel model("test");
    SceneRenderer renderer(SceneContext::get(), model);
    SceneUpdate update;
    update.items["hill"] = hill(300000);
    model.apply(update);
    const SceneLook look{Qt::white, Qt::black, QApplication::font(), 1, false};
    const QImage whole = renderer.draw(m_View.getCamera(), {300, 200}, look);
    renderer.beginRefinement(m_View.getCamera(), {300, 200}, look);
    EXPECT_FALSE(renderer.finishSlice()) << "there is none yet";
    while (!renderer.refine(1e-9, m_View.getPointBudget())) {
        ASSERT_TRUE(renderer.finishSlice());
        ASSERT_FALSE(renderer.finishSlice());
    }
    EXPECT_EQ(renderer.drawRefined(1), whole);
}

// Clouds with light or opacity of their own too, in their order among what can be seen through.
TEST_F(MovingCloudTest, LitAndTranslucentCloudsComeBitByBitToo)
{
    SceneModel model("test");
    SceneRenderer renderer(SceneContext::get(), model);
    SceneUpdate update;
    update.items["hill"] = hill(50000);
    ItemUpdate& lit = update.items["lit"] = hill(90000);
    std::vector<float> normals;
    for (int i = 0; i < 90000; ++i)
        normals.insert(normals.end(), {0, 0.6F, 0.8F});
    lit.normals = NumberTuples{Numbers(normals), 3};
    ItemUpdate& translucent = update.items["translucent"] = hill(90000);
    translucent.opacity = 0.3;
    ItemUpdate& pane = update.items["pane"] =
        item(ItemKind::Mesh, {-3, -3, 0.5, 3, -3, 0.5, 0, 3, 0.5}, {}, std::vector{0, 1, 2});
    pane.opacity = 0.5;
    model.apply(update);
    const SceneLook look{Qt::white, Qt::black, QApplication::font(), 1, false};
    const QImage whole = renderer.draw(m_View.getCamera(), {300, 200}, look);
    renderer.beginRefinement(m_View.getCamera(), {300, 200}, look);
    int numSlices = 1;
    while (!renderer.refine(1e-9, m_View.getPointBudget())) {
        ++numSlices;
        if (renderer.isAnythingNew())
            renderer.drawRefined(1);
        renderer.draw(m_View.getCamera(), {100, 100}, look, 1); // others draw meanwhile
    }
    EXPECT_EQ(numSlices, 50000 / 4096 + 1 + 180000 / 4096 + 1);
    EXPECT_EQ(renderer.drawRefined(1), whole);
}

TEST_F(MovingCloudTest, InputStopsTheRefinement)
{
    dragMouse(&m_View, Qt::LeftButton, {150, 100}, {170, 110});
    grab();
    QTest::qWait(205);
    dragMouse(&m_View, Qt::LeftButton, {150, 100}, {140, 110});
    EXPECT_NE(grab(), m_View.picture({300, 200}));
    waitForRest();
    EXPECT_EQ(grab(), m_View.picture({300, 200}));
}

TEST_F(MovingCloudTest, OtherItemsAreInTheRefinedPictureToo)
{
    ItemUpdate mesh = item(ItemKind::Mesh, {-3, -3, 0.5, 3, -3, 0.5, 0, 3, 0.5}, {}, std::vector{0, 1, 2});
    mesh.opacity = 0.5;
    send(m_View, "mesh", mesh);
    send(m_View, "lines", item(ItemKind::Lines, {-3, -3, 1, 3, 3, 0.2}));
    makeSlow();
    dragMouse(&m_View, Qt::LeftButton, {150, 100}, {170, 110});
    waitForRest();
    EXPECT_EQ(grab(), m_View.picture({300, 200}));
}

TEST_F(MovingCloudTest, PicturesAlwaysHaveAllPoints)
{
    const QImage whole = m_View.picture({300, 200});
    const SceneCamera before = m_View.getCamera();
    dragMouse(&m_View, Qt::LeftButton, {150, 100}, {170, 110});
    m_View.getCamera() = before;
    EXPECT_EQ(m_View.picture({300, 200}), whole);
}

TEST_F(MovingCloudTest, SmallCloudsAreDrawnWholeAllTheTime)
{
    sendHill(500);
    dragMouse(&m_View, Qt::LeftButton, {150, 100}, {170, 110});
    EXPECT_EQ(grab(), m_View.picture({300, 200}));
}

} // namespace
} // namespace tavo
