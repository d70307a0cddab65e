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

void drawPoints(const PointRanges& ranges)
{
    const auto number = static_cast<GLsizei>(ranges.firsts.size());
    if (glMultiDrawArrays && number > 1) {
        glMultiDrawArrays(GL_POINTS, ranges.firsts.data(), ranges.counts.data(), number);
        return;
    }
    for (std::size_t i = 0; i < ranges.firsts.size(); ++i)
        glDrawArrays(GL_POINTS, ranges.firsts[i], ranges.counts[i]);
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

void ItemBuffers::draw()
{
    drawWithAll(nullptr);
}

void ItemBuffers::draw(const PointRanges& ranges)
{
    drawWithAll(&ranges);
}

void ItemBuffers::drawWithAll(const PointRanges* ranges)
{
    GLVertexBuffer* const buffers[] = {m_Positions.get(), m_Normals.get(), m_Colours.get(), m_Radii.get()};
    for (GLVertexBuffer* const buffer : buffers)
        if (buffer)
            buffer->bind();
    drawBound(ranges);
    for (GLVertexBuffer* const buffer : buffers)
        if (buffer)
            buffer->unbind();
}

void ItemBuffers::drawBound(const PointRanges* ranges)
{
    if (m_IsIndexed) {
        m_Indices->bind();
        m_Indices->drawElements(modeOf(m_Primitive), 0, 0);
        m_Indices->unbind();
    } else if (ranges) {
        drawPoints(*ranges);
    } else {
        m_Positions->drawArrays(modeOf(m_Primitive), 0, 0);
    }
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
    drawBound(nullptr);
    m_Positions->unbind();
}

void ItemBuffers::drawIds(PickTarget& target, std::size_t number, PointRadii radii)
{
    radii.each = m_Radii.get();
    target.draw(number, *m_Positions, m_Indices.get(), modeOf(m_Primitive), radii);
}

} // namespace tavo
