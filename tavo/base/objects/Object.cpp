#include "tavo/base/objects/Object.h"

#include <algorithm>
#include <memory>

#include "tavo/base/objects/ClassRecord.h"
#include "tavo/base/objects/CopyContext.h"
#include "tavo/base/objects/PException.h"

namespace tavo {

namespace {

// The properties of the object's class; none are known before it is registered, and its objects would seem to be empty.
std::vector<const ClassProperty*> propertiesOf(const Object& object, const char* operation)
{
    const MetaClass* const instanceClass = object.getInstanceClass();
    if (!instanceClass->isRegistered())
        throw PException(
            std::string("Object::") + operation + "() - the class " + instanceClass->getName() + " is not registered");
    return instanceClass->getAllProperties();
}

} // namespace

Object::~Object() = default;

const MetaClass* Object::getClass()
{
    static MetaClass* objectMetaClass = nullptr;
    if (!objectMetaClass)
        initClassRecord(createClassRecord<Object>(objectMetaClass, "Object", nullptr), nullptr, 1000);
    return objectMetaClass;
}

const MetaClass* Object::getInstanceClass() const
{
    return getClass();
}

void Object::assign(const Object* other, CopyContext*)
{
    const std::vector<const ClassProperty*> properties = propertiesOf(*this, "assign");
    if (!other)
        throw PException("Object::assign() - there is no object to assign");
    const MetaClass* const otherClass = other->getInstanceClass();
    if (!otherClass->isDerivedFrom(getInstanceClass()))
        throw PException(std::string("Object::assign() - a ") + otherClass->getName() + " cannot be assigned to a " +
                         getInstanceClass()->getName());
    for (const ClassProperty* property : properties)
        property->assign(*this, *other);
}

bool Object::equal(const Object* other) const
{
    const std::vector<const ClassProperty*> properties = propertiesOf(*this, "equal");
    if (!other || other->getInstanceClass() != getInstanceClass())
        return false;
    return std::all_of(properties.begin(), properties.end(),
        [&](const ClassProperty* property) { return property->equal(*this, *other); });
}

Card32 Object::getFieldsHashValue() const
{
    // FNV-1a, a whole value at a time.
    Card32 hash = 2166136261U;
    for (const ClassProperty* property : propertiesOf(*this, "getFieldsHashValue"))
        hash = (hash ^ property->getHashValue(*this)) * 16777619U;
    return hash;
}

Object* Object::copy(CopyContext* context) const
{
    if (Object* const known = context ? context->findCopy(this) : nullptr)
        return known;
    std::unique_ptr<Object> copy(getInstanceClass()->newInstance());
    // Before its properties, which may lead back to this object.
    if (context)
        context->addCopy(this, copy.get());
    copy->assign(this, context);
    return copy.release();
}

} // namespace tavo
