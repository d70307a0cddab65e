#include "tavo/base/objects/InputObjectStream.h"

#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>
#include <random>

#include "tavo/base/objects/OutputObjectStream.h"
#include "tests/tavo/base/objects/Shapes.h"
#include "tests/tavo/base/objects/messageOf.h"

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

const std::vector<Card32> FORMER_VALUES = {10, 20, 30, 40};

QByteArray streamOf(const QByteArray& objects)
{
    return R"({"format": "tavo objects", "version": 1, "objects": [)" + objects + "]}";
}

QByteArray objectOf(const QByteArray& className, const QByteArray& parts)
{
    return R"({"class": ")" + className + R"(", "parts": [)" + parts + "]}";
}

QByteArray partOf(const QByteArray& className, const QByteArray& properties)
{
    return R"({"class": ")" + className + R"(", "version": 1000, "properties": {)" + properties + "}}";
}

QByteArray streamOfBox(const QByteArray& parts)
{
    return streamOf(objectOf("Box", parts));
}

QByteArray textOf(const Persistent& object)
{
    OutputObjectStream stream;
    stream.writeObject(object);
    return stream.getText();
}

class InputObjectStreamTest : public testing::Test
{
protected:
    InputObjectStreamTest() { registerShapes(); }

    // Why the text is no stream.
    static std::string faultOf(const QByteArray& text)
    {
        const std::string prefix = "InputObjectStream::InputObjectStream() - file: ";
        const std::string message = messageOf([&] { InputObjectStream(text, "file"); });
        EXPECT_THAT(message, StartsWith(prefix));
        return message.substr(std::min(prefix.size(), message.size()));
    }

    // Why the first object of the text cannot be read into a box. Sees that the box and the stream stay as they are.
    static std::string faultOfBox(const QByteArray& text)
    {
        const std::string prefix = "InputObjectStream::readObject() - file, object 1 of 1: ";
        InputObjectStream stream(text, "file");
        Box box = boxOf(10, 20, 30, 40);
        const std::string message = messageOf([&] { box.read(&stream); });
        EXPECT_THAT(message, StartsWith(prefix));
        EXPECT_EQ(valuesOf(box), FORMER_VALUES);
        EXPECT_FALSE(stream.isAtEnd());
        EXPECT_EQ(messageOf([&] { box.read(&stream); }), message) << "the stream has moved";
        return message.substr(std::min(prefix.size(), message.size()));
    }

    // Why the value cannot be that of m_Width, the property that comes after two good ones.
    static std::string faultOfWidth(const QByteArray& value)
    {
        return faultOfBox(streamOfBox(partOf("Shape", R"("m_Size": 1, "m_Colour": 1)") + ',' +
                                      partOf("Box", R"("m_Colour": 1, "m_Width": )" + value)));
    }

    // Why no object can be made of the first one in the text.
    static std::string faultOfNewObject(const QByteArray& text)
    {
        const std::string prefix = "InputObjectStream::readObject() - file, object 1 of 1: ";
        InputObjectStream stream(text, "file");
        const std::string message = messageOf([&] { stream.readObject(); });
        EXPECT_THAT(message, StartsWith(prefix));
        EXPECT_FALSE(stream.isAtEnd());
        return message.substr(std::min(prefix.size(), message.size()));
    }

    // Reads the text, which may be anything, into a box: either all goes well, or a PException comes and the box is as
    // it was. Whether it went well.
    static bool readsOrLeavesAlone(const QByteArray& text)
    {
        Box box = boxOf(10, 20, 30, 40);
        try {
            InputObjectStream stream(text);
            box.read(&stream);
            return true;
        } catch (const PException& exception) {
            EXPECT_EQ(valuesOf(box), FORMER_VALUES) << exception.getMessage() << "\n" << text.constData();
            EXPECT_THAT(exception.getMessage(), testing::Not(HasSubstr("\n")));
            return false;
        }
    }
};

TEST_F(InputObjectStreamTest, MakesTheObjectsThatWereWritten)
{
    OutputObjectStream output;
    output.writeObject(boxOf(1, 2, 4, 3));
    output.writeObject(Shape());
    InputObjectStream input(output.getText());

    const std::unique_ptr<Persistent> first = input.readObject();
    ASSERT_EQ(first->getInstanceClass(), Box::getClass());
    EXPECT_THAT(valuesOf(dynamic_cast<const Box&>(*first)), ElementsAre(1, 2, 4, 3));
    EXPECT_FALSE(input.isAtEnd());
    EXPECT_EQ(input.readObject()->getInstanceClass(), Shape::getClass());
    EXPECT_TRUE(input.isAtEnd());
}

