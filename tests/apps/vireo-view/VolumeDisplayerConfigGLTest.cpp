#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QStyleOptionSlider>
#include <cmath>

#include "apps/vireo-view/HistogramView.h"
#include "apps/vireo-view/VolumeDisplayerConfig.h"
#include "tests/apps/vireo-view/VolumeViewTest.h"

namespace vireo_view {
namespace {

using tavo::clickKey;
using tavo::clickMouse;
using tavo::dragMouse;
using tavo::SignalCount;

// The panel of a volume whose densities go from 0 to 200, opened by its button.
class VolumeDisplayerConfigGLTest : public VolumeViewTest
{
protected:
    VolumeDisplayerConfigGLTest()
    {
        m_Displayer = &show(makeVolume({3, 1, 1}, {0, 60, 200}));
        TransferFunction function;
        function.setWindow(200);
        function.setLevel(100);
        function.setOpacity(0.5);
        m_Displayer->setTransferFunction(function);
        m_Panel = m_Widget->findChild<VolumeDisplayerConfig*>();
    }

    void SetUp() override
    {
        showWidget();
        openPanel();
    }

    void openPanel()
    {
        clickMouse(m_Widget->findChild<QPushButton*>("pbConfigure"));
        ASSERT_TRUE(QTest::qWaitForWindowExposed(m_Panel));
    }

    QSlider* slider(const char* name) { return m_Panel->findChild<QSlider*>(name); }
    std::string label(const char* name) { return m_Panel->findChild<QLabel*>(name)->text().toStdString(); }
    const TransferFunction& function() const { return m_Displayer->getTransferFunction(); }

    // The middle of a slider's handle.
    static QPoint handleOf(QSlider* slider)
    {
        QStyleOptionSlider option;
        option.initFrom(slider);
        option.minimum = slider->minimum();
        option.maximum = slider->maximum();
        option.sliderPosition = slider->sliderPosition();
        option.orientation = slider->orientation();
        return slider->style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider).center();
    }

    static void dragHandle(QSlider* slider, int right)
    {
        const QPoint from = handleOf(slider);
        dragMouse(slider, Qt::LeftButton, from, from + QPoint(right, 0));
    }

