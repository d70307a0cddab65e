#include "tavo/base/text/printable.h"

#include <gtest/gtest.h>

namespace tavo {
namespace {

TEST(PrintableTest, LeavesTextAsItIs)
{
    EXPECT_EQ(printable(""), "");
    EXPECT_EQ(printable("a b\\c"), "a b\\c");
    EXPECT_EQ(printable("H\xC3\xB6he \xE6\x98\x9F \xF0\x9F\x9A\x80"), "H\xC3\xB6he \xE6\x98\x9F \xF0\x9F\x9A\x80");
}

TEST(PrintableTest, WritesControlCharactersOut)
{
    EXPECT_EQ(printable("\x1B[31mred\x7F"), "\\x1b[31mred\\x7f");
    EXPECT_EQ(printable("a\tb\r\n"), "a\\x09b\\x0d\\x0a");
    EXPECT_EQ(printable(std::string("a\0b", 3)), "a\\x00b");
    EXPECT_EQ(printable("\xC2\x9B"
                        "31m"),
        "\\x9b31m")
        << "which some terminals take for ESC [";
    EXPECT_EQ(printable("a\xE2\x80\xA8"
                        "b\xE2\x80\xA9"
                        "c"),
        "a\\u2028b\\u2029c");
}

TEST(PrintableTest, ShowsThatSomethingIsNotUtf8)
{
    EXPECT_EQ(printable("a\x9B"
                        "31m"),
        "a\xEF\xBF\xBD"
        "31m");
}

TEST(PrintableTest, CutsTextWhereItIsLong)
{
    EXPECT_EQ(printable("abc", 3), "abc");
    EXPECT_EQ(printable("abcd", 3), "abc...");
    EXPECT_EQ(printable("", 0), "");
    EXPECT_EQ(printable("a", 0), "...");
    EXPECT_EQ(printable("\x01\x02", 8), "\\x01\\x02");
    EXPECT_EQ(printable("\x01\x02\x03", 9), "\\x01\\x02...") << "counting what is shown";
}

TEST(PrintableTest, CutsBetweenCharacters)
{
    EXPECT_EQ(printable("\xF0\x9F\x9A\x80\xF0\x9F\x9A\x80", 2), "\xF0\x9F\x9A\x80\xF0\x9F\x9A\x80");
    EXPECT_EQ(printable("\xF0\x9F\x9A\x80\xF0\x9F\x9A\x80", 1), "\xF0\x9F\x9A\x80...");
    EXPECT_EQ(printable("\xC3\xB6\xC3\xB6\xC3\xB6", 2), "\xC3\xB6\xC3\xB6...");
}

} // namespace
} // namespace tavo
