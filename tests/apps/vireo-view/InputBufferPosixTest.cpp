#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/apps/vireo-view/InputBufferTest.h"

namespace vireo_view {
namespace {

using InputBufferPosixTest = InputBufferTest;

TEST_F(InputBufferPosixTest, TurnsAwayDevices)
{
    EXPECT_EQ(errorOpening("/dev/null"), "/dev/null: is not a regular file");
}

TEST_F(InputBufferPosixTest, DoesNotWaitForAPipe)
{
    const auto pipe = directory() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(errorOpening(pipe), "pipe: is not a regular file");
}

TEST_F(InputBufferPosixTest, SaysWhyAFileCannotBeOpened)
{
    const auto file = write("secret", "1");
    std::filesystem::permissions(file, std::filesystem::perms::none);
    // The superuser may read every file.
    constexpr uid_t NOBODY = 65534;
    const uid_t user = geteuid();
    if (user == 0 && seteuid(NOBODY) != 0)
        GTEST_SKIP() << "the superuser may read every file, and cannot become another user here";
    EXPECT_EQ(errorOpening(file), "secret: cannot be opened: Permission denied");
    ASSERT_EQ(seteuid(user), 0);
}

} // namespace
} // namespace vireo_view
