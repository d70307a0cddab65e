#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <gmock/gmock.h>

#include "tests/support/userEvents.h"
#include "tests/vireo/show/scenes/sceneUpdates.h"
#include "vireo/show/scenes/RangeHistogram.h"
#include "vireo/show/volumes/OpacityEditor.h"
#include "vireo/show/volumes/volumeItem.h"

namespace tavo {
namespace {

ItemUpdate volume()
{
    const VolumeGrid grid{{4, 1, 1}, {1, 1, 1}, {0, 0, 0}, {Vector3d(1, 0, 0), Vector3d(0, 1, 0), Vector3d(0, 0, 1)}};
    ItemUpdate update = volumeItem(grid, {Numbers{0, 100, 200, 400}, 1});
    update.opacities = OpacityCurve{{0, 0}, {0.5, 0.25}, {1, 1}};
    return update;
}

// What the panel beside a scene, and the mouse in it, do of volumes.
class VolumePanelTest : public testing::Test
{
protected:
    VolumePanelTest()
    {
        m_View.resize(1000, 900);
        m_View.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_View));
        QApplication::setActiveWindow(&m_View);
        send(m_View, "volume", volume());
        send(m_View, "points", item(ItemKind::Cloud, {0, 0, 0, 3, 1, 1}));
        m_View.select("volume");
    }

    template <typename Widget>
    Widget* find(const char* name)
    {
        return m_View.findChild<Widget*>(name);
    }

    OpacityEditor* editor() { return find<OpacityEditor>("opacities"); }

    ItemState state() const { return m_View.getModel().items().at("volume").state(); }

    QPoint pixelOf(double place, double opacity) { return editor()->pixelOf({place, opacity}).toPoint(); }

    // By the keyboard.
    void choosePreset(const char* name)
    {
        auto* const preset = find<QComboBox>("preset");
        const int wanted = preset->findText(name);
        ASSERT_GT(wanted, 0);
        clickKey(preset, Qt::Key_Home);
        for (int i = 0; i < wanted; ++i)
            clickKey(preset, Qt::Key_Down);
    }

    static void sendMouse(QWidget* widget, QEvent::Type type, Qt::MouseButton button, const QPoint& at,
        Qt::KeyboardModifiers modifiers = {})
    {
        QMouseEvent event(type, at, type == QEvent::MouseMove ? Qt::NoButton : button, button, modifiers);
        QApplication::sendEvent(widget, &event);
    }

    SceneView m_View{"volumes"};
};

TEST_F(VolumePanelTest, OffersWhatVolumesHave)
{
    EXPECT_TRUE(editor()->isVisible());
    EXPECT_TRUE(find<QWidget>("preset")->isVisible());
    EXPECT_TRUE(find<QWidget>("colourMap")->isVisible());
    EXPECT_TRUE(find<QWidget>("histogram")->isVisible());
    EXPECT_FALSE(find<QWidget>("size")->isVisible());
    m_View.select("points");
    EXPECT_FALSE(editor()->isVisible());
    EXPECT_FALSE(find<QWidget>("preset")->isVisible());
    EXPECT_FALSE(find<QWidget>("maximum")->isVisible());
}

TEST_F(VolumePanelTest, PointsAreDraggedAndStayInTheirOrder)
{
    dragMouse(editor(), Qt::LeftButton, pixelOf(0.5, 0.25), pixelOf(0.7, 0.5));
    ASSERT_EQ(state().opacities.size(), 3U);
    EXPECT_NEAR(state().opacities[1].place, 0.7, 0.02);
    EXPECT_NEAR(state().opacities[1].opacity, 0.5, 0.03);
    dragMouse(
        editor(), Qt::LeftButton, editor()->pixelOf(state().opacities[1]).toPoint(), {editor()->width() + 300, 5});
    EXPECT_LE(state().opacities[1].place, 1);
    EXPECT_EQ(state().opacities[2], (OpacityPoint{1, 1}));
    send(m_View, "volume", volume());
    EXPECT_NE(state().opacities[1].place, 0.5) << "what a person chose stays";
}

