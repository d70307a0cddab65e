#pragma once

#include <memory>
#include <vector>

#include "tavo/base/images/RGBAImage.h"
#include "tavo/base/math/vectors.h"
#include "tavo/points/PointSet.h"
#include "tavo/points/RegularVolume.h"

namespace vireo_bench {

// The MRI head of the package mricron-data, 181 x 217 x 181 samples of one float, "density"; read at the first call.
tavo::RegularVolume& head();

// The head in a cube of so many samples a side, each the nearest of the head's; made at the first call.
tavo::RegularVolume& headInCube(int side);

// What its samples are called.
inline const char* const CHANNEL = "density";

// How the head looks: from black and clear at one density to white and a quarter opaque at another.
struct DensityWindow
{
    float black = 30;
    float white = 150;

    tavo::RGBA8 look(float density) const
    {
        const float part = density <= black ? 0 : density >= white ? 1 : (density - black) / (white - black);
        const auto grey = static_cast<unsigned char>(part * 255);
        return {grey, grey, grey, static_cast<unsigned char>(grey / 4)};
    }

    // The same as the renderers ask for it, of the window that the pointer points to.
    static tavo::RGBA8 map(void* window, const tavo::StaticVector<float, 1>& density)
    {
        return static_cast<const DensityWindow*>(window)->look(density[0]);
    }
};

using Points = std::vector<tavo::Vector3f>;

// So many points, spread evenly over the cube from (-0.5, -0.5, -0.5) to (0.5, 0.5, 0.5), the same in every run.
Points randomPoints(unsigned int count);

// Points as vireo's displayers take them.
std::unique_ptr<tavo::PointSet> pointSetOf(const Points& points);

// The scanned building among the data of the package libcgal-demo, fitted into that cube.
Points scannedPoints();

// A square picture of so many pixels a side, opaque, in all kinds of colours.
tavo::RGBAImage makeImage(unsigned int side);

using Curves = std::vector<std::vector<float>>;

// So many waves, each quicker than the one before, and colours for them.
Curves makeCurves(std::size_t count, std::size_t numSamples);
std::vector<tavo::RGBA8> makeColours(std::size_t count);

} // namespace vireo_bench
