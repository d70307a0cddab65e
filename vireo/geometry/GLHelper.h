#pragma once

#include <string>

#include "tavo/base/math/vectors.h"
#include "vireo/Export.h"

namespace tavo {

class GLContext;
class VertexDescriptor;

// Drawing helpers without a state of their own: vertices straight from client memory, a small labelled coordinate
// frame, saving of matrices, a 2D projection in pixels, and text in space. All of them call GL in the current context.
class VIREO_EXPORT GLHelper
{
public:
    // Vertices from client memory. `source` is the layout of the bytes at `data`; generic vertex attribute i stands for
    // the i-th attribute of `target`, which is what the program in use expects. GL_ARB_vertex_program is needed, and no
    // buffer object may be bound for vertices.

    // Points the generic attribute arrays into `data`, with the component counts of `target`, and enables them. An
    // attribute that is not of 32-bit floats in `target`, or that `source` lacks by name, is left as it is, disabled.
    // What `source` says of an attribute's type and component count is not looked at: where it has fewer or smaller
    // components than `target`, GL reads on into what follows them, and of the last vertex past the end of the data.
    // The data must stay where it is until the arrays are unbound.
    static void bindSoftwareVertexBuffer(
        const char* data, const VertexDescriptor* source, const VertexDescriptor* target);

    // Disables the generic attribute arrays of all attributes of `target`. `source` is not used.
    static void unbindSoftwareVertexBuffer(const VertexDescriptor* source, const VertexDescriptor* target);

    // Draws the whole vertices that sizeInBytes bytes hold as primitives of the given mode, and unbinds the arrays
    // again. Throws PException if the vertices of `source` have no bytes.
    static void drawBuffer(const char* data, unsigned int sizeInBytes, const VertexDescriptor* source,
        const VertexDescriptor* target, unsigned int mode);

    // The coordinate frame: axes of length 1, each in a pale red, green or blue of its own, with an arrow and a letter.
    // Lighting is switched off for it; the state, the current colour too, is as before afterwards.
    static void drawCoords();

    // The colours and vertices of the frame alone, for a glBegin(GL_LINES) of the caller's: 34 vertices, 18 without the
    // letters, 6 without the arrows too. The current colour is that of the Z axis afterwards.
    static void drawCoordsSendVertices();
    static void drawCoordsSendVerticesNoXYZ();
    static void drawCoordsSendVerticesNoXYZNoArrows();

    // Save and restore the projection and the modelview matrix. The modelview matrix is selected afterwards.
    static void pushMVP();
    static void popMVP();

    // Save both matrices and set up a projection in which a unit is a pixel of a drawable of that size, with the origin
    // in the lower left corner; and restore them. The modelview matrix is selected afterwards.
    static void begin2D(float width, float height);
    static void end2D();

    // Draws text, in the application's font, at a position that is transformed like a vertex. The context's widget
    // draws it, and its GL context must be current. Throws PException if the context has no widget.
    static void drawText(GLContext* context, const Vector3f& position, const std::string& text);
};

} // namespace tavo
