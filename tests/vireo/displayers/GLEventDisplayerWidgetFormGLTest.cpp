#include <QCursor>
#include <QFrame>
#include <QGuiApplication>
#include <QLayout>
#include <QMetaMethod>
#include <QScreen>

#include "tests/vireo/displayers/GLEventDisplayerWidgetGLTest.h"
#include "vireo/Library.h"

namespace tavo {
namespace {

using testing::ElementsAre;

TEST_F(GLEventDisplayerWidgetGLTest, HasTheWidgetsOfItsForm)
{
    EXPECT_EQ(m_Widget->objectName(), "GLEventDisplayerWidget");
    EXPECT_STREQ(m_Widget->metaObject()->className(), "tavo::GLEventDisplayerWidget");
    EXPECT_EQ(m_Widget->windowTitle(), "Form");
    EXPECT_EQ(button("pbConfigure")->text(), "Configure");
    EXPECT_EQ(button("pbConfigure")->maximumWidth(), 60);
    EXPECT_EQ(button("pbIncreaseSize")->text(), "+");
    EXPECT_EQ(button("pbIncreaseSize")->toolTip(), "Zoom: Double size");
    EXPECT_EQ(button("pbIncreaseSize")->maximumWidth(), 16);
    EXPECT_EQ(button("pbDecreaseSize")->text(), "-");
    EXPECT_EQ(button("pbDecreaseSize")->toolTip(), "Zoom: Half size");
    EXPECT_EQ(button("pbDecreaseSize")->maximumWidth(), 16);

    const auto* mainFrame = m_Widget->findChild<QFrame*>("mainFrame");
    EXPECT_EQ(mainFrame->frameShape(), QFrame::NoFrame);
    EXPECT_EQ(mainFrame->sizePolicy().horizontalPolicy(), QSizePolicy::Minimum);
    EXPECT_EQ(mainFrame->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
    EXPECT_EQ(mainFrame->layout()->objectName(), "hboxLayout");
    EXPECT_EQ(mainFrame->layout()->sizeConstraint(), QLayout::SetMinAndMaxSize);
    EXPECT_EQ(m_View->parentWidget(), mainFrame);
    EXPECT_EQ(mainFrame->layout()->indexOf(m_View), 1) << "behind the spacer";

    const auto* frame = m_Widget->findChild<QFrame*>("frame_2");
    EXPECT_EQ(frame->maximumSize(), QSize(QWIDGETSIZE_MAX, 22));
    EXPECT_EQ(frame->frameShape(), QFrame::StyledPanel);
    EXPECT_EQ(frame->font().family(), "MS Shell Dlg");
    EXPECT_EQ(frame->font().pointSize(), 7);
    EXPECT_EQ(frame->layout()->objectName(), "hboxLayout1");
    EXPECT_EQ(frame->layout()->spacing(), 4);
    EXPECT_EQ(m_Widget->layout()->objectName(), "vboxLayout");
    EXPECT_EQ(m_Widget->layout()->spacing(), 0);
}

TEST_F(GLEventDisplayerWidgetGLTest, LaysItsFormOut)
{
    const auto itemsOf = [](const QLayout* layout) {
        std::vector<std::string> items;
        for (int i = 0; i < layout->count(); ++i) {
            const QWidget* widget = layout->itemAt(i)->widget();
            items.push_back(widget ? widget->objectName().toStdString() : "spacer");
        }
        return items;
    };
    EXPECT_THAT(itemsOf(m_Widget->layout()), ElementsAre("mainFrame", "frame_2"));
    EXPECT_EQ(m_Widget->layout()->contentsMargins(), QMargins(0, 0, 0, 0));
    const QLayout* main = m_Widget->findChild<QFrame*>("mainFrame")->layout();
    EXPECT_EQ(main->contentsMargins(), QMargins(0, 0, 0, 0));
    EXPECT_EQ(main->spacing(), 0);
    EXPECT_EQ(main->itemAt(0)->sizeHint(), QSize(0, 0));
    EXPECT_EQ(main->itemAt(0)->spacerItem()->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(main->itemAt(0)->spacerItem()->sizePolicy().horizontalPolicy(), QSizePolicy::Minimum);

    const auto* frame = m_Widget->findChild<QFrame*>("frame_2");
    EXPECT_EQ(frame->frameShadow(), QFrame::Raised);
    EXPECT_EQ(frame->layout()->contentsMargins(), QMargins(1, 1, 1, 1));
    EXPECT_THAT(itemsOf(frame->layout()), ElementsAre("pbConfigure", "spacer", "pbIncreaseSize", "pbDecreaseSize"));
    EXPECT_EQ(frame->layout()->itemAt(1)->sizeHint(), QSize(171, 20));
    EXPECT_EQ(frame->layout()->itemAt(1)->spacerItem()->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);

    EXPECT_EQ(button("pbConfigure")->font().family(), "MS Shell Dlg 2");
    EXPECT_EQ(button("pbConfigure")->font().pointSize(), 7);
    for (const char* name : {"pbIncreaseSize", "pbDecreaseSize"}) {
        EXPECT_EQ(button(name)->font().family(), "Arial Black");
        EXPECT_EQ(button(name)->font().pointSize(), 8);
        EXPECT_EQ(button(name)->font().weight(), 75);
    }
}

TEST_F(GLEventDisplayerWidgetGLTest, HasTheArrowOnItsConfigureButtonOnceTheLibraryIsStarted)
{
    initVireo();
    const GLEventDisplayerWidget widget(nullptr, Qt::WindowFlags());
    EXPECT_FALSE(widget.findChild<QPushButton*>("pbConfigure")->icon().availableSizes().isEmpty());
}

TEST_F(GLEventDisplayerWidgetGLTest, HasItsFourSlotsInOrder)
{
    const QMetaObject* meta = m_Widget->metaObject();
    const char* const slots_[] = {
        "on_pbIncreaseSize_clicked()", "on_pbDecreaseSize_clicked()", "on_pbConfigure_clicked()", "changed()"};
    ASSERT_EQ(meta->methodCount() - meta->methodOffset(), 4);
    for (int i = 0; i < 4; ++i) {
        const QMetaMethod method = meta->method(meta->methodOffset() + i);
        EXPECT_EQ(method.methodSignature(), slots_[i]);
        EXPECT_EQ(method.access(), QMetaMethod::Private);
    }
}

TEST_F(GLEventDisplayerWidgetGLTest, StartsWithAViewOfNinetyPixels)
{
    EXPECT_EQ(m_Widget->getSizeIndex(), 5u);
    EXPECT_EQ(m_View->minimumHeight(), 90);
    EXPECT_EQ(m_View->maximumHeight(), 90);
    EXPECT_EQ(viewHeight(), 90);
    EXPECT_EQ(m_View->focusPolicy(), Qt::StrongFocus);
}

TEST_F(GLEventDisplayerWidgetGLTest, StepsTheHeightThroughTheWholeTable)
{
    showWidget();
    for (int height : {128, 181, 256, 362, 512, 724, 1024}) {
        click("pbIncreaseSize");
        EXPECT_EQ(viewHeight(), height);
        EXPECT_EQ(m_View->minimumHeight(), height);
        EXPECT_EQ(m_View->maximumHeight(), height);
    }
    click("pbIncreaseSize");
    EXPECT_EQ(viewHeight(), 1024);
    for (int height : {724, 512, 362, 256, 181, 128, 90, 64, 45, 32, 22, 16}) {
        click("pbDecreaseSize");
        EXPECT_EQ(viewHeight(), height);
        EXPECT_EQ(m_View->minimumHeight(), height);
        EXPECT_EQ(m_View->maximumHeight(), height);
    }
    click("pbDecreaseSize");
    EXPECT_EQ(viewHeight(), 16);
}

TEST_F(GLEventDisplayerWidgetGLTest, MovesTheCursorWithTheButton)
{
    showWidget();
    QCursor::setPos(500, 300);
    click("pbIncreaseSize");
    EXPECT_EQ(QCursor::pos(), QPoint(500, 300 + 128 - 90));
    click("pbIncreaseSize");
    EXPECT_EQ(QCursor::pos(), QPoint(500, 300 + 181 - 90));
    click("pbDecreaseSize");
    click("pbDecreaseSize");
    click("pbDecreaseSize");
    EXPECT_EQ(QCursor::pos(), QPoint(500, 300 + 64 - 90));
}

TEST_F(GLEventDisplayerWidgetGLTest, KeepsTheCursorOnTheScreen)
{
    showWidget();
    const int screenHeight = QGuiApplication::primaryScreen()->geometry().height();
    // Growing from 90 to 128 moves it by 38.
    QCursor::setPos(500, screenHeight - 38);
    click("pbIncreaseSize");
    EXPECT_EQ(QCursor::pos().y(), screenHeight - 38);
    click("pbDecreaseSize");
    QCursor::setPos(500, screenHeight - 39);
    click("pbIncreaseSize");
    EXPECT_EQ(QCursor::pos().y(), screenHeight - 1);

    QCursor::setPos(500, 37);
    click("pbDecreaseSize");
    EXPECT_EQ(QCursor::pos().y(), 37);
    click("pbIncreaseSize");
    QCursor::setPos(500, 38);
    click("pbDecreaseSize");
    EXPECT_EQ(QCursor::pos().y(), 0);
}

TEST_F(GLEventDisplayerWidgetGLTest, DoesNotMoveTheCursorAtTheEndsOfTheTable)
{
    showWidget();
    m_Widget->setSizeIndex(12);
    QCursor::setPos(500, 300);
    click("pbIncreaseSize");
    EXPECT_EQ(QCursor::pos(), QPoint(500, 300));
    m_Widget->setSizeIndex(0);
    click("pbDecreaseSize");
    EXPECT_EQ(QCursor::pos(), QPoint(500, 300));
}

TEST_F(GLEventDisplayerWidgetGLTest, IgnoresASizeBeyondTheTable)
{
    m_Widget->setSizeIndex(13);
    EXPECT_EQ(m_Widget->getSizeIndex(), 5u);
    EXPECT_EQ(viewHeight(), 90);
}

} // namespace
} // namespace tavo
