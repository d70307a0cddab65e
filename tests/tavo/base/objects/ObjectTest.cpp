#include "tavo/base/objects/Object.h"

#include <gmock/gmock.h>
#include <memory>
#include <set>

#include "tavo/base/objects/CopyContext.h"
#include "tests/tavo/base/objects/Shapes.h"
#include "tests/tavo/base/objects/messageOf.h"

namespace tavo {
namespace {

using testing::ElementsAre;

// The hash of m_Box below.
constexpr Card32 HASH_OF_BOX = 3613586181u;

// The copy that an object makes, as the class that it is known to be of.
template <class T>
std::unique_ptr<T> copyOf(const T& original, CopyContext* context)
{
    return std::unique_ptr<T>(dynamic_cast<T*>(original.copy(context)));
}

class ObjectTest : public testing::Test
{
protected:
    ObjectTest() { registerShapes(); }

    const Box m_Box = boxOf(10, 20, 30, 40);
};

TEST_F(ObjectTest, HasAnAbstractClassWithoutParent)
{
    const MetaClass* const objectClass = Object::getClass();
    EXPECT_STREQ(objectClass->getName(), "Object");
    EXPECT_EQ(objectClass->getParent(), nullptr);
    EXPECT_TRUE(objectClass->isAbstract());
    EXPECT_EQ(MetaClass::findClass("Object"), objectClass);
    EXPECT_EQ(Object::getClass(), objectClass);
}

TEST_F(ObjectTest, IsOfTheNearestClassThatSaysSo)
{
    struct Plain : Object
    {};
    EXPECT_EQ(Plain().getInstanceClass(), Object::getClass());
    EXPECT_EQ(m_Box.getInstanceClass(), Box::getClass());
}

TEST_F(ObjectTest, AssignsAllPropertiesAndNothingElse)
{
    Box box;
    Box source = m_Box;
    source.m_Scratch = 99;
    box.assign(&source, nullptr);
    EXPECT_THAT(valuesOf(box), ElementsAre(10, 20, 30, 40));
    EXPECT_EQ(box.m_Scratch, 0u) << "no property";
}

TEST_F(ObjectTest, AssignsWhatADerivedObjectShares)
{
    Shape shape;
    shape.assign(&m_Box, nullptr);
    EXPECT_EQ(shape.m_Size, 10u);
    EXPECT_EQ(shape.m_Colour, 20u);
}

TEST_F(ObjectTest, MayBeAssignedToItself)
{
    Box box = m_Box;
    box.assign(&box, nullptr);
    EXPECT_THAT(valuesOf(box), ElementsAre(10, 20, 30, 40));
}

TEST_F(ObjectTest, RefusesToAssignNull)
{
    Box box = m_Box;
    EXPECT_EQ(messageOf([&] { box.assign(nullptr, nullptr); }), "Object::assign() - there is no object to assign");
    EXPECT_THAT(valuesOf(box), ElementsAre(10, 20, 30, 40));
}

TEST_F(ObjectTest, RefusesToAssignAnotherClass)
{
    Box box = m_Box;
    const Shape base;
    EXPECT_EQ(messageOf([&] { box.assign(&base, nullptr); }), "Object::assign() - a Shape cannot be assigned to a Box");
    const Marker stranger;
    EXPECT_EQ(
        messageOf([&] { box.assign(&stranger, nullptr); }), "Object::assign() - a Marker cannot be assigned to a Box");
    EXPECT_THAT(valuesOf(box), ElementsAre(10, 20, 30, 40));
}

TEST_F(ObjectTest, EqualsAnObjectOfItsClassWithEqualProperties)
{
    Box other = m_Box;
    other.m_Scratch = 99;
    EXPECT_TRUE(m_Box.equal(&other));
    EXPECT_TRUE(m_Box.equal(&m_Box));
}

TEST_F(ObjectTest, DiffersInEveryProperty)
{
    for (const Box& other :
        {boxOf(11, 20, 30, 40), boxOf(10, 21, 30, 40), boxOf(10, 20, 31, 40), boxOf(10, 20, 30, 41)})
        EXPECT_FALSE(m_Box.equal(&other));
}

TEST_F(ObjectTest, EqualsNeitherNullNorAnotherClass)
{
    Shape shape;
    shape.assign(&m_Box, nullptr);
    EXPECT_FALSE(shape.equal(nullptr));
    EXPECT_FALSE(shape.equal(&m_Box));
    EXPECT_FALSE(m_Box.equal(&shape));
}

TEST_F(ObjectTest, HashesEqualObjectsEqually)
{
    Box other = m_Box;
    other.m_Scratch = 99;
    EXPECT_EQ(other.getFieldsHashValue(), m_Box.getFieldsHashValue());
}

TEST_F(ObjectTest, HashesEveryPropertyAtItsPlace)
{
    std::set<Card32> hashes;
    for (const Box& box : {m_Box, boxOf(11, 20, 30, 40), boxOf(10, 21, 30, 40), boxOf(10, 20, 31, 40),
             boxOf(10, 20, 30, 41), boxOf(20, 10, 30, 40), boxOf(10, 20, 40, 30), boxOf(40, 30, 20, 10)})
        hashes.insert(box.getFieldsHashValue());
    EXPECT_EQ(hashes.size(), 8u);
}

TEST_F(ObjectTest, HashesAlikeInEveryRun)
{
    EXPECT_EQ(Marker().getFieldsHashValue(), 2166136261u);
    EXPECT_EQ(m_Box.getFieldsHashValue(), HASH_OF_BOX);
}

TEST_F(ObjectTest, CopiesToANewObjectOfItsClass)
{
    const Shape& original = m_Box;
    const std::unique_ptr<Object> copy(original.copy(nullptr));
    ASSERT_NE(copy.get(), &original);
    ASSERT_EQ(copy->getInstanceClass(), Box::getClass());
    EXPECT_THAT(valuesOf(dynamic_cast<const Box&>(*copy)), ElementsAre(10, 20, 30, 40));
}

TEST_F(ObjectTest, CannotBeCopiedIfItsClassIsAbstract)
{
    EXPECT_EQ(messageOf([] { Figure().copy(nullptr); }), "MetaClass::newInstance() - the class Figure is abstract");
}

TEST_F(ObjectTest, IsCopiedOnceInOneContext)
{
    CopyContext context;
    const std::unique_ptr<Box> copy = copyOf(m_Box, &context);
    EXPECT_EQ(m_Box.copy(&context), copy.get());
    EXPECT_EQ(context.findCopy(&m_Box), copy.get());

    const Box other;
    EXPECT_EQ(context.findCopy(&other), nullptr);
    EXPECT_NE(copyOf(other, &context), copy);

    CopyContext secondContext;
    EXPECT_NE(copyOf(m_Box, &secondContext), copy);
    EXPECT_NE(copyOf(m_Box, nullptr), copy);
}

// A class of its own whose objects are part of themselves.
class Ring : public Object
{
public:
    const MetaClass* getInstanceClass() const override { return &s_Record; }
    void assign(const Object* other, CopyContext* context) override { m_Part = other->copy(context); }

