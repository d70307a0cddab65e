#include <gtest/gtest.h>

#include "tests/support/extensions.h"
#include "tests/vireo/context/RandomLives.h"

namespace tavo {
namespace {

TEST(ObjectLifetimesGLTest, NeitherLosesNorDeletesANameTwice)
{
    std::string reason;
    const auto windowSystem = WindowSystem::open(reason);
    if (!windowSystem)
        GTEST_SKIP() << reason;

    auto context = windowSystem->makeContext(nullptr);
    context->makeCurrent();
    const bool hasPrograms = hasExtension("GL_ARB_vertex_program");
    context.reset();

    RandomLives lives(*windowSystem, 2, 20);
    constexpr unsigned int steps = 10000;
    for (unsigned int i = 0; i < steps && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        lives.step();
    }
    // Each kind of event took place often enough to mean something.
    EXPECT_GT(lives.getCounts().trees, 30u);
    EXPECT_GT(lives.getCounts().generated, 500u);
    EXPECT_GT(lives.getCounts().deleted, 400u);
    EXPECT_GT(lives.getCounts().lost, 50u);
    if (hasPrograms) {
        EXPECT_GT(lives.getCounts().programs, 10u);
    }
    EXPECT_GT(lives.getCounts().renderTextures, 50u);
    EXPECT_GT(lives.getCounts().orphansUsed, 50u);
}

} // namespace
} // namespace tavo
