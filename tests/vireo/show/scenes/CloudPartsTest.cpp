#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>

#include "tests/vireo/show/scenes/sceneUpdates.h"
#include "vireo/show/scenes/drawnItem.h"

// Clouds are drawn in chunks, and without the points that are not finite. Nobody sees that.
namespace tavo {
namespace {

constexpr double NONE = std::numeric_limits<double>::quiet_NaN();

struct Cloud
{
    std::vector<Vector3d> points;
    std::vector<RGBA8> colours;
};

// Along x, so that chunks have places of their own; some points are not finite.
Cloud coil(std::size_t size, bool hasNaN)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> off(-0.1, 0.1);
    std::uniform_int_distribution<int> component(0, 255);
    Cloud cloud;
    for (std::size_t i = 0; i < size; ++i) {
        const double angle = double(i) / 3000;
        const Vector3d point(
            8.0 * double(i) / double(size) + off(random), std::cos(angle) + off(random), std::sin(angle) + off(random));
        cloud.points.push_back(hasNaN && i % 7 == 3 ? Vector3d(NONE, 0, 0) : point);
        cloud.colours.emplace_back(component(random), component(random), component(random), 255);
    }
    return cloud;
}

ItemUpdate partOf(const Cloud& cloud, std::size_t begin, std::size_t end)
{
    const auto part = [=](const auto& all) {
        return std::vector(all.begin() + std::ptrdiff_t(begin), all.begin() + std::ptrdiff_t(end));
    };
    ItemUpdate update = item(ItemKind::Cloud, Points(part(cloud.points)));
    update.colours = NumberTuples{Colours(part(cloud.colours)), 4};
    update.size = 5;
    return update;
}

// By more than the light that slightly different depths give.
int numDifferent(const QImage& one, const QImage& other)
{
    const auto differ = [](int a, int b) { return std::abs(a - b) > 24; };
    int number = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            number += differ(qRed(a), qRed(b)) || differ(qGreen(a), qGreen(b)) || differ(qBlue(a), qBlue(b));
        }
    return number;
}

// As if there were many clouds. Rounding is another for each: here and there another one of two points is nearer.
TEST(CloudPartsTest, PicturesAreAsIfPointsWereDrawnAsSent)
{
    constexpr std::size_t SIZE = 63;
    const Cloud cloud = coil(2 * PointPhases::CHUNK + 1000, true);
    SceneUpdate wholeUpdate;
    SceneUpdate partsUpdate;
    wholeUpdate.hasBearings = partsUpdate.hasBearings = false;
    wholeUpdate.items["cloud"] = partOf(cloud, 0, cloud.points.size());
    for (std::size_t begin = 0; begin < cloud.points.size(); begin += SIZE)
        partsUpdate.items[std::to_string(1000000 + begin)] =
            partOf(cloud, begin, std::min(begin + SIZE, cloud.points.size()));
    SceneView whole("whole");
    SceneView parts("parts");
    for (SceneView* view : {&whole, &parts})
        view->resize(300, 200);
    whole.apply(wholeUpdate);
    parts.apply(partsUpdate);
    for (const double zoom : {1., 6.}) {
        whole.getCamera().zoom(zoom, {1, 1, 0});
        parts.getCamera() = whole.getCamera();
        whole.showChoice();
        parts.showChoice();
        const QImage picture = whole.picture({300, 200});
        const int numDrawn = 300 * 200 - numPixels(picture, whole.palette().color(QPalette::Base));
        EXPECT_GT(numDrawn, 3000);
        EXPECT_LT(numDifferent(picture, parts.picture({300, 200})), numDrawn / 50) << zoom;
    }
}

TEST(CloudPartsTest, EveryVertexKnowsWhichPointItIs)
{
    for (const bool hasNaN : {false, true}) {
        const Cloud cloud = coil(PointPhases::CHUNK + 5000, hasNaN);
        ItemUpdate update = item(ItemKind::Cloud, Points(cloud.points));
        const DrawnItem drawn = drawnItem(*update.shape, nullptr, false, false);
        EXPECT_EQ(drawn.chunks.size(), drawn.phases->numChunks());
        std::size_t vertex = 0;
        std::vector<bool> isSeen(cloud.points.size());
        drawn.forEachSource(drawn.numVertices(), [&](std::size_t source) {
            ASSERT_EQ(drawn.sourceOf(vertex), source);
            ASSERT_FALSE(isSeen[source]);
            isSeen[source] = true;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const float expected = static_cast<float>(cloud.points[source][axis] - drawn.origin[axis]);
                ASSERT_EQ(drawn.positions[3 * vertex + axis], expected);
                ASSERT_LE(drawn.chunks[vertex / PointPhases::CHUNK].getMin()[axis], expected);
                ASSERT_GE(drawn.chunks[vertex / PointPhases::CHUNK].getMax()[axis], expected);
            }
            ++vertex;
        });
        EXPECT_EQ(vertex, drawn.numVertices());
        for (std::size_t i = 0; i < cloud.points.size(); ++i)
            ASSERT_EQ(isSeen[i], !std::isnan(cloud.points[i][0])) << i;
    }
}

TEST(CloudPartsTest, NormalsAreThoseOfTheirPoints)
{
    const Cloud cloud = coil(PointPhases::CHUNK + 5000, true);
    ItemUpdate update = item(ItemKind::Cloud, Points(cloud.points));
    std::vector<Vector3d> normals;
    for (std::size_t i = 0; i < cloud.points.size(); ++i)
        normals.emplace_back(double(i), 1, NONE);
    const NumberTuples tuples{Points(normals), 3};
    const DrawnItem drawn = drawnItem(*update.shape, &tuples, false, false);
    for (std::size_t vertex = 0; vertex < drawn.numVertices(); ++vertex) {
        ASSERT_EQ(drawn.normals[3 * vertex], static_cast<float>(drawn.sourceOf(vertex)));
        ASSERT_EQ(drawn.normals[3 * vertex + 2], 0);
    }
}

TEST(CloudPartsTest, AFewAreTheSamePointsWithTheirNormals)
{
    const Cloud cloud = coil(3 * PointPhases::CHUNK + 5000, true);
    ItemUpdate update = item(ItemKind::Cloud, Points(cloud.points));
    const NumberTuples normals{Points(cloud.points), 3};
    const DrawnItem all = drawnItem(*update.shape, &normals, false, false);
    for (const std::size_t numPhases : {10, 64, 1000}) {
        const DrawnItem few = drawnPhases(all, numPhases, *update.shape, &normals);
        std::size_t next = 0;
        for (std::size_t chunk = 0; chunk < all.phases->numChunks(); ++chunk)
            all.phases->forEachPoint(chunk, numPhases, [&](std::size_t vertex) {
                ASSERT_LT(next, few.numVertices());
                ASSERT_EQ(few.sourceOf(next), all.sourceOf(vertex));
                for (std::size_t axis = 0; axis < 3; ++axis) {
                    ASSERT_EQ(few.positions[3 * next + axis], all.positions[3 * vertex + axis]);
                    ASSERT_EQ(few.normals[3 * next + axis], all.normals[3 * vertex + axis]);
                }
                ++next;
            });
        EXPECT_EQ(next, few.numVertices());
    }
}

} // namespace
} // namespace tavo
