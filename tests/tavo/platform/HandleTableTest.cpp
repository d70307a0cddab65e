#include "tavo/platform/HandleTable.h"

#include <compare>
#include <gtest/gtest.h>
#include <set>
#include <thread>
#include <vector>

namespace {

struct Thing
{
    const void* display;
    int place;
    int serial = 0;

    auto operator<=>(const Thing& other) const { return place <=> other.place; }
    bool isStill(const Thing& now) const { return serial == now.serial; }
};

struct Handle__;
struct OtherHandle__;
using Table = tavo::HandleTable<Handle__*, Thing>;

const int firstDisplay = 0;
const int secondDisplay = 0;

TEST(HandleTableTest, KnowsNothingAtFirst)
{
    const Table table;
    EXPECT_EQ(table.find({&firstDisplay, 1}), nullptr);
    EXPECT_FALSE(table.getNative(nullptr));
}

TEST(HandleTableTest, GivesAnObjectOneHandle)
{
    Table table;
    const auto handle = table.insert({&firstDisplay, 1});
    EXPECT_NE(handle, nullptr);
    EXPECT_EQ(table.insert({&firstDisplay, 1}), handle);
    EXPECT_EQ(table.find({&firstDisplay, 1}), handle);
    ASSERT_TRUE(table.getNative(handle));
    EXPECT_EQ(table.getNative(handle)->place, 1);
}

TEST(HandleTableTest, NeverGivesAHandleTwice)
{
    Table table;
    Table other;
    std::set<Handle__*> handles;
    for (int place = 0; place < 10; ++place) {
        handles.insert(table.insert({&firstDisplay, place}));
        handles.insert(other.insert({&firstDisplay, place}));
        table.forget(table.find({&firstDisplay, place}));
        handles.insert(table.insert({&firstDisplay, place}));
    }
    EXPECT_EQ(handles.size(), 30u);
}

TEST(HandleTableTest, KnowsNoHandleOfAnotherTable)
{
    Table table;
    Table second;
    tavo::HandleTable<OtherHandle__*, Thing> third;
    table.insert({&firstDisplay, 1});
    EXPECT_FALSE(table.getNative(second.insert({&firstDisplay, 1})));
    EXPECT_FALSE(table.getNative(reinterpret_cast<Handle__*>(third.insert({&firstDisplay, 1}))));
}

TEST(HandleTableTest, ForgetsAnObjectWhosePlaceAnotherHasTaken)
{
    Table table;
    const auto old = table.insert({&firstDisplay, 1, 10});
    EXPECT_EQ(table.find({&firstDisplay, 1, 11}), nullptr);

    const auto handle = table.insert({&firstDisplay, 1, 11});
    EXPECT_NE(handle, old);
    EXPECT_FALSE(table.getNative(old));
    ASSERT_TRUE(table.getNative(handle));
    EXPECT_EQ(table.getNative(handle)->serial, 11);
}

TEST(HandleTableTest, ForgetsOneHandle)
{
    Table table;
    const auto forgotten = table.insert({&firstDisplay, 1});
    const auto kept = table.insert({&firstDisplay, 2});
    table.forget(forgotten);
    table.forget(forgotten);
    table.forget(nullptr);
    EXPECT_FALSE(table.getNative(forgotten));
    EXPECT_EQ(table.find({&firstDisplay, 1}), nullptr);
    EXPECT_EQ(table.find({&firstDisplay, 2}), kept);
}

TEST(HandleTableTest, ForgetsAllOfADisplay)
{
    Table table;
    const auto first = table.insert({&firstDisplay, 1});
    const auto second = table.insert({&firstDisplay, 2});
    const auto kept = table.insert({&secondDisplay, 3});
    table.forgetDisplay(&firstDisplay);
    EXPECT_FALSE(table.getNative(first));
    EXPECT_FALSE(table.getNative(second));
    EXPECT_EQ(table.find({&firstDisplay, 1}), nullptr);
    EXPECT_EQ(table.find({&secondDisplay, 3}), kept);
}

TEST(HandleTableTest, GivesThreadsTheSameHandles)
{
    Table table;
    std::vector<Handle__*> handles[2];
    const auto insertAll = [&table](std::vector<Handle__*>& own) {
        for (int place = 0; place < 1000; ++place)
            own.push_back(table.insert({&firstDisplay, place}));
    };
    std::thread other(insertAll, std::ref(handles[1]));
    insertAll(handles[0]);
    other.join();
    EXPECT_EQ(handles[0], handles[1]);
}

} // namespace
