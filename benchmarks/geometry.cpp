#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>

#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/View.h"
#include "benchmarks/works.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/geometry/GLGeometryList.h"
#include "vireo/geometry/GLHelper.h"
#include "vireo/geometry/GLVertexBuffer.h"

namespace vireo_bench {

namespace {

using tavo::VertexAttribDescriptor;
using tavo::VertexDescriptor;

constexpr int VIEW_SIZE = 512;

using Floats3 = std::array<float, 3>;

// Points on a spiral, each with a direction and a colour.
struct Vertex
{
    Floats3 position;
    Floats3 normal;
    Floats3 color;
};

std::vector<Vertex> makeVertices(unsigned int count)
{
    std::vector<Vertex> vertices(count);
    for (unsigned int i = 0; i < count; ++i) {
        const float part = static_cast<float>(i) / static_cast<float>(count);
        const float x = std::cos(500 * part);
        const float y = std::sin(500 * part);
        vertices[i] = {{part * x, part * y, 0}, {x, y, 0}, {part, 1 - part, 1}};
    }
    return vertices;
}

VertexDescriptor layoutOf(unsigned int numColorComponents)
{
    VertexDescriptor layout;
    layout.pushAttrib({"position", 3, VertexAttribDescriptor::TYPE_FLOAT});
    layout.pushAttrib({"normal", 3, VertexAttribDescriptor::TYPE_FLOAT});
    layout.pushAttrib({"color", numColorComponents, VertexAttribDescriptor::TYPE_FLOAT});
    return layout;
}

const void* offsetInBuffer(std::size_t offset)
{
    return reinterpret_cast<const void*>(offset);
}

// Points the fixed-function arrays at vertices, which a buffer has.
void pointArrays()
{
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, sizeof(Vertex), offsetInBuffer(offsetof(Vertex, position)));
    glEnableClientState(GL_NORMAL_ARRAY);
    glNormalPointer(GL_FLOAT, sizeof(Vertex), offsetInBuffer(offsetof(Vertex, normal)));
    glEnableClientState(GL_COLOR_ARRAY);
    glColorPointer(3, GL_FLOAT, sizeof(Vertex), offsetInBuffer(offsetof(Vertex, color)));
}

void disableArrays()
{
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_COLOR_ARRAY);
}

GLuint makeBuffer(const void* data, std::size_t size)
{
    GLuint buffer = 0;
    tavo::glGenBuffersARB(1, &buffer);
    tavo::glBindBufferARB(GL_ARRAY_BUFFER_ARB, buffer);
    tavo::glBufferDataARB(GL_ARRAY_BUFFER_ARB, static_cast<GLsizeiptrARB>(size), nullptr, GL_STATIC_DRAW_ARB);
    tavo::glBufferSubDataARB(GL_ARRAY_BUFFER_ARB, 0, static_cast<GLsizeiptrARB>(size), data);
    tavo::glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0);
    return buffer;
}

void drawFromBuffer(GLuint buffer, unsigned int count)
{
    tavo::glBindBufferARB(GL_ARRAY_BUFFER_ARB, buffer);
    pointArrays();
    glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>(count));
    disableArrays();
    tavo::glBindBufferARB(GL_ARRAY_BUFFER_ARB, 0);
}

