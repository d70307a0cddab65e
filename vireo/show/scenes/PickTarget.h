#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "vireo/context/SavedState.h"
#include "vireo/geometry/GLTemplatedIndexBuffer.h"
#include "vireo/geometry/GLVertexBuffer.h"
#include "vireo/offscreen/GLRenderTargetFBO.h"
#include "vireo/shaders/GLShaderARB.h"
#include "vireo/show/scenes/PointScale.h"
#include "vireo/show/scenes/PointShare.h"
#include "vireo/show/scenes/RoundPoints.h"
#include "vireo/show/scenes/pickIds.h"

namespace tavo {

// How large points are in the scene, where that is known: as PointScale draws them.
struct PointRadii
{
    double all = 0;                 // 0 if it is not known
    GLVertexBuffer* each = nullptr; // null if it is `all` of all
    double scale = 1;
};

// Where ids are drawn instead of colours (see PickId), in a small square of pixels around the pointer.
//
//     if (target.begin(side)) {
//         // set the matrices of what is drawn
//         target.draw(0, positions, nullptr, GL_POINTS);
//         const PickTarget::Pixels pixels = target.end();
//         if (const std::optional<PickedPixel> picked = nearestPicked(pixels.ids))
//             use(target.vertexOf(picked->id));
//     }
//
// Everything is done in the context that it was made with, which must be current.
class PickTarget
{
public:
    // The PICK_SIDE x PICK_SIDE pixels in the middle of the square, row by row as they were drawn.
    struct Pixels
    {
        std::array<RGBA8, std::size_t(PICK_SIDE) * PICK_SIDE> ids;
        std::array<float, std::size_t(PICK_SIDE) * PICK_SIDE> depths; // 1 where nothing was drawn
    };

    explicit PickTarget(GLContext& context);

    // Directs drawing to a square of so many pixels a side, at least PICK_SIDE. False if the driver has no target.
    bool begin(int side);

    // Draws vertices, or what the indices make of them, if they are not null, under a number of the caller's. Without
    // ARB programs only depths are drawn; when ids have run out, nothing is. Of points only those in the ranges are
    // drawn, unless these are null; they may be round.
    void draw(std::size_t item, GLVertexBuffer& positions, GLTemplatedIndexBuffer<unsigned int>* indices,
        unsigned int mode, const PointRadii& radii = {}, const PointRanges* ranges = nullptr, bool areRound = false);

    Pixels end();

    // What was drawn at a pixel: the caller's number, and the vertex; of a line or a triangle its last one.
    struct Vertex
    {
        std::size_t item;
        std::size_t number;
    };
    Vertex vertexOf(const PickId& id) const;

private:
    // The chunks of one call of draw().
    struct Chunks
    {
        std::size_t item;
        std::uint32_t first;
        std::uint32_t size; // how many vertices each has
    };

    bool takeChunks(std::size_t item, std::uint32_t numVertices, std::uint32_t size, bool isIndexed);
    bool makeIds(std::uint32_t number);
    void setChunk(std::uint32_t chunk);
    void drawInChunks(GLVertexBuffer& positions, unsigned int mode, GLVertexBuffer* radii, const PointRanges* ranges);

    GLContext& m_Context;
    std::unique_ptr<GLRenderTargetFBO> m_Target;
    std::optional<SavedAttributes> m_State; // between begin() and end()
    std::unique_ptr<GLShaderARB> m_Program; // null if the driver has none
    std::unique_ptr<PointScale> m_Scale;    // null if the driver has none
    std::unique_ptr<RoundPoints> m_Round;   // null if the driver has none
    std::unique_ptr<GLVertexBuffer> m_Ids;  // of PickId::PLACES vertices, or as many as have indices
    std::vector<Chunks> m_Drawn;
    std::uint32_t m_NextChunk = 0;
    int m_Side = 0;
    bool m_IsScaling = false;
};

} // namespace tavo
