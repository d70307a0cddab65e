#include <gtest/gtest.h>
#include <windows.h>

#include "tests/apps/vireo-view/InputBufferTest.h"

namespace vireo_view {
namespace {

using InputBufferWindowsTest = InputBufferTest;

TEST_F(InputBufferWindowsTest, TurnsAwayDevices)
{
    EXPECT_EQ(errorOpening("NUL"), "NUL: no such file");
}

TEST_F(InputBufferWindowsTest, SaysWhyAFileCannotBeOpened)
{
    // Who has it open shares it with nobody.
    const auto file = write("secret", "1");
    const HANDLE handle =
        CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE);
    EXPECT_EQ(errorOpening(file), "secret: cannot be opened: Permission denied");
    CloseHandle(handle);
}

} // namespace
} // namespace vireo_view
