#pragma once

namespace tavo {

// The GL formats of textures by the number of components of a texel, 1 to 4. For any other number each function returns
// what it is given as `otherwise`.

// Luminance, luminance and alpha, RGB, RGBA: the client format, and of texels of bytes the internal format as well.
unsigned int formatOfComponents(unsigned int components, unsigned int otherwise);

// Internal formats of float texels, with 16 bits (half) or 32 bits a component: those of GL_ARB_texture_float; and for
// rectangle textures those of GL_NV_float_buffer, where the driver lists it, else those of GL_ARB_texture_float too.
unsigned int arbFloatFormatOfComponents(unsigned int components, bool half, unsigned int otherwise);
unsigned int rectFloatFormatOfComponents(unsigned int components, bool half, unsigned int otherwise);

// Whether the driver lists either of the two extensions.
bool hasRectFloatFormats();

// Whether the format is one that arbFloatFormatOfComponents knows.
bool isArbFloatFormat(unsigned int format);

} // namespace tavo
