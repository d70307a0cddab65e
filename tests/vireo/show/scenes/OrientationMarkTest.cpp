#include "vireo/show/scenes/OrientationMark.h"

#include <QApplication>
#include <cmath>
#include <gtest/gtest.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/scenes/sceneUpdates.h"

namespace tavo {
namespace {

using Side = SceneCamera::Side;

constexpr Side ALL_SIDES[] = {Side::Front, Side::Back, Side::Left, Side::Right, Side::Top, Side::Bottom};

class OrientationMarkTest : public testing::Test
{
protected:
    OrientationMarkTest()
    {
        m_View.resize(400, 300);
        m_View.show();
        send(m_View, "points", item(ItemKind::Cloud, {-1, -1, -1, 1, 1, 1}));
        QApplication::processEvents();
    }

    SceneCamera& camera() { return m_View.getCamera(); }

    QPoint placeOf(Side side)
    {
        for (const OrientationMark::End& end : OrientationMark::endsOf(camera(), *m_View.markRoom()))
            if (end.side == side)
                return end.place.toPoint();
        ADD_FAILURE();
        return {};
    }

    void expectSeenFrom(Side side)
    {
        SceneCamera expected = camera();
        expected.look(side);
        EXPECT_NEAR(length(expected.modelView().turned({1, 2, 3}) - camera().modelView().turned({1, 2, 3})), 0, 1e-12)
            << int(side);
    }

    QImage markPicture() { return m_View.grab(m_View.markRoom()->toRect()).toImage(); }

    SceneView m_View{"test"};
};

TEST_F(OrientationMarkTest, AClickOnAnEndLooksFromThere)
{
    for (const Side side : ALL_SIDES) {
        camera().setDirection(30, 25);
        clickMouse(&m_View, placeOf(side));
        expectSeenFrom(side);
        EXPECT_TRUE(m_View.isChosen());
    }
}

TEST_F(OrientationMarkTest, AClickOnTheNearestEndLooksFromTheOppositeSide)
{
    camera().look(Side::Front);
    clickMouse(&m_View, placeOf(Side::Front));
    expectSeenFrom(Side::Back);
    clickMouse(&m_View, placeOf(Side::Back));
    expectSeenFrom(Side::Front);
}

TEST_F(OrientationMarkTest, TheNearerEndIsHit)
{
    const QRectF room(0, 0, 100, 100);
    SceneCamera seen;
    for (const Side side : ALL_SIDES) {
        seen.look(side);
        EXPECT_EQ(OrientationMark::endAt(room.center(), seen, room).value().side, side);
    }
    EXPECT_FALSE(OrientationMark::endAt({2, 2}, seen, room));
}

TEST_F(OrientationMarkTest, ItsAxesTurnWithTheCamera)
{
    const auto endOf = [this](Side side) { return QPointF(placeOf(side)) - m_View.markRoom()->center(); };
    camera().look(Side::Front);
    EXPECT_GT(endOf(Side::Right).x(), 20);
    EXPECT_LT(endOf(Side::Top).y(), -20) << "up is up";
    camera().look(Side::Top);
    EXPECT_LT(endOf(Side::Back).y(), -20);
    camera().look(Side::Back);
    EXPECT_LT(endOf(Side::Right).x(), -20);
}

TEST_F(OrientationMarkTest, TheEndThatThePointerIsOnIsLit)
{
    const QImage before = markPicture();
    for (const Side side : ALL_SIDES) {
        moveMouse(&m_View, Qt::NoButton, placeOf(side));
        const QImage lit = markPicture();
        EXPECT_NE(lit, before);
        const QPoint end = placeOf(side) - m_View.markRoom()->toRect().topLeft();
        const QRect around(end - QPoint(11, 11), end + QPoint(11, 11));
        EXPECT_NE(lit.copy(around), before.copy(around)) << int(side);
    }
    moveMouse(&m_View, Qt::NoButton, {100, 100});
    EXPECT_EQ(markPicture(), before);
    EXPECT_EQ(camera().getAzimuth(), 30) << "nothing is turned by that";
}

TEST_F(OrientationMarkTest, ADragThatBeginsThereTurnsNothing)
{
    const SceneCamera before = camera();
    dragMouse(&m_View, Qt::LeftButton, placeOf(Side::Right), {100, 200});
    EXPECT_EQ(camera(), before);
    dragMouse(&m_View, Qt::LeftButton, {100, 200}, placeOf(Side::Right));
    EXPECT_FALSE(camera() == before) << "one that ends there does";
}

TEST_F(OrientationMarkTest, SmallPicturesHaveNone)
{
    const auto numBlue = [this](const QSize& size) {
        const QImage picture = m_View.picture(size);
        return numPixels(picture, QColor(40, 90, 220));
    };
    EXPECT_GT(numBlue({200, 200}), 50);
    EXPECT_EQ(numBlue({199, 200}), 0);
    EXPECT_EQ(numBlue({200, 199}), 0);
    m_View.resize(190, 300);
    EXPECT_FALSE(m_View.markRoom());
}

} // namespace
} // namespace tavo
