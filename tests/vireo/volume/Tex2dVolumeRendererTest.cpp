#include "vireo/volume/Tex2dVolumeRenderer.h"

#include <gtest/gtest.h>
#include <memory>

#include "tavo/base/objects/MetaClass.h"

namespace tavo {
namespace {

TEST(Tex2dVolumeRendererTest, IsARegisteredClassWithoutProperties)
{
    Tex2dVolumeRenderer::initMetaClass(); // does nothing
    ASSERT_EQ(Tex2dVolumeRenderer::Tex2dVolumeRendererMetaClass, nullptr);
    Tex2dVolumeRenderer::init(Persistent::getClass());
    const MetaClass* const record = Tex2dVolumeRenderer::getClass();
    EXPECT_EQ(Tex2dVolumeRenderer::Tex2dVolumeRendererMetaClass, record);
    EXPECT_EQ(Tex2dVolumeRenderer().getInstanceClass(), record);
    EXPECT_EQ(MetaClass::findClass("Tex2dVolumeRenderer"), record);
    EXPECT_EQ(record->getParent(), Persistent::getClass());
    EXPECT_EQ(record->getInstanceSize(), sizeof(Tex2dVolumeRenderer));
    EXPECT_EQ(record->getVersion(), 1000u);
    EXPECT_TRUE(record->getProperties().empty());

    const std::unique_ptr<Object> instance(record->newInstance());
    EXPECT_NE(dynamic_cast<const Tex2dVolumeRenderer*>(instance.get()), nullptr);

    Tex2dVolumeRenderer::shutdown();
    EXPECT_EQ(Tex2dVolumeRenderer::Tex2dVolumeRendererMetaClass, record) << "deliberately not reset";
    EXPECT_EQ(MetaClass::findClass("Tex2dVolumeRenderer"), nullptr);
    Tex2dVolumeRenderer::Tex2dVolumeRendererMetaClass = nullptr;
}

} // namespace
} // namespace tavo
