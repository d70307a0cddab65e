#pragma once

#include <QJsonValue>
#include <string>

#include "tavo/base/Export.h"
#include "tavo/base/objects/Card32.h"

namespace tavo {

class Object;

/// A named value that every object of a class has. Objects are assigned, compared, hashed, written, read and shown
/// through the properties of their class.
///
///     #include <tavo/base/debug/DebugOutput.h>
///
///     for (const ClassProperty* property : object.getInstanceClass()->getAllProperties())
///         debugOutput << property->getName() << " = " << property->getText(object) << "\n";
///
/// The operations take objects of the property's class or of one derived from it. They cannot check this.
class TAVO_BASE_EXPORT ClassProperty
{
public:
    /// Copies the name. The version is that of the class which first had the property. The flags mean what the
    /// application wants them to mean.
    ClassProperty(const char* name, unsigned int version, unsigned int flags);
    virtual ~ClassProperty();

    ClassProperty(const ClassProperty&) = delete;
    ClassProperty& operator=(const ClassProperty&) = delete;

    const std::string& getName() const { return m_Name; }
    unsigned int getVersion() const { return m_Version; }
    unsigned int getFlags() const { return m_Flags; }

    /// Sets the property of `object` to that of `source`.
    virtual void assign(Object& object, const Object& source) const = 0;

    /// Whether the property has the same value in both objects.
    virtual bool equal(const Object& a, const Object& b) const = 0;

    /// The same for equal values.
    virtual Card32 getHashValue(const Object& object) const = 0;

    /// The value as shown to people.
    virtual std::string getText(const Object& object) const = 0;

    /// The value as JSON, for read().
    virtual QJsonValue write(const Object& object) const = 0;

    /// What is wrong with this value, as the end of a sentence that begins with it ("is negative"). Empty if the
    /// property can take it.
    virtual std::string getFault(const QJsonValue& value) const = 0;

    /// Sets the property to a value without a fault.
    virtual void read(Object& object, const QJsonValue& value) const = 0;

private:
    std::string m_Name;
    unsigned int m_Version;
    unsigned int m_Flags;
};

} // namespace tavo
