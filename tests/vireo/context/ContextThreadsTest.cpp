#include <algorithm>
#include <atomic>
#include <cstdint>
#include <gtest/gtest.h>
#include <latch>
#include <numeric>
#include <thread>
#include <vector>

#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensionLoader.h"
#include "vireo/context/GLExtensions.h"

// What threads that make contexts at the same time share. No context is current in any of them, so nothing is asked of
// a driver; the thread sanitizer sees what is left unguarded.
namespace tavo {
namespace {

constexpr int NUM_THREADS = 8;

// Has threads begin at the same moment.
template <typename Work>
void runInThreads(Work work)
{
    std::latch start(NUM_THREADS);
    std::vector<std::thread> threads;
    for (int i = 0; i < NUM_THREADS; ++i)
        threads.emplace_back([&start, &work, i] {
            start.arrive_and_wait();
            work(i);
        });
    for (std::thread& thread : threads)
        thread.join();
}

TEST(ContextThreadsTest, EveryContextHasANumberOfItsOwn)
{
    constexpr std::size_t NUM_CONTEXTS = 5000;
    std::vector<std::uint64_t> numbers[NUM_THREADS];
    runInThreads([&numbers](int thread) {
        for (std::size_t i = 0; i < NUM_CONTEXTS; ++i)
            numbers[thread].push_back(GLContext(nullptr, nullptr, nullptr, nullptr).getContextNumber());
    });

    std::vector<std::uint64_t> all;
    for (const std::vector<std::uint64_t>& some : numbers)
        all.insert(all.end(), some.begin(), some.end());
    std::sort(all.begin(), all.end());
    std::vector<std::uint64_t> expected(NUM_THREADS * NUM_CONTEXTS);
    std::iota(expected.begin(), expected.end(), 1);
    EXPECT_EQ(all, expected);
}

TEST(ContextThreadsTest, FirstContextsShareOneCgContext)
{
    _CGcontext* seen[NUM_THREADS];
    std::atomic<int> numInitialized{0};
    runInThreads([&](int thread) {
        GLContext context(nullptr, nullptr, nullptr, nullptr);
        seen[thread] = context.getCGContext();
        numInitialized += glExtensionsInitialized;
    });

    EXPECT_EQ(std::count(seen, seen + NUM_THREADS, seen[0]), NUM_THREADS);
    EXPECT_EQ(numInitialized, NUM_THREADS) << "a context is there before its entry points";
}

TEST(ContextThreadsTest, ExtensionsAreAskedForByAll)
{
    GLExtensionLoader& loader = GLExtensionLoader::getInstance();
    runInThreads([&loader](int) {
        for (int i = 0; i < 100; ++i) {
            EXPECT_FALSE(loader.request("GL_NOT_THERE"));
            EXPECT_FALSE(loader.isSupported("GL_NOT_THERE"));
            GLExtensionLoader::loadFramebufferObjects();
        }
    });
    EXPECT_EQ(loader.getUnsupportedExtensions(), "GL_NOT_THERE ");
}

} // namespace
} // namespace tavo
