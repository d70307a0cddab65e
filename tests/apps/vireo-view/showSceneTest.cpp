#include "apps/vireo-view/showScene.h"

#include <QImage>
#include <fstream>
#include <gtest/gtest.h>
#include <string>

#include "tests/apps/vireo-view/FilesTest.h"
#include "vireo/show/show.h"

namespace vireo_view {
namespace {

class ShowSceneTest : public FilesTest
{
protected:
    ~ShowSceneTest() override { tavo::clear(); }

    SceneExhibit load(const std::string& name, std::string_view contents)
    {
        return std::get<SceneExhibit>(std::move(loadExhibits(write(name, contents), name, {}, nullptr).at(0)));
    }

    QImage pictureOf(const std::string& scene) const
    {
        tavo::scene(scene).bearings(false); // what is counted are the pixels of the items
        const std::filesystem::path file = directory() / "picture.png";
        EXPECT_TRUE(tavo::savePicture(scene, file.string(), 300, 199)); // too small for the orientation mark
        return QImage(QString::fromStdString(file.string()));
    }
};

// How many pixels have mainly that channel: 0 red, 1 green, 2 blue.
int numPixels(const QImage& picture, int channel)
{
    int number = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            const int channels[3] = {qRed(pixel), qGreen(pixel), qBlue(pixel)};
            number += channels[channel] > 100 && channels[(channel + 1) % 3] < 80 && channels[(channel + 2) % 3] < 80;
        }
    return number;
}

// Two squares far from the origin, the left one red and the right one green.
const std::string SQUARES = "v 5500000.25 0 0 1 0 0\nv 5500001.25 0 0 1 0 0\nv 5500001.25 1 0 1 0 0\n"
                            "v 5500000.25 1 0 1 0 0\nv 5500001.5 0 0 0 1 0\nv 5500002.5 0 0 0 1 0\n"
                            "v 5500002.5 1 0 0 1 0\nv 5500001.5 1 0 0 1 0\nf 1 2 3 4\nf 5 6 7 8\n";

TEST_F(ShowSceneTest, ShowsFacesInTheirColoursWithYUpwards)
{
    showScene(load("a.obj", SQUARES), "a.obj");
    const QImage picture = pictureOf("a.obj");
    EXPECT_GT(numPixels(picture, 0), 2000);
    EXPECT_GT(numPixels(picture, 1), 2000);
    EXPECT_EQ(numPixels(picture.copy(0, 0, 140, 200), 1), 0) << "x goes to the right";
}

TEST_F(ShowSceneTest, ShowsConcavePolygonsAsTheyAre)
{
    // An L, which cuts from its first corner would leave, and a triangle beside it.
    const std::string red = " 255 0 0\n";
    std::string file = "COFF\n9 2 0\n";
    for (const char* const point : {"2 0 0", "2 1 0", "1 1 0", "1 2 0", "0 2 0", "0 0 0", "3 0 0", "4 0 0", "4 2 0"})
        file += point + red;
    file += "6 3 4 5 0 1 2\n3 6 7 8\n";
    showScene(load("a.off", file), "a.off");
    const QImage picture = pictureOf("a.off");
    EXPECT_GT(numPixels(picture, 0), 5000);
    EXPECT_EQ(numPixels(picture.copy(118, 0, 27, 85), 0), 0);
}

TEST_F(ShowSceneTest, ShowsTheColoursAndTheNumbersOfFaces)
{
    // As many faces as points.
    const std::string points = "4 4 0\n0 0 0\n2 0 0\n2 1 0\n0 1 0\n";
    showScene(load("a.off", "OFF\n" + points + "3 0 1 2 255 0 0\n3 0 2 3 0 0 255\n3 0 1 2 255 0 0\n3 0 2 3 0 0 255\n"),
        "a.off");
    const QImage picture = pictureOf("a.off");
    EXPECT_GT(numPixels(picture, 0), 2000);
    EXPECT_GT(numPixels(picture, 2), 2000);
    showScene(load("b.ply", "ply\nformat ascii 1.0\nelement vertex 3\nproperty float x\nproperty float y\n"
                            "property float z\nproperty float height\nelement face 1\n"
                            "property list uchar int vertex_indices\nproperty float height\nend_header\n"
                            "0 0 0 1\n1 0 0 2\n0 1 0 3\n3 0 1 2 5\n"),
        "b.ply");
    ASSERT_TRUE(tavo::saveData("b.ply", (directory() / "b.csv").string()));
    std::ifstream data(directory() / "b.csv");
    std::string header;
    std::getline(data, header);
    EXPECT_NE(header.find("height (2)"), std::string::npos) << header;
}

TEST_F(ShowSceneTest, ShowsPointsByTheNumbersThatTheyHave)
{
    std::string points = "x y z up\n";
    for (int i = 0; i < 100; ++i)
        for (int k = 0; k < 100; ++k)
            points += std::to_string(i) + ' ' + std::to_string(k) + " 0 " + std::to_string(i < 50 ? 0 : 1) + '\n';
    showScene(load("a.xyz", points), "a.xyz");
    const QImage picture = pictureOf("a.xyz");
    const QColor left = picture.pixelColor(100, 100), right = picture.pixelColor(200, 100);
    EXPECT_GT(left.blue(), left.green()) << "the map begins with violet";
    EXPECT_GT(right.green(), 150) << "and ends with yellow";
    EXPECT_LT(right.blue(), 100);
}

TEST_F(ShowSceneTest, ShowsSeveralFilesInOneSceneEachUnderItsName)
{
    showScene(load("a.obj", SQUARES), "both");
    showScene(load("b.off", "COFF\n3 1 0\n5500000.25 -1 0 0 0 255 255\n5500002.5 -1 0 0 0 255 255\n"
                            "5500002.5 -.25 0 0 0 255 255\n3 0 1 2\n"),
        "both");
    const QImage picture = pictureOf("both");
    for (int channel = 0; channel < 3; ++channel)
        EXPECT_GT(numPixels(picture, channel), 1000) << channel;
    tavo::scene("both").remove("a.obj");
    EXPECT_EQ(numPixels(pictureOf("both"), 0), 0);
}

TEST_F(ShowSceneTest, PlacesAGeometrySeveralTimes)
{
    SceneExhibit exhibit = load("a.off", "COFF\n4 1 0\n0 0 0 255 0 0 255\n1 0 0 255 0 0 255\n1 1 0 255 0 0 255\n"
                                         "0 1 0 255 0 0 255\n4 0 1 2 3\n");
    std::array<double, 16> matrix = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5500000, 0, 0, 1};
    exhibit.geometries[0].placements = {{"first", matrix}};
    matrix[12] += 2;
    exhibit.geometries[0].placements.push_back({"second", matrix});
    showScene(std::move(exhibit), "a.off");
    const QImage picture = pictureOf("a.off");
    EXPECT_GT(numPixels(picture.copy(0, 0, 130, 200), 0), 1000);
    EXPECT_EQ(numPixels(picture.copy(140, 0, 20, 200), 0), 0);
    EXPECT_GT(numPixels(picture.copy(170, 0, 130, 200), 0), 1000);
}

TEST_F(ShowSceneTest, TurnsXUpwards)
{
    SceneExhibit exhibit = load("a.off", "COFF\n4 1 0\n0 0 0 255 0 0 255\n0 1 0 255 0 0 255\n9 1 0 255 0 0 255\n"
                                         "9 0 0 255 0 0 255\n4 0 1 2 3\n");
    exhibit.side = Side::FRONT;
    exhibit.isTurned = true;
    showScene(std::move(exhibit), "a.off");
    const QImage picture = pictureOf("a.off");
    EXPECT_GT(numPixels(picture.copy(140, 0, 20, 200), 0), 1000);
    EXPECT_EQ(numPixels(picture.copy(0, 0, 100, 200), 0), 0);
}

} // namespace
} // namespace vireo_view
