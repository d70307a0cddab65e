#include "tavo/base/objects/InputObjectStream.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <utility>

#include "tavo/base/objects/MetaClass.h"
#include "tavo/base/objects/ObjectStreamFormat.h"
#include "tavo/base/objects/PException.h"
#include "tavo/base/objects/Persistent.h"

namespace tavo {

using namespace object_stream;

namespace {

// Far more than any settings need, and little enough to be held in memory several times over.
constexpr int MAX_TEXT_SIZE = 16 << 20;

// A value of the text as messages show it: on one line, and not too long.
std::string shown(const QJsonValue& value)
{
    constexpr int MAX_LENGTH = 60;
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    // The one control character that JSON leaves as it is.
    const QString text = QString::fromUtf8(list.mid(1, list.size() - 2)).replace(QChar(0x7F), "\\u007f");
    return (text.size() <= MAX_LENGTH ? text : text.left(MAX_LENGTH) + "...").toStdString();
}

QByteArray withoutByteOrderMark(const QByteArray& text)
{
    return text.startsWith("\xEF\xBB\xBF") ? text.mid(3) : text;
}

// With its size, or the text would end at a zero byte.
QString decoded(const QByteArray& utf8)
{
    return QString::fromUtf8(utf8.constData(), utf8.size());
}

// Where in the text a byte lies, as people count lines and characters.
std::string placeOf(const QByteArray& text, std::ptrdiff_t offset)
{
    const QByteArray before = text.left(static_cast<int>(offset));
    const QByteArray line = before.mid(before.lastIndexOf('\n') + 1);
    return "line " + std::to_string(before.count('\n') + 1) + ", column " +
           std::to_string(decoded(line).toUcs4().size() + 1);
}

// Each of these says why the text cannot be read, and is empty if there is no reason.

std::string faultOfText(const QByteArray& text)
{
    if (text.size() > MAX_TEXT_SIZE)
        return "the text is longer than " + std::to_string(MAX_TEXT_SIZE) + " bytes";
    if (text.trimmed().isEmpty())
        return "the text is empty";
    const QByteArray utf8 = decoded(text).toUtf8();
    const auto [fault, unused] = std::mismatch(text.begin(), text.end(), utf8.begin(), utf8.end());
    if (fault != text.end())
        return placeOf(text, fault - text.begin()) + ": the text is not UTF-8";
    return {};
}

std::string faultOfSyntax(const QByteArray& text, const QJsonParseError& error)
{
    if (error.error == QJsonParseError::NoError)
        return {};
    return placeOf(text, error.offset) + ": " + error.errorString().toStdString();
}

std::string faultOfStream(const QJsonObject& stream)
{
    if (stream.value(FORMAT_KEY) != QJsonValue(FORMAT))
        return std::string("this is JSON, but not of the format \"") + FORMAT + '"';
    if (stream.value(VERSION_KEY) != QJsonValue(VERSION))
        return "the format is of version " + shown(stream.value(VERSION_KEY)) + ", not " + std::to_string(VERSION);
    if (!stream.value(OBJECTS_KEY).isArray())
        return "there is no list of objects";
    return {};
}

} // namespace

InputObjectStream::InputObjectStream(const QByteArray& text, std::string name)
    : m_Name(std::move(name))
    , m_Position(0)
{
    const auto stopAt = [this](const std::string& fault) {
        if (!fault.empty())
            throw PException("InputObjectStream::InputObjectStream() - " + m_Name + ": " + fault);
    };
    const QByteArray utf8 = withoutByteOrderMark(text);
    stopAt(faultOfText(utf8));
    QJsonParseError error;
    const QJsonObject stream = QJsonDocument::fromJson(utf8, &error).object();
    stopAt(faultOfSyntax(utf8, error));
    stopAt(faultOfStream(stream));
    m_Objects = stream.value(OBJECTS_KEY).toArray();
}

InputObjectStream InputObjectStream::openFile(const std::string& path)
{
    QFile file(QString::fromStdString(path));
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.read(MAX_TEXT_SIZE + 1) : QByteArray();
    if (file.error() != QFileDevice::NoError)
        throw PException("InputObjectStream::openFile() - " + path + ": " + file.errorString().toStdString());
    return InputObjectStream(text, path);
}

std::unique_ptr<Persistent> InputObjectStream::readObject()
{
    const std::string className = getClassName(getNextRecord());
    const MetaClass* const instanceClass = MetaClass::findClass(className);
    if (!instanceClass)
        fail("the class " + shown(QString::fromStdString(className)) + " is not known");
    if (instanceClass->isAbstract())
        fail("the class " + className + " is abstract");
    std::unique_ptr<Object> instance(instanceClass->newInstance());
    auto* const object = dynamic_cast<Persistent*>(instance.get());
    if (!object)
        fail("the class " + className + " is not persistent");
    object->read(this);
    static_cast<void>(instance.release());
    return std::unique_ptr<Persistent>(object);
}

void InputObjectStream::readObject(Persistent& object)
{
    const MetaClass& instanceClass = *object.getInstanceClass();
    const QJsonObject record = getNextRecord();
    const std::string className = getClassName(record);
    if (!instanceClass.isRegistered())
        fail(std::string("the class ") + instanceClass.getName() + " is not registered");
    if (className != instanceClass.getName())
        fail("the object is a " + shown(QString::fromStdString(className)) + ", not a " + instanceClass.getName());

    // All or nothing: what has a fault shows before the first value is set.
    const std::vector<std::pair<const ClassProperty*, QJsonValue>> values = getValues(record, instanceClass);
    for (const auto& [property, value] : values)
        property->read(object, value);
    ++m_Position;
}

void InputObjectStream::skipObject()
{
    if (isAtEnd())
        fail("there is no such object");
    ++m_Position;
}

QJsonObject InputObjectStream::getNextRecord() const
{
    if (isAtEnd())
        fail("there is no such object");
    const QJsonValue record = m_Objects.at(m_Position);
    if (!record.isObject())
        fail(shown(record) + " is not an object");
    return record.toObject();
}

std::string InputObjectStream::getClassName(const QJsonObject& recordOrPart) const
{
    const QJsonValue name = recordOrPart.value(CLASS_KEY);
    if (!name.isString())
        fail("the name of a class is missing");
    return name.toString().toStdString();
}

std::vector<std::pair<const ClassProperty*, QJsonValue>> InputObjectStream::getValues(
    const QJsonObject& record, const MetaClass& instanceClass) const
{
    std::map<std::string, QJsonObject> parts = getParts(record);
    std::vector<std::pair<const ClassProperty*, QJsonValue>> values;
    for (const MetaClass* partClass : instanceClass.getLineage()) {
        const QJsonObject& properties = parts[partClass->getName()];
        for (const auto& property : partClass->getProperties()) {
            const QJsonValue value = properties.value(QString::fromStdString(property->getName()));
            if (value.isUndefined())
                continue;
            const std::string fault = property->getFault(value);
            if (!fault.empty())
                fail(partClass->getName() + ("::" + property->getName()) + ": " + shown(value) + ' ' + fault);
            values.emplace_back(property.get(), value);
        }
    }
    return values;
}

std::map<std::string, QJsonObject> InputObjectStream::getParts(const QJsonObject& record) const
{
    if (!record.value(PARTS_KEY).isArray())
        fail("there is no list of parts");
    std::map<std::string, QJsonObject> parts;
    for (const QJsonValue part : record.value(PARTS_KEY).toArray()) {
        if (!part.isObject())
            fail(shown(part) + " is not a part");
        const std::string partName = getClassName(part.toObject());
        const QJsonValue properties = part.toObject().value(PROPERTIES_KEY);
        if (!properties.isObject())
            fail("the part " + shown(QString::fromStdString(partName)) + " has no properties");
        if (!parts.emplace(partName, properties.toObject()).second)
            fail("there are two parts " + shown(QString::fromStdString(partName)));
    }
    return parts;
}

void InputObjectStream::fail(const std::string& reason) const
{
    throw PException("InputObjectStream::readObject() - " + m_Name + ", object " + std::to_string(m_Position + 1) +
                     " of " + std::to_string(m_Objects.size()) + ": " + reason);
}

} // namespace tavo
