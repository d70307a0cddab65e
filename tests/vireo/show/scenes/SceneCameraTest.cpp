#include "vireo/show/scenes/SceneCamera.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tavo {

namespace {

constexpr SceneCamera::Size SIZE{640, 400};

// Where and how large the data are.
struct Data
{
    Vector3d origin;
    double scale;

    Vector3d at(double x, double y, double z) const { return origin + scale * Vector3d(x, y, z); }
    SceneBox box() const
    {
        SceneBox box;
        box.extend(at(-1, -2, -0.5));
        box.extend(at(1, 2, 0.5));
        return box;
    }
    // What is lost where numbers are so much larger than what is looked at.
    double pixels() const { return 1e-9 + length(origin) / scale * 1e-12; }
};

class SceneCameraTest : public testing::TestWithParam<Data>
{
protected:
    void expectAt(const Vector3d& point, double x, double y) const
    {
        const SceneCamera::Pixel pixel = m_Camera.project(point, SIZE);
        EXPECT_NEAR(pixel.x, x, m_Data.pixels());
        EXPECT_NEAR(pixel.y, y, m_Data.pixels());
    }

    // Where OpenGL puts it, through the matrices.
    SceneCamera::Pixel drawn(const Vector3d& point) const
    {
        const Vector3d eye = m_Camera.modelView({}, m_Data.origin) * (point - m_Data.origin);
        const Matrix4 clip = m_Camera.projection(m_Data.box(), SIZE);
        double homogeneous[4];
        for (std::size_t row = 0; row < 4; ++row)
            homogeneous[row] =
                clip.at(row, 0) * eye[0] + clip.at(row, 1) * eye[1] + clip.at(row, 2) * eye[2] + clip.at(row, 3);
        return {(homogeneous[0] / homogeneous[3] + 1) * SIZE.width / 2,
            (1 - homogeneous[1] / homogeneous[3]) * SIZE.height / 2, homogeneous[2] / homogeneous[3]};
    }

