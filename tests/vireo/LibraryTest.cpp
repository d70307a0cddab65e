#include "vireo/Library.h"

#include <QFile>
#include <QImage>
#include <gtest/gtest.h>

#include "tavo/base/objects/MetaClass.h"
#include "tavo/base/objects/Object.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLEventObject.h"
#include "vireo/displayers/GLGraphDisplayer.h"
#include "vireo/displayers/GLPointCloudDisplayer.h"
#include "vireo/textures/GLTextureSettings.h"

namespace tavo {
namespace {

constexpr const char* IMAGES[] = {":/vireo/Images/Buttons/DebugWindowSmall.png",
    ":/vireo/Images/Buttons/ArrowDropDownVerySmall.png", ":/vireo/Images/Buttons/saveHS_small.png"};

// The whole life of the library in one test: it is started and shut down once.
TEST(LibraryTest, StartsAndShutsDown)
{
    for (const char* image : IMAGES)
        EXPECT_FALSE(QFile::exists(image)) << image << " is there from the start on";
    EXPECT_EQ(MetaClass::findClass("GLEventObject"), nullptr);

    initVireo();

    for (const char* image : IMAGES)
        EXPECT_FALSE(QImage(image).isNull()) << image;
    const MetaClass* eventObject = MetaClass::findClass("GLEventObject");
    ASSERT_NE(eventObject, nullptr);
    EXPECT_EQ(eventObject, GLEventObject::getClass());
    EXPECT_EQ(eventObject->getParent(), Object::getClass());
    EXPECT_EQ(eventObject->getVersion(), 1000u);
    const MetaClass* cloud = MetaClass::findClass("GLPointCloudDisplayer");
    ASSERT_NE(cloud, nullptr);
    EXPECT_EQ(cloud->getParent(), eventObject);
    EXPECT_EQ(cloud->getVersion(), 1000u);

    // The others are the application's business, as the header says.
    EXPECT_EQ(MetaClass::findClass("GLEventDisplayer"), nullptr);
    EXPECT_EQ(MetaClass::findClass("GLGraphDisplayer"), nullptr);
    EXPECT_EQ(MetaClass::findClass("GLTextureSettings"), nullptr);
    EXPECT_EQ(MetaClass::findClass("Tex2dVolumeRenderer"), nullptr);

    const MetaClass* const eventObjectPointer = GLEventObject::GLEventObjectMetaClass;
    shutdownVireo();

    EXPECT_EQ(MetaClass::findClass("GLEventObject"), nullptr);
    EXPECT_EQ(MetaClass::findClass("GLPointCloudDisplayer"), nullptr);
    EXPECT_EQ(GLEventObject::GLEventObjectMetaClass, eventObjectPointer) << "deliberately not reset";
    EXPECT_NE(GLPointCloudDisplayer::GLPointCloudDisplayerMetaClass, nullptr) << "deliberately not reset";
    for (const char* image : IMAGES)
        EXPECT_TRUE(QFile::exists(image)) << image << " stays";
}

} // namespace
} // namespace tavo
