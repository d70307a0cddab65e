#include <QFileInfo>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tavo/base/files/saveFile.h"
#include "tests/support/fullDevice.h"
#include "tests/support/linux/FileSizeLimit.h"
#include "tests/support/linux/SmallDisk.h"
#include "tests/tavo/base/files/SavedFilesTest.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

const QByteArray MUCH(100000, 'x');
const QByteArray LITTLE(1000, 'x'); // so little that it is written as the file is closed

class SaveFilePosixTest : public SavedFilesTest
{
protected:
    std::string nativePath(const QString& name) const { return path(name).toStdString(); }

    void link(const QString& target, const QString& name) const
    {
        ASSERT_EQ(symlink(target.toLocal8Bit().constData(), nativePath(name).c_str()), 0);
    }

    struct stat statusOf(const QString& name) const
    {
        struct stat status
        {};
        EXPECT_EQ(lstat(nativePath(name).c_str(), &status), 0);
        return status;
    }
};

// What a process may do that is not root's.
class WithoutRights
{
public:
    WithoutRights() { m_WasRoot = geteuid() == 0 && setresuid(NOBODY, NOBODY, 0) == 0; }
    ~WithoutRights()
    {
        if (m_WasRoot && setresuid(0, 0, 0) != 0)
            ADD_FAILURE() << "the rights are gone";
    }
    WithoutRights(const WithoutRights&) = delete;
    WithoutRights& operator=(const WithoutRights&) = delete;

private:
    static constexpr uid_t NOBODY = 65534;
    bool m_WasRoot;
};

TEST_F(SaveFilePosixTest, LeavesTheOldFileWhereTheNewOneCannotBeWrittenToItsEnd)
{
    write("file", "old");
    for (const QByteArray& contents : {MUCH, LITTLE}) {
        std::string error;
        {
            const FileSizeLimit limit(500);
            error = saveFile(path("file"), contents);
        }
        EXPECT_EQ(error, "File too large");
        EXPECT_EQ(contentsOf("file"), "old");
        EXPECT_THAT(names(), ElementsAre("file"));
    }
}

TEST_F(SaveFilePosixTest, LeavesTheOldPictureWhereTheNewOneCannotBeWrittenToItsEnd)
{
    write("a.png", "old");
    std::string error;
    {
        const FileSizeLimit limit(50);
        error = savePicture(path("a.png"), QImage(100, 100, QImage::Format_Mono));
    }
    EXPECT_EQ(error, "File too large");
    EXPECT_EQ(contentsOf("a.png"), "old");
}

TEST_F(SaveFilePosixTest, LeavesTheOldFileOnAFullDisk)
{
    ASSERT_TRUE(QDir(path("")).mkdir("disk"));
    const SmallDisk disk(nativePath("disk"), "16k");
    if (!disk.isMounted())
        GTEST_SKIP() << "this process may not mount a small disk";
    write("disk/file", "old");
    EXPECT_EQ(saveFile(path("disk/file"), MUCH), "No space left on device");
    EXPECT_EQ(saveFile(path("disk/filling"), QByteArray(12000, 'x')), "");
    EXPECT_EQ(saveFile(path("disk/file"), LITTLE), "No space left on device");
    EXPECT_EQ(contentsOf("disk/file"), "old");
    EXPECT_THAT(names("disk"), ElementsAre("file", "filling"));
}

TEST_F(SaveFilePosixTest, NeitherReplacesADeviceNorWritesToIt)
{
    if (!makeFullDevice(nativePath("full")))
        GTEST_SKIP() << "this process may not make a device node";
    link("full", "link");
    for (const char* const name : {"full", "link"}) {
        EXPECT_EQ(saveFile(path(name), "contents"), "is not a regular file");
        EXPECT_TRUE(S_ISCHR(statusOf("full").st_mode));
        EXPECT_TRUE(S_ISLNK(statusOf("link").st_mode));
    }
}

TEST_F(SaveFilePosixTest, DoesNotWaitForTheReaderOfAPipe)
{
    ASSERT_EQ(mkfifo(nativePath("pipe").c_str(), 0666), 0);
    EXPECT_EQ(saveFile(path("pipe"), "contents"), "is not a regular file");
    EXPECT_TRUE(S_ISFIFO(statusOf("pipe").st_mode));
}

TEST_F(SaveFilePosixTest, ReplacesTheFileThatALinkLeadsTo)
{
    write("file", "old");
    link("file", "link");
    link("link", "link to link");
    EXPECT_EQ(saveFile(path("link to link"), "contents"), "");
    EXPECT_EQ(contentsOf("file"), "contents");
    EXPECT_TRUE(S_ISREG(statusOf("file").st_mode));
    EXPECT_TRUE(S_ISLNK(statusOf("link").st_mode));
    EXPECT_TRUE(S_ISLNK(statusOf("link to link").st_mode));
}

TEST_F(SaveFilePosixTest, MakesTheFileThatALinkLeadsTo)
{
    link("file", "link");
    EXPECT_EQ(saveFile(path("link"), "contents"), "");
    EXPECT_EQ(contentsOf("file"), "contents");
    EXPECT_TRUE(S_ISLNK(statusOf("link").st_mode));
}

TEST_F(SaveFilePosixTest, RefusesALinkThatLeadsBackToItself)
{
    link("second", "first");
    link("first", "second");
    EXPECT_EQ(saveFile(path("first"), "contents"), "is a link that leads nowhere");
    EXPECT_TRUE(S_ISLNK(statusOf("first").st_mode));
    EXPECT_TRUE(S_ISLNK(statusOf("second").st_mode));
}

TEST_F(SaveFilePosixTest, RefusesALinkToAFolder)
{
    ASSERT_TRUE(QDir(path("")).mkdir("folder"));
    link("folder", "link");
    EXPECT_EQ(saveFile(path("link"), "contents"), "is a directory");
    EXPECT_TRUE(S_ISLNK(statusOf("link").st_mode));
    EXPECT_THAT(names("folder"), IsEmpty());
}

TEST_F(SaveFilePosixTest, KeepsThePermissions)
{
    constexpr mode_t PERMISSIONS = 0777;
    for (const mode_t mode : {mode_t(0600), mode_t(0644), mode_t(0755)}) {
        write("file", "old");
        ASSERT_EQ(chmod(nativePath("file").c_str(), mode), 0);
        EXPECT_EQ(saveFile(path("file"), "contents"), "");
        EXPECT_EQ(statusOf("file").st_mode & PERMISSIONS, mode);
    }
}

TEST_F(SaveFilePosixTest, LeavesWhatMayNotBeWritten)
{
    ASSERT_TRUE(QDir(path("")).mkdir("folder"));
    write("folder/file", "old");
    write("file", "old");
    ASSERT_EQ(chmod(nativePath("folder/file").c_str(), 0666), 0);
    ASSERT_EQ(chmod(nativePath("folder").c_str(), 0555), 0);
    ASSERT_EQ(chmod(nativePath("file").c_str(), 0444), 0);
    ASSERT_EQ(chmod(nativePath("").c_str(), 0777), 0);
    {
        const WithoutRights rights;
        EXPECT_EQ(saveFile(path("folder/file"), "contents"), "Permission denied");
        EXPECT_EQ(saveFile(path("folder/new"), "contents"), "Permission denied");
        EXPECT_THAT(saveFile(path("file"), "contents"), EndsWith("is not writable"));
    }
    EXPECT_EQ(contentsOf("folder/file"), "old");
    EXPECT_EQ(contentsOf("file"), "old");
    EXPECT_THAT(names("folder"), ElementsAre("file"));
}

} // namespace
} // namespace tavo
