#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/inputs.h"

namespace vireo_bench {

// The works, each in the size that is wanted.

Comparison prepareBySliceRenderer(const std::string& name, tavo::RegularVolume& volume);
Comparison prepareByTable(const std::string& name, tavo::RegularVolume& volume);
Comparison prepareByTex2dRenderer(const std::string& name, tavo::RegularVolume& volume);

// The stack alone that is seen along a direction: made for the first time, and made again for another transfer
// function.
std::unique_ptr<Contestant> stackBySliceRenderer(tavo::RegularVolume& volume, const tavo::Vector3f& direction);
std::unique_ptr<Contestant> changedStackBySliceRenderer(tavo::RegularVolume& volume, const tavo::Vector3f& direction);

// Seen along a direction of length 1, in a square view of so many pixels a side.
Comparison drawBySliceRenderer(
    const std::string& name, tavo::RegularVolume& volume, int size, const tavo::Vector3f& direction);
Comparison drawByTex2dRenderer(
    const std::string& name, tavo::RegularVolume& volume, int size, const tavo::Vector3f& direction);

Comparison drawPoints(const std::string& name, const std::function<Points()>& makePoints);
Comparison showCurves(std::size_t numCurves, std::size_t numSamples);
Comparison uploadImage(unsigned int side);
Comparison takeRenderTexture(unsigned int numOthers);
Comparison giveBackRenderTexture(unsigned int numOut);
Comparison lightByDepths(int side);
Comparison recordVertices(unsigned int numVertices);
Comparison executeList(unsigned int numVertices);
Comparison drawSoftwareArrays(unsigned int numVertices);
Comparison drawVertexBuffer(unsigned int numVertices);
Comparison createAndDestroyObjects(std::size_t number);
Comparison deleteQueuedNames(std::size_t number);
Comparison convertVertices(unsigned int numVertices);

// What is compared with floors: the works in the sizes that stand in docs/figures.md.
void addVolumeWorks();
void addPointWorks();
void addCurveWorks();
void addTextureWorks();
void addRenderTextureWorks();
void addLightingWorks();
void addGeometryWorks();
void addObjectWorks();
void addVertexWorks();

} // namespace vireo_bench
