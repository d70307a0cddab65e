#include "vireo/show/window/pictureFile.h"

#include <gmock/gmock.h>

namespace tavo {
namespace {

QString fileOf(const std::string& viewName)
{
    std::set<QString> taken;
    return pictureFileOf(viewName, taken);
}

TEST(PictureFileTest, IsMadeOfAnyName)
{
    EXPECT_EQ(fileOf("Speed-2_a.b"), "Speed-2_a.b.png");
    EXPECT_EQ(fileOf(""), "_.png");
    EXPECT_EQ(fileOf(std::string(100'000, 'x')), QString(80, 'x') + ".png");
    EXPECT_EQ(fileOf("\xFF"), "_.png");
    EXPECT_EQ(fileOf("a/b\\c\nd:e*f"), "a_b_c_d_e_f.png");
    EXPECT_EQ(fileOf(std::string("a\0b", 3)), "a_b.png");
    EXPECT_EQ(fileOf("../c"), "_.._c.png");
}

TEST(PictureFileTest, IsNoDeviceOfWindows)
{
    EXPECT_EQ(fileOf("con"), "_con.png");
    EXPECT_EQ(fileOf("NUL.x"), "_NUL.x.png");
    EXPECT_EQ(fileOf("com1"), "_com1.png");
    EXPECT_EQ(fileOf("console"), "console.png");
    EXPECT_EQ(fileOf("com12"), "com12.png");
}

TEST(PictureFileTest, IsEachViewsOwn)
{
    std::set<QString> taken;
    EXPECT_EQ(pictureFileOf("a/b", taken), "a_b.png");
    EXPECT_EQ(pictureFileOf("a?b", taken), "a_b-2.png");
    EXPECT_EQ(pictureFileOf("A_B", taken), "A_B-3.png") << "some file systems take it for the same";
    EXPECT_EQ(pictureFileOf("a_b-2", taken), "a_b-2-2.png");
}

} // namespace
} // namespace tavo
