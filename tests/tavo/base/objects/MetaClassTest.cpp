#include "tavo/base/objects/MetaClass.h"

#include <gmock/gmock.h>
#include <memory>

#include "tavo/base/objects/Card32ClassProperty.h"
#include "tavo/base/objects/ClassRecord.h"
#include "tests/tavo/base/objects/Shapes.h"
#include "tests/tavo/base/objects/messageOf.h"

namespace elsewhere {
namespace {

// An abstract class with a record.
class Outline : public tavo::Object
{
public:
    const tavo::MetaClass* getInstanceClass() const override;

    static const tavo::MetaClass* getClass();
    static void initMetaClass();
    static void init(const tavo::MetaClass* parent);
    static void shutdown();

    static tavo::MetaClass* OutlineMetaClass;
};

TAVO_ABSTRACT_CLASS_RECORD(Outline)

} // namespace
} // namespace elsewhere

namespace tavo {
namespace {

// A class with a property.
class Disc : public Object
{
public:
    const MetaClass* getInstanceClass() const override;

    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* DiscMetaClass;

    Card32 m_Radius = 1;

private:
    static Object* newInstance();
};

void addRadius(MetaClass& record)
{
    record.addProperty(
        new Card32ClassProperty("m_Radius", 1000, static_cast<Card32 Object::*>(&Disc::m_Radius), nullptr, nullptr, 0));
}

TAVO_CLASS_RECORD_WITH_PROPERTIES(Disc, addRadius)

using testing::ElementsAre;
using testing::IsEmpty;

Object* newShape()
{
    return new Shape;
}

Object* noInstance()
{
    return nullptr;
}

MetaClass makeRecord(const char* name)
{
    return MetaClass(name, "a record", newShape, sizeof(Shape));
}

ClassProperty* newProperty(const char* name)
{
    return new Card32ClassProperty(name, 1000, static_cast<Card32 Object::*>(&Shape::m_Size), nullptr, nullptr, 0);
}

std::vector<std::string> namesOf(const std::vector<const ClassProperty*>& properties)
{
    std::vector<std::string> names;
    for (const ClassProperty* property : properties)
        names.push_back(property->getName());
    return names;
}

// Held by a static object, whose destructor runs after that of everything made in main.
const std::unique_ptr<MetaClass> staticRecord = std::make_unique<MetaClass>("Static", "", nullptr, 0);

TEST(MetaClassTest, KeepsWhatItIsMadeOf)
{
    const MetaClass record("Shape", "a description", newShape, 48);
    EXPECT_STREQ(record.getName(), "Shape");
    EXPECT_STREQ(record.getDescription(), "a description");
    EXPECT_EQ(record.getInstanceSize(), 48u);
    EXPECT_FALSE(record.isAbstract());
    EXPECT_EQ(record.getParent(), nullptr);
    EXPECT_THAT(record.getProperties(), IsEmpty());
}

TEST(MetaClassTest, KeepsItsParentAndVersion)
{
    const MetaClass base = makeRecord("Base");
    MetaClass record = makeRecord("Derived");
    record.init(&base, 1000);
    EXPECT_EQ(record.getParent(), &base);
    EXPECT_EQ(record.getVersion(), 1000u);
}

TEST(MetaClassTest, CanBeFoundByNameWhileItIsRegistered)
{
    auto record = std::make_unique<MetaClass>("Found", "", nullptr, 0);
    EXPECT_EQ(MetaClass::findClass("Found"), nullptr);
    EXPECT_FALSE(record->isRegistered());
    record->registerClass();
    EXPECT_EQ(MetaClass::findClass("Found"), record.get());
    EXPECT_TRUE(record->isRegistered());
    record.reset();
    EXPECT_EQ(MetaClass::findClass("Found"), nullptr);
}

TEST(MetaClassTest, RefusesTheNameOfAnotherRegisteredClass)
{
    MetaClass first = makeRecord("Twin");
    first.registerClass();
    {
        MetaClass second = makeRecord("Twin");
        second.addProperty(newProperty("m_Kept"));
        EXPECT_EQ(messageOf([&] { second.registerClass(); }),
            "MetaClass::registerClass() - another class is registered as Twin");
        EXPECT_FALSE(second.isRegistered());
        EXPECT_THAT(namesOf(second.getAllProperties()), ElementsAre("m_Kept"));
    }
    EXPECT_EQ(MetaClass::findClass("Twin"), &first) << "the end of the other class is no concern of this one";
}

TEST(MetaClassTest, LeavesItsNameToTheNext)
{
    std::make_unique<MetaClass>("Heir", "", nullptr, 0)->registerClass();
    MetaClass next = makeRecord("Heir");
    next.registerClass();
    EXPECT_EQ(MetaClass::findClass("Heir"), &next);
}

TEST(MetaClassTest, DropsThePropertiesOfAnEarlierRegistration)
{
    MetaClass record = makeRecord("Again");
    for (int i = 0; i < 2; ++i) {
        record.init(nullptr, 1000);
        record.registerClass();
        record.addProperty(newProperty("m_First"));
        record.addProperty(newProperty("m_Second"));
        EXPECT_THAT(namesOf(record.getAllProperties()), ElementsAre("m_First", "m_Second"));
    }
}

TEST(MetaClassTest, ListsInheritedPropertiesFirst)
{
    MetaClass base = makeRecord("Base");
    MetaClass middle = makeRecord("Middle");
    MetaClass derived = makeRecord("Derived");
    derived.init(&middle, 1);
    middle.init(&base, 1);
    derived.addProperty(newProperty("d"));
    base.addProperty(newProperty("z"));
    base.addProperty(newProperty("a"));
    middle.addProperty(newProperty("m"));
    EXPECT_THAT(namesOf(derived.getAllProperties()), ElementsAre("z", "a", "m", "d"));
    EXPECT_THAT(namesOf(middle.getAllProperties()), ElementsAre("z", "a", "m"));
    EXPECT_THAT(derived.getLineage(), ElementsAre(&base, &middle, &derived));
    EXPECT_EQ(derived.getProperties().size(), 1u);
}

TEST(MetaClassTest, RefusesASecondPropertyOfOneName)
{
    MetaClass base = makeRecord("Base");
    base.addProperty(newProperty("m_Size"));
    EXPECT_EQ(messageOf([&] { base.addProperty(newProperty("m_Size")); }),
        "MetaClass::addProperty() - the class Base already has a property m_Size");
    EXPECT_EQ(base.getProperties().size(), 1u);

    MetaClass derived = makeRecord("Derived");
    derived.init(&base, 1);
    derived.addProperty(newProperty("m_Size"));
    EXPECT_THAT(namesOf(derived.getAllProperties()), ElementsAre("m_Size", "m_Size"));
}

TEST(MetaClassTest, RefusesANullProperty)
{
    MetaClass record = makeRecord("Base");
    EXPECT_EQ(messageOf([&] { record.addProperty(nullptr); }),
        "MetaClass::addProperty() - no property to add to the class Base");
}

TEST(MetaClassTest, KnowsWhatItIsDerivedFrom)
{
    const MetaClass base = makeRecord("Base");
    const MetaClass other = makeRecord("Other");
    MetaClass middle = makeRecord("Middle");
    MetaClass derived = makeRecord("Derived");
    middle.init(&base, 1);
    derived.init(&middle, 1);
    EXPECT_TRUE(derived.isDerivedFrom(&base));
    EXPECT_TRUE(derived.isDerivedFrom(&derived));
    EXPECT_FALSE(derived.isDerivedFrom(&other));
    EXPECT_FALSE(base.isDerivedFrom(&derived));
    EXPECT_FALSE(derived.isDerivedFrom(nullptr));
}

TEST(MetaClassTest, CannotBeDerivedFromItself)
{
    MetaClass base = makeRecord("Base");
    MetaClass derived = makeRecord("Derived");
    derived.init(&base, 1);
    EXPECT_EQ(
        messageOf([&] { base.init(&derived, 2); }), "MetaClass::init() - the class Base cannot be derived from itself");
    EXPECT_EQ(
        messageOf([&] { base.init(&base, 2); }), "MetaClass::init() - the class Base cannot be derived from itself");
    EXPECT_EQ(base.getParent(), nullptr);
    EXPECT_EQ(base.getVersion(), 0u);
}

TEST(MetaClassTest, OutlivesItsParent)
{
    auto base = std::make_unique<MetaClass>("Base", "", nullptr, 0);
    MetaClass derived = makeRecord("Derived");
    derived.init(base.get(), 1);
    base->addProperty(newProperty("m_Size"));
    derived.addProperty(newProperty("m_Width"));
    base.reset();
    EXPECT_EQ(derived.getParent(), nullptr);
    EXPECT_THAT(namesOf(derived.getAllProperties()), ElementsAre("m_Width"));
}

TEST(MetaClassTest, MakesInstances)
{
    registerShapes();
    const std::unique_ptr<Object> shape(Shape::getClass()->newInstance());
    ASSERT_NE(shape, nullptr);
    EXPECT_EQ(shape->getInstanceClass(), Shape::getClass());
}

TEST(MetaClassTest, MakesNoInstancesOfAnAbstractClass)
{
    const MetaClass record("Figure", "", nullptr, 0);
    EXPECT_TRUE(record.isAbstract());
    EXPECT_EQ(messageOf([&] { record.newInstance(); }), "MetaClass::newInstance() - the class Figure is abstract");
}

TEST(MetaClassTest, ReportsAFactoryWithoutMemory)
{
    const MetaClass record("Large", "", noInstance, 0);
    EXPECT_THROW(record.newInstance(), std::bad_alloc);
}

TEST(MetaClassTest, MayBeHeldByAStaticObject)
{
    EXPECT_EQ(MetaClass::findClass("Static"), nullptr);
    staticRecord->registerClass();
    EXPECT_EQ(MetaClass::findClass("Static"), staticRecord.get());
}

TEST(ClassRecordTest, MakesARegisteredClassWithItsProperties)
{
    const MetaClass* const record = Disc::getClass();
    EXPECT_EQ(Disc::getClass(), record);
    EXPECT_EQ(MetaClass::findClass("Disc"), nullptr) << "not registered yet";
    Disc::initMetaClass();
    Disc::init(Object::getClass());
    EXPECT_EQ(MetaClass::findClass("Disc"), record);
    EXPECT_EQ(record->getParent(), Object::getClass());
    EXPECT_EQ(record->getVersion(), 1000u);
    EXPECT_EQ(record->getInstanceSize(), sizeof(Disc));
    ASSERT_EQ(record->getProperties().size(), 1u);
    EXPECT_EQ(record->getProperties()[0]->getName(), "m_Radius");

    const std::unique_ptr<Object> disc(record->newInstance());
    EXPECT_EQ(disc->getInstanceClass(), record);
    Disc::shutdown();
    EXPECT_EQ(MetaClass::findClass("Disc"), nullptr);
    EXPECT_NE(Disc::DiscMetaClass, nullptr) << "it is not reset";
}

TEST(ClassRecordTest, MakesAnAbstractClassOutsideOfTheLibrarysNamespace)
{
    using elsewhere::Outline;
    EXPECT_STREQ(Outline::getClass()->getName(), "Outline");
    EXPECT_TRUE(Outline::getClass()->isAbstract());
    Outline::initMetaClass();
    Outline::init(tavo::Object::getClass());
    EXPECT_EQ(Outline().getInstanceClass(), MetaClass::findClass("Outline"));
    Outline::shutdown();
}

TEST(ClassRecordTest, IsMadeOnce)
{
    MetaClass* record = nullptr;
    MetaClass* const made = createClassRecord<Shape>(record, "Made", newShape);
    const std::unique_ptr<MetaClass> owner(made);
    EXPECT_EQ(record, made);
    EXPECT_STREQ(made->getName(), "Made");
    EXPECT_STREQ(made->getDescription(), "no description.");
    EXPECT_EQ(made->getInstanceSize(), sizeof(Shape));
    EXPECT_FALSE(made->isAbstract());
    EXPECT_EQ(createClassRecord<Box>(record, "Other", nullptr), made);
    EXPECT_STREQ(made->getName(), "Made");
}

TEST(ClassRecordTest, IsRegisteredUnderItsParent)
{
    MetaClass record = makeRecord("Registered");
    initClassRecord(&record, Object::getClass(), 1000);
    EXPECT_EQ(record.getParent(), Object::getClass());
    EXPECT_EQ(record.getVersion(), 1000u);
    EXPECT_EQ(MetaClass::findClass("Registered"), &record);
}

TEST(ClassRecordTest, CannotBeRegisteredWithoutMemoryForIt)
{
    EXPECT_THROW(initClassRecord(nullptr, Object::getClass(), 1000), std::bad_alloc);
}

// The completion step is what a class of records may override.
TEST(ClassRecordTest, IsCompletedByTheRecordsOwnStep)
{
    class CountingRecord : public MetaClass
    {
    public:
        using MetaClass::MetaClass;
        void registerClass() override
        {
            EXPECT_EQ(getVersion(), 1000u) << "init comes first";
            ++m_NumSteps;
        }
        int m_NumSteps = 0;
    };
    CountingRecord record("Counting", "", nullptr, 0);
    initClassRecord(&record, nullptr, 1000);
    EXPECT_EQ(record.m_NumSteps, 1);
}

} // namespace
} // namespace tavo
