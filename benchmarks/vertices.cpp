#include <algorithm>
#include <cstring>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/works.h"
#include "tavo/points/VertexDescriptor.h"

namespace vireo_bench {

namespace {

using tavo::VertexAttribDescriptor;
using tavo::VertexDescriptor;

// The two layouts, as the floor has them.
struct From
{
    float position[3];
    float normal[3];
    unsigned char color[4];
    float texcoord[2];
};

struct To
{
    float position[3];
    unsigned char color[4];
    float texcoord[2];
};

void push(VertexDescriptor& layout, const char* name, unsigned int components, unsigned int type)
{
    layout.pushAttrib(VertexAttribDescriptor(name, components, type));
}

VertexDescriptor sourceLayout()
{
    VertexDescriptor layout;
    push(layout, "position", 3, VertexAttribDescriptor::TYPE_FLOAT);
    push(layout, "normal", 3, VertexAttribDescriptor::TYPE_FLOAT);
    push(layout, "color", 4, VertexAttribDescriptor::TYPE_UNSIGNED_BYTE);
    push(layout, "texcoord", 2, VertexAttribDescriptor::TYPE_FLOAT);
    return layout;
}

VertexDescriptor targetLayout()
{
    VertexDescriptor layout;
    push(layout, "position", 3, VertexAttribDescriptor::TYPE_FLOAT);
    push(layout, "color", 4, VertexAttribDescriptor::TYPE_UNSIGNED_BYTE);
    push(layout, "texcoord", 2, VertexAttribDescriptor::TYPE_FLOAT);
    return layout;
}

std::vector<From> makeVertices(unsigned int count)
{
    std::vector<From> vertices(count);
    for (unsigned int i = 0; i < count; ++i) {
        const auto f = static_cast<float>(i);
        const auto b = static_cast<unsigned char>(i);
        vertices[i] = {{f, f + 1, f + 2}, {0, 0, 1}, {b, b, b, 255}, {f, -f}};
    }
    return vertices;
}

// Both make their result anew each time, as the library's interface has it.
class Conversion : public Contestant
{
public:
    explicit Conversion(unsigned int numVertices)
        : m_Vertices(makeVertices(numVertices))
    {}
    Bytes result() override { return m_Converted; }
    void cleanUp() override { Bytes().swap(m_Converted); }

protected:
    std::vector<From> m_Vertices;
    Bytes m_Converted;
};

class VireoConversion : public Conversion
{
public:
    using Conversion::Conversion;
    void run() override
    {
        VertexDescriptor::convertVertices(
            m_Target, m_Source, m_Vertices.data(), static_cast<unsigned int>(m_Vertices.size()), m_Converted);
    }

private:
    VertexDescriptor m_Source = sourceLayout();
    VertexDescriptor m_Target = targetLayout();
};

class CopyLoop : public Conversion
{
public:
    using Conversion::Conversion;
    void run() override
    {
        m_Converted.resize(m_Vertices.size() * sizeof(To));
        auto* to = reinterpret_cast<To*>(m_Converted.data());
        for (const From& from : m_Vertices) {
            std::copy_n(from.position, 3, to->position);
            std::copy_n(from.color, 4, to->color);
            std::copy_n(from.texcoord, 2, to->texcoord);
            ++to;
        }
    }
};

} // namespace

Comparison convertVertices(unsigned int numVertices)
{
    return {"convert " + withCommas(numVertices) + " vertices between layouts",
        {{"vireo", [numVertices] { return std::make_unique<VireoConversion>(numVertices); }},
            {"floor", [numVertices] { return std::make_unique<CopyLoop>(numVertices); }, 1.2}}};
}

void addVertexWorks()
{
    add(convertVertices(1'000'000));
}

} // namespace vireo_bench
