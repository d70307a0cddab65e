#include "tavo/base/debug/LogText.h"

#include <gtest/gtest.h>

namespace tavo {
namespace {

std::string linesFrom(int begin, int end)
{
    std::string text;
    for (int i = begin; i < end; ++i)
        text += std::to_string(i) + "\n";
    return text;
}

TEST(LogTextTest, HandsOutWhatHasComeSinceTheLastTime)
{
    LogText text;
    EXPECT_EQ(text.take(), "");
    text.append("one\ntw");
    text.append("o\n");
    EXPECT_EQ(text.take(), "one\ntwo\n");
    EXPECT_EQ(text.take(), "");
    text.append("three");
    EXPECT_EQ(text.take(), "three");
}

TEST(LogTextTest, KeepsTheLinesThatTheLogKeepsAndOneMore)
{
    LogText text;
    text.append(linesFrom(0, 10000) + "the last");
    EXPECT_TRUE(text.take() == linesFrom(0, 10000) + "the last");
    for (const int count : {10001, 19999, 20000, 20001, 123456}) {
        text.append(linesFrom(0, count));
        EXPECT_TRUE(text.take() == linesFrom(count - 10000, count)) << count;
    }
}

TEST(LogTextTest, TakesNoMoreMemoryThanTwiceWhatTheLogKeeps)
{
    LogText text;
    const std::string line(99, 'x');
    for (int i = 0; i < 300000; ++i) {
        text.append(line + "\n");
        ASSERT_LE(text.getSize(), 2u * 10000u * 100u);
    }
}

TEST(LogTextTest, TakesNoMoreMemoryForALineWithoutEnd)
{
    LogText text;
    const std::string piece(100000, 'x');
    for (int i = 0; i < 500; ++i) {
        text.append(piece);
        ASSERT_LE(text.getSize(), 2u * 10000u * 1001u);
    }
}

TEST(LogTextTest, ContinuesLongLinesInTheNextOne)
{
    const std::string line(1000, 'x');
    LogText text;
    text.append(line + "\n" + line + "y\n" + line);
    EXPECT_EQ(text.take(), line + "\n" + line + "\ny\n" + line);
    text.append("y");
    EXPECT_EQ(text.take(), "\ny") << "also where its beginning has been handed out";
}

TEST(LogTextTest, CountsCharactersOfSeveralBytesOnce)
{
    std::string line;
    for (int i = 0; i < 1000; ++i)
        line += "\xE2\x82\xAC";
    LogText text;
    text.append(line + line);
    EXPECT_EQ(text.take(), line + "\n" + line);
}

TEST(LogTextTest, TakesNoMoreMemoryForWhatIsNoText)
{
    LogText text;
    const std::string piece(100000, '\x80');
    for (int i = 0; i < 1000; ++i) {
        text.append(piece);
        ASSERT_LE(text.getSize(), 2u * 10000u * 4001u);
    }
    EXPECT_EQ(text.take().find('\n'), 4000u);
}

TEST(LogTextTest, TakesAReturnForTheEndOfALine)
{
    LogText text;
    text.append("10 %\r20 %\r\n30 %\r");
    text.append("\n\n40 %\n\r50 %");
    EXPECT_EQ(text.take(), "10 %\n20 %\n30 %\n\n40 %\n\n50 %");
}

} // namespace
} // namespace tavo
