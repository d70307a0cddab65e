#include "vireo/show/images/ImagePanel.h"

#include <QApplication>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QPushButton>
#include <QWheelEvent>
#include <gtest/gtest.h>
#include <numeric>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/images/images.h"
#include "vireo/show/scenes/RangeHistogram.h"

namespace tavo {
namespace {

class ImagePanelTest : public testing::Test
{
protected:
    ImagePanelTest()
    {
        m_View.resize(1000, 500);
        m_View.show();
        std::vector<float> numbers(1001);
        std::iota(numbers.begin(), numbers.end(), 0.0F);
        send(m_View, imageOf(std::move(numbers), 1001, 1));
        m_View.switchPanel();
        if (!m_View.isPanelShown())
            m_View.switchPanel();
        QTest::qWait(150);
    }

    template <typename Widget>
    Widget* find(const char* name)
    {
        return m_View.findChild<Widget*>(name);
    }

    const ImageLook& look() { return m_View.getModel().look(); }

    ImageView m_View{"image"};
};

TEST_F(ImagePanelTest, TheCursorsOfTheHistogramAreTheRange)
{
    auto* const histogram = find<RangeHistogram>("histogram");
    const auto placeOf = [&](double value) { return QPoint(int(histogram->pixelOf(value)), 10); };
    dragMouse(histogram, Qt::LeftButton, placeOf(0), placeOf(250));
    EXPECT_NEAR(look().from, 250, 10);
    EXPECT_EQ(look().to, 1000);
    dragMouse(histogram, Qt::LeftButton, placeOf(1000), placeOf(700));
    EXPECT_NEAR(look().to, 700, 10);
    EXPECT_NEAR(find<QDoubleSpinBox>("to")->value(), look().to, 1);
    clickMouse(find<QPushButton>("automatic"));
    EXPECT_EQ(look().from, 0);
    EXPECT_EQ(look().to, 1000);
}

TEST_F(ImagePanelTest, NumbersAndPercentilesAreTheRangeToo)
{
    find<QDoubleSpinBox>("from")->setValue(100);
    find<QDoubleSpinBox>("to")->setValue(200);
    EXPECT_EQ(look().from, 100);
    EXPECT_EQ(look().to, 200);
    clickMouse(find<QPushButton>("percentiles"));
    EXPECT_EQ(look().from, 10);
    EXPECT_EQ(look().to, 990);
}

TEST_F(ImagePanelTest, MapAndGammaAreChosenAndForgotten)
{
    auto* const map = find<QComboBox>("colourMap");
    map->setCurrentIndex(map->findText("viridis"));
    EXPECT_EQ(look().colourMap, "viridis");
    find<QDoubleSpinBox>("gamma")->setValue(2.2);
    EXPECT_EQ(look().gamma, 2.2);
    clickMouse(find<QPushButton>("reset"));
    EXPECT_EQ(look().colourMap, "");
    EXPECT_EQ(look().gamma, 1);
    EXPECT_EQ(map->currentIndex(), 0);
    EXPECT_FALSE(find<QPushButton>("reset")->isEnabled());
}

TEST_F(ImagePanelTest, ChannelsAreNamed)
{
    auto* const channel = find<QComboBox>("channel");
    EXPECT_FALSE(channel->isEnabled());
    send(m_View, imageOf<std::uint8_t>({1, 2, 3, 4}, 1, 1, 4));
    QTest::qWait(150);
    EXPECT_EQ(channel->count(), 5);
    EXPECT_EQ(channel->currentText(), "All");
    EXPECT_FALSE(find<QComboBox>("colourMap")->isEnabled());
    channel->setCurrentIndex(3);
    EXPECT_EQ(look().channel, 2);
    clickKey(&m_View, Qt::Key_C);
    QTest::qWait(150);
    EXPECT_EQ(channel->currentText(), "Opacity");
}

TEST_F(ImagePanelTest, TheWheelOverThePanelChangesNothing)
{
    auto* const gamma = find<QDoubleSpinBox>("gamma");
    m_View.setFocus();
    const ImageSight before = m_View.getSight();
    QWheelEvent event(QPointF(5, 5), gamma->mapToGlobal(QPoint(5, 5)), QPoint(), QPoint(0, 120), Qt::NoButton, {},
        Qt::NoScrollPhase, false);
    QApplication::sendEvent(gamma, &event);
    EXPECT_EQ(gamma->value(), 1);
    EXPECT_EQ(m_View.getSight(), before);
}

} // namespace
} // namespace tavo