TEST_F(VolumePanelTest, PointsAreAddedAndTakenAway)
{
    sendMouse(editor(), QEvent::MouseButtonDblClick, Qt::LeftButton, pixelOf(0.25, 0.6));
    ASSERT_EQ(state().opacities.size(), 4U);
    EXPECT_NEAR(state().opacities[1].place, 0.25, 0.02);
    EXPECT_NEAR(state().opacities[1].opacity, 0.6, 0.03);
    for (const std::size_t left : {3U, 2U, 2U}) {
        sendMouse(editor(), QEvent::MouseButtonPress, Qt::RightButton,
            editor()->pixelOf(state().opacities[left == 3U ? 1 : 0]).toPoint());
        EXPECT_EQ(state().opacities.size(), left) << "two are left";
    }
}

TEST_F(VolumePanelTest, PresetsHaveColoursOpacitiesAndRanges)
{
    choosePreset("CT lung");
    EXPECT_EQ(state().colourMap, "bone");
    EXPECT_EQ(state().range, std::pair(-1000.0, -300.0));
    EXPECT_EQ(state().opacities.size(), 5U);
    choosePreset("hot");
    EXPECT_EQ(state().colourMap, "heat");
    EXPECT_EQ(state().range, std::pair(-1000.0, -300.0)) << "it has none of its own";
}

TEST_F(VolumePanelTest, ThePresetThatIsDrawnIsShown)
{
    auto* const preset = find<QComboBox>("preset");
    m_View.chooseOf("volume", [](ItemChoice& choice, const ItemState& state) {
        choice.fields[state.shown].colourMap = "grey";
        choice.fields[state.shown].opacities = usualOpacities();
    });
    EXPECT_TRUE(QTest::qWaitFor([preset] { return preset->currentText() == "grey"; })) << "whoever chose it";
    choosePreset("CT bone");
    EXPECT_EQ(preset->currentText(), "CT bone");
    m_View.chooseOf("volume",
        [](ItemChoice& choice, const ItemState& state) { choice.fields[state.shown].range = std::pair(0.0, 1.0); });
    EXPECT_TRUE(QTest::qWaitFor([preset] { return preset->currentIndex() == 0; })) << "in another range it is no more";
}

TEST_F(VolumePanelTest, ALookIsSavedAndLoaded)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("look.json");
    const auto answer = [this](const char* button, const QString& path) {
        clickMouse(find<QPushButton>(button));
        auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->findChild<QLineEdit*>()->setText(path);
        clickKey(dialog->findChild<QLineEdit*>(), Qt::Key_Return);
        EXPECT_TRUE(QTest::qWaitFor([] { return !QApplication::activeModalWidget(); }));
    };
    choosePreset("CT bone");
    const ItemState before = state();
    answer("saveFunction", file);
    choosePreset("hot");
    ASSERT_NE(state().colourMap, before.colourMap);
    answer("loadFunction", file);
    EXPECT_EQ(state().colourMap, before.colourMap);
    EXPECT_EQ(state().range, before.range);
    EXPECT_EQ(state().opacities, before.opacities);
    EXPECT_FALSE(find<QLabel>("functionError")->isVisible());

    QFile damaged(folder.filePath("damaged.json"));
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write("{\"transferFunction\": 1}");
    damaged.close();
    testing::internal::CaptureStderr();
    answer("loadFunction", damaged.fileName());
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("it has no \"colourMap\""));
    EXPECT_EQ(find<QLabel>("functionError")->text(), "damaged.json: it has no \"colourMap\"");
    EXPECT_EQ(state().colourMap, before.colourMap) << "what was shown stays";
}

