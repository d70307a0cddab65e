#include "vireo/show/scenes/clipSpace.h"

#include <gtest/gtest.h>

namespace tavo {

namespace {

// From -1 to 1 in each direction.
const ToClipSpace IDENTITY{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

// As glFrustum(-1, 1, -1, 1, 1, 100) has it: a right angle, down the negative z axis.
const ToClipSpace PERSPECTIVE{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -101.0 / 99, -1, 0, 0, -200.0 / 99, 0};

Box3d boxAround(const Vector3d& centre, double size)
{
    return {centre - Vector3d(size, size, size), centre + Vector3d(size, size, size)};
}

TEST(ClipSpaceTest, KnowsWhatIsBeyondAPlane)
{
    for (unsigned int axis = 0; axis < 3; ++axis)
        for (const double side : {-1, 1}) {
            Vector3d centre;
            centre[axis] = 1.2 * side;
            EXPECT_TRUE(isOutside(boxAround(centre, 0.1), IDENTITY));
            EXPECT_FALSE(isOutside(boxAround(centre, 0.3), IDENTITY)) << "it reaches in";
        }
    EXPECT_FALSE(isOutside(boxAround({0, 0, 0}, 100), IDENTITY)) << "all of the view is in it";
    EXPECT_FALSE(isOutside(boxAround({0, 0, 0}, 0.1), IDENTITY));
}

TEST(ClipSpaceTest, KnowsWhatIsOutsideInPerspective)
{
    EXPECT_FALSE(isOutside(boxAround({0, 0, -10}, 1), PERSPECTIVE));
    EXPECT_FALSE(isOutside(boxAround({9, 9, -10}, 0.1), PERSPECTIVE));
    EXPECT_TRUE(isOutside(boxAround({11, 0, -10}, 0.1), PERSPECTIVE));
    EXPECT_TRUE(isOutside(boxAround({0, -11, -10}, 0.1), PERSPECTIVE));
    EXPECT_TRUE(isOutside(boxAround({0, 0, 10}, 1), PERSPECTIVE)) << "behind the eye";
    EXPECT_TRUE(isOutside(boxAround({0, 0, -0.5}, 0.1), PERSPECTIVE)) << "too near";
    EXPECT_TRUE(isOutside(boxAround({0, 0, -200}, 10), PERSPECTIVE));
    EXPECT_FALSE(isOutside(boxAround({0, 0, 0}, 5), PERSPECTIVE)) << "the eye is in it";
}

// Where it is drawn, in pixels from the lower left corner.
Vector2d pixelOf(const Vector3d& point, const ToClipSpace& matrix, double width, double height)
{
    double clip[4];
    for (std::size_t row = 0; row < 4; ++row)
        clip[row] = matrix[row] * point[0] + matrix[row + 4] * point[1] + matrix[row + 8] * point[2] + matrix[row + 12];
    return {(clip[0] / clip[3] + 1) / 2 * width, (clip[1] / clip[3] + 1) / 2 * height};
}

TEST(ClipSpaceTest, CropsToTheSamePixels)
{
    for (const ToClipSpace& whole : {IDENTITY, PERSPECTIVE}) {
        const ToClipSpace cropped = croppedTo(whole, {640, 480}, 100, 300, 9);
        for (const Vector3d& point : {Vector3d(-0.2, 0.3, -0.9), Vector3d(0.7, -0.8, -0.5), Vector3d(0, 0, -0.1)}) {
            const Vector2d before = pixelOf(point, whole, 640, 480);
            const Vector2d after = pixelOf(point, cropped, 9, 9);
            EXPECT_NEAR(after[0] - 4, before[0] - 100, 1e-9);
            EXPECT_NEAR(after[1] - 4, before[1] - 300, 1e-9);
        }
    }
}

TEST(ClipSpaceTest, LeavesOutWhatIsNotUnderThePointer)
{
    const ToClipSpace cropped = croppedTo(IDENTITY, {640, 480}, 320, 240, 9);
    EXPECT_FALSE(isOutside(boxAround({0, 0, 0}, 0.001), cropped));
    EXPECT_TRUE(isOutside(boxAround({0.05, 0, 0}, 0.001), cropped));
    EXPECT_TRUE(isOutside(boxAround({0, -0.05, 0}, 0.001), cropped));
}

} // namespace

} // namespace tavo