TEST_F(InputObjectStreamTest, EndsAfterTheLastObject)
{
    InputObjectStream empty(OutputObjectStream().getText(), "file");
    EXPECT_TRUE(empty.isAtEnd());
    const std::string message = "InputObjectStream::readObject() - file, object 1 of 0: there is no such object";
    Box box = boxOf(10, 20, 30, 40);
    EXPECT_EQ(messageOf([&] { empty.readObject(); }), message);
    EXPECT_EQ(messageOf([&] { empty.skipObject(); }), message);
    EXPECT_EQ(messageOf([&] { box.read(&empty); }), message);
    EXPECT_EQ(valuesOf(box), FORMER_VALUES);
}

TEST_F(InputObjectStreamTest, ReadsByNameInAnyOrder)
{
    InputObjectStream stream(streamOfBox(
        partOf("Box", R"("m_Colour": 4, "m_Width": 3)") + ',' + partOf("Shape", R"("m_Colour": 2, "m_Size": 1)")));
    Box box;
    box.read(&stream);
    EXPECT_THAT(valuesOf(box), ElementsAre(1, 2, 3, 4));
}

TEST_F(InputObjectStreamTest, SkipsUnknownProperties)
{
    InputObjectStream stream(streamOfBox(partOf("Shape", R"("m_Size": 7, "m_Depth": {"new": [null]}, "m_Width": -1)") +
                                         ',' + partOf("Removed", R"("m_Size": -1)")));
    Box box = boxOf(10, 20, 30, 40);
    box.read(&stream);
    EXPECT_THAT(valuesOf(box), ElementsAre(7, 20, 30, 40));
}

TEST_F(InputObjectStreamTest, LeavesMissingPropertiesAsTheyAre)
{
    const QByteArray text = streamOfBox(partOf("Box", R"("m_Width": 7)"));
    Box box = boxOf(10, 20, 30, 40);
    InputObjectStream stream(text);
    box.read(&stream);
    EXPECT_THAT(valuesOf(box), ElementsAre(10, 20, 7, 40));

    InputObjectStream sameStream(text);
    const std::unique_ptr<Persistent> fresh = sameStream.readObject();
    EXPECT_THAT(valuesOf(dynamic_cast<const Box&>(*fresh)), ElementsAre(1, 2, 7, 4)) << "the defaults";
}

TEST_F(InputObjectStreamTest, ReadsWhateverTheVersionOfTheClass)
{
    QByteArray text = textOf(boxOf(1, 2, 3, 4));
    ASSERT_TRUE(text.contains("1001"));
    EXPECT_TRUE(readsOrLeavesAlone(text.replace("1001", "2000")));
}

TEST_F(InputObjectStreamTest, RefusesAnObjectOfAnotherClass)
{
    EXPECT_EQ(faultOfBox(textOf(Shape())), "the object is a \"Shape\", not a Box");
    EXPECT_EQ(faultOfBox(streamOf(objectOf("Unknown", ""))), "the object is a \"Unknown\", not a Box");

    Shape base;
    InputObjectStream stream(textOf(boxOf(10, 20, 30, 40)));
    EXPECT_THAT(messageOf([&] { base.read(&stream); }), HasSubstr("the object is a \"Box\", not a Shape"));
    EXPECT_EQ(base.m_Size, 1u);
}

TEST_F(InputObjectStreamTest, RefusesToReadIntoAnUnregisteredClass)
{
    Stranger stranger;
    InputObjectStream stream(streamOf(objectOf("Stranger", "")));
    EXPECT_THAT(messageOf([&] { stranger.read(&stream); }), HasSubstr("the class Stranger is not registered"));
}

TEST_F(InputObjectStreamTest, MakesNoObjectOfAnUnsuitableClass)
{
    EXPECT_EQ(faultOfNewObject(streamOf(objectOf("Unknown", ""))), "the class \"Unknown\" is not known");
    EXPECT_EQ(faultOfNewObject(streamOf(objectOf("Stranger", ""))), "the class \"Stranger\" is not known");
    EXPECT_EQ(faultOfNewObject(streamOf(objectOf("", ""))), "the class \"\" is not known");
    EXPECT_EQ(faultOfNewObject(streamOf(objectOf("Figure", ""))), "the class Figure is abstract");
    EXPECT_EQ(faultOfNewObject(streamOf(objectOf("Persistent", ""))), "the class Persistent is abstract");
    EXPECT_EQ(faultOfNewObject(streamOf(objectOf("Marker", ""))), "the class Marker is not persistent");
}