    VolumeDisplayer* m_Displayer;
    VolumeDisplayerConfig* m_Panel;
};

TEST_F(VolumeDisplayerConfigGLTest, ShowsTheTransferFunction)
{
    EXPECT_EQ(slider("slWindow")->value(), 1000);
    EXPECT_EQ(slider("slLevel")->value(), 500);
    EXPECT_EQ(slider("slOpacity")->value(), 500);
    EXPECT_EQ(label("lWindowValue"), "200");
    EXPECT_EQ(label("lLevelValue"), "100");
    EXPECT_EQ(label("lOpacityValue"), "50 %");
    auto* const maps = m_Panel->findChild<QComboBox*>("cbColourMap");
    EXPECT_EQ(maps->count(), static_cast<int>(colourMaps().size()));
    EXPECT_EQ(maps->currentText(), "Grey");
    EXPECT_TRUE(m_Panel->findChild<HistogramView*>()->isVisible());
}

TEST_F(VolumeDisplayerConfigGLTest, ChangesTheDrawingWhileASliderIsDragged)
{
    const QImage before = getImage();
    const SignalCount changed(m_Panel, &VolumeDisplayerConfig::changed);
    QSlider* const level = slider("slLevel");
    dragHandle(level, level->width() / 4);
    EXPECT_GT(function().getLevel(), 130);
    EXPECT_LT(function().getLevel(), 170);
    EXPECT_EQ(function().getLevel(), level->value() * 0.2);
    EXPECT_EQ(label("lLevelValue"), QString::number(function().getLevel(), 'g', 4).toStdString());
    EXPECT_GE(changed.count(), 1);
    EXPECT_NE(getImage(), before);
    dragHandle(level, -level->width());
    EXPECT_EQ(function().getLevel(), 0);
    EXPECT_EQ(function().getWindow(), 200) << "the others stay";
    EXPECT_EQ(function().getOpacity(), 0.5);
}

TEST_F(VolumeDisplayerConfigGLTest, ChangesTheDrawingByKeys)
{
    const QImage before = getImage();
    clickKey(slider("slWindow"), Qt::Key_PageDown);
    EXPECT_EQ(function().getWindow(), 190);
    EXPECT_EQ(label("lWindowValue"), "190");
    const QImage narrower = getImage();
    EXPECT_NE(narrower, before);
    clickKey(slider("slWindow"), Qt::Key_Home);
    EXPECT_EQ(function().getWindow(), 0);
    clickKey(slider("slOpacity"), Qt::Key_End);
    EXPECT_EQ(function().getOpacity(), 1);
    EXPECT_EQ(label("lOpacityValue"), "100 %");
    EXPECT_NE(getImage(), narrower);
}

TEST_F(VolumeDisplayerConfigGLTest, ChangesTheColours)
{
    const QImage grey = getImage();
    clickKey(m_Panel->findChild<QComboBox*>("cbColourMap"), Qt::Key_Down);
    EXPECT_EQ(function().getColourMap(), 1u);
    EXPECT_NE(getImage(), grey);
}

TEST_F(VolumeDisplayerConfigGLTest, HasTheViewRepaintedAtOnce)
{
    const SignalCount changed(m_Panel, &VolumeDisplayerConfig::changed);
    clickKey(slider("slLevel"), Qt::Key_Right);
    EXPECT_EQ(changed.count(), 1);
    EXPECT_NEAR(function().getLevel(), 100.2, 1e-9);
}

TEST_F(VolumeDisplayerConfigGLTest, ChangesNothingByBeingShown)
{
    const TransferFunction odd = [] {
        TransferFunction result;
        result.setWindow(33.333);
        result.setLevel(-1000);
        result.setOpacity(0.12345);
        return result;
    }();
    m_Panel->hide();
    m_Displayer->setTransferFunction(odd);
    openPanel();
    EXPECT_EQ(function(), odd);
    EXPECT_EQ(label("lWindowValue"), "33.33");
    EXPECT_EQ(slider("slLevel")->value(), 0);
}

TEST_F(VolumeDisplayerConfigGLTest, ShowsTheVolumeThatIsThereWhenItIsOpened)
{
    m_Panel->hide();
    VolumeDisplayer newer(std::make_unique<tavo::RegularVolume>(makeVolume({2, 1, 1}, {0, 400})));
    m_Displayer->updateData(&newer);
    openPanel();
    EXPECT_EQ(slider("slLevel")->value(), 250);
    EXPECT_EQ(slider("slWindow")->value(), 500);
}

TEST_F(VolumeDisplayerConfigGLTest, ShowsAnotherVolumeWhileItIsOpen)
{
    const TransferFunction before = function();
    VolumeDisplayer newer(std::make_unique<tavo::RegularVolume>(makeVolume({2, 1, 1}, {0, 400})));
    m_Displayer->updateData(&newer);
    EXPECT_EQ(slider("slLevel")->value(), 250);
    EXPECT_EQ(slider("slWindow")->value(), 500);
    EXPECT_EQ(function(), before) << "it only shows it";
}

TEST_F(VolumeDisplayerConfigGLTest, StaysAtTheEndForAVolumeOfASmallRange)
{
    VolumeDisplayer newer(std::make_unique<tavo::RegularVolume>(makeVolume({2, 1, 1}, {0, 1e-30f})));
    m_Displayer->updateData(&newer);
    EXPECT_EQ(slider("slLevel")->value(), 1000);
    EXPECT_EQ(slider("slWindow")->value(), 1000);
}

TEST_F(VolumeDisplayerConfigGLTest, CanBeUsedForVolumesOfOneValueAndOfNone)
{
    for (const float density : {5.0f, NAN}) {
        VolumeDisplayer displayer(std::make_unique<tavo::RegularVolume>(makeVolume({1, 1, 1}, {density})));
        QWidget parent;
        auto* const panel = dynamic_cast<VolumeDisplayerConfig*>(displayer.createConfigWindow(&parent));
        panel->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(panel));
        for (auto* const s : panel->findChildren<QSlider*>()) {
            clickKey(s, Qt::Key_End);
            clickKey(s, Qt::Key_Home);
        }
        EXPECT_EQ(displayer.getTransferFunction().getOpacity(), 0);
    }
}

} // namespace
} // namespace vireo_view
