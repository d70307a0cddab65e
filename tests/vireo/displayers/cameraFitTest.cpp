#include "vireo/displayers/cameraFit.h"

#include <gtest/gtest.h>

#include "tavo/base/gui/Camera.h"

namespace tavo {
namespace {

TEST(CameraFitTest, LooksAtTheMiddleFromTwiceTheLargestExtentBeyondTheOldLookAtPoint)
{
    Camera camera;
    ASSERT_TRUE(camera.setView({7, 2, 3}, {3, 2, 3}, {0, 1, 0}));
    const CameraFit fit = fitCamera(camera, {{-1, 10, 20}, {1, 15, 23}});
    EXPECT_EQ(fit.eye, Vector3f(-7, 2, 3)) << "from (3, 2, 3), 10 along negative X";
    EXPECT_EQ(fit.lookAt, Vector3f(0, 12.5f, 21.5f));
}

TEST(CameraFitTest, TakesTheLargestExtentAlongEachAxis)
{
    const Camera camera; // from (0, 0, -1) to the origin
    EXPECT_EQ(fitCamera(camera, {{0, 0, 0}, {4, 1, 1}}).eye, Vector3f(0, 0, 8));
    EXPECT_EQ(fitCamera(camera, {{0, 0, 0}, {1, 5, 1}}).eye, Vector3f(0, 0, 10));
    EXPECT_EQ(fitCamera(camera, {{0, 0, 0}, {1, 1, 6}}).eye, Vector3f(0, 0, 12));
}

TEST(CameraFitTest, StaysAtTheOldLookAtPointForABoxOfOnePoint)
{
    const CameraFit fit = fitCamera(Camera(), {{5, 5, 5}, {5, 5, 5}});
    EXPECT_EQ(fit.eye, Vector3f(0, 0, 0));
    EXPECT_EQ(fit.lookAt, Vector3f(5, 5, 5));
}

} // namespace
} // namespace tavo
