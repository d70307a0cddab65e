#include "tests/tavo/base/objects/Shapes.h"

#include "tavo/base/objects/Card32ClassProperty.h"
#include "tavo/base/objects/ClassRecord.h"

namespace tavo {

namespace {

template <class T>
Object* newInstance()
{
    return new (std::nothrow) T;
}

ClassProperty* newProperty(const char* name, Card32 Object::*position)
{
    return new Card32ClassProperty(name, 1000, position, nullptr, nullptr, 0);
}

} // namespace

MetaClass* Shape::ShapeMetaClass = nullptr;
MetaClass* Box::BoxMetaClass = nullptr;
MetaClass* Figure::FigureMetaClass = nullptr;
MetaClass* Marker::MarkerMetaClass = nullptr;
MetaClass* Stranger::StrangerMetaClass = nullptr;

const MetaClass* Shape::getClass()
{
    return createClassRecord<Shape>(ShapeMetaClass, "Shape", newInstance<Shape>);
}

void Shape::init(const MetaClass* parent)
{
    getClass();
    initClassRecord(ShapeMetaClass, parent, 1000);
    ShapeMetaClass->addProperty(newProperty("m_Size", static_cast<Card32 Object::*>(&Shape::m_Size)));
    ShapeMetaClass->addProperty(newProperty("m_Colour", static_cast<Card32 Object::*>(&Shape::m_Colour)));
}

const MetaClass* Box::getClass()
{
    return createClassRecord<Box>(BoxMetaClass, "Box", newInstance<Box>);
}

void Box::init(const MetaClass* parent)
{
    getClass();
    initClassRecord(BoxMetaClass, parent, 1001);
    BoxMetaClass->addProperty(newProperty("m_Width", static_cast<Card32 Object::*>(&Box::m_Width)));
    BoxMetaClass->addProperty(newProperty("m_Colour", static_cast<Card32 Object::*>(&Box::m_Colour)));
}

const MetaClass* Figure::getClass()
{
    return createClassRecord<Figure>(FigureMetaClass, "Figure", nullptr);
}

void Figure::init(const MetaClass* parent)
{
    getClass();
    initClassRecord(FigureMetaClass, parent, 1000);
}

const MetaClass* Marker::getClass()
{
    return createClassRecord<Marker>(MarkerMetaClass, "Marker", newInstance<Marker>);
}

void Marker::init(const MetaClass* parent)
{
    getClass();
    initClassRecord(MarkerMetaClass, parent, 1000);
}

const MetaClass* Stranger::getClass()
{
    return createClassRecord<Stranger>(StrangerMetaClass, "Stranger", newInstance<Stranger>);
}

void registerShapes()
{
    if (MetaClass::findClass("Box"))
        return;
    Shape::init(Persistent::getClass());
    Box::init(Shape::getClass());
    Figure::init(Persistent::getClass());
    Marker::init(Object::getClass());
}

std::vector<Card32> valuesOf(const Box& box)
{
    return {box.m_Size, box.Shape::m_Colour, box.m_Width, box.m_Colour};
}

Box boxOf(Card32 size, Card32 shapeColour, Card32 width, Card32 boxColour)
{
    Box box;
    box.m_Size = size;
    box.Shape::m_Colour = shapeColour;
    box.m_Width = width;
    box.m_Colour = boxColour;
    return box;
}

} // namespace tavo
