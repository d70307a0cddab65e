#pragma once

#include "tavo/base/objects/MetaClass.h"
#include "tavo/base/objects/Persistent.h"

namespace tavo {

// The classes that the tests of the object model use. registerShapes registers all of them; further calls do nothing.
void registerShapes();

// A persistent class with two properties, and a field that is none.
class Shape : public Persistent
{
public:
    const MetaClass* getInstanceClass() const override { return getClass(); }

    Card32 m_Size = 1;
    Card32 m_Colour = 2;
    Card32 m_Scratch = 0;

    static const MetaClass* getClass();
    static void init(const MetaClass* parent);
    static MetaClass* ShapeMetaClass;
};

// A class derived from it, which uses one of its names again for a property of its own.
class Box : public Shape
{
public:
    const MetaClass* getInstanceClass() const override { return getClass(); }

    Card32 m_Width = 3;
    Card32 m_Colour = 4;

    static const MetaClass* getClass();
    static void init(const MetaClass* parent);
    static MetaClass* BoxMetaClass;
};

// An abstract persistent class, that is, one without a factory.
class Figure : public Persistent
{
public:
    const MetaClass* getInstanceClass() const override { return getClass(); }

    static const MetaClass* getClass();
    static void init(const MetaClass* parent);
    static MetaClass* FigureMetaClass;
};

// A class with a factory that is not persistent.
class Marker : public Object
{
public:
    const MetaClass* getInstanceClass() const override { return getClass(); }

    static const MetaClass* getClass();
    static void init(const MetaClass* parent);
    static MetaClass* MarkerMetaClass;
};

// A persistent class that is never registered.
class Stranger : public Persistent
{
public:
    const MetaClass* getInstanceClass() const override { return getClass(); }

    static const MetaClass* getClass();
    static MetaClass* StrangerMetaClass;
};

// The values of all fields that are properties, inherited ones first.
std::vector<Card32> valuesOf(const Box& box);

Box boxOf(Card32 size, Card32 shapeColour, Card32 width, Card32 boxColour);

} // namespace tavo
