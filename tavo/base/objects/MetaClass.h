#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "tavo/base/Export.h"
#include "tavo/base/objects/ClassProperty.h"

namespace tavo {

class Object;

// The record of a class at run time: its name, its base class, how to make an instance, and its properties. A record is
// made and destroyed by its class (see ClassRecord.h for the pattern); it can be found by name while it is registered.
//
// To register a class: init, then registerClass, then addProperty for each property. Doing so again replaces what was
// registered before.
class TAVO_BASE_EXPORT MetaClass
{
public:
    using Factory = Object* (*)();

    // The texts are copied. The factory makes a default-constructed instance that belongs to who called it, or gives
    // null when there is no memory; an abstract class has none. The instance size is in bytes.
    MetaClass(const char* name, const char* description, Factory factory, std::size_t instanceSize);

    MetaClass(const MetaClass&) = delete;
    MetaClass& operator=(const MetaClass&) = delete;

    // Completes the registration: drops the properties of an earlier one and enters the class under its name. Throws
    // PException, and changes nothing, if another class is registered under that name.
    virtual void registerClass();

    // Takes the class out of the registry, and its properties with it. Records of derived classes may live on; they
    // have no base class then.
    virtual ~MetaClass();

    // Sets the record of the base class, null for none, and the version of the class, which is written along with its
    // objects. Throws PException if parent is this class or derived from it.
    void init(const MetaClass* parent, unsigned int version);

    // Adds a property, which belongs to the class from the call on. Throws PException if it is null or the class has
    // one of that name; a name that a base class uses is free.
    void addProperty(ClassProperty* property);

    const char* getName() const { return m_Name.c_str(); }
    const char* getDescription() const { return m_Description.c_str(); }
    const MetaClass* getParent() const { return m_Parent; }
    unsigned int getVersion() const { return m_Version; }
    std::size_t getInstanceSize() const { return m_InstanceSize; }
    bool isAbstract() const { return !m_Factory; }
    bool isRegistered() const { return m_Registered; }

    // Whether this class is other or derived from it.
    bool isDerivedFrom(const MetaClass* other) const;

    // The properties of the class itself, in the order in which they were added.
    const std::vector<std::unique_ptr<ClassProperty>>& getProperties() const { return m_Properties; }

    // The class and all its base classes, from the outermost base down.
    std::vector<const MetaClass*> getLineage() const;

    // The properties of an instance: those of getProperties for each class of getLineage.
    std::vector<const ClassProperty*> getAllProperties() const;

    // A new instance, which belongs to the caller. Throws PException if the class is abstract, std::bad_alloc if there
    // is no memory.
    Object* newInstance() const;

    // The class that is registered under that name, or null.
    static const MetaClass* findClass(const std::string& name);

private:
    std::string m_Name;
    std::string m_Description;
    Factory m_Factory;
    std::size_t m_InstanceSize;
    const MetaClass* m_Parent;
    unsigned int m_Version;
    bool m_Registered;
    std::vector<std::unique_ptr<ClassProperty>> m_Properties;
};

} // namespace tavo