TEST_F(InputObjectStreamTest, MakesNoObjectOfADamagedRecord)
{
    EXPECT_EQ(faultOfNewObject(streamOfBox(partOf("Box", R"("m_Width": -1)"))), "Box::m_Width: -1 is negative");
}

TEST_F(InputObjectStreamTest, ReadsAnObjectOfAnAbstractClassIntoOneThatExists)
{
    Figure figure;
    InputObjectStream stream(textOf(figure));
    EXPECT_NO_THROW(figure.read(&stream));
}

TEST_F(InputObjectStreamTest, RefusesValuesThatAreNoNumbersOf32Bits)
{
    EXPECT_EQ(faultOfWidth("-1"), "Box::m_Width: -1 is negative");
    EXPECT_EQ(faultOfWidth("1.5"), "Box::m_Width: 1.5 is not a whole number");
    EXPECT_EQ(faultOfWidth("4294967296"), "Box::m_Width: 4294967296 is larger than 4294967295");
    EXPECT_EQ(faultOfWidth("1e300"), "Box::m_Width: 1e+300 is larger than 4294967295");
    EXPECT_EQ(faultOfWidth("\"7\""), "Box::m_Width: \"7\" is not a number");
    EXPECT_EQ(faultOfWidth("true"), "Box::m_Width: true is not a number");
    EXPECT_EQ(faultOfWidth("null"), "Box::m_Width: null is not a number");
    EXPECT_EQ(faultOfWidth("[1, 2]"), "Box::m_Width: [1,2] is not a number");
    EXPECT_EQ(faultOfWidth("{\"a\": 1}"), "Box::m_Width: {\"a\":1} is not a number");
}

TEST_F(InputObjectStreamTest, ShowsValuesShortlyAndOnOneLine)
{
    EXPECT_EQ(faultOfWidth("\"a\\nb\""), "Box::m_Width: \"a\\nb\" is not a number");
    EXPECT_EQ(faultOfWidth('"' + QByteArray(1000, 'x') + '"'),
        "Box::m_Width: \"" + std::string(59, 'x') + "... is not a number");
}

TEST_F(InputObjectStreamTest, TakesAnyWayToWriteAWholeNumber)
{
    InputObjectStream stream(R"({"format": "tavo objects", "version": 1.0, "objects": [)" +
                             objectOf("Box", partOf("Box", R"("m_Width": 7.0, "m_Colour": 2e3)")) + "]}");
    Box box;
    box.read(&stream);
    EXPECT_THAT(valuesOf(box), ElementsAre(1, 2, 7, 2000));
}

TEST_F(InputObjectStreamTest, RefusesRecordsOfAnotherShape)
{
    EXPECT_EQ(faultOfBox(streamOf("7")), "7 is not an object");
    EXPECT_EQ(faultOfBox(streamOf("[\"Box\"]")), "[\"Box\"] is not an object");
    EXPECT_EQ(faultOfBox(streamOf("{}")), "the name of a class is missing");
    EXPECT_EQ(faultOfBox(streamOf(R"({"class": 7})")), "the name of a class is missing");
    EXPECT_EQ(faultOfBox(streamOf(R"({"class": "Box"})")), "there is no list of parts");
    EXPECT_EQ(faultOfBox(streamOf(R"({"class": "Box", "parts": {}})")), "there is no list of parts");
    EXPECT_EQ(faultOfBox(streamOfBox("7")), "7 is not a part");
    EXPECT_EQ(faultOfBox(streamOfBox(R"({"properties": {}})")), "the name of a class is missing");
    EXPECT_EQ(faultOfBox(streamOfBox(R"({"class": "Box"})")), "the part \"Box\" has no properties");
    EXPECT_EQ(faultOfBox(streamOfBox(R"({"class": "Box", "properties": [1]})")), "the part \"Box\" has no properties");
    EXPECT_EQ(faultOfBox(streamOfBox(partOf("Box", "") + ',' + partOf("Box", ""))), "there are two parts \"Box\"");
}

