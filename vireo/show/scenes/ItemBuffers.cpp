#include "vireo/show/scenes/ItemBuffers.h"

#include <string>

#include "tavo/base/objects/PException.h"
#include "vireo/context/GLExtensions.h"

namespace tavo {

namespace {

std::unique_ptr<GLVertexBuffer> makeBuffer(
    GLContext& context, const char* name, unsigned int width, unsigned int type, void* data, std::size_t count)
{
    VertexDescriptor layout;
    layout.pushAttrib(VertexAttribDescriptor(name, width, type));
    auto buffer = std::make_unique<GLVertexBuffer>(&context, layout, GLVertexBuffer::TYPE_DEFAULT);
    buffer->setMappingFlag(true);
    const auto numVertices = static_cast<unsigned int>(count);
    if (!buffer->init(numVertices, GL_STATIC_DRAW_ARB))
        throw PException("there is no memory for a buffer of " + std::to_string(count) + " vertices");
    buffer->writeToBuffer(data, 0, numVertices);
    return buffer;
}

std::unique_ptr<GLVertexBuffer> makeBuffer(
    GLContext& context, const char* name, std::vector<float>& tuples, unsigned int width = 3)
{
    if (tuples.empty())
        return nullptr;
    return makeBuffer(context, name, width, VertexAttribDescriptor::TYPE_FLOAT, tuples.data(), tuples.size() / width);
}

std::unique_ptr<GLTemplatedIndexBuffer<unsigned int>> makeBuffer(
    GLContext& context, const std::vector<unsigned int>& indices)
{
    if (indices.empty())
        return nullptr;
    auto buffer = std::make_unique<GLTemplatedIndexBuffer<unsigned int>>(&context);
    const auto size = static_cast<unsigned int>(indices.size());
    if (!buffer->init(size, GL_STATIC_DRAW_ARB))
        throw PException("there is no memory for a buffer of " + std::to_string(size) + " indices");
    buffer->writeToBuffer(indices.data(), 0, size);
    return buffer;
}

GLenum modeOf(PrimitiveKind primitive)
{
    constexpr GLenum MODES[] = {GL_POINTS, GL_LINES, GL_TRIANGLES};
    return MODES[static_cast<std::size_t>(primitive)];
}

} // namespace

void ItemBuffers::writeShape(GLContext& context, DrawnItem& drawn)
{
    m_Primitive = drawn.primitive;
    m_IsIndexed = drawn.isIndexed;
    m_NumVertices = drawn.numVertices();
    m_Positions.reset();
    m_Positions = makeBuffer(context, "position", drawn.positions);
    m_Normals = makeBuffer(context, "normal", drawn.normals);
    m_Indices = makeBuffer(context, drawn.indices);
}

void ItemBuffers::writeColours(GLContext& context, std::vector<unsigned char>& colours)
{
    m_Colours.reset();
    if (!colours.empty())
        m_Colours =
            makeBuffer(context, "color", 4, VertexAttribDescriptor::TYPE_UNSIGNED_BYTE, colours.data(), m_NumVertices);
}

void ItemBuffers::writeRadii(GLContext& context, std::vector<float>& radii)
{
    m_Radii.reset();
    m_Radii = makeBuffer(context, "texcoord", radii, 1);
}

void ItemBuffers::writeEdges(GLContext& context, DrawnItem edges)
{
    m_EdgePositions.reset();
    m_EdgePositions = makeBuffer(context, "position", edges.positions);
    m_EdgeIndices = makeBuffer(context, edges.indices);
}

void ItemBuffers::bind()
{
    for (GLVertexBuffer* const buffer : {m_Positions.get(), m_Normals.get(), m_Colours.get(), m_Radii.get()})
        if (buffer)
            buffer->bind();
}

void ItemBuffers::unbind()
{
    for (GLVertexBuffer* const buffer : {m_Positions.get(), m_Normals.get(), m_Colours.get(), m_Radii.get()})
        if (buffer)
            buffer->unbind();
}

void ItemBuffers::draw()
{
    bind();
    drawAll();
    unbind();
}

void ItemBuffers::drawAll()
{
    if (m_IsIndexed) {
        m_Indices->bind();
        m_Indices->drawElements(modeOf(m_Primitive), 0, 0);
        m_Indices->unbind();
    } else {
        m_Positions->drawArrays(modeOf(m_Primitive), 0, 0);
    }
}

void ItemBuffers::draw(const PointRanges& ranges)
{
    if (ranges.firsts.empty())
        return;
    bind();
    for (std::size_t i = 0; i < ranges.firsts.size(); ++i)
        glDrawArrays(GL_POINTS, ranges.firsts[i], ranges.counts[i]);
    unbind();
}

void ItemBuffers::drawEdges()
{
    m_EdgePositions->bind();
    m_EdgeIndices->bind();
    m_EdgeIndices->drawElements(GL_LINES, 0, 0);
    m_EdgeIndices->unbind();
    m_EdgePositions->unbind();
}

void ItemBuffers::drawPositions()
{
    m_Positions->bind();
    drawAll();
    m_Positions->unbind();
}

void ItemBuffers::drawIds(
    PickTarget& target, std::size_t number, PointRadii radii, const PointRanges* ranges, bool areRound)
{
    radii.each = m_Radii.get();
    target.draw(number, *m_Positions, m_Indices.get(), modeOf(m_Primitive), radii, ranges, areRound);
}

} // namespace tavo
