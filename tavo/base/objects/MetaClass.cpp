#include "tavo/base/objects/MetaClass.h"

#include <algorithm>
#include <new>

#include "tavo/base/objects/PException.h"

namespace tavo {

namespace {

// All records that exist. The list itself is never destroyed, so that static objects may hold and destroy records.
std::vector<MetaClass*>& records()
{
    static auto* const theRecords = new std::vector<MetaClass*>;
    return *theRecords;
}

} // namespace

MetaClass::MetaClass(const char* name, const char* description, Factory factory, std::size_t instanceSize)
    : m_Name(name)
    , m_Description(description)
    , m_Factory(factory)
    , m_InstanceSize(instanceSize)
    , m_Parent(nullptr)
    , m_Version(0)
    , m_Registered(false)
{
    records().push_back(this);
}

MetaClass::~MetaClass()
{
    std::erase(records(), this);
    for (MetaClass* record : records())
        if (record->m_Parent == this)
            record->m_Parent = nullptr;
}

void MetaClass::init(const MetaClass* parent, unsigned int version)
{
    if (parent && parent->isDerivedFrom(this))
        throw PException("MetaClass::init() - the class " + m_Name + " cannot be derived from itself");
    m_Parent = parent;
    m_Version = version;
}

void MetaClass::registerClass()
{
    const MetaClass* const namesake = findClass(m_Name);
    if (namesake && namesake != this)
        throw PException("MetaClass::registerClass() - another class is registered as " + m_Name);
    m_Properties.clear();
    m_Registered = true;
}

void MetaClass::addProperty(ClassProperty* property)
{
    std::unique_ptr<ClassProperty> added(property);
    if (!added)
        throw PException("MetaClass::addProperty() - no property to add to the class " + m_Name);
    const bool known = std::any_of(m_Properties.begin(), m_Properties.end(),
        [&](const auto& ownProperty) { return ownProperty->getName() == added->getName(); });
    if (known)
        throw PException(
            "MetaClass::addProperty() - the class " + m_Name + " already has a property " + added->getName());
    m_Properties.push_back(std::move(added));
}

bool MetaClass::isDerivedFrom(const MetaClass* other) const
{
    const MetaClass* ancestor = this;
    while (ancestor && ancestor != other)
        ancestor = ancestor->m_Parent;
    return ancestor;
}

std::vector<const MetaClass*> MetaClass::getLineage() const
{
    std::vector<const MetaClass*> lineage;
    for (const MetaClass* ancestor = this; ancestor; ancestor = ancestor->m_Parent)
        lineage.push_back(ancestor);
    std::reverse(lineage.begin(), lineage.end());
    return lineage;
}

std::vector<const ClassProperty*> MetaClass::getAllProperties() const
{
    std::vector<const ClassProperty*> properties;
    for (const MetaClass* ancestor : getLineage())
        for (const auto& property : ancestor->m_Properties)
            properties.push_back(property.get());
    return properties;
}

Object* MetaClass::newInstance() const
{
    if (isAbstract())
        throw PException("MetaClass::newInstance() - the class " + m_Name + " is abstract");
    Object* const instance = m_Factory();
    if (!instance)
        throw std::bad_alloc();
    return instance;
}

const MetaClass* MetaClass::findClass(const std::string& name)
{
    const auto found = std::find_if(records().begin(), records().end(),
        [&](const MetaClass* record) { return record->m_Registered && record->m_Name == name; });
    return found != records().end() ? *found : nullptr;
}

} // namespace tavo