// A contestant whose result is a picture.
class Geometry : public Contestant
{
public:
    void prepare() override
    {
        m_Context = &View::ofSize(VIEW_SIZE, VIEW_SIZE).getContext();
        glMatrixMode(GL_PROJECTION);
        glLoadIdentity();
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glDisable(GL_DEPTH_TEST);
        glColor3f(1, 1, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        glFinish();
    }
    Bytes result() override { return View::ofSize(VIEW_SIZE, VIEW_SIZE).pixels(); }

protected:
    tavo::GLContext& context() { return *m_Context; }

private:
    tavo::GLContext* m_Context = nullptr;
};

// Draws, and only that: a few vertices several times, so that waiting for the driver does not hide the rest.
class Drawing : public Geometry
{
public:
    void run() override
    {
        for (std::size_t i = 0; i < m_NumTimes; ++i)
            draw();
        glFinish();
    }
    double repetitions() const override { return static_cast<double>(m_NumTimes); }

protected:
    explicit Drawing(std::size_t numVertices)
        : m_NumTimes(std::max<std::size_t>(1, 10'000 / numVertices))
    {}
    virtual void draw() = 0;

private:
    std::size_t m_NumTimes;
};

// Records vertices and puts them into a buffer.
class Recording : public Geometry
{
public:
    explicit Recording(std::vector<Vertex> vertices)
        : m_Vertices(std::move(vertices))
    {}
    Bytes result() override
    {
        drawRecorded();
        return Geometry::result();
    }

protected:
    virtual void drawRecorded() = 0;

    std::vector<Vertex> m_Vertices;
};

void record(tavo::GLGeometryList& list, const std::vector<Vertex>& vertices)
{
    list.begin(GL_POINTS);
    for (const Vertex& vertex : vertices) {
        list.normal3fv(vertex.normal.data());
        list.color3fv(vertex.color.data());
        list.vertex3fv(vertex.position.data());
    }
    list.end();
}

class ListRecording : public Recording
{
public:
    using Recording::Recording;
    void run() override
    {
        m_List = std::make_unique<tavo::GLGeometryList>(&context());
        record(*m_List, m_Vertices);
        m_List->compile(&context(), true);
        glFinish();
    }
    void cleanUp() override { m_List.reset(); }

protected:
    void drawRecorded() override { m_List->execute(nullptr); }

private:
    std::unique_ptr<tavo::GLGeometryList> m_List;
};

// A vector of the records that the list is said to keep, converted to the vertices that are used.
class BareRecording : public Recording
{
public:
    using Recording::Recording;
    void run() override
    {
        recordAll();
        m_Buffer = makeBuffer(convert().get(), m_Records.size() * sizeof(Vertex));
        glFinish();
    }
    void cleanUp() override
    {
        tavo::glDeleteBuffersARB(1, &m_Buffer);
        std::vector<Record>().swap(m_Records);
    }

protected:
    void drawRecorded() override { drawFromBuffer(m_Buffer, static_cast<unsigned int>(m_Vertices.size())); }

private:
    using Floats4 = std::array<float, 4>;

    struct Record
    {
        Floats4 position;
        Floats4 color;
        Floats4 normal;
        Floats4 texcoord;
    };

    void recordAll()
    {
        Record current{};
        for (const Vertex& vertex : m_Vertices) {
            current.normal = {vertex.normal[0], vertex.normal[1], vertex.normal[2], 0};
            current.color = {vertex.color[0], vertex.color[1], vertex.color[2], 1};
            current.position = {vertex.position[0], vertex.position[1], vertex.position[2], 1};
            m_Records.push_back(current);
        }
    }

    // Normals and colours change places, as they do in the list.
    std::unique_ptr<Vertex[]> convert() const
    {
        auto used = std::make_unique_for_overwrite<Vertex[]>(m_Records.size());
        for (std::size_t i = 0; i < m_Records.size(); ++i) {
            const Record& record = m_Records[i];
            used[i] = {{record.position[0], record.position[1], record.position[2]},
                {record.color[0], record.color[1], record.color[2]},
                {record.normal[0], record.normal[1], record.normal[2]}};
        }
        return used;
    }

    std::vector<Record> m_Records;
    GLuint m_Buffer = 0;
};

class ListDrawing : public Drawing
{
public:
    explicit ListDrawing(const std::vector<Vertex>& vertices)
        : Drawing(vertices.size())
        , m_List(&View::context())
    {
        record(m_List, vertices);
        m_List.compile(&View::context(), true);
    }

protected:
    void draw() override { m_List.execute(&context()); }

private:
    tavo::GLGeometryList m_List;
};

// The vertices in a buffer object, without the library.
class BareBufferDrawing : public Drawing
{
public:
    explicit BareBufferDrawing(const std::vector<Vertex>& vertices)
        : Drawing(vertices.size())
        , m_Count(static_cast<unsigned int>(vertices.size()))
        , m_Buffer(makeBuffer(vertices.data(), vertices.size() * sizeof(Vertex)))
    {}
    ~BareBufferDrawing() override { tavo::glDeleteBuffersARB(1, &m_Buffer); }

protected:
    void draw() override { drawFromBuffer(m_Buffer, m_Count); }

private:
    unsigned int m_Count;
    GLuint m_Buffer;
};

// The same with normals and colours exchanged, as they are in a list.
class BareListDrawing : public BareBufferDrawing
{
public:
    explicit BareListDrawing(std::vector<Vertex> vertices)
        : BareBufferDrawing(exchanged(std::move(vertices)))
    {}

private:
    static std::vector<Vertex> exchanged(std::vector<Vertex> vertices)
    {
        for (Vertex& vertex : vertices)
            std::swap(vertex.normal, vertex.color);
        return vertices;
    }
};

class VertexBufferDrawing : public Drawing
{
public:
    explicit VertexBufferDrawing(std::vector<Vertex> vertices)
        : Drawing(vertices.size())
        , m_Buffer(&View::context(), layoutOf(3), tavo::GLVertexBuffer::TYPE_DEFAULT)
    {
        const auto count = static_cast<unsigned int>(vertices.size());
        m_Buffer.init(count, GL_STATIC_DRAW_ARB);
        m_Buffer.writeToBuffer(vertices.data(), 0, count);
        m_Buffer.setMappingFlag(true);
    }

protected:
    void draw() override
    {
        m_Buffer.bind();
        m_Buffer.drawArrays(GL_POINTS, 0, 0);
        m_Buffer.unbind();
    }

private:
    tavo::GLVertexBuffer m_Buffer;
};

// Vertices in client memory, through generic attributes; without a program, attribute 0 is the position.
class SoftwareArrayDrawing : public Drawing
{
public:
    explicit SoftwareArrayDrawing(std::vector<Vertex> vertices)
        : Drawing(vertices.size())
        , m_Vertices(std::move(vertices))
    {}

protected:
    void draw() override
    {
        tavo::GLHelper::drawBuffer(reinterpret_cast<const char*>(m_Vertices.data()),
            static_cast<unsigned int>(m_Vertices.size() * sizeof(Vertex)), &m_Layout, &m_Layout, GL_POINTS);
    }

private:
    std::vector<Vertex> m_Vertices;
    VertexDescriptor m_Layout = layoutOf(3);
};

class BareArrayDrawing : public Drawing
{
public:
    explicit BareArrayDrawing(std::vector<Vertex> vertices)
        : Drawing(vertices.size())
        , m_Vertices(std::move(vertices))
    {}

protected:
    void draw() override
    {
        point(0, m_Vertices.front().position);
        point(1, m_Vertices.front().normal);
        point(2, m_Vertices.front().color);
        glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>(m_Vertices.size()));
        for (GLuint attribute = 0; attribute < 3; ++attribute)
            tavo::glDisableVertexAttribArrayARB(attribute);
    }

private:
    static void point(GLuint attribute, const Floats3& first)
    {
        tavo::glEnableVertexAttribArrayARB(attribute);
        tavo::glVertexAttribPointerARB(attribute, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex), first.data());
    }

