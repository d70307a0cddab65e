#pragma once

#include "tavo/base/Export.h"
#include "tavo/base/objects/Card32.h"

namespace tavo {

class CopyContext;
class MetaClass;

/// The base of everything that has a class at run time. Assigning, comparing, hashing and copying go through the
/// registered properties, inherited ones first, so a class that registers its fields needs no code of its own. Fields
/// that are not registered are left out.
///
///     Object* const copy = object.copy(nullptr);
///     const bool same = copy->equal(&object); // true
///     delete copy;
///
/// A class of your own overrides getInstanceClass and follows the pattern of ClassRecord.h. Do not use an object after
/// its class record has been destroyed.
class TAVO_BASE_EXPORT Object
{
public:
    /// The record of the object's own class.
    virtual const MetaClass* getInstanceClass() const;

    /// Takes over the properties of `other`, which has this object's class or one derived from it. The context belongs
    /// to the copy operation that this is part of; it may be null.
    /// @throws PException If `other` is null or of another class, or this object's class is not registered. Nothing has
    /// changed then.
    virtual void assign(const Object* other, CopyContext* context);

    /// Whether `other` is of the very same class and all properties are equal. Null equals nothing.
    /// @throws PException If the class is not registered.
    virtual bool equal(const Object* other) const;

    /// A hash of the properties: the same for equal objects, and in every run of the program.
    /// @throws PException If the class is not registered.
    virtual Card32 getFieldsHashValue() const;

    /// A new object of the same class with the same properties. Within one context an object is copied once; asked
    /// again, it returns that copy. The context may be null.
    /// @owns The caller owns the copy.
    /// @throws PException If the class is abstract or not registered.
    virtual Object* copy(CopyContext* context) const;

    virtual ~Object();

    /// The class record, which is registered and has no factory.
    static const MetaClass* getClass();

protected:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
};

} // namespace tavo
