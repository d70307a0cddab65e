#include <QCoreApplication>
#include <gtest/gtest.h>

#include "tests/soak/Soak.h"
#include "tests/vireo/context/RandomLives.h"

// Contexts and objects that live and die at random.

TEST(LivesSoakGLTest, NoNameIsLostOrDeletedTwice)
{
    std::string reason;
    const auto windowSystem = tavo::WindowSystem::open(reason);
    if (!windowSystem)
        GTEST_SKIP() << reason;

    vireo_soak::Soak soak;
    tavo::RandomLives lives(*windowSystem, 2, soak.getSeed());
    while (soak.hasNext())
        lives.step();
}

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
