#pragma once

#include <array>
#include <vector>

#include "vireo/Export.h"

namespace tavo {

class GLContext;
class GLVertexBuffer;
class VertexDescriptor;

// Records geometry in the manner of GL's immediate mode, puts it into a vertex buffer, and draws it from there as often
// as it is wanted:
//
//     GLGeometryList list(context);
//     list.begin(GL_TRIANGLES);
//     list.texCoord2f(0, 0);
//     list.vertex3f(-1, -1, 0);
//     ...
//     list.end();
//     list.compile(context, true);
//     ...
//     list.execute(context);
//
// Recording calls no GL and needs no context. A list is no GLObject: the buffer that compile makes is, and the list
// owns it. Copies are member-wise and share the buffer: copying is not a supported use.
class VIREO_EXPORT GLGeometryList
{
public:
    // The context is only kept. The current colour, normal and texture coordinate start as zeros.
    explicit GLGeometryList(GLContext* context);

    // Destroys the buffer, which needs no current context.
    ~GLGeometryList();
    GLGeometryList(const GLGeometryList&) = default;
    GLGeometryList& operator=(const GLGeometryList&) = default;

    // A primitive of a mode such as GL_TRIANGLES. end makes it of all vertices since the last end, also of those given
    // before begin.
    void begin(unsigned int mode);
    void end();

    // Records a vertex, with the attributes that are current. The pointers are to as many floats as the name says, here
    // and below.
    void vertex3f(float x, float y, float z);
    void vertex3fv(const float* v);

    // Set what is current for the vertices to come. Each attribute gets the most components that any of these calls
    // gave it, and those that a call does not give are zero, alpha one. An attribute that is never set is left out.
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

    // Copies the vertices into a new vertex buffer of the given context, which must be current: "position", and of
    // "normal", "color" and "texcoord", in this order, those that were set, in floats. With the mapping flag it is
    // drawn through the fixed-function arrays of these names, without it through generic attributes 0, 1, ... in this
    // order. Does nothing without vertices.
    //
    // Beware: "normal" deliberately gets the recorded colours, and "color" the recorded normals. A list with both draws
    // with the two exchanged; a list with only one of them gets zeros for it.
    //
    // To be called once, after all was recorded: a second call makes another buffer and forgets the first, which is not
    // destroyed. A GL error in making the storage is taken from the queue and not reported; the buffer has no storage
    // then. Without the mapping flag, drawing needs GL_ARB_vertex_program.
    void compile(GLContext* context, bool mappingFlag);

    // Draws all primitives in the order of their recording. A context in which the buffer's name is known must be
    // current; the argument is not used. No buffer is bound afterwards. Draws nothing if nothing was recorded. Throws
    // PException if there are vertices and none were ever compiled, or if the buffer's context has died.
    //
    // Primitives recorded since compile are left out if any of their vertices are not in the buffer. The debug output
    // says so once for each list.
    //
    // A primitive without vertices deliberately draws as many as there are in all, from where it would begin: unless it
    // is the first, GL reads beyond the buffer for it. So end is not to be called without vertices.
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
