#include "tavo/base/files/saveFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gmock/gmock.h>
#include <stdexcept>
#include <tuple>

#include "tests/tavo/base/files/SavedFilesTest.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using SaveFileTest = SavedFilesTest;

TEST_F(SaveFileTest, MakesAFile)
{
    EXPECT_EQ(saveFile(path("file"), "contents"), "");
    EXPECT_EQ(contentsOf("file"), "contents");
    EXPECT_THAT(names(), ElementsAre("file"));
}

TEST_F(SaveFileTest, ReplacesAFile)
{
    write("file", QByteArray(100000, 'x'));
    EXPECT_EQ(saveFile(path("file"), "contents"), "");
    EXPECT_EQ(contentsOf("file"), "contents");
    EXPECT_EQ(saveFile(path("file"), QByteArray()), "");
    EXPECT_EQ(contentsOf("file"), "");
    EXPECT_THAT(names(), ElementsAre("file"));
}

TEST_F(SaveFileTest, SavesWhatComesPieceByPiece)
{
    int number = 0;
    const auto nextPiece = [&number] { return ++number < 4 ? QByteArray::number(number) : QByteArray(); };
    EXPECT_EQ(saveFile(path("file"), nextPiece), "");
    EXPECT_EQ(contentsOf("file"), "123");
    EXPECT_EQ(number, 4);
}

TEST_F(SaveFileTest, LeavesTheOldFileWhereAPieceCannotBeHad)
{
    write("file", "old");
    int number = 0;
    const auto nextPiece = [&number]() -> QByteArray {
        return ++number < 3 ? QByteArray("new") : throw std::runtime_error("no more");
    };
    EXPECT_THROW(std::ignore = saveFile(path("file"), nextPiece), std::runtime_error);
    EXPECT_EQ(contentsOf("file"), "old");
    EXPECT_THAT(names(), ElementsAre("file"));
}

TEST_F(SaveFileTest, RefusesANameWithAZero)
{
    EXPECT_EQ(saveFile(path("file") + QChar(0) + "name", "contents"), "is no file's name");
    EXPECT_FALSE(QFileInfo::exists(path("file")));
}

TEST_F(SaveFileTest, RefusesAFolder)
{
    ASSERT_TRUE(QDir(path("")).mkdir("folder"));
    EXPECT_EQ(saveFile(path("folder"), "contents"), "is a directory");
    EXPECT_EQ(savePicture(path("folder"), QImage()), "Image is empty");
    EXPECT_EQ(saveFile(path("folder/"), "contents"), "is a directory");
    EXPECT_THAT(names(), ElementsAre("folder"));
}

TEST_F(SaveFileTest, SaysThatThereIsNoFolder)
{
    EXPECT_NE(saveFile(path("missing/file"), "contents"), "");
    EXPECT_NE(saveFile("", "contents"), "");
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(SaveFileTest, SavesPicturesInTheFormatThatTheNameSays)
{
    QImage picture(5, 3, QImage::Format_RGB32);
    picture.fill(Qt::red);
    for (const char* const name : {"a.png", "a.BMP"}) {
        EXPECT_EQ(savePicture(path(name), picture), "");
        EXPECT_EQ(QImage(path(name)), picture) << name;
    }
    EXPECT_TRUE(contentsOf("a.BMP").startsWith("BM"));
}

TEST_F(SaveFileTest, SaysWhyThereIsNoPicture)
{
    write("a.png", "old");
    EXPECT_EQ(savePicture(path("a.png"), QImage()), "Image is empty");
    EXPECT_EQ(contentsOf("a.png"), "old");
    EXPECT_EQ(savePicture(path("picture"), QImage(1, 1, QImage::Format_RGB32)), "Unsupported image format");
    EXPECT_THAT(names(), ElementsAre("a.png"));
}

} // namespace
} // namespace tavo
