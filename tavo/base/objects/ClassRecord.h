#pragma once

#include <new>

#include "tavo/base/objects/MetaClass.h"

// The pattern of a registered class. It holds the pointer to its class record in a static member, null at first, and
// has
//
//     const MetaClass* Shape::getClass() { return createClassRecord<Shape>(ShapeMetaClass, "Shape", newInstance); }
//
//     void Shape::init(const MetaClass* parent)
//     {
//         getClass();
//         initClassRecord(ShapeMetaClass, parent, 1000);
//         ShapeMetaClass->addProperty(...);
//     }
//
//     void Shape::shutdown() { delete ShapeMetaClass; } // deliberately not reset
//
// The record lives from the first getClass to shutdown; neither is to be called after that.

namespace tavo {

// The class record of T, made by the first call and kept in record. Null if there is no memory. The factory of an
// abstract class is null. First calls are not guarded against each other.
template <class T>
MetaClass* createClassRecord(MetaClass*& record, const char* name, MetaClass::Factory factory)
{
    if (!record)
        record = new (std::nothrow) MetaClass(name, "no description.", factory, sizeof(T));
    return record;
}

// Registers a class under its base class, ready for its properties. Throws what MetaClass::init and
// MetaClass::registerClass throw, and std::bad_alloc if there is no record.
inline void initClassRecord(MetaClass* record, const MetaClass* parent, unsigned int version)
{
    if (!record)
        throw std::bad_alloc();
    record->init(parent, version);
    record->registerClass();
}

} // namespace tavo
