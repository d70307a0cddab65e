#include "tavo/base/objects/OutputObjectStream.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "tavo/base/files/saveFile.h"
#include "tavo/base/objects/MetaClass.h"
#include "tavo/base/objects/ObjectStreamFormat.h"
#include "tavo/base/objects/PException.h"
#include "tavo/base/objects/Persistent.h"

namespace tavo {

using namespace object_stream;

namespace {

QJsonObject partOf(const Object& object, const MetaClass& partClass)
{
    QJsonObject properties;
    for (const auto& property : partClass.getProperties())
        properties.insert(QString::fromStdString(property->getName()), property->write(object));
    return {
        {CLASS_KEY, partClass.getName()},
        {VERSION_KEY, qint64{partClass.getVersion()}},
        {PROPERTIES_KEY, properties},
    };
}

} // namespace

void OutputObjectStream::writeObject(const Persistent& object)
{
    const MetaClass& instanceClass = *object.getInstanceClass();
    if (!instanceClass.isRegistered())
        throw PException(std::string("OutputObjectStream::writeObject() - the class ") + instanceClass.getName() +
                         " is not registered");
    QJsonArray parts;
    for (const MetaClass* partClass : instanceClass.getLineage())
        if (!partClass->getProperties().empty())
            parts.append(partOf(object, *partClass));
    m_Objects.append(QJsonObject{{CLASS_KEY, instanceClass.getName()}, {PARTS_KEY, parts}});
}

QByteArray OutputObjectStream::getText() const
{
    const QJsonObject stream{{FORMAT_KEY, FORMAT}, {VERSION_KEY, VERSION}, {OBJECTS_KEY, m_Objects}};
    return QJsonDocument(stream).toJson();
}

void OutputObjectStream::saveFile(const std::string& path) const
{
    if (const std::string error = tavo::saveFile(QString::fromStdString(path), getText()); !error.empty())
        throw PException("OutputObjectStream::saveFile() - " + path + ": " + error);
}

} // namespace tavo
