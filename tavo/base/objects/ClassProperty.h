#pragma once

#include <QJsonValue>
#include <string>

#include "tavo/base/Export.h"
#include "tavo/base/objects/Card32.h"

namespace tavo {

class Object;

// A named value that every object of a class has. Objects are assigned, compared, hashed, written, read and shown
// through the properties of their class.
//
// The operations take objects of the class that the property belongs to, or of one derived from it; they cannot check
// it.
class TAVO_BASE_EXPORT ClassProperty
{
public:
    // The name is copied. The version is that of the class since which it has the property. The flags are kept for the
    // application, which gives them their meaning.
    ClassProperty(const char* name, unsigned int version, unsigned int flags);
    virtual ~ClassProperty();

    ClassProperty(const ClassProperty&) = delete;
    ClassProperty& operator=(const ClassProperty&) = delete;

    const std::string& getName() const { return m_Name; }
    unsigned int getVersion() const { return m_Version; }
    unsigned int getFlags() const { return m_Flags; }

    virtual void assign(Object& object, const Object& source) const = 0;
    virtual bool equal(const Object& a, const Object& b) const = 0;
    virtual Card32 getHashValue(const Object& object) const = 0;

    // The value as a person is shown it.
    virtual std::string getText(const Object& object) const = 0;

    virtual QJsonValue write(const Object& object) const = 0;

    // What keeps the property from taking this value, as the end of a sentence that begins with the value ("is
    // negative"); empty if nothing does.
    virtual std::string getFault(const QJsonValue& value) const = 0;

    // Sets the property to a value that has no fault.
    virtual void read(Object& object, const QJsonValue& value) const = 0;

private:
    std::string m_Name;
    unsigned int m_Version;
    unsigned int m_Flags;
};

} // namespace tavo