TEST_F(InputObjectStreamTest, SaysWhichObjectIsDamaged)
{
    InputObjectStream stream(streamOf(objectOf("Box", "") + ',' + objectOf("Box", partOf("Box", R"("m_Width": -1)")) +
                                      ',' + objectOf("Shape", "")),
        "scene.json");
    stream.readObject();
    EXPECT_EQ(messageOf([&] { stream.readObject(); }),
        "InputObjectStream::readObject() - scene.json, object 2 of 3: Box::m_Width: -1 is negative");
}

TEST_F(InputObjectStreamTest, PassesOverADamagedObject)
{
    InputObjectStream stream(streamOf("7," + objectOf("Unknown", "") + ',' + objectOf("Shape", "")));
    EXPECT_THROW(stream.readObject(), PException);
    stream.skipObject();
    EXPECT_THROW(stream.readObject(), PException);
    stream.skipObject();
    EXPECT_EQ(stream.readObject()->getInstanceClass(), Shape::getClass());
    EXPECT_TRUE(stream.isAtEnd());
}

TEST_F(InputObjectStreamTest, SaysWhereTheTextIsDamaged)
{
    EXPECT_EQ(faultOf("{\n    \"format\": oops\n}"), "line 2, column 15: illegal number");
    EXPECT_EQ(faultOf("{\n    \"format\": \"tavo objects\",\n    \"\u00e4\u00f6\u00fc\": -\n}"),
        "line 3, column 13: illegal number");
    EXPECT_EQ(faultOf("{\"format\": \"tavo obj"), "line 1, column 21: unterminated string");
    EXPECT_EQ(faultOf(streamOf("") + "}"), "line 1, column 56: garbage at the end of the document");
}

TEST_F(InputObjectStreamTest, RefusesTextWithoutContent)
{
    EXPECT_EQ(faultOf(""), "the text is empty");
    EXPECT_EQ(faultOf(QByteArray()), "the text is empty");
    EXPECT_EQ(faultOf(" \n\t\n"), "the text is empty");
}

TEST_F(InputObjectStreamTest, RefusesTextThatIsNotUtf8)
{
    EXPECT_EQ(faultOf("{\n  \"\xE4\": 1}"), "line 2, column 4: the text is not UTF-8");
    EXPECT_EQ(faultOf(QByteArray("\xFF\xFE{\0", 4)), "line 1, column 1: the text is not UTF-8");
    EXPECT_EQ(faultOf("\x89PNG\r\n"), "line 1, column 1: the text is not UTF-8");
}

TEST_F(InputObjectStreamTest, SkipsAByteOrderMark)
{
    EXPECT_TRUE(readsOrLeavesAlone("\xEF\xBB\xBF" + textOf(Box())));
}

TEST_F(InputObjectStreamTest, DoesNotEndAtAZeroByte)
{
    EXPECT_THAT(faultOf(streamOf("") + '\0'), HasSubstr("garbage at the end"));
    EXPECT_EQ(faultOf(QByteArray(3, '\0')), "line 1, column 2: illegal value");
}

TEST_F(InputObjectStreamTest, RefusesForeignJson)
{
    const std::string foreign = "this is JSON, but not of the format \"tavo objects\"";
    EXPECT_EQ(faultOf("[1, 2]"), foreign);
    EXPECT_EQ(faultOf("{}"), foreign);
    EXPECT_EQ(faultOf(R"({"name": "a package", "version": 1, "objects": []})"), foreign);
    EXPECT_EQ(faultOf(R"({"format": "other objects", "version": 1, "objects": []})"), foreign);
    EXPECT_EQ(faultOf(R"({"format": ["tavo objects"], "version": 1, "objects": []})"), foreign);
}

TEST_F(InputObjectStreamTest, RefusesAnotherVersionOfTheFormat)
{
    EXPECT_EQ(
        faultOf(R"({"format": "tavo objects", "version": 2, "objects": []})"), "the format is of version 2, not 1");
    EXPECT_EQ(faultOf(R"({"format": "tavo objects", "objects": []})"), "the format is of version null, not 1");
}

TEST_F(InputObjectStreamTest, RefusesAStreamWithoutObjects)
{
    EXPECT_EQ(faultOf(R"({"format": "tavo objects", "version": 1})"), "there is no list of objects");
    EXPECT_EQ(faultOf(R"({"format": "tavo objects", "version": 1, "objects": {}})"), "there is no list of objects");
}

