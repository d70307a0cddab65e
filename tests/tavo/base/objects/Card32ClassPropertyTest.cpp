#include "tavo/base/objects/Card32ClassProperty.h"

#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <limits>

#include "tests/tavo/base/objects/Shapes.h"

namespace tavo {
namespace {

constexpr Card32 LARGEST = std::numeric_limits<Card32>::max();

class Square : public Shape
{
public:
    Card32 getArea() const { return m_Size * m_Size; }
};

std::string textOfSize(Card32 size)
{
    return size == 1 ? "one" : "many";
}

class Card32ClassPropertyTest : public testing::Test
{
protected:
    const Card32ClassProperty m_Property{
        "m_Size", 1001, static_cast<Card32 Object::*>(&Shape::m_Size), nullptr, nullptr, 5};
    Shape m_Shape;
    Shape m_Other;
};

TEST_F(Card32ClassPropertyTest, KeepsItsNameVersionAndFlags)
{
    EXPECT_EQ(m_Property.getName(), "m_Size");
    EXPECT_EQ(m_Property.getVersion(), 1001u);
    EXPECT_EQ(m_Property.getFlags(), 5u);
}

TEST_F(Card32ClassPropertyTest, AssignsItsFieldOnly)
{
    m_Other.m_Size = LARGEST;
    m_Other.m_Colour = 9;
    m_Property.assign(m_Shape, m_Other);
    EXPECT_EQ(m_Shape.m_Size, LARGEST);
    EXPECT_EQ(m_Shape.m_Colour, 2u);
}

TEST_F(Card32ClassPropertyTest, ComparesAndHashesItsField)
{
    m_Other.m_Colour = 9;
    EXPECT_TRUE(m_Property.equal(m_Shape, m_Other));
    EXPECT_EQ(m_Property.getHashValue(m_Shape), m_Property.getHashValue(m_Other));
    m_Other.m_Size = 2;
    EXPECT_FALSE(m_Property.equal(m_Shape, m_Other));
    EXPECT_NE(m_Property.getHashValue(m_Shape), m_Property.getHashValue(m_Other));
}

TEST_F(Card32ClassPropertyTest, ShowsAPlainNumber)
{
    m_Shape.m_Size = LARGEST;
    EXPECT_EQ(m_Property.getText(m_Shape), "4294967295");
}

TEST_F(Card32ClassPropertyTest, ShowsWhatItsConverterSays)
{
    const Card32ClassProperty property(
        "m_Size", 1000, static_cast<Card32 Object::*>(&Shape::m_Size), nullptr, textOfSize, 0);
    EXPECT_EQ(property.getText(m_Shape), "one");
    m_Shape.m_Size = 2;
    EXPECT_EQ(property.getText(m_Shape), "many");
}

TEST_F(Card32ClassPropertyTest, AsksItsAccessorForTheValue)
{
    const Card32ClassProperty property("area", 1000, static_cast<Card32 Object::*>(&Square::m_Size),
        static_cast<Card32 (Object::*)() const>(&Square::getArea), nullptr, 0);
    Square square;
    square.m_Size = 7;
    EXPECT_EQ(property.getText(square), "49");
    EXPECT_EQ(property.write(square), QJsonValue(49));
    property.read(square, 5);
    EXPECT_EQ(square.m_Size, 5u);
}

TEST_F(Card32ClassPropertyTest, ReadsWhatItWrote)
{
    for (const Card32 value : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, LARGEST - 1, LARGEST}) {
        m_Shape.m_Size = value;
        const QJsonValue written = m_Property.write(m_Shape);
        EXPECT_EQ(m_Property.getFault(written), "");
        m_Property.read(m_Other, written);
        EXPECT_EQ(m_Other.m_Size, value);
    }
}

TEST_F(Card32ClassPropertyTest, FindsFaultWithWhatIsNoNumberOf32Bits)
{
    EXPECT_EQ(m_Property.getFault(-1), "is negative");
    EXPECT_EQ(m_Property.getFault(-0.5), "is negative");
    EXPECT_EQ(m_Property.getFault(0.5), "is not a whole number");
    EXPECT_EQ(m_Property.getFault(4294967295.0), "");
    EXPECT_EQ(m_Property.getFault(4294967296.0), "is larger than 4294967295");
    EXPECT_EQ(m_Property.getFault(1e300), "is larger than 4294967295");
    EXPECT_EQ(m_Property.getFault("1"), "is not a number");
    EXPECT_EQ(m_Property.getFault(true), "is not a number");
    EXPECT_EQ(m_Property.getFault(QJsonValue()), "is not a number");
    EXPECT_EQ(m_Property.getFault(QJsonArray{1}), "is not a number");
    EXPECT_EQ(m_Property.getFault(QJsonObject{{"value", 1}}), "is not a number");
}

} // namespace
} // namespace tavo
