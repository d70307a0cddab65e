#pragma once

namespace tavo {

// For glPushAttrib: every group of attributes of OpenGL 1.1. GL_ALL_ATTRIB_BITS is this number in the GL/gl.h of
// Windows only; Mesa's has all 32 bits in it.
inline constexpr unsigned int ALL_ATTRIBUTE_BITS = 0x000FFFFF;

} // namespace tavo