TEST_F(InputObjectStreamTest, SurvivesDeepNesting)
{
    EXPECT_THAT(faultOf(QByteArray(1 << 20, '[')), HasSubstr("nested"));
    EXPECT_THAT(faultOf(QByteArray("{\"a\":").repeated(1 << 18)), HasSubstr("nested"));
    const QByteArray nested = QByteArray(1000, '[') + QByteArray(1000, ']');
    EXPECT_THAT(faultOfWidth(nested), HasSubstr("[[[... is not a number"));
}

TEST_F(InputObjectStreamTest, ReadsManyObjects)
{
    constexpr int COUNT = 20000;
    QByteArray objects = (objectOf("Shape", partOf("Shape", R"("m_Size": 7)")) + ',').repeated(COUNT);
    objects.chop(1);
    InputObjectStream stream(streamOf(objects));
    int count = 0;
    while (!stream.isAtEnd()) {
        stream.readObject();
        ++count;
    }
    EXPECT_EQ(count, COUNT);
}

TEST_F(InputObjectStreamTest, RefusesTextBeyondAllMeasure)
{
    EXPECT_EQ(faultOf(QByteArray((16 << 20) + 1, ' ')), "the text is longer than 16777216 bytes");
}

TEST_F(InputObjectStreamTest, ReadsAFile)
{
    const QTemporaryDir folder;
    const std::string path = folder.filePath("b\u00f6x.json").toStdString();
    OutputObjectStream output;
    output.writeObject(boxOf(1, 2, 3, 4));
    output.saveFile(path);

    InputObjectStream input = InputObjectStream::openFile(path);
    Box box;
    box.read(&input);
    EXPECT_THAT(valuesOf(box), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(messageOf([&] { box.read(&input); }), HasSubstr(path + ", object 2 of 1: there is no such object"));
}

TEST_F(InputObjectStreamTest, ReportsAFileThatCannotBeRead)
{
    const QTemporaryDir folder;
    const std::string missing = folder.filePath("missing.json").toStdString();
    EXPECT_THAT(messageOf([&] { InputObjectStream::openFile(missing); }),
        StartsWith("InputObjectStream::openFile() - " + missing + ": "));
    const std::string path = folder.path().toStdString();
    EXPECT_THAT(messageOf([&] { InputObjectStream::openFile(path); }),
        StartsWith("InputObjectStream::openFile() - " + path + ": "));

    QFile file(folder.filePath("empty.json"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(messageOf([&] { InputObjectStream::openFile(file.fileName().toStdString()); }),
        "InputObjectStream::InputObjectStream() - " + file.fileName().toStdString() + ": the text is empty");
}

TEST_F(InputObjectStreamTest, ReadsNothingFromATruncatedStream)
{
    // Without the line break at its end, of which nothing hangs.
    const QByteArray text = textOf(boxOf(1, 2, 3, 4)).trimmed();
    for (int size = 0; size < text.size(); ++size)
        EXPECT_FALSE(readsOrLeavesAlone(text.left(size))) << "cut after " << size << " bytes";
    EXPECT_TRUE(readsOrLeavesAlone(text));
}

TEST_F(InputObjectStreamTest, LeavesTheObjectAloneWhateverByteIsWrong)
{
    const QByteArray text = textOf(boxOf(1, 2, 3, 4));
    for (int position = 0; position < text.size(); ++position)
        for (int bit = 0; bit < 8; ++bit) {
            QByteArray damaged = text;
            damaged[position] = static_cast<char>(damaged[position] ^ (1 << bit));
            readsOrLeavesAlone(damaged);
        }
}

TEST_F(InputObjectStreamTest, LeavesTheObjectAloneWhateverIsWrong)
{
    const QByteArray text = textOf(boxOf(1, 2, 3, 4));
    std::mt19937 random(20090317);
    const auto below = [&](int end) { return static_cast<int>(random() % static_cast<unsigned int>(end)); };
    int numFailures = 0;
    for (int i = 0; i < 10000; ++i) {
        QByteArray damaged = text;
        for (int n = 1 + below(4); n > 0; --n)
            switch (below(4)) {
            case 0: damaged[below(damaged.size())] = static_cast<char>(random()); break;
            case 1: damaged.insert(below(damaged.size()), text.mid(below(text.size()), below(40))); break;
            case 2: damaged.remove(below(damaged.size() - 40), below(40)); break;
            default: damaged[below(damaged.size())] = "{}[]\",:-.0123456789e"[below(20)]; break;
            }
        numFailures += !readsOrLeavesAlone(damaged);
    }
    EXPECT_GT(numFailures, 5000);
}

} // namespace
} // namespace tavo
