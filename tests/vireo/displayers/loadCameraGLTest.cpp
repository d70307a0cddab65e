#include <gmock/gmock.h>

#include "tavo/base/gui/Camera.h"
#include "tests/support/CallRecorder.h"
#include "tests/support/GLTest.h"
#include "vireo/displayers/loadCamera.h"

#include <GL/gl.h>

namespace tavo {
namespace {

using LoadCameraGLTest = GLTest;

TEST_F(LoadCameraGLTest, MakesThreeCalls)
{
    Camera camera;
    ASSERT_TRUE(camera.setView({1, 2, 5}, {1, 2, 3}, {1, 0, 0}));
    CallRecorder recorder;
    loadCamera(camera);
    expectCalls(recorder, {"glMatrixMode(GL_MODELVIEW)", "glLoadIdentity()", "gluLookAt(1, 2, 5, 1, 2, 3, 1, 0, 0)"});
}

TEST_F(LoadCameraGLTest, ReplacesTheModelViewMatrixWhicheverIsSelected)
{
    glMatrixMode(GL_MODELVIEW);
    glScalef(2, 3, 4);
    glMatrixMode(GL_PROJECTION);
    glScalef(5, 6, 7);
    Camera camera;
    ASSERT_TRUE(camera.setView({0, 0, 2}, {0, 0, 0}, {0, 1, 0}));
    loadCamera(camera);

    float modelView[16];
    float projection[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, modelView);
    glGetFloatv(GL_PROJECTION_MATRIX, projection);
    EXPECT_THAT(modelView, testing::ElementsAre(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -2, 1));
    EXPECT_THAT(projection, testing::ElementsAre(5, 0, 0, 0, 0, 6, 0, 0, 0, 0, 7, 0, 0, 0, 0, 1));
}

} // namespace
} // namespace tavo
