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

// Reads back the objects of an OutputObjectStream, one after the other. Nothing in the text is trusted: whatever is
// damaged, missing or of another format ends in a PException that says where and why. An operation that fails leaves
// the stream at the object at which it was.
class TAVO_BASE_EXPORT InputObjectStream
{
public:
    // The text is UTF-8; a byte order mark at its start is skipped. The name, say that of a file, begins the place that
    // messages give. Throws PException if the text is not that of an object stream; of the objects in it nothing is
    // looked at yet.
    explicit InputObjectStream(const QByteArray& text, std::string name = "text");

    // The stream that the file holds, under the file's path as its name.
    static InputObjectStream openFile(const std::string& path);

    // Whether all objects have been read.
    bool isAtEnd() const { return m_Position >= m_Objects.size(); }

    // Makes an object of the class that the next object has and reads it. Throws PException if there is none, its class
    // is not registered, abstract or not persistent, or the object is damaged.
    std::unique_ptr<Persistent> readObject();

    // Reads the next object into this one, as Persistent::read says.
    void readObject(Persistent& object);

    // Passes over the next object. Throws PException if there is none.
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
