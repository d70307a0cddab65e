#include "tavo/base/objects/Persistent.h"

#include <gmock/gmock.h>

#include "tavo/base/objects/InputObjectStream.h"
#include "tavo/base/objects/OutputObjectStream.h"
#include "tests/tavo/base/objects/Shapes.h"
#include "tests/tavo/base/objects/messageOf.h"

namespace tavo {
namespace {

using testing::ElementsAre;

class PersistentTest : public testing::Test
{
protected:
    PersistentTest() { registerShapes(); }
};

TEST_F(PersistentTest, HasAnAbstractClassUnderThatOfObject)
{
    const MetaClass* const persistentClass = Persistent::getClass();
    EXPECT_STREQ(persistentClass->getName(), "Persistent");
    EXPECT_EQ(persistentClass->getParent(), Object::getClass());
    EXPECT_TRUE(persistentClass->isAbstract());
    EXPECT_EQ(MetaClass::findClass("Persistent"), persistentClass);
    EXPECT_EQ(Persistent::getClass(), persistentClass);
}

TEST_F(PersistentTest, ReadsWhatItWrote)
{
    OutputObjectStream output;
    boxOf(0, 4294967295, 7, 0x80000000).write(&output);
    InputObjectStream input(output.getText());
    Box box;
    box.m_Scratch = 5;
    box.read(&input);
    EXPECT_THAT(valuesOf(box), ElementsAre(0, 4294967295, 7, 0x80000000));
    EXPECT_EQ(box.m_Scratch, 5u) << "no property";
    EXPECT_TRUE(input.isAtEnd());
}

TEST_F(PersistentTest, NeedsAStream)
{
    Shape shape;
    EXPECT_EQ(messageOf([&] { shape.write(nullptr); }), "Persistent::write() - there is no stream to write to");
    EXPECT_EQ(messageOf([&] { shape.read(nullptr); }), "Persistent::read() - there is no stream to read from");
}

} // namespace
} // namespace tavo
