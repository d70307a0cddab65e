#pragma once

#include <memory>
#include <vector>

#include "vireo/geometry/GLTemplatedIndexBuffer.h"
#include "vireo/geometry/GLVertexBuffer.h"
#include "vireo/show/scenes/PickTarget.h"
#include "vireo/show/scenes/PointShare.h"
#include "vireo/show/scenes/drawnItem.h"

namespace tavo {

// What an item is drawn from, in OpenGL's buffers. The context must be current.
class ItemBuffers
{
public:
    // Write, in place of what was there; what is empty has no buffer.
    void writeShape(GLContext& context, DrawnItem& drawn);
    void writeColours(GLContext& context, std::vector<unsigned char>& colours);
    void writeRadii(GLContext& context, std::vector<float>& radii);
    void writeEdges(GLContext& context, DrawnItem edges);

    bool canDraw() const { return m_Positions && (!m_IsIndexed || m_Indices); }
    bool haveNormals() const { return m_Normals != nullptr; }
    bool haveEdges() const { return m_EdgeIndices != nullptr; }
    std::size_t numVertices() const { return m_NumVertices; }

    // All of it.
    void draw();

    // Some points.
    void draw(const PointRanges& ranges);

    void drawEdges();

    // All of it, without normals and colours.
    void drawPositions();

    // Of `radii`, those of each are these. Of points only those in the ranges are drawn, unless these are null.
    void drawIds(PickTarget& target, std::size_t number, PointRadii radii, const PointRanges* ranges, bool areRound);

private:
    void bind();
    void unbind();
    void drawAll();

    PrimitiveKind m_Primitive = PrimitiveKind::Points;
    bool m_IsIndexed = false;
    std::size_t m_NumVertices = 0;
    std::unique_ptr<GLVertexBuffer> m_Positions;
    std::unique_ptr<GLVertexBuffer> m_Normals;
    std::unique_ptr<GLVertexBuffer> m_Colours;
    std::unique_ptr<GLVertexBuffer> m_Radii; // null if all points have one radius
    std::unique_ptr<GLTemplatedIndexBuffer<unsigned int>> m_Indices;
    std::unique_ptr<GLVertexBuffer> m_EdgePositions;
    std::unique_ptr<GLTemplatedIndexBuffer<unsigned int>> m_EdgeIndices;
};

} // namespace tavo
