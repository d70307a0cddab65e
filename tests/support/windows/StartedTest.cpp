#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>

// Whoever runs a test program under Wine can tell that it has started, even if nothing else comes of it.
TEST(StartedTest, SaysThatItHasStarted)
{
    const char* const file = std::getenv("VIREO_STARTED_FILE");
    if (!file)
        GTEST_SKIP() << "nobody has asked for it (see run-with-wine)";
    EXPECT_TRUE(std::ifstream(file).is_open()) << file;
}
