#pragma once

#include "vireo/context/SavedState.h"

namespace tavo {

// Draws a rectangle over the whole viewport. Its texture coordinates are texels of a picture of that size, on unit 0.
inline void drawOverViewport(int width, int height)
{
    const SavedMatrix modelView(GL_MODELVIEW);
    glLoadIdentity();
    const SavedMatrix projection(GL_PROJECTION);
    glLoadIdentity();
    const auto corner = [&](int x, int y) {
        glTexCoord2i(x * width, y * height);
        glVertex2i(2 * x - 1, 2 * y - 1);
    };
    const Primitive rectangle(GL_QUADS);
    corner(0, 0);
    corner(1, 0);
    corner(1, 1);
    corner(0, 1);
}

} // namespace tavo
