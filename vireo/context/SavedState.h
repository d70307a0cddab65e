#pragma once

#include "tavo/platform/wgl.h"
#include "vireo/context/CurrentContextGuard.h"

#include <GL/gl.h>

/// @file
/// Scope guards that restore GL state, also after an exception.
///
///     const SavedAttributes attributes;
///     glDisable(GL_LIGHTING);
///     const SavedClientAttributes pixelStorage(GL_CLIENT_PIXEL_STORE_BIT);
///     glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
///     const SavedMatrix matrix(GL_MODELVIEW);
///     glTranslatef(1, 0, 0);
///     const Primitive line(GL_LINES);
///     glVertex3f(0, 0, 0);
///     glVertex3f(1, 1, 1);
///
/// A context must be current, the same at both ends of the scope. CurrentContextGuard keeps what is current itself.

namespace tavo {

/// For SavedAttributes: every group of attributes of OpenGL 1.1. GL_ALL_ATTRIB_BITS is this number in the GL/gl.h of
/// Windows only; Mesa's has all 32 bits in it.
inline constexpr unsigned int ALL_ATTRIBUTE_BITS = 0x000FFFFF;

/// Groups of server attributes (glPushAttrib, glPopAttrib).
class SavedAttributes
{
public:
    explicit SavedAttributes(unsigned int groups = ALL_ATTRIBUTE_BITS) { glPushAttrib(groups); }
    ~SavedAttributes() { glPopAttrib(); }
    SavedAttributes(const SavedAttributes&) = delete;
    SavedAttributes& operator=(const SavedAttributes&) = delete;
};

/// Groups of client attributes: how pixels are stored, and vertex arrays (glPushClientAttrib, glPopClientAttrib).
class SavedClientAttributes
{
public:
    explicit SavedClientAttributes(unsigned int groups) { glPushClientAttrib(groups); }
    ~SavedClientAttributes() { glPopClientAttrib(); }
    SavedClientAttributes(const SavedClientAttributes&) = delete;
    SavedClientAttributes& operator=(const SavedClientAttributes&) = delete;
};

/// The matrix of a mode, GL_MODELVIEW for example, which is selected at both ends (glMatrixMode, glPushMatrix,
/// glPopMatrix).
class SavedMatrix
{
public:
    explicit SavedMatrix(unsigned int mode)
        : m_Mode(mode)
    {
        glMatrixMode(m_Mode);
        glPushMatrix();
    }
    ~SavedMatrix()
    {
        glMatrixMode(m_Mode);
        glPopMatrix();
    }
    SavedMatrix(const SavedMatrix&) = delete;
    SavedMatrix& operator=(const SavedMatrix&) = delete;

private:
    unsigned int m_Mode;
};

/// A primitive of a mode, GL_QUADS for example, whose vertices are sent while it lives (glBegin, glEnd).
class Primitive
{
public:
    explicit Primitive(unsigned int mode) { glBegin(mode); }
    ~Primitive() { glEnd(); }
    Primitive(const Primitive&) = delete;
    Primitive& operator=(const Primitive&) = delete;
};

} // namespace tavo
