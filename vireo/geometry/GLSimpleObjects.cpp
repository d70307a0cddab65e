#include "vireo/geometry/GLSimpleObjects.h"

#include <array>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <memory>
#include <utility>

#include "vireo/context/GLExtensionLoader.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"

namespace tavo {

namespace {

// A corner of a box: for each axis, whether it is the maximum.
using Corner = std::array<bool, 3>;

struct Face
{
    std::array<float, 3> normal;
    std::array<Corner, 4> corners;
};

using Cube = std::array<Face, 6>;

constexpr Cube BOX_FACES{{
    {{-1, 0, 0}, {{{0, 0, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1}}}},
    {{1, 0, 0}, {{{1, 0, 0}, {1, 0, 1}, {1, 1, 1}, {1, 1, 0}}}},
    {{0, -1, 0}, {{{0, 0, 0}, {0, 0, 1}, {1, 0, 1}, {1, 0, 0}}}},
    {{0, 1, 0}, {{{0, 1, 0}, {1, 1, 0}, {1, 1, 1}, {0, 1, 1}}}},
    {{0, 0, -1}, {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}}},
    {{0, 0, 1}, {{{0, 0, 1}, {0, 1, 1}, {1, 1, 1}, {1, 0, 1}}}},
}};

constexpr Cube ARB_CUBE_FACES{{
    {{0, -1, 0}, {{{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}}}},
    {{0, 0, -1}, {{{1, 0, 0}, {0, 0, 0}, {0, 1, 0}, {1, 1, 0}}}},
    {{0, 0, 1}, {{{1, 0, 1}, {0, 0, 1}, {0, 1, 1}, {1, 1, 1}}}},
    {{0, 1, 0}, {{{1, 1, 0}, {0, 1, 0}, {0, 1, 1}, {1, 1, 1}}}},
    {{-1, 0, 0}, {{{0, 0, 0}, {0, 1, 0}, {0, 1, 1}, {0, 0, 1}}}},
    {{1, 0, 0}, {{{1, 1, 0}, {1, 0, 0}, {1, 0, 1}, {1, 1, 1}}}},
}};

Vector3f cornerOf(const Vector3f& min, const Vector3f& max, const Corner& corner)
{
    return {(corner[0] ? max : min)[0], (corner[1] ? max : min)[1], (corner[2] ? max : min)[2]};
}

// The factors deliberately stand in this order: the normal points away from who sees the polygon counter-clockwise.
Vector3f normalOf(const Polygon<PolyVector3f>& polygon)
{
    if (polygon.getNumVertices() < 3)
        return {0, 0, 0};
    const Vector3f& origin = polygon.getVertex(0);
    const Vector3f normal = cross(polygon.getVertex(2) - origin, polygon.getVertex(1) - origin);
    const float norm = std::hypot(normal[0], normal[1], normal[2]); // also where the squares would underflow
    constexpr float shortest = 1e-20f;
    return norm >= shortest ? Vector3f(normal[0] / norm, normal[1] / norm, normal[2] / norm) : Vector3f(0, 0, 0);
}

void sendColor(const Vector3f& normal)
{
    const Vector3f color = normal * 0.5f + Vector3f(0.5f, 0.5f, 0.5f);
    glColor3fv(color.data());
}

// The split is deliberately that of a strip. The first triangle is sent unasked, so that a polygon that is too short
// for it is told so.
void sendTriangles(const Polygon<PolyVector3f>& polygon)
{
    const unsigned int count = polygon.getNumVertices();
    if (count == 2)
        return;
    unsigned int i = 0;
    do {
        for (unsigned int corner = i; corner < i + 3; ++corner)
            glVertex3fv(polygon.getVertex(corner).data());
        ++i;
    } while (i + 2 < count);
}

bool hasVertexPrograms()
{
    if (!glVertexAttrib3fvARB)
        GLExtensionLoader::getInstance().request("GL_ARB_vertex_program");
    return glVertexAttrib3fvARB != nullptr;
}

bool isOfClass(const GLSimpleObject& object, unsigned int classID)
{
    return classID == 0 || object.getClassID() == classID;
}

} // namespace

GLSimpleObject::~GLSimpleObject() = default;

void GLSimpleBox::draw(GLContext*, GLSimpleObjectContainer*)
{
    const Primitive quads(GL_QUADS);
    for (const Face& face : BOX_FACES) {
        glNormal3f(face.normal[0], face.normal[1], face.normal[2]);
        for (const Corner& corner : face.corners) {
            const Vector3f vertex = cornerOf(m_Box.getMin(), m_Box.getMax(), corner);
            glVertex3f(vertex[0], vertex[1], vertex[2]);
        }
    }
}

void GLSimpleLines::addLine(Vector3f a, Vector3f b)
{
    m_Vertices.push_back(a);
    m_Vertices.push_back(b);
}

void GLSimpleLines::draw(GLContext*, GLSimpleObjectContainer*)
{
    const Primitive lines(GL_LINES);
    for (const Vector3f& vertex : m_Vertices)
        glVertex3fv(vertex.data());
}

