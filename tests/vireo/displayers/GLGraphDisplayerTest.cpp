#include "vireo/displayers/GLGraphDisplayer.h"

#include <QCheckBox>
#include <QFrame>
#include <QLayout>
#include <QMetaMethod>
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <memory>

#include "tavo/base/objects/MetaClass.h"
#include "tavo/points/PointSet.h"
#include "tests/support/userEvents.h"
#include "vireo/displayers/GLGraphDisplayerConfig.h"
#include "vireo/displayers/GLPointCloudDisplayer.h"

namespace tavo {
namespace {

using testing::ElementsAre;

const RGBA8 RED(255, 0, 0, 255);
const RGBA8 GREEN(0, 255, 0, 255);
const RGBA8 BLUE(0, 0, 255, 255);

TEST(GLGraphDisplayerTest, SpreadsASeriesOverTheUnitInterval)
{
    GLGraphDisplayer displayer;
    displayer.addGraph(std::vector<float>{5.0f, 7.0f}, RED);
    ASSERT_EQ(displayer.getGraphs().size(), 1u);
    EXPECT_THAT(displayer.getGraphs()[0], ElementsAre(Vector3f(0.0f, 5.0f, 0.0f), Vector3f(0.5f, 7.0f, 0.0f)));
    EXPECT_THAT(displayer.getColours(), ElementsAre(RED));
}

TEST(GLGraphDisplayerTest, KeepsAnEmptySeriesAndItsColour)
{
    GLGraphDisplayer displayer;
    displayer.addGraph(std::vector<float>(), RED);
    ASSERT_EQ(displayer.getGraphs().size(), 1u);
    EXPECT_TRUE(displayer.getGraphs()[0].empty());
    EXPECT_THAT(displayer.getColours(), ElementsAre(RED));
}

TEST(GLGraphDisplayerTest, TakesPointsOfThePlaneAndOfSpace)
{
    GLGraphDisplayer displayer;
    displayer.addGraph(std::vector<Vector2f>{{1.0f, 2.0f}}, RED);
    displayer.addGraph(std::vector<Vector3f>{{1.0f, 2.0f, 3.0f}}, GREEN);
    EXPECT_THAT(displayer.getGraphs()[0], ElementsAre(Vector3f(1.0f, 2.0f, 0.0f)));
    EXPECT_THAT(displayer.getGraphs()[1], ElementsAre(Vector3f(1.0f, 2.0f, 3.0f)));
    EXPECT_THAT(displayer.getColours(), ElementsAre(RED, GREEN));
}

TEST(GLGraphDisplayerTest, IgnoresTheSurplusOfTheLongerList)
{
    const std::vector<std::vector<float>> three(3, {1.0f, 2.0f});
    EXPECT_EQ(GLGraphDisplayer(three, {RED, GREEN}).getGraphs().size(), 2u);
    EXPECT_EQ(GLGraphDisplayer(three, {RED, GREEN, BLUE, RED}).getColours().size(), 3u);
    EXPECT_EQ(GLGraphDisplayer(std::vector<std::vector<Vector2f>>(3), {RED, GREEN}).getGraphs().size(), 2u);
    EXPECT_EQ(GLGraphDisplayer(std::vector<std::vector<Vector3f>>(2), {RED}).getColours().size(), 1u);
}

TEST(GLGraphDisplayerTest, HasTheUnitBoxWithoutPoints)
{
    GLGraphDisplayer displayer;
    EXPECT_EQ(displayer.getBoundingBox(), Box3f({0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f}));
    displayer.addGraph(std::vector<float>(), RED);
    EXPECT_EQ(displayer.getBoundingBox(), Box3f({0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f}));
}

TEST(GLGraphDisplayerTest, HasTheBoxOfAllPointsOfAllGraphs)
{
    GLGraphDisplayer displayer;
    displayer.addGraph(std::vector<float>(), RED);
    displayer.addGraph(std::vector<Vector3f>{{3.0f, -1.0f, 4.0f}, {2.0f, 5.0f, 4.0f}}, RED);
    displayer.addGraph(std::vector<Vector3f>{{-7.0f, 0.0f, 9.0f}}, RED);
    EXPECT_EQ(displayer.getBoundingBox(), Box3f({-7.0f, -1.0f, 4.0f}, {3.0f, 5.0f, 9.0f}));
}

TEST(GLGraphDisplayerTest, HasTheBoxOfItsGraphsAfterEveryChange)
{
    GLGraphDisplayer displayer;
    displayer.addGraph(std::vector<Vector3f>{{1.0f, 1.0f, 1.0f}}, RED);
    EXPECT_EQ(displayer.getBoundingBox(), Box3f({1.0f, 1.0f, 1.0f}, {1.0f, 1.0f, 1.0f}));
    displayer.addGraph(std::vector<Vector3f>{{2.0f, 2.0f, 2.0f}}, RED);
    EXPECT_EQ(displayer.getBoundingBox(), Box3f({1.0f, 1.0f, 1.0f}, {2.0f, 2.0f, 2.0f}));
    GLGraphDisplayer newer;
    newer.addGraph(std::vector<Vector3f>{{3.0f, 3.0f, 3.0f}}, RED);
    displayer.updateData(&newer);
    EXPECT_EQ(displayer.getBoundingBox(), Box3f({3.0f, 3.0f, 3.0f}, {3.0f, 3.0f, 3.0f}));
}

TEST(GLGraphDisplayerTest, LetsNotANumberReplaceTheMinimumButNotTheMaximum)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    GLGraphDisplayer displayer;
    displayer.addGraph(std::vector<Vector3f>{{1.0f, 1.0f, 1.0f}, {nan, nan, nan}}, RED);
    EXPECT_TRUE(std::isnan(displayer.getBoundingBox().getMin()[0]));
    EXPECT_EQ(displayer.getBoundingBox().getMax()[0], 1.0f);
    displayer.addGraph(std::vector<Vector3f>{{3.0f, 3.0f, 3.0f}}, RED);
    EXPECT_EQ(displayer.getBoundingBox().getMin()[0], 3.0f) << "a number replaces it again";
}

TEST(GLGraphDisplayerTest, TakesOverGraphsAndKeepsItsFlags)
{
    GLGraphDisplayer shown;
    shown.setShowCoords(true);
    shown.addGraph(std::vector<float>{1.0f}, RED);
    GLGraphDisplayer newer;
    newer.addGraph(std::vector<float>{2.0f, 3.0f}, BLUE);
    shown.updateData(&newer);
    EXPECT_EQ(shown.getGraphs(), newer.getGraphs());
    EXPECT_EQ(shown.getColours(), newer.getColours());
    EXPECT_TRUE(shown.getShowCoords());
}

TEST(GLGraphDisplayerTest, IgnoresTheDataOfOtherObjects)
{
    GLGraphDisplayer shown;
    shown.addGraph(std::vector<float>{1.0f}, RED);
    GLPointCloudDisplayer cloud;
    shown.updateData(&cloud);
    shown.updateData(nullptr);
    EXPECT_EQ(shown.getGraphs().size(), 1u);
}

TEST(GLGraphDisplayerTest, CopiesListsAndFlags)
{
    GLGraphDisplayer displayer;
    displayer.addGraph(std::vector<float>{1.0f, 2.0f}, RED);
    displayer.setShowCoords(true);
    GLGraphDisplayer copy(displayer);
    GLGraphDisplayer assigned;
    assigned = displayer;
    for (const GLGraphDisplayer* other : {&copy, &assigned}) {
        EXPECT_EQ(other->getGraphs(), displayer.getGraphs());
        EXPECT_EQ(other->getColours(), displayer.getColours());
        EXPECT_TRUE(other->getShowCoords());
    }
}

TEST(GLGraphDisplayerTest, ChangesNoGraphsButItsOwn)
{
    GLGraphDisplayer displayer;
    displayer.addGraph(std::vector<float>{1.0f}, RED);
    GLGraphDisplayer copy(displayer);
    GLGraphDisplayer updated;
    updated.updateData(&displayer);
    copy.addGraph(std::vector<float>{2.0f}, GREEN);
    updated.addGraph(std::vector<float>{3.0f}, BLUE);
    EXPECT_EQ(displayer.getGraphs().size(), 1u);
    ASSERT_EQ(copy.getGraphs().size(), 2u);
    EXPECT_THAT(copy.getGraphs()[1], ElementsAre(Vector3f(0.0f, 2.0f, 0.0f)));
    ASSERT_EQ(updated.getGraphs().size(), 2u);
    EXPECT_THAT(updated.getGraphs()[1], ElementsAre(Vector3f(0.0f, 3.0f, 0.0f)));
}

TEST(GLGraphDisplayerTest, HasAClassRecordWithAFactory)
{
    GLEventObject::init(Object::getClass());
    GLGraphDisplayer::init(GLEventObject::getClass());
    const MetaClass* record = GLGraphDisplayer::getClass();
    EXPECT_STREQ(record->getName(), "GLGraphDisplayer");
    EXPECT_STREQ(record->getDescription(), "no description.");
    EXPECT_EQ(record->getInstanceSize(), sizeof(GLGraphDisplayer));
    EXPECT_EQ(record->getVersion(), 1000u);
    EXPECT_EQ(record->getParent(), GLEventObject::getClass());
    GLGraphDisplayer::initMetaClass();
    EXPECT_EQ(GLGraphDisplayer::getClass(), record);
    const std::unique_ptr<Object> instance(record->newInstance());
    auto& displayer = dynamic_cast<GLGraphDisplayer&>(*instance);
    EXPECT_EQ(displayer.getInstanceClass(), record);
    EXPECT_FALSE(displayer.getShowCoords());
    EXPECT_TRUE(displayer.getGraphs().empty());
}

TEST(GLGraphDisplayerConfigTest, HasTheWidgetsOfItsForm)
{
    GLGraphDisplayer displayer;
    const GLGraphDisplayerConfig panel(nullptr, &displayer);
    EXPECT_EQ(panel.objectName(), "GLGraphDisplayerConfig");
    EXPECT_STREQ(panel.metaObject()->className(), "tavo::GLGraphDisplayerConfig");
    EXPECT_EQ(panel.windowTitle(), "Form");
    EXPECT_EQ(panel.size(), QSize(120, 24));
    EXPECT_EQ(panel.font().family(), "MS Shell Dlg");
    EXPECT_EQ(panel.font().pointSize(), 7);
    EXPECT_EQ(panel.layout()->objectName(), "hboxLayout");
    const auto* frame = panel.findChild<QFrame*>("frame");
    EXPECT_EQ(frame->frameShape(), QFrame::StyledPanel);
    EXPECT_EQ(frame->font().family(), "MS Shell Dlg 2");
    EXPECT_EQ(frame->layout()->objectName(), "hboxLayout1");
    EXPECT_EQ(frame->layout()->contentsMargins(), QMargins(4, 4, 4, 4));
    const auto* checkBox = panel.findChild<QCheckBox*>("cbShowCoords");
    EXPECT_EQ(checkBox->text(), "show Coords");
    EXPECT_TRUE(checkBox->isChecked()) << "though no axes are shown yet: deliberate";
    EXPECT_FALSE(displayer.getShowCoords());

    const QMetaObject* meta = panel.metaObject();
    ASSERT_EQ(meta->methodCount() - meta->methodOffset(), 1);
    EXPECT_EQ(meta->method(meta->methodOffset()).methodSignature(), "on_cbShowCoords_stateChanged(int)");
}

TEST(GLGraphDisplayerConfigTest, SwitchesTheAxesAndSaysSoEachTime)
{
    GLGraphDisplayer displayer;
    QWidget parent;
    GLEventConfiguration* const panel = displayer.createConfigWindow(&parent);
    EXPECT_EQ(panel->parentWidget(), &parent);
    const SignalCount changed(panel, &GLEventConfiguration::changed);
    auto* const checkBox = panel->findChild<QCheckBox*>("cbShowCoords");
    displayer.setShowCoords(true);
    checkBox->click();
    EXPECT_FALSE(displayer.getShowCoords());
    EXPECT_EQ(changed.count(), 1);
    checkBox->click();
    EXPECT_TRUE(displayer.getShowCoords());
    EXPECT_EQ(changed.count(), 2);
}

TEST(GLGraphDisplayerConfigTest, SaysSoEvenForAnotherKindOfObject)
{
    GLPointCloudDisplayer cloud;
    GLGraphDisplayerConfig panel(nullptr, &cloud);
    const SignalCount changed(&panel, &GLEventConfiguration::changed);
    panel.findChild<QCheckBox*>("cbShowCoords")->click();
    EXPECT_EQ(changed.count(), 1);
    EXPECT_TRUE(cloud.getShowCoords());
}

} // namespace
} // namespace tavo
