#include <cmath>
#include <gtest/gtest.h>

#include "tests/vireo/show/scenes/sceneUpdates.h"
#include "vireo/show/scenes/SceneContext.h"

// Pictures that are larger than the driver's framebuffers are drawn in tiles. Nobody sees that.
namespace tavo {
namespace {

constexpr QSize SIZE(900, 700);

// A wave of points without normals, as depths light them, or of triangles.
std::vector<Vector3d> wave()
{
    std::vector<Vector3d> points;
    for (int i = 0; i < 120; ++i)
        for (int j = 0; j < 120; ++j)
            points.emplace_back(i / 12.0, j / 12.0, std::sin(i / 9.0) + std::cos(j / 7.0));
    return points;
}

std::vector<std::array<int, 3>> triangles()
{
    std::vector<std::array<int, 3>> all;
    for (int i = 0; i + 1 < 120; ++i)
        for (int j = 0; j + 1 < 120; ++j) {
            const int corner = 120 * i + j;
            all.push_back({corner, corner + 120, corner + 1});
            all.push_back({corner + 1, corner + 120, corner + 121});
        }
    return all;
}

int numDifferent(const QImage& one, const QImage& other)
{
    int number = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            number += one.pixel(x, y) != other.pixel(x, y);
    return number;
}

class TiledPictureTest : public testing::TestWithParam<bool>
{
protected:
    void apply(ItemUpdate update)
    {
        SceneUpdate scene = seenFrom("front", GetParam());
        scene.side.reset();
        scene.items["item"] = std::move(update);
        m_View.apply(scene);
    }

    // What rounding leaves of the difference lies on edges, where there is one pixel more or less.
    void expectSameInTiles()
    {
        const QImage whole = m_View.picture(SIZE);
        ASSERT_EQ(whole.size(), SIZE);
        ASSERT_GT(numDifferent(whole, blank(whole)), 20000) << "there is something to see";
        m_Context->limitPictures(512);
        const QImage tiled = m_View.picture(SIZE);
        m_Context->limitPictures(8192);
        ASSERT_EQ(tiled.size(), SIZE);
        EXPECT_EQ(tiled.format(), whole.format());
        EXPECT_LT(numDifferent(whole, tiled), SIZE.width() * SIZE.height() / 500);
    }

    static QImage blank(const QImage& like)
    {
        QImage picture = like;
        picture.fill(like.pixel(like.width() - 1, like.height() / 2));
        return picture;
    }

    SceneView m_View{"scene"};
    std::shared_ptr<SceneContext> m_Context = SceneContext::get();
};

TEST_P(TiledPictureTest, CloudsAreTheSame)
{
    ItemUpdate cloud = item(ItemKind::Cloud, Points(wave()));
    cloud.size = 12;
    apply(cloud);
    expectSameInTiles();
}

TEST_P(TiledPictureTest, PointsOfASizeInTheSceneAreTheSame)
{
    ItemUpdate cloud = item(ItemKind::Cloud, Points(wave()));
    cloud.radii = NumberTuples{Numbers({0.2}), 1};
    apply(cloud);
    expectSameInTiles();
}

TEST_P(TiledPictureTest, SurfacesAreTheSame)
{
    apply(item(ItemKind::Mesh, Points(wave()), {}, Faces(triangles())));
    expectSameInTiles();
}

TEST_P(TiledPictureTest, TranslucentSurfacesAreTheSame)
{
    ItemUpdate surface = item(ItemKind::Mesh, Points(wave()), {}, Faces(triangles()));
    surface.opacity = 0.5;
    apply(surface);
    expectSameInTiles();
}

INSTANTIATE_TEST_SUITE_P(Views, TiledPictureTest, testing::Bool(),
    [](const auto& info) { return info.param ? "Orthographic" : "Perspective"; });

TEST(LargePictureTest, AreDrawnBeyondTheLargestFramebuffer)
{
    SceneView view("scene");
    ItemUpdate cloud = item(ItemKind::Cloud, Points(wave()));
    cloud.colour = RGBA8(255, 0, 0, 255);
    send(view, "cloud", cloud);
    const QImage picture = view.picture({20'000, 200});
    EXPECT_EQ(picture.size(), QSize(20'000, 200));
}

} // namespace
} // namespace tavo
