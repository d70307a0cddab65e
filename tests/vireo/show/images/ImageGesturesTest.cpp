#include "vireo/show/images/ImageGestures.h"

#include <QApplication>
#include <QFile>
#include <QMessageBox>
#include <QMouseEvent>
#include <QSlider>
#include <QTemporaryDir>
#include <QWheelEvent>
#include <gtest/gtest.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/images/images.h"
#include "vireo/show/show.h"

namespace tavo {
namespace {

void turnWheel(QWidget* widget, const QPoint& place, int eighths)
{
    QWheelEvent event(
        place, widget->mapToGlobal(place), QPoint(), QPoint(0, eighths), Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

class ImageGesturesTest : public testing::Test
{
protected:
    ImageGesturesTest()
    {
        m_View.resize(420, 340);
        m_View.show();
        std::vector<std::uint16_t> numbers;
        for (int i = 0; i < 400 * 300; ++i)
            numbers.push_back(static_cast<std::uint16_t>(i % 400));
        send(m_View, imageOf(std::move(numbers), 400, 300));
        QApplication::processEvents();
    }

    QPoint pixelAt(const QPoint& place) { return m_View.pixelAt(place).value_or(QPoint(-1, -1)); }

    ImageView m_View{"image"};
};

TEST_F(ImageGesturesTest, TheWheelZoomsInWholeStepsAtThePointer)
{
    const QPoint place(130, 90);
    const QPoint pixel = pixelAt(place);
    EXPECT_EQ(m_View.getSight().scale, 1);
    for (const double scale : {2, 3, 4, 6, 8, 12, 16, 24, 32, 48}) {
        turnWheel(&m_View, place, 120);
        EXPECT_EQ(m_View.getSight().scale, scale);
        EXPECT_EQ(pixelAt(place), pixel) << scale;
    }
    turnWheel(&m_View, place, -1200);
    EXPECT_EQ(m_View.getSight().scale, 1);
    turnWheel(&m_View, place, -240);
    EXPECT_EQ(m_View.getSight().scale, 0.5);
    turnWheel(&m_View, place, -240);
    EXPECT_EQ(m_View.getSight().scale, 0.25);
}

TEST_F(ImageGesturesTest, PiecesOfAStepAreAStepTogether)
{
    for (int i = 0; i < 7; ++i)
        turnWheel(&m_View, {100, 100}, 15);
    EXPECT_EQ(m_View.getSight().scale, 1);
    turnWheel(&m_View, {100, 100}, 15);
    EXPECT_EQ(m_View.getSight().scale, 2);
}

TEST_F(ImageGesturesTest, MagnificationsHaveEnds)
{
    turnWheel(&m_View, {100, 100}, 120 * 100);
    EXPECT_EQ(m_View.getSight().scale, ImageSight::GREATEST_SCALE);
    turnWheel(&m_View, {100, 100}, -120 * 200);
    EXPECT_EQ(m_View.getSight().scale, ImageSight::LEAST_SCALE);
    QApplication::processEvents();
}

TEST_F(ImageGesturesTest, ADragMovesTheImage)
{
    turnWheel(&m_View, {200, 150}, 120);
    for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton}) {
        const QPoint pixel = pixelAt({200, 150});
        dragMouse(&m_View, button, {200, 150}, {240, 120});
        EXPECT_EQ(pixelAt({240, 120}), pixel);
    }
    dragMouse(&m_View, Qt::LeftButton, {200, 150}, {200, 9000});
    EXPECT_EQ(m_View.getSight().centre.y(), 0) << "some of the image stays in view";
}

TEST_F(ImageGesturesTest, ADoubleClickAndHomeShowAll)
{
    const ImageSight all = m_View.getSight();
    turnWheel(&m_View, {10, 10}, 360);
    EXPECT_TRUE(m_View.isChosen());
    QMouseEvent event(QEvent::MouseButtonDblClick, QPoint(50, 50), Qt::LeftButton, Qt::LeftButton, {});
    QApplication::sendEvent(&m_View, &event);
    EXPECT_EQ(m_View.getSight(), all);
    EXPECT_FALSE(m_View.isChosen());
    turnWheel(&m_View, {10, 10}, 360);
    clickKey(&m_View, Qt::Key_Home);
    EXPECT_EQ(m_View.getSight(), all);
}

TEST_F(ImageGesturesTest, KeysZoomAndChooseWhatIsShown)
{
    clickKey(&m_View, Qt::Key_Plus);
    EXPECT_EQ(m_View.getSight().scale, 2);
    clickKey(&m_View, Qt::Key_Minus);
    clickKey(&m_View, Qt::Key_Minus);
    EXPECT_EQ(m_View.getSight().scale, 0.75);
    clickKey(&m_View, Qt::Key_1);
    EXPECT_EQ(m_View.getSight().scale, 1);
    send(m_View, imageOf<float>({1, 2, 3}, 1, 1, 3));
    clickKey(&m_View, Qt::Key_C);
    EXPECT_EQ(m_View.getModel().look().channel, 0);
    send(m_View, imageOf<float>({1, 2}, 2, 1));
    send(m_View, imageOf<float>({1, 1.5F}, 2, 1));
    EXPECT_EQ(m_View.getModel().look().to, 2);
    clickKey(&m_View, Qt::Key_R);
    EXPECT_EQ(m_View.getModel().look().to, 1.5);
}

TEST_F(ImageGesturesTest, ADragWithShiftPlotsTheNumbersAlongALine)
{
    const QPoint origin = m_View.getSight().origin(m_View.sightSize()).toPoint();
    QMouseEvent press(
        QEvent::MouseButtonPress, origin + QPoint(10, 20), Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
    QApplication::sendEvent(&m_View, &press);
    moveMouse(&m_View, Qt::LeftButton, origin + QPoint(13, 20));
    releaseMouse(&m_View, Qt::LeftButton, origin + QPoint(13, 20));
    EXPECT_FALSE(m_View.isChosen());
    const QTemporaryDir folder;
    const auto profile = [&folder] {
        const QString path = folder.filePath("profile.csv");
        EXPECT_TRUE(saveData("image profile", path.toStdString()));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    };
    EXPECT_EQ(profile().toStdString(), "\"value x\",\"value\"\n0,10\n1,11\n2,12\n3,13\n");
    send(m_View, imageOf(std::vector<float>(400 * 300, 7), 400, 300));
    EXPECT_TRUE(profile().endsWith("3,7\n"));
    clickKey(&m_View, Qt::Key_Escape);
    EXPECT_FALSE(m_View.getProfile().line());
    EXPECT_FALSE(saveData("image profile", folder.filePath("profile.csv").toStdString()));
}

TEST_F(ImageGesturesTest, WhatWasSeenBeforeIsGoneBackTo)
{
    const ImageSight all = m_View.getSight();
    turnWheel(&m_View, {100, 100}, 120);
    turnWheel(&m_View, {100, 100}, 240);
    const ImageSight zoomed = m_View.getSight();
    dragMouse(&m_View, Qt::LeftButton, {200, 150}, {240, 120});
    const ImageSight moved = m_View.getSight();
    EXPECT_FALSE(moved == zoomed);
    clickKey(&m_View, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(m_View.getSight(), zoomed);
    clickKey(&m_View, Qt::Key_Backspace);
    EXPECT_EQ(m_View.getSight(), all) << "the wheel was turned once";
    EXPECT_FALSE(m_View.isChosen());
    clickKey(&m_View, Qt::Key_Backspace);
    EXPECT_EQ(m_View.getSight(), all) << "there is nothing before";
    clickKey(&m_View, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(m_View.getSight(), zoomed);
    clickKey(&m_View, Qt::Key_Backspace, Qt::ShiftModifier);
    EXPECT_EQ(m_View.getSight(), moved);
    pressMouse(&m_View, Qt::BackButton, {10, 10});
    releaseMouse(&m_View, Qt::BackButton, {10, 10});
    EXPECT_EQ(m_View.getSight(), zoomed);
    clickKey(&m_View, Qt::Key_Home);
    clickKey(&m_View, Qt::Key_Backspace);
    EXPECT_EQ(m_View.getSight(), zoomed);
}

TEST_F(ImageGesturesTest, ARangeIsGoneBackToAsWell)
{
    const auto choose = [this](double to) {
        m_View.choose([to](ImageSettings& choice) { choice.range = ImageRange{ImageRange::Kind::Fixed, 0, to}; });
    };
    choose(10);
    choose(20);
    turnWheel(&m_View, {100, 100}, 120);
    choose(30);
    clickKey(&m_View, Qt::Key_Backspace);
    EXPECT_EQ(m_View.getModel().look().to, 20);
    clickKey(&m_View, Qt::Key_Backspace);
    clickKey(&m_View, Qt::Key_Backspace);
    EXPECT_EQ(m_View.getModel().look().to, 399) << "what is dragged is one change";
}

TEST_F(ImageGesturesTest, KeysStepThroughAStack)
{
    ImageUpdate stack;
    stack.pixels = imageOf<float>({1}, 1, 1);
    for (int i = 1; i < 3; ++i)
        stack.layers[i] = imageOf<float>({1}, 1, 1);
    m_View.apply(stack);
    for (const int shown : {1, 2, 2}) {
        clickKey(&m_View, Qt::Key_PageDown);
        EXPECT_EQ(m_View.getStack().shown(), shown);
    }
    for (const int shown : {1, 0, 0}) {
        clickKey(&m_View, Qt::Key_PageUp);
        EXPECT_EQ(m_View.getStack().shown(), shown);
    }
    auto* const slider = m_View.findChild<QSlider*>("layer");
    const double scale = m_View.getSight().scale;
    turnWheel(slider, slider->rect().center(), 120);
    turnWheel(slider, slider->rect().center(), -1200);
    EXPECT_EQ(m_View.getSight().scale, scale) << "it is the slider that the wheel turns";
    slider->setValue(1);
    EXPECT_FALSE(slider->hasFocus());
}

TEST_F(ImageGesturesTest, ThePanelComesAndGoes)
{
    EXPECT_FALSE(m_View.isPanelShown());
    const int width = m_View.sightSize().width();
    clickKey(&m_View, Qt::Key_P);
    EXPECT_TRUE(m_View.isPanelShown());
    EXPECT_LT(m_View.sightSize().width(), width);
    m_View.configuration()();
    EXPECT_FALSE(m_View.isPanelShown());
    EXPECT_EQ(m_View.sightSize().width(), width);
}

TEST_F(ImageGesturesTest, TheLineSaysWhatThePointerIsOn)
{
    const QPoint origin = m_View.getSight().origin(m_View.sightSize()).toPoint();
    moveMouse(&m_View, {}, origin + QPoint(17, 5));
    EXPECT_EQ(m_View.textOfPixel(), "17, 5:  17");
    moveMouse(&m_View, {}, {1, 1});
    EXPECT_EQ(m_View.textOfPixel(), "");
    moveMouse(&m_View, {}, origin + QPoint(3, 5));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&m_View, &leave);
    EXPECT_EQ(m_View.textOfPixel(), "");
}

TEST_F(ImageGesturesTest, F1AndTheQuestionMarkListMouseAndKeys)
{
    for (const Qt::Key key : {Qt::Key_Question, Qt::Key_F1}) {
        clickKey(&m_View, key);
        const QList<QMessageBox*> lists = m_View.findChildren<QMessageBox*>("gestureHelp");
        ASSERT_EQ(lists.size(), 1);
        for (const char* what : {"zooms at the pointer", "this list"})
            EXPECT_TRUE(lists.front()->text().contains(what)) << what;
    }
}

} // namespace
} // namespace tavo
