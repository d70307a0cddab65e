#pragma once

namespace tavo {

// Estimates of a texture's storage, in components and modulo 2^32. A texture of two dimensions has a depth of 1.

// One level.
unsigned int sizeOfLevel(unsigned int width, unsigned int height, unsigned int depth, unsigned int components);

// All levels, each dimension halved from one to the next, but deliberately without the last, which is a single texel.
unsigned int sizeOfMipmaps(unsigned int width, unsigned int height, unsigned int depth, unsigned int components);

} // namespace tavo
