#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tavo/base/Export.h"

class QJsonObject;

namespace tavo {

class ClassProperty;
class MetaClass;
class Persistent;

/// Reads back the objects of an OutputObjectStream, one after the other. It trusts nothing in the text: what is
/// damaged, missing or of another format ends in a PException that says where and why. An operation that fails leaves
/// the stream at the object where it was.
///
///     InputObjectStream stream = InputObjectStream::openFile("shapes.json");
///     std::vector<std::unique_ptr<Persistent>> shapes;
///     while (!stream.isAtEnd())
///         shapes.push_back(stream.readObject());
class TAVO_BASE_EXPORT InputObjectStream
{
public:
    /// Begins to read UTF-8 text; a byte order mark is skipped. Messages name the text by `name`, which may be a
    /// file's. The objects are looked at only when they are read.
    /// @throws PException If the text is not that of an object stream.
    explicit InputObjectStream(const QByteArray& text, std::string name = "text");

    /// Begins to read a file. Messages name it by its path.
    /// @throws PException If it cannot be read or holds no object stream.
    static InputObjectStream openFile(const std::string& path);

    /// Whether all objects have been read.
    bool isAtEnd() const { return m_Position >= m_Objects.size(); }

    /// Makes the next object, of whatever class it has, and reads it.
    /// @throws PException If there is none, its class is not registered, abstract or not persistent, or the object is
    /// damaged.
    std::unique_ptr<Persistent> readObject();

    /// Reads the next object into this one (see Persistent::read).
    void readObject(Persistent& object);

    /// Skips the next object.
    /// @throws PException If there is none.
    void skipObject();

private:
    QJsonObject getNextRecord() const;
    std::string getClassName(const QJsonObject& recordOrPart) const;

    // The values that the record has for properties of the class, without a fault, inherited ones first.
    std::vector<std::pair<const ClassProperty*, QJsonValue>> getValues(
        const QJsonObject& record, const MetaClass& instanceClass) const;

    // The properties that the record has of each class, by the name of that class.
    std::map<std::string, QJsonObject> getParts(const QJsonObject& record) const;

    [[noreturn]] void fail(const std::string& reason) const;

    std::string m_Name;
    QJsonArray m_Objects;
    int m_Position;
};

} // namespace tavo
