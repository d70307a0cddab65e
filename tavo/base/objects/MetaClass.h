#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "tavo/base/Export.h"
#include "tavo/base/objects/ClassProperty.h"

namespace tavo {

class Object;

/// The record of a class at run time: its name, its base class, its properties, and how to make an instance. A class
/// makes and destroys its own record (see ClassRecord.h for the pattern). While it is registered, it can be found by
/// name:
///
///     const MetaClass* const shapeClass = MetaClass::findClass("Shape");
///     Object* const newShape = shapeClass ? shapeClass->newInstance() : nullptr;
///
/// To register a class, call init, registerClass, then addProperty for each property. Doing so again replaces the
/// earlier registration.
class TAVO_BASE_EXPORT MetaClass
{
public:
    using Factory = Object* (*)();

    /// Copies the texts. The factory makes a default-constructed instance, which its caller owns, or returns null
    /// without memory; an abstract class has none. The instance size is in bytes.
    MetaClass(const char* name, const char* description, Factory factory, std::size_t instanceSize);

    MetaClass(const MetaClass&) = delete;
    MetaClass& operator=(const MetaClass&) = delete;

    /// Registers the class under its name, and drops the properties of an earlier registration.
    /// @throws PException If another class is registered under that name. Nothing has changed then.
    virtual void registerClass();

    /// Removes the class and its properties from the registry. Records of derived classes live on without a base class.
    virtual ~MetaClass();

    /// Sets the record of the base class (null for none) and the version, which is written with every object.
    /// @throws PException If `parent` is this class or derived from it.
    void init(const MetaClass* parent, unsigned int version);

    /// Adds a property. A base class may use the same name.
    /// @owns The class owns the property, even if this throws.
    /// @throws PException If the property is null, or the class itself has one of that name.
    void addProperty(ClassProperty* property);

    const char* getName() const { return m_Name.c_str(); }
    const char* getDescription() const { return m_Description.c_str(); }
    const MetaClass* getParent() const { return m_Parent; }
    unsigned int getVersion() const { return m_Version; }
    std::size_t getInstanceSize() const { return m_InstanceSize; }
    bool isAbstract() const { return !m_Factory; }
    bool isRegistered() const { return m_Registered; }

    /// Whether this class is `other` or derived from it.
    bool isDerivedFrom(const MetaClass* other) const;

    /// The properties of the class itself, in the order in which they were added.
    const std::vector<std::unique_ptr<ClassProperty>>& getProperties() const { return m_Properties; }

    /// The class and all its base classes, outermost base first.
    std::vector<const MetaClass*> getLineage() const;

    /// The properties of an instance: those of each class of getLineage.
    std::vector<const ClassProperty*> getAllProperties() const;

    /// Makes a new instance.
    /// @owns The caller owns it.
    /// @throws PException If the class is abstract.
    /// @throws std::bad_alloc Without memory.
    Object* newInstance() const;

    /// The class registered under that name; null if there is none.
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
