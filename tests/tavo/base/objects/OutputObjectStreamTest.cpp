#include "tavo/base/objects/OutputObjectStream.h"

#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include "tests/tavo/base/objects/Shapes.h"
#include "tests/tavo/base/objects/messageOf.h"

namespace tavo {
namespace {

class OutputObjectStreamTest : public testing::Test
{
protected:
    OutputObjectStreamTest() { registerShapes(); }

    OutputObjectStream m_Stream;
};

TEST_F(OutputObjectStreamTest, WritesTextThatAPersonCanRead)
{
    m_Stream.writeObject(boxOf(10, 20, 30, 4294967295));
    m_Stream.writeObject(Shape());
    EXPECT_EQ(m_Stream.getText().toStdString(), R"({
    "format": "tavo objects",
    "objects": [
        {
            "class": "Box",
            "parts": [
                {
                    "class": "Shape",
                    "properties": {
                        "m_Colour": 20,
                        "m_Size": 10
                    },
                    "version": 1000
                },
                {
                    "class": "Box",
                    "properties": {
                        "m_Colour": 4294967295,
                        "m_Width": 30
                    },
                    "version": 1001
                }
            ]
        },
        {
            "class": "Shape",
            "parts": [
                {
                    "class": "Shape",
                    "properties": {
                        "m_Colour": 2,
                        "m_Size": 1
                    },
                    "version": 1000
                }
            ]
        }
    ],
    "version": 1
}
)");
}

TEST_F(OutputObjectStreamTest, MayHoldNothing)
{
    EXPECT_EQ(m_Stream.getText().toStdString(), R"({
    "format": "tavo objects",
    "objects": [
    ],
    "version": 1
}
)");
}

TEST_F(OutputObjectStreamTest, WritesAnObjectAsItIsAtThatMoment)
{
    Shape shape;
    shape.write(&m_Stream);
    const QByteArray before = m_Stream.getText();
    shape.m_Size = 2;
    EXPECT_EQ(m_Stream.getText(), before);
}

TEST_F(OutputObjectStreamTest, RefusesAnObjectOfAnUnregisteredClass)
{
    const QByteArray before = m_Stream.getText();
    EXPECT_EQ(messageOf([&] { m_Stream.writeObject(Stranger()); }),
        "OutputObjectStream::writeObject() - the class Stranger is not registered");
    EXPECT_EQ(m_Stream.getText(), before);
}

TEST_F(OutputObjectStreamTest, SavesAFileInPlaceOfTheOld)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("settings.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(10000, 'x'));
    file.close();

    m_Stream.writeObject(Shape());
    m_Stream.saveFile(file.fileName().toStdString());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), m_Stream.getText());
}

TEST_F(OutputObjectStreamTest, ReportsAFileThatCannotBeSaved)
{
    const QTemporaryDir folder;
    const std::string path = folder.filePath("missing/settings.json").toStdString();
    EXPECT_THAT(messageOf([&] { m_Stream.saveFile(path); }),
        testing::StartsWith("OutputObjectStream::saveFile() - " + path + ": "));
}

} // namespace
} // namespace tavo
