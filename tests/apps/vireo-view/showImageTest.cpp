#include "apps/vireo-view/showImage.h"

#include <gtest/gtest.h>

#include "tests/apps/vireo-view/FilesTest.h"
#include "tests/apps/vireo-view/contentsOf.h"
#include "vireo/show/show.h"

namespace vireo_view {
namespace {

class ShowImageTest : public FilesTest
{
protected:
    ~ShowImageTest() override { tavo::clear(); }

    ImageExhibit load(const std::string& name, std::string_view contents)
    {
        return std::get<ImageExhibit>(std::move(loadExhibits(write(name, contents), name, {}, nullptr).at(0)));
    }

    std::string dataOf(const std::string& image) const
    {
        const std::filesystem::path file = directory() / "data.csv";
        EXPECT_TRUE(tavo::saveData(image, file.string()));
        return contentsOf(file);
    }
};

TEST_F(ShowImageTest, ShowsTheNumbersOfAFile)
{
    showImage(load("a.pgm", "P2 2 1 255 7 9\n"), "a.pgm");
    EXPECT_EQ(dataOf("a.pgm"), "x,y,value\n0,0,7\n1,0,9\n");
}

TEST_F(ShowImageTest, ShowsSeveralFilesAsAStack)
{
    std::vector<std::string> names;
    addToStack(load("a.pgm", "P2 1 1 255 7\n"), "together", names);
    addToStack(load("b.pgm", "P2 1 1 255 8\n"), "together", names);
    EXPECT_EQ(names, (std::vector<std::string>{"a.pgm", "b.pgm"}));
    EXPECT_EQ(dataOf("together"), "x,y,value\n0,0,7\n") << "the first one is seen";
}

} // namespace
} // namespace vireo_view
