#include "apps/vireo-view/pictureName.h"

#include <gtest/gtest.h>

namespace vireo_view {
namespace {

std::string name(unsigned int number, const std::string& sectionName)
{
    return pictureName(number, sectionName).toStdString();
}

TEST(PictureNameTest, IsTheSectionsNameWithoutBracketsAndBlanks)
{
    EXPECT_EQ(name(1, "building.ply - 100000 points"), "01-building.ply-100000-points.png");
    EXPECT_EQ(name(12, "a.csv - b (yellow), c (cyan) (1 to 2) over t (0 to 9)"), "12-a.csv-b-c-over-t.png");
}

TEST(PictureNameTest, CannotLeaveItsDirectory)
{
    EXPECT_EQ(name(1, "../../etc/x y"), "01-etc-x-y.png");
    EXPECT_EQ(name(1, "..."), "01-.png");
}

TEST(PictureNameTest, KeepsLettersBeyondAsciiAndIsNotTooLong)
{
    EXPECT_EQ(name(1, "H\xC3\xB6he"), "01-H\xC3\xB6he.png");
    EXPECT_LT(name(1, std::string(1000, 'x')).size(), 100u);
}

} // namespace
} // namespace vireo_view
