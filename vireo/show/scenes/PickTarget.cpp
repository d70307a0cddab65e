#include "vireo/show/scenes/PickTarget.h"

#include <algorithm>
#include <utility>

#include "vireo/context/GLExtensions.h"
#include "vireo/geometry/bufferStorage.h"

namespace tavo {

namespace {

constexpr std::uint32_t CHUNKS_OF_BLUE = 256; // that differ in blue alone

// As many vertices as a chunk has places for, without cutting a primitive.
std::uint32_t chunkSizeOf(unsigned int mode)
{
    return mode == GL_TRIANGLES ? PickId::PLACES / 3 * 3 : PickId::PLACES;
}

// Those of the places go on in blue and alpha.
std::vector<RGBA8> coloursOfVertices(std::uint32_t number)
{
    std::vector<RGBA8> colours;
    colours.reserve(number);
    for (std::uint32_t i = 0; i < number; ++i)
        colours.emplace_back(i & 0xFF, i >> 8 & 0xFF, i >> 16 & 0xFF, i >> 24);
    return colours;
}

// What would change an id, or draw something else in its place.
void switchOffColours()
{
    for (const GLenum capability :
        {GL_BLEND, GL_DITHER, GL_LIGHTING, GL_MULTISAMPLE, GL_POINT_SMOOTH, GL_LINE_SMOOTH, GL_POLYGON_SMOOTH, GL_FOG})
        glDisable(capability);
    glShadeModel(GL_FLAT);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
}

void clear(int side)
{
    glScissor(0, 0, side, side); // the target may be larger
    glEnable(GL_SCISSOR_TEST);
    glClearColor(0, 0, 0, 0);
    glDepthMask(GL_TRUE);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
}

} // namespace

PickTarget::PickTarget(GLContext& context)
    : m_Context(context)
    , m_Target(std::make_unique<GLRenderTargetFBO>(&context))
    , m_Round(RoundPoints::make(context))
{
    if (!isExtensionSupported("GL_ARB_vertex_program"))
        return;
    m_Program = std::make_unique<GLShaderARB>(&context, GL_VERTEX_PROGRAM_ARB);
    if (!m_Program->compile(PICK_PROGRAM) || !makeIds(PickId::PLACES))
        m_Program.reset();
    else
        m_Scale = PointScale::make(context, PointScale::Colour::Id);
}

bool PickTarget::makeIds(std::uint32_t number)
{
    if (m_Ids && m_Ids->getNumElements() >= number)
        return true;
    VertexDescriptor layout;
    layout.pushAttrib(VertexAttribDescriptor("color", 4, VertexAttribDescriptor::TYPE_UNSIGNED_BYTE));
    auto ids = std::make_unique<GLVertexBuffer>(&m_Context, layout, GLVertexBuffer::TYPE_DEFAULT);
    ids->setMappingFlag(true);
    if (!ids->init(number, GL_STATIC_DRAW_ARB))
        return false;
    std::vector<RGBA8> colours = coloursOfVertices(number);
    ids->writeToBuffer(colours.data(), 0, number);
    m_Ids = std::move(ids);
    return true;
}

bool PickTarget::begin(int side)
{
    const auto least = static_cast<unsigned int>(side);
    if (m_Target->getWidth() < least && !m_Target->create(least, least))
        return false;
    m_Side = side;
    m_NextChunk = 0;
    m_Drawn.clear();
    m_Target->activate();
    m_State.emplace();
    glViewport(0, 0, side, side);
    switchOffColours();
    clear(side);
    if (m_Program)
        m_Program->bind();
    return true;
}

// The constant of a program cannot carry from blue to alpha: where vertices have a blue and an alpha of their own, the
// chunks begin where it need not.
bool PickTarget::takeChunks(std::size_t item, std::uint32_t numVertices, std::uint32_t size, bool isIndexed)
{
    const std::uint32_t number = numVertices / size + (numVertices % size != 0);
    const std::uint32_t blue = (m_NextChunk + 1) % CHUNKS_OF_BLUE;
    if (isIndexed && number > 1 && blue + number > CHUNKS_OF_BLUE)
        m_NextChunk += CHUNKS_OF_BLUE - blue;
    m_Drawn.push_back({item, m_NextChunk, size});
    if (number > PickId::MOST_CHUNKS || m_NextChunk > PickId::MOST_CHUNKS - number)
        return false;
    m_NextChunk += number;
    return number != 0;
}

void PickTarget::setChunk(std::uint32_t chunk)
{
    std::array<float, 4> constant = constantOfChunk(chunk);
    if (m_IsScaling)
        m_Scale->setChunk(constant);
    else if (m_Program)
        m_Program->setLocalParameter4fv(0, constant.data());
}

void PickTarget::draw(std::size_t item, GLVertexBuffer& positions, GLTemplatedIndexBuffer<unsigned int>* indices,
    unsigned int mode, const PointRadii& radii, const PointRanges* ranges, bool areRound)
{
    const std::uint32_t numVertices = positions.getNumElements();
    if (!takeChunks(item, numVertices, indices ? PickId::PLACES : chunkSizeOf(mode), indices) ||
        (m_Program && indices && !makeIds(numVertices)))
        return;
    m_IsScaling = radii.all > 0 && m_Scale;
    if (m_IsScaling) {
        glTexCoord1d(radii.all);
        m_Scale->begin(radii.scale);
    }
    RoundPoints* const round = areRound ? m_Round.get() : nullptr;
    if (round)
        round->begin();
    GLVertexBuffer* const buffers[] = {m_Ids.get(), m_IsScaling ? radii.each : nullptr, &positions};
    for (GLVertexBuffer* const buffer : buffers)
        if (buffer)
            buffer->bind();
    if (indices) {
        setChunk(m_Drawn.back().first);
        indices->bind();
        indices->drawElements(mode, 0, 0);
        indices->unbind();
    } else {
        drawInChunks(positions, mode, buffers[1], ranges);
    }
    for (GLVertexBuffer* const buffer : buffers)
        if (buffer)
            buffer->unbind();
    if (round)
        round->end();
    if (std::exchange(m_IsScaling, false)) {
        m_Scale->end();
        m_Program->bind();
    }
}

// The ids of all chunks are the same buffer.
void PickTarget::drawInChunks(
    GLVertexBuffer& positions, unsigned int mode, GLVertexBuffer* radii, const PointRanges* ranges)
{
    auto [item, chunk, size] = m_Drawn.back();
    const std::uint32_t numVertices = positions.getNumElements();
    PointRanges all;
    all.add(0, numVertices);
    for (std::uint32_t begin = 0; begin < numVertices; begin += std::min(size, numVertices - begin), ++chunk) {
        const PointRanges drawn = (ranges ? *ranges : all).within(begin, std::size_t(begin) + size);
        if (drawn.firsts.empty())
            continue;
        setChunk(chunk);
        if (radii) {
            radii->GLBuffer::bind();
            glTexCoordPointer(1, GL_FLOAT, 0, bufferOffset(sizeof(float) * begin));
        }
        positions.GLBuffer::bind();
        glVertexPointer(3, GL_FLOAT, 0, bufferOffset(3 * sizeof(float) * begin));
        for (std::size_t i = 0; i < drawn.firsts.size(); ++i)
            glDrawArrays(mode, drawn.firsts[i], drawn.counts[i]);
    }
}

PickTarget::Pixels PickTarget::end()
{
    if (m_Program)
        m_Program->unbind();
    Pixels pixels;
    const int first = (m_Side - PICK_SIDE) / 2;
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadPixels(first, first, PICK_SIDE, PICK_SIDE, GL_RGBA, GL_UNSIGNED_BYTE, pixels.ids.data());
    glReadPixels(first, first, PICK_SIDE, PICK_SIDE, GL_DEPTH_COMPONENT, GL_FLOAT, pixels.depths.data());
    m_State.reset();
    m_Target->deactivate();
    if (!m_Program)
        pixels.ids.fill(RGBA8(0, 0, 0, 0));
    return pixels;
}

PickTarget::Vertex PickTarget::vertexOf(const PickId& id) const
{
    const auto isAfter = [](std::uint32_t chunk, const Chunks& chunks) { return chunk < chunks.first; };
    const auto after = std::upper_bound(m_Drawn.begin(), m_Drawn.end(), id.chunk, isAfter);
    const Chunks& chunks = *(after - 1);
    return {chunks.item, std::size_t(chunks.size) * (id.chunk - chunks.first) + id.place};
}

} // namespace tavo
