#include "vireo/geometry/GLGeometryList.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/objects/PException.h"
#include "tavo/points/VertexDescriptor.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/geometry/GLVertexBuffer.h"

namespace tavo {

namespace {

void pushFloats(VertexDescriptor& layout, const std::string& name, unsigned int components)
{
    layout.pushAttrib({name, components, VertexAttribDescriptor::TYPE_FLOAT});
}

// The layout that the recorded vertices are read in: deliberately not the one they are written in, which has the colour
// before the normal. Compiled normals are recorded colours, and the reverse.
VertexDescriptor recordedLayout()
{
    VertexDescriptor layout;
    for (const char* name : {"position", "normal", "color", "texcoord"})
        pushFloats(layout, name, 4);
    return layout;
}

} // namespace

GLGeometryList::GLGeometryList(GLContext* context)
    : m_Context(context)
{}

GLGeometryList::~GLGeometryList()
{
    delete m_VertexBuffer;
}

void GLGeometryList::begin(unsigned int mode)
{
    m_InsideBegin = true;
    m_Mode = mode;
}

void GLGeometryList::end()
{
    m_InsideBegin = false;
    const unsigned int first = m_Primitives.empty() ? 0 : m_Primitives.back().first + m_Primitives.back().count;
    m_Primitives.push_back({m_Mode, first, static_cast<unsigned int>(m_Vertices.size()) - first});
}

void GLGeometryList::vertex3f(float x, float y, float z)
{
    m_NumPositionComponents = std::max(m_NumPositionComponents, 3u);
    // Without the detour through m_Current: a processor waits to read what was written a moment ago in other pieces.
    m_Vertices.push_back({{x, y, z, 1}, m_Current.color, m_Current.normal, m_Current.texCoord});
}

void GLGeometryList::vertex3fv(const float* v)
{
    vertex3f(v[0], v[1], v[2]);
}

void GLGeometryList::color3f(float r, float g, float b)
{
    m_Current.color = {r, g, b, 1};
    m_NumColorComponents = std::max(m_NumColorComponents, 3u);
}

void GLGeometryList::color3fv(const float* v)
{
    color3f(v[0], v[1], v[2]);
}

void GLGeometryList::color4f(float r, float g, float b, float a)
{
    m_Current.color = {r, g, b, a};
    m_NumColorComponents = std::max(m_NumColorComponents, 4u);
}

void GLGeometryList::color4fv(const float* v)
{
    color4f(v[0], v[1], v[2], v[3]);
}

void GLGeometryList::normal3f(float x, float y, float z)
{
    m_Current.normal = {x, y, z, 0};
    m_NumNormalComponents = std::max(m_NumNormalComponents, 3u);
}

void GLGeometryList::normal3fv(const float* v)
{
    normal3f(v[0], v[1], v[2]);
}

void GLGeometryList::texCoord2f(float s, float t)
{
    m_Current.texCoord = {s, t, 0, 0};
    m_NumTexCoordComponents = std::max(m_NumTexCoordComponents, 2u);
}

void GLGeometryList::texCoord2fv(const float* v)
{
    texCoord2f(v[0], v[1]);
}

void GLGeometryList::texCoord4f(float s, float t, float r, float q)
{
    m_Current.texCoord = {s, t, r, q};
    m_NumTexCoordComponents = std::max(m_NumTexCoordComponents, 4u);
}

void GLGeometryList::texCoord4fv(const float* v)
{
    texCoord4f(v[0], v[1], v[2], v[3]);
}

VertexDescriptor GLGeometryList::usedLayout() const
{
    VertexDescriptor layout;
    pushFloats(layout, "position", m_NumPositionComponents);
    if (m_NumNormalComponents != 0)
        pushFloats(layout, "normal", m_NumNormalComponents);
    if (m_NumColorComponents != 0)
        pushFloats(layout, "color", m_NumColorComponents);
    if (m_NumTexCoordComponents != 0)
        pushFloats(layout, "texcoord", m_NumTexCoordComponents);
    return layout;
}

void GLGeometryList::compile(GLContext* context, bool mappingFlag)
{
    if (m_Vertices.empty())
        return;

    const auto count = static_cast<unsigned int>(m_Vertices.size());
    const VertexDescriptor recorded = recordedLayout();
    const VertexDescriptor layout = usedLayout();
    auto buffer = std::make_unique<GLVertexBuffer>(context, layout, GLVertexBuffer::TYPE_DEFAULT);
    buffer->init(count, GL_STATIC_DRAW_ARB);
    buffer->setMappingFlag(mappingFlag);

    const auto bytes = std::make_unique_for_overwrite<unsigned char[]>(std::size_t{layout.getSize()} * count);
    VertexDescriptor::convertVertices(layout, recorded, m_Vertices.data(), count, bytes.get());
    buffer->writeToBuffer(bytes.get(), 0, count);
    m_VertexBuffer = buffer.release(); // a second one deliberately takes the place of the first, which stays
}

void GLGeometryList::execute(GLContext*)
{
    if (!m_VertexBuffer) {
        if (m_Vertices.empty())
            return;
        throw PException("GLGeometryList::execute() - not compiled");
    }
    m_VertexBuffer->bind();
    const unsigned int numCompiled = m_VertexBuffer->getNumElements();
    for (const Primitive& primitive : m_Primitives) {
        if (primitive.first + primitive.count <= numCompiled)
            m_VertexBuffer->drawArrays(primitive.mode, primitive.first, primitive.count);
        else
            reportLeftOut();
    }
    m_VertexBuffer->unbind();
}

void GLGeometryList::reportLeftOut()
{
    if (!std::exchange(m_HasReportedLeftOut, true))
        debugOutput << "GLGeometryList::execute() - primitives with vertices recorded after compile() are left out\n";
}

} // namespace tavo
