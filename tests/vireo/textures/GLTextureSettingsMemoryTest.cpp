#include <gtest/gtest.h>
#include <memory>
#include <new>

#include "tavo/base/objects/MetaClass.h"
#include "tests/vireo/PrivateMember.h"
#include "tests/vireo/context/ScarceMemory.h"
#include "vireo/textures/GLTextureSettings.h"

namespace tavo {

struct Factory
{
    friend auto memberOf(Factory);
};
template struct PrivateMember<Factory, &GLTextureSettings::newInstance>;

namespace {

// Leaves the class as if it had never been used.
class GLTextureSettingsMemoryTest : public testing::Test
{
protected:
    ~GLTextureSettingsMemoryTest() override
    {
        GLTextureSettings::shutdown();
        GLTextureSettings::GLTextureSettingsMetaClass = nullptr;
    }
};

TEST_F(GLTextureSettingsMemoryTest, MakesNoInstanceWithoutMemory)
{
    const auto newInstance = memberOf(Factory());
    std::unique_ptr<Object> instance(newInstance());
    EXPECT_NE(instance, nullptr);
    const MetaClass* const record = GLTextureSettings::getClass();
    const ScarceMemory scarce(sizeof(GLTextureSettings));
    EXPECT_NO_THROW(instance.reset(newInstance()));
    EXPECT_EQ(instance, nullptr);
    EXPECT_THROW(record->newInstance(), std::bad_alloc) << "where an instance must be";
}

TEST_F(GLTextureSettingsMemoryTest, HasNoRecordWithoutMemory)
{
    const ScarceMemory scarce(sizeof(MetaClass));
    EXPECT_EQ(GLTextureSettings::getClass(), nullptr);
    EXPECT_EQ(GLTextureSettings::GLTextureSettingsMetaClass, nullptr);
}

} // namespace
} // namespace tavo