    const Data m_Data = GetParam();
    SceneCamera m_Camera;
};

INSTANTIATE_TEST_SUITE_P(Data, SceneCameraTest,
    testing::Values(Data{{0, 0, 0}, 1}, Data{{0, 0, 0}, 1e-6}, Data{{0, 0, 0}, 1e7}, Data{{5.5e6, -4.2e5, 120}, 1},
        Data{{5.5e6, 5.5e6, 5.5e6}, 1e-3}, Data{{5.5e6, 0, 0}, 1e7}));

TEST_P(SceneCameraTest, FittedBoxesFillThePicture)
{
    for (const bool isOrthographic : {false, true}) {
        m_Camera.setOrthographic(isOrthographic);
        for (const double azimuth : {0.0, 30.0, 135.0}) {
            m_Camera.setDirection(azimuth, 25);
            m_Camera.fit(m_Data.box(), SIZE);
            double farthest = 0; // from the middle, 1 is the border
            for (const Vector3d& corner : m_Data.box().corners()) {
                const SceneCamera::Pixel pixel = m_Camera.project(corner, SIZE);
                EXPECT_GT(pixel.depth, isOrthographic ? -INFINITY : 0);
                farthest = std::max(
                    {farthest, std::abs(pixel.x / SIZE.width * 2 - 1), std::abs(pixel.y / SIZE.height * 2 - 1)});
            }
            EXPECT_LT(farthest, 1);
            EXPECT_GT(farthest, 0.85);
        }
    }
}

TEST_P(SceneCameraTest, NearAndFarLeaveNothingOut)
{
    for (const bool isOrthographic : {false, true}) {
        m_Camera.setOrthographic(isOrthographic);
        m_Camera.fit(m_Data.box(), SIZE);
        for (const Vector3d& corner : m_Data.box().corners()) {
            const SceneCamera::Pixel pixel = drawn(corner);
            EXPECT_LT(std::abs(pixel.depth), 1);
            expectAt(corner, pixel.x, pixel.y);
            const double depth = m_Camera.project(corner, SIZE).depth;
            EXPECT_NEAR(m_Camera.depthAt((pixel.depth + 1) / 2, m_Data.box()) / depth, 1, m_Data.pixels());
        }
    }
}

TEST_P(SceneCameraTest, SidesAreSeenStraightOn)
{
    struct Expected
    {
        SceneCamera::Side side;
        Vector3d right;
        Vector3d up;
    };
    for (const auto& [side, right, up] : {Expected{SceneCamera::Side::Front, {1, 0, 0}, {0, 0, 1}},
             Expected{SceneCamera::Side::Back, {-1, 0, 0}, {0, 0, 1}},
             Expected{SceneCamera::Side::Left, {0, -1, 0}, {0, 0, 1}},
             Expected{SceneCamera::Side::Right, {0, 1, 0}, {0, 0, 1}},
             Expected{SceneCamera::Side::Top, {1, 0, 0}, {0, 1, 0}},
             Expected{SceneCamera::Side::Bottom, {1, 0, 0}, {0, -1, 0}}}) {
        m_Camera.look(side);
        m_Camera.fit(m_Data.box(), SIZE);
        const double pixel = m_Camera.unitsPerPixel(m_Camera.getDistance(), SIZE);
        expectAt(m_Data.box().centre() + (100 * pixel) * right, 420, 200);
        expectAt(m_Data.box().centre() + (100 * pixel) * up, 320, 100);
    }
}

TEST_P(SceneCameraTest, TurningKeepsThePlaceOfWhatItTurnsAbout)
{
    m_Camera.fit(m_Data.box(), SIZE);
    const Vector3d about = m_Data.at(0.5, 1, 0.2);
    const SceneCamera::Pixel before = m_Camera.project(about, SIZE);
    m_Camera.turn(40, 200, about);
    expectAt(about, before.x, before.y);
    EXPECT_EQ(m_Camera.getElevation(), 90) << "up stays up";
    m_Camera.turn(0, -130, about);
    expectAt(about, before.x, before.y);
    const SceneCamera::Pixel above = m_Camera.project(m_Data.at(0.5, 1, 0.3), SIZE);
    EXPECT_LT(above.y, before.y) << "what is above is seen above";
}

TEST_P(SceneCameraTest, PanningMovesWhatIsThereWithThePointer)
{
    for (const bool isOrthographic : {false, true}) {
        m_Camera.setOrthographic(isOrthographic);
        m_Camera.fit(m_Data.box(), SIZE);
        const Vector3d there = m_Data.at(0.5, -1, 0.2);
        const SceneCamera::Pixel before = m_Camera.project(there, SIZE);
        m_Camera.pan(30, -20, before.depth, SIZE);
        expectAt(there, before.x + 30, before.y - 20);
    }
}

TEST_P(SceneCameraTest, ZoomingKeepsThePlaceOfWhatItZoomsTo)
{
    for (const bool isOrthographic : {false, true}) {
        m_Camera.setOrthographic(isOrthographic);
        m_Camera.fit(m_Data.box(), SIZE);
        const Vector3d there = m_Data.at(0.5, -1, 0.2);
        const SceneCamera::Pixel before = m_Camera.project(there, SIZE);
        const double units = m_Camera.unitsPerPixel(before.depth, SIZE);
        m_Camera.zoom(1.25, there);
        expectAt(there, before.x, before.y);
        EXPECT_NEAR(m_Camera.unitsPerPixel(m_Camera.project(there, SIZE).depth, SIZE) / units, 0.8, m_Data.pixels());
    }
}

TEST_P(SceneCameraTest, PixelsAndPointsLeadToEachOther)
{
    for (const bool isOrthographic : {false, true}) {
        m_Camera.setOrthographic(isOrthographic);
        m_Camera.fit(m_Data.box(), SIZE);
        const Vector3d there = m_Data.at(-0.5, 1.5, 0.4);
        const Vector3d again = m_Camera.unproject(m_Camera.project(there, SIZE), SIZE);
        EXPECT_LT(length(again - there), 1e-12 * (m_Data.scale + length(m_Data.origin)));
    }
}

TEST_P(SceneCameraTest, SwitchingTheProjectionKeepsTheSizeOfWhatIsInTheMiddle)
{
    m_Camera.fit(m_Data.box(), SIZE);
    const double units = m_Camera.unitsPerPixel(m_Camera.getDistance(), SIZE);
    m_Camera.setOrthographic(true);
    EXPECT_EQ(m_Camera.unitsPerPixel(12345, SIZE), units);
}

TEST(SceneCameraNamesTest, SidesHaveNames)
{
    EXPECT_EQ(SceneCamera::sideOf("front"), SceneCamera::Side::Front);
    EXPECT_EQ(SceneCamera::sideOf("bottom"), SceneCamera::Side::Bottom);
    EXPECT_FALSE(SceneCamera::sideOf("Front"));
    EXPECT_FALSE(SceneCamera::sideOf(""));
}

TEST(SceneCameraLimitsTest, NothingPointsAndLinesCanBeFitted)
{
    SceneCamera camera;
    camera.fit({}, SIZE);
    EXPECT_EQ(camera, SceneCamera());
    SceneBox box;
    box.extend({5, 6, 7});
    camera.fit(box, SIZE);
    EXPECT_EQ(camera.getPivot(), Vector3d(5, 6, 7));
    EXPECT_GT(camera.getDistance(), 0);
    camera.look(SceneCamera::Side::Top);
    box.extend({5, 6, 17});
    camera.fit(box, SIZE);
    EXPECT_GT(camera.project({5, 6, 17}, SIZE).depth, 0) << "of a line from its end, the near end";
}

TEST(SceneCameraLimitsTest, ZoomHasEnds)
{
    SceneCamera camera;
    for (int i = 0; i < 5000; ++i)
        camera.zoom(1.25, {1, 2, 3});
    EXPECT_GT(camera.getDistance(), 0);
    for (int i = 0; i < 5000; ++i)
        camera.zoom(0.8, {1, 2, 3});
    EXPECT_TRUE(std::isfinite(camera.getDistance()));
    EXPECT_TRUE(std::isfinite(length(camera.getPivot())));
}

} // namespace

} // namespace tavo
