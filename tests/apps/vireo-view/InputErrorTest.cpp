#include "apps/vireo-view/InputError.h"

#include <gtest/gtest.h>

namespace vireo_view {
namespace {

TEST(InputErrorTest, NamesTheFileAndTheLine)
{
    EXPECT_STREQ(InputError("dir/a.ply", "is empty").what(), "dir/a.ply: is empty");
    EXPECT_STREQ(InputError("a.csv", 12, "no").what(), "a.csv:12: no");
}

TEST(InputErrorTest, StaysOnOneLineWhateverItQuotes)
{
    EXPECT_STREQ(InputError("a\nb", 1, "odd\r\n\x1B[31m").what(), "a\\x0ab:1: odd\\x0d\\x0a\\x1b[31m");
}

TEST(InputErrorTest, QuotesTextAndCutsItWhereItIsLong)
{
    EXPECT_EQ(quotedText("abc"), "'abc'");
    EXPECT_EQ(quotedText("a\tb"), "'a\\x09b'");
    EXPECT_EQ(quotedText(std::string(40, 'x')), "'" + std::string(40, 'x') + "'");
    EXPECT_EQ(quotedText(std::string(41, 'x')), "'" + std::string(40, 'x') + "...'");
}

TEST(InputErrorTest, KeepsLettersBeyondAscii)
{
    EXPECT_EQ(printableName(std::filesystem::path(u8"Höhe.csv")), "H\xC3\xB6he.csv");
}

} // namespace
} // namespace vireo_view
