#pragma once

#include <array>

#include "tests/vireo/ContextTest.h"
#include "vireo/context/GLExtensions.h"

#include <GL/glu.h>

namespace tavo {

using Matrix = std::array<float, 16>;

// A matrix of 16 different elements, none of which is 0 or 1, column by column.
constexpr Matrix UNLIKE_ANY_OTHER{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17};

constexpr Pixel RED_PIXEL{255, 0, 0, 255};
constexpr Pixel GREEN_PIXEL{0, 255, 0, 255};
constexpr Pixel WHITE_PIXEL{255, 255, 255, 255};

// What tests of programs draw, in an active context.
class ShaderTest : public ContextTest
{
protected:
    // Leaves the GLContext as it is before anybody activates it, with the native context current.
    void makeInactive()
    {
        context()->deactivate();
        mainContext().makeCurrent();
    }

    // The colour of the drawable's middle, where nothing but the program at work colours it.
    Pixel drawnColour()
    {
        glClear(GL_COLOR_BUFFER_BIT);
        glRectf(-1, -1, 1, 1);
        return readPixels().at(32, 32);
    }

    // A ball of radius 1 with normals, on a cleared background.
    static void drawBall()
    {
        glEnable(GL_DEPTH_TEST);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        GLUquadric* const quadric = gluNewQuadric();
        gluSphere(quadric, 1, 48, 24);
        gluDeleteQuadric(quadric);
    }
};

} // namespace tavo
