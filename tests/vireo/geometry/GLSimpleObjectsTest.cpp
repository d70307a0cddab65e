#include "vireo/geometry/GLSimpleObjects.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Calls = std::vector<std::string>;

// Writes down that it was drawn and destroyed.
class LoggedObject : public GLSimpleObject
{
public:
    LoggedObject(std::string name, unsigned int classID, Calls& log)
        : m_Name(std::move(name))
        , m_Log(log)
    {
        setClassID(classID);
    }
    LoggedObject(const LoggedObject&) = default;
    LoggedObject& operator=(const LoggedObject&) = delete;
    ~LoggedObject() override { m_Log.push_back("destroy " + m_Name); }

    void draw(GLContext* context, GLSimpleObjectContainer* container) override
    {
        m_Log.push_back("draw " + m_Name);
        m_DrawnIn = {context, container};
        if (whenDrawn)
            std::exchange(whenDrawn, {})();
    }

    std::pair<GLContext*, GLSimpleObjectContainer*> m_DrawnIn;
    std::function<void()> whenDrawn;

private:
    std::string m_Name;
    Calls& m_Log;
};

class GLSimpleObjectContainerTest : public testing::Test
{
protected:
    void add(const std::string& name, unsigned int classID)
    {
        m_Container->addObject(new LoggedObject(name, classID, m_Log));
    }

    Calls logOf(const std::function<void()>& operation)
    {
        m_Log.clear();
        operation();
        return m_Log;
    }

    Calls m_Log;
    std::unique_ptr<GLSimpleObjectContainer> m_Container = std::make_unique<GLSimpleObjectContainer>();
};

TEST_F(GLSimpleObjectContainerTest, DrawsAllOrThoseOfAClassInTheirOrder)
{
    add("a", 0);
    add("b", 5);
    add("c", 7);
    add("d", 5);
    const auto draw = [&](unsigned int classID) { return logOf([&] { m_Container->drawObjects(nullptr, classID); }); };
    EXPECT_THAT(draw(0), ElementsAre("draw a", "draw b", "draw c", "draw d"));
    EXPECT_THAT(draw(5), ElementsAre("draw b", "draw d"));
    EXPECT_THAT(draw(6), IsEmpty());
}

// An object that adds another when it is first drawn.
TEST_F(GLSimpleObjectContainerTest, DrawsObjectsThatAreAddedWhileItDraws)
{
    add("a", 0);
    auto* const object = new LoggedObject("b", 0, m_Log);
    object->whenDrawn = [&] {
        for (int i = 0; i < 100; ++i) // enough for the container to grow
            add("c", 0);
    };
    m_Container->addObject(object);
    EXPECT_THAT(logOf([&] { m_Container->drawObjects(nullptr, 0); }), testing::SizeIs(102u));
    EXPECT_EQ(m_Log.back(), "draw c");
}

TEST_F(GLSimpleObjectContainerTest, HandsItsContextAndItselfToItsObjects)
{
    auto* const object = new LoggedObject("a", 0, m_Log);
    m_Container->addObject(object);
    int stranger = 0;
    auto* const context = reinterpret_cast<GLContext*>(&stranger);
    m_Container->drawObjects(context, 0);
    EXPECT_EQ(object->m_DrawnIn, std::make_pair(context, m_Container.get()));
}

TEST_F(GLSimpleObjectContainerTest, ClearsAClassAndKeepsTheOrderOfTheOthers)
{
    add("a", 5);
    add("b", 0);
    add("c", 5);
    add("d", 1);
    add("e", 2);
    EXPECT_THAT(logOf([&] { m_Container->clear(5); }), ElementsAre("destroy a", "destroy c"));
    EXPECT_THAT(logOf([&] { m_Container->drawObjects(nullptr, 0); }), ElementsAre("draw b", "draw d", "draw e"));
    EXPECT_THAT(logOf([&] { m_Container->clear(0); }), ElementsAre("destroy b", "destroy d", "destroy e"));
    EXPECT_THAT(logOf([&] { m_Container->drawObjects(nullptr, 0); }), IsEmpty());
}

TEST_F(GLSimpleObjectContainerTest, DestroysItsObjectsWithItself)
{
    add("a", 3);
    add("b", 0);
    EXPECT_THAT(logOf([&] { m_Container.reset(); }), ElementsAre("destroy a", "destroy b"));
}

TEST_F(GLSimpleObjectContainerTest, ClearsNullObjectsWithAllOthersOnly)
{
    add("a", 3);
    m_Container->addObject(nullptr);
    EXPECT_THAT(logOf([&] { m_Container->clear(3); }), ElementsAre("destroy a"));
    EXPECT_THAT(logOf([&] { m_Container->clear(0); }), IsEmpty());
    EXPECT_THAT(logOf([&] { m_Container->drawObjects(nullptr, 0); }), IsEmpty()) << "the null object is gone";
}

TEST_F(GLSimpleObjectContainerTest, SharesItsObjectsWithItsCopies)
{
    add("a", 0);
    GLSimpleObjectContainer copy(*m_Container);
    EXPECT_THAT(logOf([&] { copy.drawObjects(nullptr, 0); }), ElementsAre("draw a"));
    const GLSimpleObjectContainer empty;
    *m_Container = empty; // only one of the two may destroy the object
    EXPECT_THAT(logOf([&] { m_Container->drawObjects(nullptr, 0); }), IsEmpty());
    EXPECT_THAT(logOf([&] { copy.clear(0); }), ElementsAre("destroy a"));
}

TEST(GLSimpleObjectTest, IsOfNoClassAtFirst)
{
    GLSimpleBox box;
    EXPECT_EQ(box.getClassID(), 0u);
    box.setClassID(9);
    EXPECT_EQ(box.getClassID(), 9u);
    EXPECT_EQ(GLSimpleBox(box).getClassID(), 9u);
    EXPECT_EQ(GLSimpleLines().getClassID(), 0u);
    EXPECT_EQ(GLSimpleMesh().getClassID(), 0u);
}

} // namespace
} // namespace tavo
