#include "tavo/base/gui/PopupWindow.h"

#include <QApplication>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <gtest/gtest.h>

#include "tests/support/userEvents.h"

namespace tavo {
namespace {

class PopupWindowTest : public testing::Test
{
protected:
    PopupWindowTest()
        : m_Anchor(&m_Parent)
        , m_Popup(&m_Parent)
    {
        auto* layout = new QVBoxLayout(&m_Popup);
        layout->addWidget(new QPushButton("a button"));
        m_Parent.setGeometry(200, 200, 300, 100);
        m_Anchor.setGeometry(20, 10, 80, 20);
    }

    void showParent()
    {
        m_Parent.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_Parent));
    }

    QRect anchorArea() const { return QRect(m_Anchor.mapToGlobal(QPoint(0, 0)), m_Anchor.size()); }

    QWidget m_Parent;
    QPushButton m_Anchor;
    PopupWindow m_Popup;
};

TEST_F(PopupWindowTest, IsHiddenAtFirst)
{
    showParent();
    EXPECT_FALSE(m_Popup.isVisible());
}

TEST_F(PopupWindowTest, PopsUpBelowItsAnchor)
{
    showParent();
    m_Popup.popup(&m_Anchor);
    EXPECT_TRUE(m_Popup.isVisible());
    EXPECT_EQ(m_Popup.pos(), anchorArea().bottomLeft() + QPoint(0, 1));
}

TEST_F(PopupWindowTest, StaysOnTheScreen)
{
    showParent();
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    m_Parent.move(screen.bottomRight() - QPoint(60, 35));
    QTest::qWait(50);
    m_Popup.popup(&m_Anchor);
    EXPECT_LE(m_Popup.geometry().right(), screen.right());
    EXPECT_EQ(m_Popup.geometry().bottom() + 1, anchorArea().top()) << "above the anchor";
}

TEST_F(PopupWindowTest, GoesAwayWhenThePersonClicksElsewhere)
{
    showParent();
    m_Popup.popup(&m_Anchor);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_Popup));
    clickMouse(&m_Popup, QPoint(-50, -50));
    EXPECT_FALSE(m_Popup.isVisible());
}

} // namespace
} // namespace tavo
