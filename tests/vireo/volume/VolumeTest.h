#pragma once

#include <array>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tavo/points/RegularVolume.h"
#include "tests/support/Picture.h"
#include "tests/vireo/vertexLayouts.h"
#include "vireo/context/GLExtensions.h"

namespace tavo {

using Names = std::vector<std::string>;

// The value of a sample's component.
using SampleFunction = std::function<float(int x, int y, int z, unsigned int component)>;

// A volume with one channel of floats, "density", in a box of the given corners.
inline RegularVolume makeVolume(const Vector3i& extends, unsigned int numComponents, const SampleFunction& sample,
    const Box3f& box = {{-1, -1, -1}, {1, 1, 1}})
{
    const VertexDescriptor channels = makeLayout({{"density", numComponents, FLOAT}});
    auto samples =
        std::make_unique<PointSet>(channels, static_cast<unsigned int>(extends[0] * extends[1] * extends[2]));
    unsigned char* to = samples->getData();
    for (int z = 0; z < extends[2]; ++z) {
        for (int y = 0; y < extends[1]; ++y) {
            for (int x = 0; x < extends[0]; ++x) {
                for (unsigned int component = 0; component < numComponents; ++component, to += sizeof(float)) {
                    const float value = sample(x, y, z, component);
                    std::memcpy(to, &value, sizeof value);
                }
            }
        }
    }
    return RegularVolume(extends, box, std::move(samples));
}

// A volume of which only the size matters.
inline RegularVolume makeVolume(const Vector3i& extends)
{
    return makeVolume(extends, 1, [](int, int, int, unsigned int) { return 0.0f; });
}

// A number for each sample of a volume with fewer than 16 along each axis, from which its colour shows its place.
inline float codeOf(int x, int y, int z)
{
    return static_cast<float>(x + 16 * y + 256 * z);
}

inline RGBA8 colourOfPlace(int x, int y, int z)
{
    return {10 + 15 * x, 20 + 15 * y, 30 + 15 * z, 255};
}

// A transfer function for such numbers.
inline RGBA8 mapCode(void*, const StaticVector<float, 1>& value)
{
    const int code = static_cast<int>(value[0]);
    return colourOfPlace(code % 16, code / 16 % 16, code / 256);
}

inline RegularVolume makeCodedVolume(const Vector3i& extends)
{
    return makeVolume(extends, 1, [](int x, int y, int z, unsigned int) { return codeOf(x, y, z); });
}

inline const Names DENSITY{"density"};

// From here on the box of a coded volume of n x n x n samples is seen along negative Z, a sample a pixel.
inline void lookAtFront(int n)
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(-1, 1, -1, 1, -2, 2);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glViewport(0, 0, n, n);
    glClear(GL_COLOR_BUFFER_BIT);
}

// What is seen of it then, if it is opaque: the last slice, the right way up.
inline Picture frontPicture(int n)
{
    Picture picture(static_cast<unsigned int>(n), static_cast<unsigned int>(n));
    for (int y = 0; y < n; ++y) {
        for (int x = 0; x < n; ++x) {
            const RGBA8 colour = colourOfPlace(x, y, n - 1);
            picture.at(static_cast<unsigned int>(x), static_cast<unsigned int>(y)) = {
                colour[0], colour[1], colour[2], colour[3]};
        }
    }
    return picture;
}

// The texels of the 2D texture of that name.
inline std::vector<RGBA8> readTexels(unsigned int name, unsigned int numTexels)
{
    std::vector<RGBA8> texels(numTexels);
    glBindTexture(GL_TEXTURE_2D, name);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
    glBindTexture(GL_TEXTURE_2D, 0);
    return texels;
}

} // namespace tavo
