#pragma once

#include <string>

#include "tavo/base/math/vectors.h"
#include "vireo/Export.h"

namespace tavo {

class GLContext;
class VertexDescriptor;

/// Drawing helpers without state: vertices straight from client memory, a labelled coordinate frame, saved matrices, a
/// 2D projection in pixels, and text in space.
///
///     GLHelper::begin2D(640, 480);
///     // draw in pixels
///     GLHelper::end2D();
///     GLHelper::drawCoords();
///
/// All of them call GL in the current context. In the three that draw from client memory, `source` is the layout of the
/// bytes at `data`, and `target` the one that the program in use expects: generic vertex attribute i stands for its
/// attribute i. They need GL_ARB_vertex_program, and no buffer object bound for vertices.
class VIREO_EXPORT GLHelper
{
public:
    /// Points the generic attribute arrays into `data`, with the component counts of `target`, and enables them
    /// (glEnableVertexAttribArrayARB, glVertexAttribPointerARB). Skips attributes that are not 32-bit floats in
    /// `target` or that `source` lacks by name. Does not look at the types and component counts in `source`: where they
    /// are smaller than in `target`, GL reads on into what follows, and beyond the data for the last vertex.
    /// @needs The data must stay where they are until the arrays are unbound.
    static void bindSoftwareVertexBuffer(
        const char* data, const VertexDescriptor* source, const VertexDescriptor* target);

    /// Disables the generic attribute arrays of all attributes of `target` (glDisableVertexAttribArrayARB). `source` is
    /// not used.
    static void unbindSoftwareVertexBuffer(const VertexDescriptor* source, const VertexDescriptor* target);

    /// Binds the arrays, draws all whole vertices in sizeInBytes bytes as primitives of that mode (glDrawArrays), and
    /// unbinds the arrays.
    /// @throws PException If the vertices of `source` have no bytes.
    static void drawBuffer(const char* data, unsigned int sizeInBytes, const VertexDescriptor* source,
        const VertexDescriptor* target, unsigned int mode);

    /// Draws the coordinate frame: axes of length 1 in pale red, green and blue, each with an arrow and a letter,
    /// without lighting.
    /// @leaves All attributes are as before, the current colour included (glPushAttrib, glPopAttrib).
    static void drawCoords();

    /// Sends only the colours and vertices of the frame, for a glBegin(GL_LINES) of your own: 34 vertices, 18 without
    /// letters, 6 without arrows too.
    /// @leaves The current colour is that of the Z axis.
    static void drawCoordsSendVertices();
    static void drawCoordsSendVerticesNoXYZ();
    static void drawCoordsSendVerticesNoXYZNoArrows();

    /// Saves the projection and modelview matrices (glPushMatrix).
    /// @leaves The modelview matrix is selected.
    static void pushMVP();
    /// Restores both matrices (glPopMatrix).
    /// @leaves The modelview matrix is selected.
    static void popMVP();

    /// Saves both matrices and sets up a projection for a drawable of that size, in which a unit is a pixel and the
    /// origin is the lower left corner (gluOrtho2D).
    /// @leaves The modelview matrix is selected.
    static void begin2D(float width, float height);
    /// Restores both matrices.
    /// @leaves The modelview matrix is selected.
    static void end2D();

    /// Draws text in the application's font, at a position that is transformed like a vertex (QGLWidget::renderText of
    /// the context's widget).
    /// @needs The widget's GL context must be current.
    /// @throws PException If the context has no widget.
    static void drawText(GLContext* context, const Vector3f& position, const std::string& text);
};

} // namespace tavo
