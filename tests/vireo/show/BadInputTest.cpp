#include <QApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <limits>
#include <malloc.h>
#include <vector>

#include "vireo/show/delivery/FrontDoor.h"
#include "vireo/show/show.h"

// What cannot be shown is not kept either. Under the sanitizers, which have an allocator of their own, they look for
// leaks instead.
namespace tavo {
namespace {

std::size_t bytesInUse()
{
    const auto memory = mallinfo2();
    return memory.uordblks + memory.hblkhd;
}

void sendBadInput()
{
    const std::vector<double> thousand(1000, 1);
    const std::vector<double> fewer(999, 1);
    const std::vector<double> none;
    const std::vector<double> notNumbers(1000, std::numeric_limits<double>::quiet_NaN());
    plot("plot").curve("y", thousand, fewer).append("y", fewer, thousand).band("band", thousand, fewer, thousand);
    plot("plot").curve("none", none).curve("NaN", notNumbers).style("y", "polka").xRange(1, 1);
    for (const std::string& name : {std::string(), std::string(10'000, 'x'), std::string("\xFF\n/")})
        plot(name).curve(name, thousand, fewer).title(name);
    scene("scene").cloud("points", none).scalar("s", fewer).colours(thousand);
    scene("scene").mesh("mesh", fewer, {0, 1, 1'000'000});
    scene("scene").volume("volume", thousand, {7, 7, 7}, 1);
    scene("plot").cloud("points", fewer);
    image("image", thousand, 7, 7);
    image("image", fewer, -1, 5);
    slices("slices", thousand, {7, 7, 7}, 1);
}

TEST(BadInputTest, LeavesNothingBehind)
{
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    int numArguments = 1;
    const QApplication application(numArguments, arguments);
    const QTemporaryDir folder;
    FrontDoor& door = *FrontDoor::get();
    const auto sendRound = [&] {
        sendBadInput();
        door.showWaiting();
        EXPECT_NE(door.savePicture("plot", folder.filePath("none/p.png"), {10, 10}), "");
        EXPECT_NE(door.saveData("plot", folder.filePath("none/p.csv")), "");
    };
    testing::internal::CaptureStderr();
    for (int round = 0; round < 10; ++round)
        sendRound();
    const std::size_t before = bytesInUse();
    constexpr std::size_t NUM_ROUNDS = 100;
    for (std::size_t round = 0; round < NUM_ROUNDS; ++round)
        sendRound();
    EXPECT_LT(bytesInUse(), before + NUM_ROUNDS * 4000) << "half of the numbers of a single call each";
    EXPECT_FALSE(testing::internal::GetCapturedStderr().empty());
    clear();
    door.showWaiting();
}

} // namespace
} // namespace tavo
