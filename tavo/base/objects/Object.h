#pragma once

#include "tavo/base/Export.h"
#include "tavo/base/objects/Card32.h"

namespace tavo {

class CopyContext;
class MetaClass;

// The base of everything that has a class at run time. Assigning, comparing, hashing and copying go through the
// properties that the object's class has registered, inherited ones first, so that a class that registers its fields
// needs no code of its own for them. Fields that are not registered take no part.
//
// A class overrides getInstanceClass and has a getClass, an init and a shutdown of the pattern of ClassRecord.h. An
// object must not be used any more once its class record is destroyed.
class TAVO_BASE_EXPORT Object
{
public:
    // The class record of the object's own class.
    virtual const MetaClass* getInstanceClass() const;

    // Takes over the properties of other, an object of this object's class or of one derived from it, as far as this
    // object has them too. Throws PException, and changes nothing, if other is null or of another class, or if this
    // object's class is not registered. The context is the one of the copy operation that this is part of, or null.
    virtual void assign(const Object* other, CopyContext* context);

    // Whether other is of the very same class and all properties are equal. Null equals nothing. Throws PException if
    // the class is not registered.
    virtual bool equal(const Object* other) const;

    // A hash of the properties, the same for equal objects and in every run of the program. Throws PException if the
    // class is not registered.
    virtual Card32 getFieldsHashValue() const;

    // A new object of the same class with the same properties; it belongs to the caller. Within one context (null for
    // none) an object is copied once: asked again, it answers with the copy it has made. Throws PException if the class
    // is abstract or not registered.
    virtual Object* copy(CopyContext* context) const;

    virtual ~Object();

    // The class record, registered, without a factory.
    static const MetaClass* getClass();

protected:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
};

} // namespace tavo
