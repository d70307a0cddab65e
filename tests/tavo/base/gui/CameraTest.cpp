#include "tavo/base/gui/Camera.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tavo {
namespace {

constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr float INFINITE = std::numeric_limits<float>::infinity();
constexpr float LARGEST = std::numeric_limits<float>::max();

// Whether the camera can be looked through.
void expectUsable(const Camera& camera)
{
    for (unsigned int axis = 0; axis < 3; ++axis) {
        EXPECT_TRUE(std::isfinite(camera.getEyePoint()[axis]));
        EXPECT_TRUE(std::isfinite(camera.getLookAtPoint()[axis]));
        EXPECT_TRUE(std::isfinite(camera.getUpVector()[axis]));
    }
    EXPECT_NE(camera.getEyePoint(), camera.getLookAtPoint());
    EXPECT_NEAR(length(camera.getUpVector()), 1.0f, 1e-5f);
}

TEST(CameraTest, LooksAtTheOriginFirst)
{
    const Camera camera;
    EXPECT_EQ(camera.getEyePoint(), Vector3f(0.0f, 0.0f, -1.0f));
    EXPECT_EQ(camera.getLookAtPoint(), Vector3f(0.0f, 0.0f, 0.0f));
    EXPECT_EQ(camera.getUpVector(), Vector3f(0.0f, 1.0f, 0.0f));
}

TEST(CameraTest, KeepsAUsableView)
{
    Camera camera;
    EXPECT_TRUE(camera.setView({5.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 2.0f}));
    EXPECT_EQ(camera.getEyePoint(), Vector3f(5.0f, 0.0f, 0.0f));
    EXPECT_EQ(camera.getLookAtPoint(), Vector3f(1.0f, 0.0f, 0.0f));
    EXPECT_EQ(camera.getUpVector(), Vector3f(0.0f, 0.0f, 1.0f));
}

TEST(CameraTest, MakesUpPerpendicular)
{
    Camera camera;
    camera.setView({0.0f, 0.0f, 5.0f}, {0.0f, 0.0f, 0.0f}, {0.0f, 3.0f, 3.0f});
    EXPECT_EQ(camera.getUpVector(), Vector3f(0.0f, 1.0f, 0.0f));
}

TEST(CameraTest, RefusesPointsThatAreNotFinite)
{
    const Camera before;
    for (float bad : {NOT_A_NUMBER, INFINITE, -INFINITE}) {
        Camera camera;
        EXPECT_FALSE(camera.setView({bad, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}));
        EXPECT_FALSE(camera.setView({0.0f, 0.0f, 0.0f}, {1.0f, bad, 0.0f}, {0.0f, 1.0f, 0.0f}));
        EXPECT_EQ(camera, before);
    }
}

TEST(CameraTest, BacksOffFromALookAtPointItStandsOn)
{
    Camera camera;
    camera.setView({7.0f, 8.0f, 9.0f}, {7.0f, 8.0f, 9.0f}, {0.0f, 1.0f, 0.0f});
    EXPECT_EQ(camera.getLookAtPoint(), Vector3f(7.0f, 8.0f, 9.0f));
    EXPECT_EQ(camera.getEyePoint(), Vector3f(7.0f, 8.0f, 8.0f));

    camera.setView({1e9f, 1e9f, 1e9f}, {1e9f, 1e9f, 1e9f}, {0.0f, 1.0f, 0.0f});
    expectUsable(camera);
}

TEST(CameraTest, FindsAnUpVectorWhereTheGivenOneIsOfNoUse)
{
    const Vector3f useless[] = {{0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 1.0f}, {0.0f, 0.0f, -3.0f}, {NOT_A_NUMBER, 1.0f, 0.0f},
        {INFINITE, 0.0f, 0.0f}};
    for (const Vector3f& up : useless) {
        Camera camera;
        camera.setView({0.0f, 0.0f, 5.0f}, {0.0f, 0.0f, 0.0f}, up);
        expectUsable(camera);
        EXPECT_NEAR(dot(camera.getUpVector(), Vector3f(0.0f, 0.0f, 1.0f)), 0.0f, 1e-6f);
    }
}

TEST(CameraTest, StaysUsableWithTheLargestAndSmallestNumbers)
{
    Camera camera;
    camera.setView({LARGEST, LARGEST, LARGEST}, {-LARGEST, 0.0f, 1.0f}, {LARGEST, -LARGEST, 0.0f});
    expectUsable(camera);
    camera.setView({LARGEST, LARGEST, LARGEST}, {LARGEST, LARGEST, LARGEST / 2}, {0.0f, 1.0f, 0.0f});
    expectUsable(camera);
    for (float small : {std::numeric_limits<float>::denorm_min(), 1e-30f, 1e-20f}) {
        camera.setView({small, 0.0f, 0.0f}, {0.0f, 0.0f, 0.0f}, {0.0f, small, 0.0f});
        expectUsable(camera);
        EXPECT_EQ(length(camera.getEyePoint()), 1.0f) << "too near to be told from the look-at point";
    }
}

} // namespace
} // namespace tavo
