#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "tavo/base/objects/OutputObjectStream.h"
#include "tests/support/fullDevice.h"
#include "tests/support/linux/FileSizeLimit.h"
#include "tests/tavo/base/objects/Shapes.h"
#include "tests/tavo/base/objects/messageOf.h"

namespace tavo {
namespace {

class OutputObjectStreamPosixTest : public testing::Test
{
protected:
    OutputObjectStreamPosixTest()
    {
        registerShapes();
        for (int i = 0; i < 200; ++i)
            m_Stream.writeObject(Shape());
    }

    std::string path(const char* name) const { return m_Folder.filePath(name).toStdString(); }

    OutputObjectStream m_Stream;

private:
    QTemporaryDir m_Folder;
};

TEST_F(OutputObjectStreamPosixTest, LeavesTheOldFileWhereTheNewOneCannotBeWrittenToItsEnd)
{
    QFile file(QString::fromStdString(path("settings.json")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("old");
    file.close();

    constexpr int LIMIT = 12288;
    ASSERT_GT(m_Stream.getText().size(), LIMIT);
    const std::string message = messageOf([&] {
        const FileSizeLimit limit(LIMIT);
        m_Stream.saveFile(path("settings.json"));
    });
    EXPECT_EQ(message, "OutputObjectStream::saveFile() - " + path("settings.json") + ": File too large");
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "old");
}

TEST_F(OutputObjectStreamPosixTest, RefusesADevice)
{
    if (!makeFullDevice(path("device")))
        GTEST_SKIP() << "this process may not make a device node";
    EXPECT_EQ(messageOf([&] { m_Stream.saveFile(path("device")); }),
        "OutputObjectStream::saveFile() - " + path("device") + ": is not a regular file");
}

} // namespace
} // namespace tavo
