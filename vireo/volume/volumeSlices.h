#pragma once

#include <array>
#include <functional>
#include <string>
#include <type_traits>

#include "tavo/base/math/vectors.h"

namespace tavo {

class RegularVolume;

// What the renderers of volumes have in common: a stack of slices along one axis, each a textured quad.

// The axes across a stack, the lower one first: that along the texture's rows (s), and that along its columns (t).
std::array<unsigned int, 2> axesAcross(unsigned int axis);

// The bounds of a slice, for RegularVolume.
Vector3i boundsOfSlice(unsigned int axis, int slice);

// Calls a generic function with the number of components, 1 to 4, as a constant.
template <typename Function>
void withNumComponents(unsigned int numComponents, const Function& function)
{
    switch (numComponents) {
    case 1: function(std::integral_constant<unsigned int, 1>()); break;
    case 2: function(std::integral_constant<unsigned int, 2>()); break;
    case 3: function(std::integral_constant<unsigned int, 3>()); break;
    default: function(std::integral_constant<unsigned int, 4>()); break;
    }
}

// The number of components of a channel. Throws PException if there is no channel of that name, or if it cannot be made
// into textures: it is not of floats, or has more than four components.
unsigned int requireChannel(const RegularVolume& volume, const std::string& channel);

bool hasSamples(const Vector3i& extends);

// Throws PException that begins with the operation's name where GL_ARB_multitexture has not been loaded.
void requireMultitexture(const std::string& operation);

// Filters, wrap modes and texture environment of the bound 2D texture and the active unit for drawing slices.
void setSliceParameters();

// Draws the slices of a stack from the back to the front, each as a quad across the volume's box, with texture
// coordinates from 0 to sMax and tMax on unit 0. Calls bindSlice with the number of each before it.
void drawStack(const RegularVolume& volume, unsigned int axis, int direction, float sMax, float tMax,
    const std::function<void(unsigned int slice)>& bindSlice);

// State in which slices are drawn from the back to the front.
void enableBlendedSlices();

} // namespace tavo
