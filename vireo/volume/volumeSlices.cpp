#include "vireo/volume/volumeSlices.h"

#include "vireo/context/GLExtensions.h"

namespace tavo {

std::array<unsigned int, 2> axesAcross(unsigned int axis)
{
    return {axis == 0 ? 1u : 0u, axis == 2 ? 1u : 2u};
}

bool hasSamples(const StaticVector<int, 3>& extends)
{
    return extends[0] != 0 && extends[1] != 0 && extends[2] != 0;
}

void setSliceParameters()
{
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
}

void drawSliceQuad(unsigned int axis, const BoundingBox<float, 3>& box, float p, float sMax, float tMax)
{
    const auto [u, v] = axesAcross(axis);
    StaticVector<float, 3> corner;
    corner[axis] = p;
    const auto sendCorner = [&](bool atMaxU, bool atMaxV) {
        corner[u] = (atMaxU ? box.getMax() : box.getMin())[u];
        corner[v] = (atMaxV ? box.getMax() : box.getMin())[v];
        glTexCoord2f(atMaxU ? sMax : 0, atMaxV ? tMax : 0);
        glVertex3f(corner[0], corner[1], corner[2]);
    };
    glBegin(GL_QUADS);
    sendCorner(false, false);
    sendCorner(false, true);
    sendCorner(true, true);
    sendCorner(true, false);
    glEnd();
}

AllAttributes::AllAttributes()
{
    glPushAttrib(GL_ALL_ATTRIB_BITS);
}

AllAttributes::~AllAttributes()
{
    glPopAttrib();
}

void enableBlendedSlices()
{
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_TEXTURE_2D);
    glDepthMask(GL_FALSE);
}

} // namespace tavo