void GLSimpleMesh::beginPoly()
{
    m_CurrentPolygon.clear();
}

void GLSimpleMesh::addPolyVertex(const Vector3f& v)
{
    m_CurrentPolygon.addVertex(v);
}

void GLSimpleMesh::endPoly()
{
    m_Polygons.push_back(m_CurrentPolygon);
    m_CurrentPolygon.clear();
}

void GLSimpleMesh::addTriangle(const Vector3f& a, const Vector3f& b, const Vector3f& c)
{
    Polygon<PolyVector3f> triangle;
    for (const Vector3f& vertex : {a, b, c})
        triangle.addVertex(vertex);
    addPolygon(triangle);
}

void GLSimpleMesh::addQuad(const Vector3f& a, const Vector3f& b, const Vector3f& c, const Vector3f& d)
{
    Polygon<PolyVector3f> quad;
    for (const Vector3f& vertex : {a, b, c, d})
        quad.addVertex(vertex);
    addPolygon(quad);
}

void GLSimpleMesh::addPolygon(const Polygon<PolyVector3f>& polygon)
{
    m_Polygons.push_back(polygon);
}

void GLSimpleMesh::clear()
{
    m_Polygons.clear();
}

void GLSimpleMesh::draw(GLContext*, GLSimpleObjectContainer*)
{
    if (m_PolygonMode)
        drawPolygons();
    else
        drawTriangles();
}

void GLSimpleMesh::drawPolygons() const
{
    for (const Polygon<PolyVector3f>& polygon : m_Polygons) {
        const Primitive primitive(GL_POLYGON);
        for (unsigned int i = 0; i < polygon.getNumVertices(); ++i)
            glVertex3fv(polygon.getVertex(i).data());
    }
}

void GLSimpleMesh::drawTriangles() const
{
    const Primitive triangles(GL_TRIANGLES);
    for (const Polygon<PolyVector3f>& polygon : m_Polygons) {
        if (m_UseNormalAsColor)
            sendColor(normalOf(polygon));
        sendTriangles(polygon);
    }
}

GLSimpleObjectContainer::~GLSimpleObjectContainer()
{
    clear(0);
}

void GLSimpleObjectContainer::addObject(GLSimpleObject* object)
{
    m_Objects.push_back(object);
}

void GLSimpleObjectContainer::addBox(const Box3f& box, unsigned int classID)
{
    auto object = std::make_unique<GLSimpleBox>();
    object->setup(box);
    add(std::move(object), classID);
}

void GLSimpleObjectContainer::addLine(const Vector3f& a, const Vector3f& b, unsigned int classID)
{
    auto object = std::make_unique<GLSimpleLines>();
    object->addLine(a, b);
    add(std::move(object), classID);
}

void GLSimpleObjectContainer::addTriangle(
    const Vector3f& a, const Vector3f& b, const Vector3f& c, unsigned int classID, bool useNormalAsColor)
{
    auto object = std::make_unique<GLSimpleMesh>();
    object->addTriangle(a, b, c);
    object->setUseNormalAsColor(useNormalAsColor);
    add(std::move(object), classID);
}

void GLSimpleObjectContainer::add(std::unique_ptr<GLSimpleObject> object, unsigned int classID)
{
    object->setClassID(classID);
    addObject(object.get());
    object.release();
}

void GLSimpleObjectContainer::drawObjects(GLContext* context, unsigned int classID)
{
    // By index: an object is given the container, and may add to it.
    for (std::size_t i = 0; i < m_Objects.size(); ++i) {
        assert(m_Objects[i] && "a container draws no null object");
        if (isOfClass(*m_Objects[i], classID))
            m_Objects[i]->draw(context, this);
    }
}

void GLSimpleObjectContainer::clear(unsigned int classID)
{
    std::erase_if(m_Objects, [classID](const GLSimpleObject* object) {
        const bool cleared = object ? isOfClass(*object, classID) : classID == 0;
        if (cleared)
            delete object;
        return cleared;
    });
}

void drawGlArbCube(const Vector3f& center, const Vector3f& attribute3, const float& size)
{
    const float half = size / 2;
    const Vector3f min = center - Vector3f(half, half, half);
    const Vector3f max = min + Vector3f(size, size, size);
    const Primitive quads(GL_QUADS);
    if (!hasVertexPrograms())
        return;
    glVertexAttrib3fvARB(3, attribute3.data());
    glVertexAttrib4fARB(2, center[0], center[1], center[2], size);
    for (const Face& face : ARB_CUBE_FACES) {
        const Vector3f normal(face.normal[0] * size, face.normal[1] * size, face.normal[2] * size);
        glVertexAttrib3fvARB(1, normal.data());
        for (const Corner& corner : face.corners)
            glVertexAttrib3fvARB(0, cornerOf(min, max, corner).data());
    }
}

} // namespace tavo
