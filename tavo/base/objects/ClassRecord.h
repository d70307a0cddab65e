#pragma once

#include <new>

#include "tavo/base/objects/MetaClass.h"

/// @file
/// The pattern of a registered class. The class declares what a record needs, and its source defines all of it in one
/// line:
///
///     class Shape : public Object
///     {
///     public:
///         const MetaClass* getInstanceClass() const override;
///
///         static const MetaClass* getClass();
///         static void initMetaClass();
///         static void init(const MetaClass* parent);
///         static void shutdown();
///
///         static MetaClass* ShapeMetaClass;
///
///     private:
///         static Object* newInstance();
///     };
///
///     TAVO_CLASS_RECORD(Shape) // in the source
///
/// The application calls init once, with the record of the base class. The record lives from the first getClass to
/// shutdown; call neither after that.

namespace tavo {

/// The class record of T, made by the first call and kept in `record`; null without memory. The factory of an abstract
/// class is null. First calls are not guarded against each other.
template <class T>
MetaClass* createClassRecord(MetaClass*& record, const char* name, MetaClass::Factory factory)
{
    if (!record)
        record = new (std::nothrow) MetaClass(name, "no description.", factory, sizeof(T));
    return record;
}

/// Registers a class under its base class, ready for its properties.
/// @throws std::bad_alloc If there is no record. What MetaClass::init and MetaClass::registerClass throw is passed on.
inline void initClassRecord(MetaClass* record, const MetaClass* parent, unsigned int version)
{
    if (!record)
        throw std::bad_alloc();
    record->init(parent, version);
    record->registerClass();
}

} // namespace tavo

/// Defines the operations of a registered class without properties.
#define TAVO_CLASS_RECORD(Class) TAVO_CLASS_RECORD_WITH_PROPERTIES(Class, [](::tavo::MetaClass&) {})

/// Does the same for a class with properties: init calls addProperties with the record, a MetaClass&.
#define TAVO_CLASS_RECORD_WITH_PROPERTIES(Class, addProperties)                                                        \
    TAVO_CLASS_RECORD_OPERATIONS(Class, newInstance, addProperties)                                                    \
    ::tavo::Object* Class::newInstance()                                                                               \
    {                                                                                                                  \
        return new (std::nothrow) Class; /* NOLINT(bugprone-macro-parentheses): a type */                              \
    }

/// Does the same for an abstract class, which has no newInstance.
#define TAVO_ABSTRACT_CLASS_RECORD(Class) TAVO_CLASS_RECORD_OPERATIONS(Class, nullptr, [](::tavo::MetaClass&) {})

// What the three above have in common.
#define TAVO_CLASS_RECORD_OPERATIONS(Class, factory, addProperties)                                                    \
    ::tavo::MetaClass* Class::Class##MetaClass = nullptr;                                                              \
    const ::tavo::MetaClass* Class::getClass()                                                                         \
    {                                                                                                                  \
        return ::tavo::createClassRecord<Class>(Class##MetaClass, #Class, factory);                                    \
    }                                                                                                                  \
    const ::tavo::MetaClass* Class::getInstanceClass() const                                                           \
    {                                                                                                                  \
        return getClass();                                                                                             \
    }                                                                                                                  \
    void Class::initMetaClass() {}                                                                                     \
    void Class::init(const ::tavo::MetaClass* parent)                                                                  \
    {                                                                                                                  \
        getClass();                                                                                                    \
        ::tavo::initClassRecord(Class##MetaClass, parent, 1000);                                                       \
        (addProperties)(*Class##MetaClass);                                                                            \
    }                                                                                                                  \
    void Class::shutdown()                                                                                             \
    {                                                                                                                  \
        delete Class##MetaClass; /* deliberately not reset */                                                          \
    }
