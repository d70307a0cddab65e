#include "vireo/displayers/GLPointCloudDisplayer.h"

#include <QCheckBox>
#include <QFrame>
#include <QLayout>
#include <QMetaMethod>
#include <gtest/gtest.h>
#include <memory>

#include "tavo/base/objects/MetaClass.h"
#include "tests/support/userEvents.h"
#include "tests/vireo/displayers/TestPointSet.h"
#include "vireo/displayers/GLGraphDisplayer.h"
#include "vireo/displayers/GLPointCloudDisplayerConfig.h"

namespace tavo {
namespace {

TEST(GLPointCloudDisplayerTest, HasTheUnitBoxWithoutASet)
{
    GLPointCloudDisplayer displayer;
    EXPECT_EQ(displayer.getPointSet(), nullptr);
    EXPECT_EQ(displayer.getBoundingBox(), Box3f({0.0f, 0.0f, 0.0f}, {1.0f, 1.0f, 1.0f}));
    EXPECT_TRUE(displayer.getShowCoords());
}

TEST(GLPointCloudDisplayerTest, OwnsItsSet)
{
    int numLiving = 0;
    auto* const points = new TestPointSet({{1.0f, 2.0f, 3.0f}, {4.0f, 0.0f, 3.0f}}, numLiving);
    {
        GLPointCloudDisplayer displayer(points);
        EXPECT_EQ(displayer.getPointSet(), points);
        EXPECT_EQ(displayer.getBoundingBox(), Box3f({1.0f, 0.0f, 3.0f}, {4.0f, 2.0f, 3.0f}));
        EXPECT_EQ(numLiving, 1);
    }
    EXPECT_EQ(numLiving, 0);
}

TEST(GLPointCloudDisplayerTest, TakesTheSetAwayFromANewerOne)
{
    int numLiving = 0;
    GLPointCloudDisplayer shown(new TestPointSet({{0.0f, 0.0f, 0.0f}}, numLiving));
    shown.setShowCoords(false);
    auto* const points = new TestPointSet({{1.0f, 1.0f, 1.0f}}, numLiving);
    auto newer = std::make_unique<GLPointCloudDisplayer>(points);
    shown.updateData(newer.get());
    EXPECT_EQ(newer->getPointSet(), nullptr);
    EXPECT_EQ(numLiving, 1) << "its own was freed";
    newer.reset();
    EXPECT_EQ(numLiving, 1);
    EXPECT_EQ(shown.getPointSet(), points);
    EXPECT_EQ(shown.getBoundingBox(), Box3f({1.0f, 1.0f, 1.0f}, {1.0f, 1.0f, 1.0f}));
    EXPECT_FALSE(shown.getShowCoords());
}

TEST(GLPointCloudDisplayerTest, IgnoresTheDataOfOtherObjectsAndItsOwn)
{
    int numLiving = 0;
    GLPointCloudDisplayer shown(new TestPointSet({{0.0f, 0.0f, 0.0f}}, numLiving));
    GLGraphDisplayer graphs;
    shown.updateData(&graphs);
    shown.updateData(nullptr);
    shown.updateData(&shown);
    EXPECT_EQ(numLiving, 1);
    EXPECT_NE(shown.getPointSet(), nullptr);
}

TEST(GLPointCloudDisplayerTest, CopiesThePointerAsItIs)
{
    int numLiving = 0;
    GLPointCloudDisplayer displayer(new TestPointSet({{0.0f, 0.0f, 0.0f}}, numLiving));
    displayer.setShowCoords(false);
    auto* const copy = new GLPointCloudDisplayer(displayer);
    EXPECT_EQ(copy->getPointSet(), displayer.getPointSet());
    EXPECT_FALSE(copy->getShowCoords());
    // Takes the shared set out of the copy, so that it is freed once.
    GLPointCloudDisplayer heir;
    heir.updateData(copy);
    delete copy;
    GLPointCloudDisplayer assigned;
    assigned = displayer;
    EXPECT_EQ(assigned.getPointSet(), displayer.getPointSet());
    GLPointCloudDisplayer empty;
    heir = empty;
    assigned = empty;
}

TEST(GLPointCloudDisplayerTest, HasAClassRecordWithAFactory)
{
    GLEventObject::init(Object::getClass());
    GLPointCloudDisplayer::init(GLEventObject::getClass());
    const MetaClass* record = GLPointCloudDisplayer::getClass();
    EXPECT_STREQ(record->getName(), "GLPointCloudDisplayer");
    EXPECT_STREQ(record->getDescription(), "no description.");
    EXPECT_EQ(record->getInstanceSize(), sizeof(GLPointCloudDisplayer));
    EXPECT_EQ(record->getVersion(), 1000u);
    EXPECT_EQ(record->getParent(), GLEventObject::getClass());
    GLPointCloudDisplayer::initMetaClass();
    EXPECT_EQ(GLPointCloudDisplayer::getClass(), record);
    const std::unique_ptr<Object> instance(record->newInstance());
    auto& displayer = dynamic_cast<GLPointCloudDisplayer&>(*instance);
    EXPECT_EQ(displayer.getInstanceClass(), record);
    EXPECT_EQ(displayer.getPointSet(), nullptr);
    EXPECT_TRUE(displayer.getShowCoords());
}

TEST(GLPointCloudDisplayerConfigTest, HasTheWidgetsOfItsForm)
{
    GLPointCloudDisplayer displayer;
    const GLPointCloudDisplayerConfig panel(nullptr, &displayer);
    EXPECT_EQ(panel.objectName(), "GLPointCloudDisplayerConfig");
    EXPECT_STREQ(panel.metaObject()->className(), "tavo::GLPointCloudDisplayerConfig");
    EXPECT_EQ(panel.windowTitle(), "Form");
    EXPECT_EQ(panel.size(), QSize(120, 24));
    EXPECT_EQ(panel.layout()->objectName(), "hboxLayout");
    EXPECT_EQ(panel.findChild<QFrame*>("frame")->layout()->objectName(), "hboxLayout1");
    const auto* checkBox = panel.findChild<QCheckBox*>("cbShowCoords");
    EXPECT_EQ(checkBox->text(), "show Coords");
    EXPECT_TRUE(checkBox->isChecked());
    const QMetaObject* meta = panel.metaObject();
    ASSERT_EQ(meta->methodCount() - meta->methodOffset(), 1);
    EXPECT_EQ(meta->method(meta->methodOffset()).methodSignature(), "on_cbShowCoords_stateChanged(int)");
}

TEST(GLPointCloudDisplayerConfigTest, SwitchesTheAxesAndSaysSo)
{
    GLPointCloudDisplayer displayer;
    QWidget parent;
    GLEventConfiguration* const panel = displayer.createConfigWindow(&parent);
    EXPECT_EQ(panel->parentWidget(), &parent);
    const SignalCount changed(panel, &GLEventConfiguration::changed);
    auto* const checkBox = panel->findChild<QCheckBox*>("cbShowCoords");
    checkBox->click();
    EXPECT_FALSE(displayer.getShowCoords());
    checkBox->click();
    EXPECT_TRUE(displayer.getShowCoords());
    EXPECT_EQ(changed.count(), 2);
}

TEST(GLPointCloudDisplayerConfigTest, SaysSoEvenForAnotherKindOfObject)
{
    GLGraphDisplayer graphs;
    GLPointCloudDisplayerConfig panel(nullptr, &graphs);
    const SignalCount changed(&panel, &GLEventConfiguration::changed);
    panel.findChild<QCheckBox*>("cbShowCoords")->click();
    EXPECT_EQ(changed.count(), 1);
    EXPECT_FALSE(graphs.getShowCoords());
}

} // namespace
} // namespace tavo