    const Object* m_Part = this;
    static Object* newInstance() { return new Ring; }
    static inline MetaClass s_Record{"Ring", "", newInstance, 0};
};

TEST_F(ObjectTest, IsCopiedOnceEvenIfItLeadsBackToItself)
{
    CopyContext context;
    const Ring ring;
    const std::unique_ptr<Ring> copy = copyOf(ring, &context);
    EXPECT_EQ(copy->m_Part, copy.get());
}

TEST_F(ObjectTest, WorksOnlyOnceItsClassIsRegistered)
{
    Stranger stranger;
    const Stranger other;
    EXPECT_EQ(messageOf([&] { stranger.assign(&other, nullptr); }),
        "Object::assign() - the class Stranger is not registered");
    EXPECT_EQ(messageOf([&] { stranger.equal(&other); }), "Object::equal() - the class Stranger is not registered");
    EXPECT_EQ(messageOf([&] { stranger.getFieldsHashValue(); }),
        "Object::getFieldsHashValue() - the class Stranger is not registered");
    EXPECT_EQ(messageOf([&] { stranger.copy(nullptr); }), "Object::assign() - the class Stranger is not registered");
}

TEST_F(ObjectTest, HasThePropertiesOfASecondRegistrationOnce)
{
    Shape::init(Persistent::getClass());
    Box::init(Shape::getClass());
    EXPECT_EQ(m_Box.getInstanceClass()->getAllProperties().size(), 4u);
    EXPECT_EQ(m_Box.getFieldsHashValue(), HASH_OF_BOX);
}

} // namespace
} // namespace tavo