    std::vector<Vertex> m_Vertices;
};

template <typename Kind>
std::function<std::unique_ptr<Contestant>()> with(unsigned int numVertices)
{
    return [numVertices] {
        View::context();
        return std::make_unique<Kind>(makeVertices(numVertices));
    };
}

} // namespace

Comparison recordVertices(unsigned int numVertices)
{
    return {"record and compile " + withCommas(numVertices) + " vertices",
        {{"vireo", with<ListRecording>(numVertices)}, {"floor", with<BareRecording>(numVertices), 1.1}}};
}

Comparison executeList(unsigned int numVertices)
{
    return {"execute the list of " + withCommas(numVertices) + " vertices",
        {{"vireo", with<ListDrawing>(numVertices)}, {"floor", with<BareListDrawing>(numVertices), 1.02}}};
}

Comparison drawSoftwareArrays(unsigned int numVertices)
{
    return {"bind and draw software vertex arrays of " + withCommas(numVertices) + " vertices",
        {{"vireo", with<SoftwareArrayDrawing>(numVertices)}, {"floor", with<BareArrayDrawing>(numVertices), 1.05}}};
}

Comparison drawVertexBuffer(unsigned int numVertices)
{
    return {"bind and draw a vertex buffer of " + withCommas(numVertices) + " vertices",
        {{"vireo", with<VertexBufferDrawing>(numVertices)}, {"floor", with<BareBufferDrawing>(numVertices), 1.05}}};
}

void addGeometryWorks()
{
    for (const unsigned int numVertices : {250'000u, 1'000'000u, 2'000'000u})
        add(recordVertices(numVertices));
    for (const unsigned int numVertices : {1'000u, 1'000'000u}) {
        add(executeList(numVertices));
        add(drawSoftwareArrays(numVertices));
        add(drawVertexBuffer(numVertices));
    }
}

} // namespace vireo_bench
