#include "vireo/volume/volumeSlices.h"

#include "tavo/base/objects/PException.h"
#include "tavo/points/RegularVolume.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"

namespace tavo {

namespace {

// A slice at position p on the axis.
void drawQuad(unsigned int axis, const Box3f& box, float p, float sMax, float tMax)
{
    const std::array<unsigned int, 2> across = axesAcross(axis);
    Vector3f corner;
    corner[axis] = p;
    const auto sendCorner = [&](bool atMaxU, bool atMaxV) {
        corner[across[0]] = (atMaxU ? box.getMax() : box.getMin())[across[0]];
        corner[across[1]] = (atMaxV ? box.getMax() : box.getMin())[across[1]];
        glTexCoord2f(atMaxU ? sMax : 0, atMaxV ? tMax : 0);
        glVertex3f(corner[0], corner[1], corner[2]);
    };
    const Primitive quad(GL_QUADS);
    sendCorner(false, false);
    sendCorner(false, true);
    sendCorner(true, true);
    sendCorner(true, false);
}

} // namespace

std::array<unsigned int, 2> axesAcross(unsigned int axis)
{
    return {axis == 0 ? 1u : 0u, axis == 2 ? 1u : 2u};
}

Vector3i boundsOfSlice(unsigned int axis, int slice)
{
    Vector3i bounds(RegularVolume::UNRESTRICTED, RegularVolume::UNRESTRICTED, RegularVolume::UNRESTRICTED);
    bounds[axis] = slice;
    return bounds;
}

unsigned int requireChannel(const RegularVolume& volume, const std::string& channel)
{
    const PointSet* const samples = volume.getPointSet();
    const VertexDescriptor channels = samples ? samples->getDescr() : VertexDescriptor();
    const VertexAttribDescriptor& attribute = channels.getAttribute(channel);
    if (!attribute.isFloat())
        throw PException("Tex2dVolumeRenderer::prepareTextures - only float channels are supported.");
    if (attribute.getNumComponents() == 0 || attribute.getNumComponents() > 4)
        throw PException("Tex2dVolumeRenderer::prepareTextures - only channel dimension 1..4 is supported.");
    return attribute.getNumComponents();
}

bool hasSamples(const Vector3i& extends)
{
    return extends[0] != 0 && extends[1] != 0 && extends[2] != 0;
}

void requireMultitexture(const std::string& operation)
{
    if (!isExtensionSupported("GL_ARB_multitexture"))
        throw PException(operation + " - GL_ARB_multitexture is missing: there is no glActiveTextureARB");
}

void setSliceParameters()
{
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_REPLACE);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP);
    glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP);
}

void drawStack(const RegularVolume& volume, unsigned int axis, int direction, float sMax, float tMax,
    const std::function<void(unsigned int slice)>& bindSlice)
{
    const Box3f& box = volume.getBoundingBox();
    const int count = volume.getExtends()[axis];
    for (int i = 0; i < count; ++i) {
        const int slice = direction == 1 ? count - 1 - i : i;
        const float t = static_cast<float>(slice) / static_cast<float>(count);
        bindSlice(static_cast<unsigned int>(slice));
        drawQuad(axis, box, box.getMin()[axis] + box.getExtent()[axis] * t, sMax, tMax);
    }
}

void enableBlendedSlices()
{
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glEnable(GL_TEXTURE_2D);
    glDepthMask(GL_FALSE);
}

} // namespace tavo
