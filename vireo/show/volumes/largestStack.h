#pragma once

namespace tavo {

// How many bytes the textures of a stack of slices take at most: larger volumes are drawn at a part of their
// resolution.
inline double largestStack = 256 * 1024 * 1024;

} // namespace tavo
