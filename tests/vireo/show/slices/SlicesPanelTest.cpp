#include "vireo/show/slices/SlicesPanel.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QPushButton>
#include <gtest/gtest.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/slices/layers.h"
#include "vireo/show/scenes/RangeHistogram.h"
#include "vireo/show/slices/SliceVolume.h"
#include "vireo/show/slices/SlicesView.h"

namespace tavo {
namespace {

class SlicesPanelTest : public testing::Test
{
protected:
    SlicesPanelTest()
    {
        m_View.resize(1000, 600);
        m_View.show();
        SlicesUpdate update;
        update.volume = layerBy({10, 10, 10}, [](int x, int y, int z) { return x + 10 * (y % 10) + z; });
        update.volume->isOriented = true;
        update.overlay = layerOf<float>({1, 2}, {2, 1, 1});
        update.settings.window = std::pair(10.0, 90.0);
        m_View.apply(update);
        if (!m_View.isPanelShown())
            m_View.switchPanel();
        QTest::qWait(150);
    }

    template <typename Widget>
    Widget* find(const char* name)
    {
        return m_View.findChild<SlicesPanel*>("slicesPanel")->findChild<Widget*>(name);
    }

    const SlicesModel& model() { return m_View.getModel(); }
    const ImageLook& look() { return model().volume().look(); }

    SlicesView m_View{"head"};
};

TEST_F(SlicesPanelTest, TheCursorsOfTheHistogramAreTheWindow)
{
    auto* const histogram = find<RangeHistogram>("histogram");
    const auto placeOf = [&](double value) { return QPoint(int(histogram->pixelOf(value)), 10); };
    dragMouse(histogram, Qt::LeftButton, placeOf(90), placeOf(60));
    EXPECT_NEAR(look().to, 60, 4);
    EXPECT_EQ(look().from, 10);
    find<QDoubleSpinBox>("from")->setValue(20);
    EXPECT_EQ(look().from, 20);
    find<QDoubleSpinBox>("to")->setValue(70);
    EXPECT_EQ(look().to, 70);
    clickMouse(find<QPushButton>("reset"));
    EXPECT_EQ(look().from, 10);
    EXPECT_EQ(look().to, 90);
    EXPECT_EQ(find<QDoubleSpinBox>("to")->value(), 90);
    find<QDoubleSpinBox>("to")->setValue(70);
    clickMouse(find<QPushButton>("automatic"));
    EXPECT_EQ(look().to, 90);
}

TEST_F(SlicesPanelTest, ColoursAndOpacitiesAreChosen)
{
    find<QComboBox>("colourMap")->setCurrentText("bone");
    EXPECT_EQ(look().colourMap, "bone");
    find<QComboBox>("colourMap")->setCurrentIndex(0);
    EXPECT_EQ(look().colourMap, "");
    EXPECT_EQ(find<QDoubleSpinBox>("overlayOpacity")->value(), 0.6);
    find<QDoubleSpinBox>("overlayOpacity")->setValue(0.25);
    EXPECT_EQ(model().overlay().opacity(), 0.25);
    EXPECT_FALSE(find<QDoubleSpinBox>("labelOpacity")->isEnabled()) << "there are none";
    SlicesUpdate update;
    update.labels.emplace_back();
    update.labels.back().samples = {model().volume().layer().samples.numbers, 1};
    m_View.apply(update);
    EXPECT_TRUE(find<QDoubleSpinBox>("labelOpacity")->isEnabled());
    find<QDoubleSpinBox>("labelOpacity")->setValue(0.75);
    EXPECT_EQ(model().labels().opacity(), 0.75);
}

TEST_F(SlicesPanelTest, HowSlicesAreSeenIsChosenAndFollowsTheKeys)
{
    auto* const interpolated = find<QCheckBox>("interpolated");
    interpolated->click();
    EXPECT_TRUE(model().isInterpolated());
    clickKey(&m_View, Qt::Key_I);
    EXPECT_FALSE(interpolated->isChecked());
    auto* const right = find<QCheckBox>("rightOnTheLeft");
    EXPECT_TRUE(right->isChecked());
    right->click();
    EXPECT_FALSE(model().getSides().isRightOnTheLeft);
    find<QCheckBox>("frontOnTheLeft")->click();
    EXPECT_FALSE(model().getSides().isFrontOnTheLeft);
    clickKey(&m_View, Qt::Key_N);
    EXPECT_TRUE(right->isChecked());
}

TEST_F(SlicesPanelTest, ThePanelTakesItsPlaceFromTheSlices)
{
    const QRect panel = m_View.findChild<SlicesPanel*>("slicesPanel")->geometry();
    for (const QRect& cell : m_View.cells().planes)
        EXPECT_FALSE(cell.intersects(panel));
    EXPECT_FALSE(m_View.getVolume()->scene().geometry().intersects(panel));
    EXPECT_FALSE(m_View.planeAt(panel.center()));
    const double scale = m_View.getSight().scale;
    clickKey(&m_View, Qt::Key_P);
    EXPECT_FALSE(m_View.isPanelShown());
    EXPECT_GE(m_View.getSight().scale, scale);
    EXPECT_EQ(m_View.getVolume()->scene().geometry(), m_View.cells().volume);
    m_View.configuration()();
    EXPECT_TRUE(m_View.isPanelShown());
}

} // namespace
} // namespace tavo