TEST_F(VolumePanelTest, NumbersAreShownAsCategories)
{
    auto* const scale = find<QComboBox>("scale");
    EXPECT_TRUE(scale->isVisible());
    EXPECT_EQ(scale->currentIndex(), 0);
    EXPECT_FALSE(find<RangeHistogram>("histogram")->getCounts().areNone());
    choosePreset("categories");
    EXPECT_TRUE(state().areLabels);
    EXPECT_EQ(find<QComboBox>("preset")->currentText(), "categories");
    EXPECT_EQ(scale->currentIndex(), 1);
    EXPECT_EQ(state().opacities, opacitiesOfCategories());
    EXPECT_FALSE(find<QWidget>("histogram")->isVisible());
    EXPECT_FALSE(find<QWidget>("colourMap")->isVisible());
    EXPECT_FALSE(find<QCheckBox>("maximum")->isEnabled());
    EXPECT_TRUE(editor()->isVisible()) << "some may be hidden";
    choosePreset("grey");
    EXPECT_FALSE(state().areLabels);
    EXPECT_EQ(scale->currentIndex(), 0);
    EXPECT_FALSE(find<RangeHistogram>("histogram")->getCounts().areNone()) << "they are counted again";
    clickKey(scale, Qt::Key_Down);
    EXPECT_TRUE(state().areLabels);
}

// The window's thread does not look at all of them.
TEST_F(VolumePanelTest, ManyValuesAreCountedInAThread)
{
    constexpr int SIDE = 160;
    const VolumeGrid grid{
        {SIDE, SIDE, SIDE}, {1, 1, 1}, {0, 0, 0}, {Vector3d(1, 0, 0), Vector3d(0, 1, 0), Vector3d(0, 0, 1)}};
    std::vector<float> samples(SIDE * SIDE * SIDE, 5);
    samples.back() = 9;
    m_View.select("points");
    send(m_View, "volume", volumeItem(grid, {Numbers(std::move(samples)), 1}));
    m_View.select("volume");
    auto* const histogram = find<RangeHistogram>("histogram");
    EXPECT_TRUE(histogram->getCounts().areNone()) << "not before the next event";
    EXPECT_TRUE(QTest::qWaitFor([histogram] { return !histogram->getCounts().areNone(); }, 60000));
    EXPECT_EQ(histogram->getCounts().least, 5);
    EXPECT_EQ(histogram->getCounts().greatest, 9);
}

TEST_F(VolumePanelTest, GreatestValuesAreChosen)
{
    EXPECT_FALSE(state().isMaximum);
    find<QCheckBox>("maximum")->click();
    EXPECT_TRUE(state().isMaximum);
}

TEST_F(VolumePanelTest, LightIsChosen)
{
    EXPECT_FALSE(state().isLit);
    find<QCheckBox>("light")->click();
    EXPECT_TRUE(state().isLit);
    find<QCheckBox>("maximum")->click();
    EXPECT_FALSE(find<QCheckBox>("light")->isEnabled()) << "none falls on greatest values";
    m_View.select("points");
    EXPECT_FALSE(find<QWidget>("light")->isVisible());
}

TEST_F(VolumePanelTest, TheMouseWithCtrlChangesTheRange)
{
    const QPoint from(200, 200);
    const auto drag = [&](const QPoint& by) {
        sendMouse(&m_View, QEvent::MouseButtonPress, Qt::LeftButton, from, Qt::ControlModifier);
        sendMouse(&m_View, QEvent::MouseMove, Qt::LeftButton, from + by, Qt::ControlModifier);
        sendMouse(&m_View, QEvent::MouseButtonRelease, Qt::LeftButton, from + by, Qt::ControlModifier);
    };
    const Vector3d eye = m_View.getCamera().eye();
    drag({100, 0});
    const auto [low, high] = state().range;
    EXPECT_GT(high - low, 400 * 1.5) << "wider";
    EXPECT_NEAR(low + high, 400, 1e-6) << "about its middle";
    drag({0, -100});
    EXPECT_NEAR(state().range.second - state().range.first, high - low, 1e-6);
    EXPECT_GT(state().range.first, low) << "up";
    EXPECT_EQ(m_View.getCamera().eye(), eye) << "it does not turn";
}

} // namespace
} // namespace tavo
