#include <new>
#include <unistd.h>

#include "tests/vireo/context/GLExtensionTest.h"
#include "vireo/context/GLExtensionLoader.h"

namespace {

constexpr std::size_t NEVER = static_cast<std::size_t>(-1);
std::size_t smallestFailingAllocation = NEVER;

} // namespace

void* operator new(std::size_t size)
{
    if (size < smallestFailingAllocation)
        if (void* const memory = std::malloc(size))
            return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return std::malloc(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace tavo {
namespace {

class GLExtensionLoaderMemoryGLTest : public GLExtensionTest
{
protected:
    GLExtensionLoaderMemoryGLTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    // With memory for nothing that is as long as a list of extensions.
    void requestWithoutMemory(const char* names)
    {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        smallestFailingAllocation = 256;
        m_Loader.request(names);
        smallestFailingAllocation = NEVER;
    }

    GLExtensionLoader m_Loader;
};

TEST_F(GLExtensionLoaderMemoryGLTest, EndsTheProcessWithoutMemoryForTheSupportedExtensions)
{
    if (!makeMainContext())
        return;
    EXPECT_EXIT(requestWithoutMemory(nullptr), testing::ExitedWithCode(255),
        "Error allocating memory in file GLExtensionLoader.cpp, line 177\n");
}

TEST_F(GLExtensionLoaderMemoryGLTest, EndsTheProcessWithoutMemoryForTheUnsupportedExtensions)
{
    if (!makeMainContext())
        return;
    m_Loader.request(nullptr);
    EXPECT_EXIT(requestWithoutMemory(std::string(300, 'x').c_str()), testing::ExitedWithCode(255),
        "Error allocating memory in file GLExtensionLoader.cpp, line 195\n");
}

TEST_F(GLExtensionLoaderMemoryGLTest, NeedsNoMemoryForAListNoLongerThanTheLongestBefore)
{
    if (!makeMainContext())
        return;
    const std::string longList(300, 'x');
    m_Loader.request(longList.c_str());
    smallestFailingAllocation = 256;
    EXPECT_FALSE(m_Loader.request(longList.c_str()));
    smallestFailingAllocation = NEVER;
    EXPECT_EQ(m_Loader.getUnsupportedExtensions(), longList + ' ');
}

} // namespace
} // namespace tavo
