#include <unistd.h>

#include "tests/vireo/context/GLExtensionTest.h"
#include "tests/vireo/context/ScarceMemory.h"
#include "vireo/context/GLExtensionLoader.h"

namespace tavo {
namespace {

class GLExtensionLoaderMemoryGLTest : public GLExtensionTest
{
protected:
    GLExtensionLoaderMemoryGLTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    // What the loader writes to standard output goes to the error stream, which death tests look at.
    void requestWithoutMemory(const char* names)
    {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        const ScarceMemory scarce(LONG_LIST);
        m_Loader.request(names);
    }

    static constexpr std::size_t LONG_LIST = 256;

    // Linux keeps the lowest byte of an exit status alone.
    static bool exitedWithMinusOne(int status)
    {
        return testing::ExitedWithCode(-1)(status) || testing::ExitedWithCode(255)(status);
    }

    GLExtensionLoader m_Loader;
};

TEST_F(GLExtensionLoaderMemoryGLTest, EndsTheProcessWithoutMemoryForTheSupportedExtensions)
{
    if (!makeMainContext())
        return;
    EXPECT_EXIT(requestWithoutMemory(nullptr), exitedWithMinusOne,
        "Error allocating memory in file GLExtensionLoader.cpp, line 177\n");
}

TEST_F(GLExtensionLoaderMemoryGLTest, EndsTheProcessWithoutMemoryForTheUnsupportedExtensions)
{
    if (!makeMainContext())
        return;
    m_Loader.request(nullptr);
    EXPECT_EXIT(requestWithoutMemory(std::string(LONG_LIST, 'x').c_str()), exitedWithMinusOne,
        "Error allocating memory in file GLExtensionLoader.cpp, line 195\n");
}

TEST_F(GLExtensionLoaderMemoryGLTest, NeedsNoMemoryForAListNoLongerThanTheLongestBefore)
{
    if (!makeMainContext())
        return;
    const std::string longList(LONG_LIST, 'x');
    m_Loader.request(longList.c_str());
    {
        const ScarceMemory scarce(LONG_LIST);
        EXPECT_FALSE(m_Loader.request(longList.c_str()));
    }
    EXPECT_EQ(m_Loader.getUnsupportedExtensions(), longList + ' ');
}

} // namespace
} // namespace tavo
