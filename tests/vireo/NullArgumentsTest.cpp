// Null arguments that headers rule out and that operations do not check: builds with assertions end where they come in.
#include <gtest/gtest.h>

#include "tavo/base/images/RGBAFloat32Image.h"
#include "tavo/base/images/RGBAImage.h"
#include "vireo/context/GLObject.h"
#include "vireo/geometry/GLSimpleObjects.h"
#include "vireo/offscreen/GLImage.h"

namespace tavo {
namespace {

class NullArgumentsDeathTest : public testing::Test
{
protected:
    void SetUp() override
    {
#ifdef NDEBUG
        GTEST_SKIP() << "this build has no assertions";
#endif
    }
};

TEST_F(NullArgumentsDeathTest, EndWhereAnObjectIsMade)
{
    EXPECT_DEATH(GLObject(nullptr), "a GLObject needs a context");
}

TEST_F(NullArgumentsDeathTest, EndWhereAContainerDraws)
{
    GLSimpleObjectContainer container;
    container.addObject(nullptr);
    EXPECT_DEATH(container.drawObjects(nullptr, 0), "a container draws no null object");
}

TEST_F(NullArgumentsDeathTest, EndWhereAnImageIsSetUp)
{
    GLImage image;
    RGBAImage picture(1, 1);
    RGBAFloat32Image floatPicture(1, 1);
    EXPECT_DEATH(image.setup(nullptr, &picture), "from a cache");
    EXPECT_DEATH(image.setup(nullptr, &floatPicture, true), "from a cache");
    EXPECT_DEATH(image.setup(nullptr, 1, 1, 4, true, false, false, false, false), "from a cache");
    EXPECT_DEATH(image.setup(nullptr, static_cast<GLImage*>(nullptr)), "like another one");
    EXPECT_DEATH(image.setup(nullptr, static_cast<RGBAImage*>(nullptr)), "of a picture");
    EXPECT_DEATH(image.setup(nullptr, nullptr, false), "of a picture");
    EXPECT_DEATH(image.copySubImage(nullptr, 0, 0, 0, 0, 0, 0), "from another one");
}

} // namespace
} // namespace tavo
