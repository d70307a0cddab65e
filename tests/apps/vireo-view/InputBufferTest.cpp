#include "apps/vireo-view/InputBuffer.h"

#include <gmock/gmock.h>

#include "tests/apps/vireo-view/InputBufferTest.h"

namespace vireo_view {
namespace {

using testing::ElementsAre;

TEST_F(InputBufferTest, HandsOutTheBytesAsTheyAre)
{
    const std::string contents("a\r\nb\rc\n\0d\xFF", 10);
    EXPECT_EQ(read(write("a", contents), LineEnds::AS_THEY_ARE), contents);
}

TEST_F(InputBufferTest, MakesLineEndsUniversal)
{
    EXPECT_EQ(read(write("a", "a\r\nb\rc\n\r\n\r\rd\r"), LineEnds::UNIVERSAL), "a\nb\nc\n\n\n\nd\n");
}

TEST_F(InputBufferTest, LeavesAByteOrderMarkOutOfTexts)
{
    EXPECT_EQ(read(write("a", "\xEF\xBB\xBF"
                              "1 2"),
                  LineEnds::UNIVERSAL),
        "1 2");
    EXPECT_EQ(read(write("b", "\xEF\xBB\xBF"), LineEnds::UNIVERSAL), "");
    EXPECT_EQ(read(write("c", "1\xEF\xBB\xBF"), LineEnds::UNIVERSAL), "1\xEF\xBB\xBF");
}

TEST_F(InputBufferTest, KeepsAllOfALargeFileWhereverItsLinesEnd)
{
    std::string contents;
    for (int i = 0; i < 50000; ++i)
        contents += std::to_string(i) + (i % 3 == 0 ? "\r\n" : "\n");
    const auto file = write("a", contents);
    EXPECT_EQ(read(file, LineEnds::AS_THEY_ARE), contents);

    std::string universal;
    for (int i = 0; i < 50000; ++i)
        universal += std::to_string(i) + "\n";
    EXPECT_EQ(read(file, LineEnds::UNIVERSAL), universal);
}

TEST_F(InputBufferTest, TellsTheLineThatIsBeingRead)
{
    InputBuffer buffer(write("a", "first\nsecond\n\nfourth"), LineEnds::UNIVERSAL, nullptr);
    std::istream stream(&buffer);
    std::vector<std::size_t> numbers;
    std::string line;
    while (std::getline(stream, line))
        numbers.push_back(buffer.getLineNumber());
    EXPECT_THAT(numbers, ElementsAre(1, 2, 3, 4));
    EXPECT_TRUE(buffer.isAtEnd());
}

TEST_F(InputBufferTest, CountsALineLongerThanItsChunksAsOne)
{
    InputBuffer buffer(write("a", std::string(200000, 'x') + "\nend"), LineEnds::UNIVERSAL, nullptr);
    std::istream stream(&buffer);
    std::string line;
    std::getline(stream, line);
    EXPECT_EQ(line.size(), 200000u);
    EXPECT_EQ(buffer.getLineNumber(), 1u);
    std::getline(stream, line);
    EXPECT_EQ(buffer.getLineNumber(), 2u);
}

TEST_F(InputBufferTest, TakesALineTooLongForATextForTheEndUnlessItIsNone)
{
    constexpr std::size_t SIZE = (1 << 24) + 200000;
    const auto file = write("a", "1\n" + std::string(SIZE, 'x'));
    for (const bool isText : {true, false}) {
        InputBuffer buffer(file, LineEnds::AS_THEY_ARE, nullptr);
        if (!isText)
            buffer.allowLongLines();
        std::size_t count = 0;
        while (buffer.sbumpc() != EOF)
            ++count;
        EXPECT_EQ(count == SIZE + 2, !isText);
        EXPECT_EQ(messageOf<InputError>([&] { buffer.checkEnd(); }), isText ? "a:2: the line is too long" : "");
    }
}

TEST_F(InputBufferTest, TellsWhatRemains)
{
    InputBuffer buffer(write("a", "12\n345"), LineEnds::AS_THEY_ARE, nullptr);
    EXPECT_EQ(buffer.getFileSize(), 6u);
    EXPECT_EQ(buffer.getRemainingSize(), 6u);
    buffer.sbumpc();
    EXPECT_EQ(buffer.getRemainingSize(), 5u);
    std::istream stream(&buffer);
    std::string line;
    std::getline(stream, line);
    EXPECT_EQ(buffer.getRemainingSize(), 3u);
    std::getline(stream, line);
    EXPECT_EQ(buffer.getRemainingSize(), 0u);
}

TEST_F(InputBufferTest, BeginsAgain)
{
    InputBuffer buffer(write("a", "x\ny\n"), LineEnds::UNIVERSAL, nullptr);
    for (int pass = 0; pass < 2; ++pass) {
        std::istream stream(&buffer);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(stream), {}), "x\ny\n");
        EXPECT_EQ(buffer.getLineNumber(), 2u);
        buffer.rewind();
    }
}

TEST_F(InputBufferTest, ReportsProgressUpToTheWhole)
{
    std::vector<double> parts;
    InputBuffer buffer(write("a", std::string(150000, '\n')), LineEnds::UNIVERSAL, [&parts](double part) {
        parts.push_back(part);
        return true;
    });
    while (buffer.sbumpc() != EOF) {
    }
    ASSERT_GE(parts.size(), 3u);
    EXPECT_TRUE(std::is_sorted(parts.begin(), parts.end()));
    EXPECT_GT(parts.front(), 0.0);
    EXPECT_EQ(parts.back(), 1.0);
    EXPECT_NO_THROW(buffer.checkEnd());
}

TEST_F(InputBufferTest, StopsWhenTheProgressSaysSo)
{
    InputBuffer buffer(write("a", std::string(1000000, 'x')), LineEnds::UNIVERSAL, [](double) { return false; });
    std::size_t count = 0;
    while (buffer.sbumpc() != EOF)
        ++count;
    EXPECT_LT(count, 1000000u);
    EXPECT_EQ(messageOf<InputError>([&] { buffer.checkEnd(); }), "a: the reading was stopped");
}

TEST_F(InputBufferTest, TurnsAwayWhatIsNoFileOfData)
{
    EXPECT_EQ(errorOpening(directory() / "missing.ply"), "missing.ply: no such file");
    EXPECT_EQ(errorOpening(write("empty.ply", "")), "empty.ply: is empty");
    std::filesystem::create_directory(directory() / "folder");
    EXPECT_EQ(errorOpening(directory() / "folder"), "folder: is a directory");
}

} // namespace
} // namespace vireo_view
