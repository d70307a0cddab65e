#pragma once

#include <array>
#include <vector>

#include "vireo/Export.h"

namespace tavo {

class GLContext;
class GLVertexBuffer;
class VertexDescriptor;

/// Records geometry in the manner of GL's immediate mode, puts it into a vertex buffer, and draws it from there as
/// often as you like:
///
///     #include <vireo/context/GLExtensions.h>
///
///     GLGeometryList list(&context);
///     list.begin(GL_TRIANGLES);
///     list.texCoord2f(0, 0);
///     list.vertex3f(-1, -1, 0);
///     list.vertex3f(1, -1, 0);
///     list.vertex3f(0, 1, 0);
///     list.end();
///     list.compile(&context, true);
///
///     list.execute(&context); // in every frame
///
/// Recording calls no GL and needs no context. It takes 64 bytes a vertex, kept until the list dies. The list
/// owns the buffer that compile makes. Do not copy lists: a copy shares the buffer.
class VIREO_EXPORT GLGeometryList
{
public:
    /// Only keeps the context. The current colour, normal and texture coordinate start as zeros.
    explicit GLGeometryList(GLContext* context);

    /// Destroys the buffer. No context needs to be current.
    ~GLGeometryList();
    GLGeometryList(const GLGeometryList&) = default;
    GLGeometryList& operator=(const GLGeometryList&) = default;

    /// Begins a primitive of a mode such as GL_TRIANGLES.
    void begin(unsigned int mode);
    /// Makes the primitive of all vertices since the last end, including those given before begin.
    void end();

    /// Records a vertex with the current attributes. Here and below, pointers are to as many floats as the name says.
    void vertex3f(float x, float y, float z);
    void vertex3fv(const float* v);

    /// Sets an attribute of the vertices to come. Each attribute gets as many components as the largest call gave it.
    /// Components that a call does not give are zero, alpha one. An attribute that is never set is left out.
    void color3f(float r, float g, float b);
    void color3fv(const float* v);
    void color4f(float r, float g, float b, float a);
    void color4fv(const float* v);
    void normal3f(float x, float y, float z);
    void normal3fv(const float* v);
    void texCoord2f(float s, float t);
    void texCoord2fv(const float* v);
    void texCoord4f(float s, float t, float r, float q);
    void texCoord4fv(const float* v);

    /// Copies the vertices into a new vertex buffer of that context: "position", and those of "normal", "color" and
    /// "texcoord" that were set, in this order, as floats. With the mapping flag the buffer feeds the fixed-function
    /// arrays of these names; without it, generic attributes 0, 1, ... in this order. Does nothing without vertices.
    ///
    /// Beware: "normal" deliberately gets the recorded colours, and "color" the recorded normals. A list with both
    /// draws with the two exchanged; a list with only one of them gets zeros for it.
    ///
    /// Call this once, when all is recorded. A second call makes another buffer and leaks the first. If GL has no
    /// memory for the storage, its error is taken from the queue and not reported.
    /// @needs The context must be current. Without the mapping flag, drawing needs GL_ARB_vertex_program.
    /// @leaves No buffer is bound.
    void compile(GLContext* context, bool mappingFlag);

    /// Draws all primitives in the order in which they were recorded (glDrawArrays). Without vertices it draws nothing.
    /// Primitives recorded after compile are left out if the buffer lacks any of their vertices; the debug output says
    /// so once per list. The argument is not used.
    ///
    /// A primitive without vertices deliberately draws as many as there are in all, from where it would begin. Unless
    /// it is the first, GL then reads beyond the buffer: do not call end without vertices.
    /// @needs A context that knows the buffer's name must be current.
    /// @leaves No buffer is bound.
    /// @throws PException If there are vertices but none were compiled, or the buffer's context has died.
    void execute(GLContext* context);

private:
    struct Primitive
    {
        unsigned int mode;
        unsigned int first;
        unsigned int count;
    };

    using Attribute = std::array<float, 4>;

    struct Vertex
    {
        Attribute position;
        Attribute color;
        Attribute normal;
        Attribute texCoord;
    };

    // The layout of the attributes that were used.
    VertexDescriptor usedLayout() const;
    void reportLeftOut();

    GLVertexBuffer* m_VertexBuffer = nullptr;
    [[maybe_unused]] GLContext* m_Context;
    std::vector<Primitive> m_Primitives;
    std::vector<Vertex> m_Vertices;
    bool m_InsideBegin = false;
    Vertex m_Current{};
    unsigned int m_Mode = 0;
    unsigned int m_NumPositionComponents = 0;
    unsigned int m_NumNormalComponents = 0;
    unsigned int m_NumColorComponents = 0;
    unsigned int m_NumTexCoordComponents = 0;
    bool m_HasReportedLeftOut = false;
};

} // namespace tavo
