#include "apps/vireo-view/FollowedFile.h"

#include <gmock/gmock.h>

#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"

namespace vireo_view {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Event = FollowedFile::Event;

class FollowedFileTest : public FilesTest
{
protected:
    void append(std::string_view text)
    {
        std::ofstream(directory() / "a.log", std::ios::binary | std::ios::app) << text;
    }

    Event poll()
    {
        m_Lines.clear();
        return m_File.poll([this](std::string_view line, std::size_t number) {
            m_Lines.push_back(std::to_string(number) + ": " + std::string(line));
        });
    }

    FollowedFile m_File{directory() / "a.log"};
    std::vector<std::string> m_Lines;
};

TEST_F(FollowedFileTest, TakesLinesAsTheyCome)
{
    write("a.log", "one\ntwo\r\n");
    EXPECT_EQ(poll(), Event::NONE);
    EXPECT_THAT(m_Lines, ElementsAre("1: one", "2: two"));
    EXPECT_EQ(poll(), Event::NONE);
    EXPECT_THAT(m_Lines, IsEmpty());
    append("three\n");
    EXPECT_EQ(poll(), Event::NONE);
    EXPECT_THAT(m_Lines, ElementsAre("3: three"));
}

TEST_F(FollowedFileTest, WaitsForTheEndOfALine)
{
    write("a.log", "one\ntw");
    poll();
    EXPECT_THAT(m_Lines, ElementsAre("1: one"));
    append("o");
    poll();
    EXPECT_THAT(m_Lines, IsEmpty());
    append("\nthree");
    poll();
    EXPECT_THAT(m_Lines, ElementsAre("2: two"));
}

TEST_F(FollowedFileTest, LeavesAByteOrderMarkOut)
{
    write("a.log", "\xEF\xBB\xBF"
                   "one\n");
    poll();
    EXPECT_THAT(m_Lines, ElementsAre("1: one"));
}

TEST_F(FollowedFileTest, BeginsAnewWhenTheFileIsCut)
{
    write("a.log", "one\ntwo\n");
    poll();
    write("a.log", "1\n");
    EXPECT_EQ(poll(), Event::ANEW);
    EXPECT_TRUE(m_File.hasMore());
    EXPECT_THAT(m_Lines, IsEmpty());
    EXPECT_EQ(poll(), Event::NONE);
    EXPECT_THAT(m_Lines, ElementsAre("1: 1"));
}

TEST_F(FollowedFileTest, BeginsAnewWhenALargerFileTakesItsPlace)
{
    write("a.log", "one\ntwo\n");
    poll();
    write("b.log", "first\nsecond\nthird\n");
    std::filesystem::rename(directory() / "b.log", directory() / "a.log");
    EXPECT_EQ(poll(), Event::ANEW);
    poll();
    EXPECT_THAT(m_Lines, ElementsAre("1: first", "2: second", "3: third"));
}

TEST_F(FollowedFileTest, WaitsForAFileThatIsNotThere)
{
    EXPECT_EQ(poll(), Event::GONE);
    EXPECT_EQ(poll(), Event::NONE);
    write("a.log", "one\n");
    EXPECT_EQ(poll(), Event::APPEARED);
    poll();
    EXPECT_THAT(m_Lines, ElementsAre("1: one"));
    std::filesystem::remove(directory() / "a.log");
    EXPECT_EQ(poll(), Event::GONE);
    EXPECT_EQ(poll(), Event::NONE);
    write("a.log", "one\ntwo\n");
    EXPECT_EQ(poll(), Event::APPEARED);
    poll();
    EXPECT_THAT(m_Lines, ElementsAre("1: one", "2: two"));
}

TEST_F(FollowedFileTest, WaitsForTheFirstLineOfAnEmptyFile)
{
    write("a.log", "");
    EXPECT_EQ(poll(), Event::NONE);
    append("one\n");
    poll();
    EXPECT_THAT(m_Lines, ElementsAre("1: one"));
}

TEST_F(FollowedFileTest, TakesABigFileInPieces)
{
    std::string text;
    for (int i = 0; i < 1'000'000; ++i)
        text += "0123456789\n";
    write("a.log", text);
    std::size_t number = 0;
    int numPieces = 0;
    do {
        poll();
        number += m_Lines.size();
        ++numPieces;
    } while (m_File.hasMore());
    EXPECT_EQ(number, 1'000'000u);
    EXPECT_EQ(numPieces, 3);
}

TEST_F(FollowedFileTest, RefusesALineWithoutEndAndWhatIsNoFile)
{
    write("a.log", std::string((1 << 24) + 1, 'x'));
    EXPECT_EQ(messageOf<InputError>([&] {
        do
            poll();
        while (m_File.hasMore());
    }),
        "a.log:1: the line is too long");
    std::filesystem::remove(directory() / "a.log");
    std::filesystem::create_directory(directory() / "a.log");
    EXPECT_EQ(messageOf<InputError>([&] { poll(); }), "a.log: is not a regular file");
}

} // namespace
} // namespace vireo_view
