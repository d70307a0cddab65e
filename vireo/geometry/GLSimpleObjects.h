#pragma once

#include <memory>
#include <vector>

#include "tavo/base/math/Polygon.h"
#include "tavo/base/math/vectors.h"
#include "vireo/Export.h"

// Boxes, lines and polygon meshes that are kept and drawn in immediate mode, for markers, helpers and debugging. Each
// carries a class id, a number of the application's, by which a container draws or clears those of one kind:
//
//     GLSimpleObjectContainer objects;
//     objects.addBox(box, 1);
//     objects.addLine(from, to, 2);
//     objects.drawObjects(context, 1); // the box
//     objects.clear(0);                // everything
//
// Drawing needs a current context, and takes matrices, colour, lighting and programs as they are. Of the state of GL it
// changes the current normal and colour only. Setting up needs no context.
namespace tavo {

class GLContext;
class GLSimpleObjectContainer;

class VIREO_EXPORT GLSimpleObject
{
public:
    GLSimpleObject() = default;
    GLSimpleObject(const GLSimpleObject&) = default;
    GLSimpleObject& operator=(const GLSimpleObject&) = default;
    virtual ~GLSimpleObject();

    virtual void draw(GLContext* context, GLSimpleObjectContainer* container) = 0;

    // 0 at first: an object that is drawn and cleared only together with all others.
    unsigned int getClassID() const { return m_ClassID; }
    void setClassID(unsigned int classID) { m_ClassID = classID; }

private:
    unsigned int m_ClassID = 0;
};

// A solid box along the axes, with a normal to each face.
class VIREO_EXPORT GLSimpleBox : public GLSimpleObject
{
public:
    // The corners are taken as they are given, in whatever order.
    void setup(const Box3f& box) { m_Box = box; }
    void setup(const Vector3f& min, const Vector3f& max) { m_Box = {min, max}; }

    void draw(GLContext* context, GLSimpleObjectContainer* container) override;

private:
    Box3f m_Box;
};

// Line segments.
class VIREO_EXPORT GLSimpleLines : public GLSimpleObject
{
public:
    void addLine(Vector3f a, Vector3f b);

    void draw(GLContext* context, GLSimpleObjectContainer* container) override;

private:
    std::vector<Vector3f> m_Vertices;
};

// Polygons, drawn as they are or split into triangles; without normals, but on demand in the colour of each.
class VIREO_EXPORT GLSimpleMesh : public GLSimpleObject
{
public:
    // A polygon, vertex by vertex. What was added before beginPoly, and was not ended, is dropped.
    void beginPoly();
    void addPolyVertex(const Vector3f& v);
    void endPoly();

    void addTriangle(const Vector3f& a, const Vector3f& b, const Vector3f& c);
    void addQuad(const Vector3f& a, const Vector3f& b, const Vector3f& c, const Vector3f& d);
    void addPolygon(const Polygon<PolyVector3f>& polygon);

    // Drops the polygons that were added, not the one that is begun.
    void clear();

    // Whether polygons are drawn as GL_POLYGON, of whatever number of vertices. At first they are not, but split into
    // the triangles (0, 1, 2), (1, 2, 3), (2, 3, 4), ...: deliberately as in a strip, not as in a fan, which for a quad
    // leaves out a corner and covers another twice. Of two vertices nothing is drawn then.
    void setPolygonMode(bool polygonMode) { m_PolygonMode = polygonMode; }

    // Whether the triangles of a polygon get its normal n as colour, n / 2 + 1/2 for each component; grey where it has
    // none. n is that of the first three vertices, and deliberately points away from who sees them counter-clockwise.
    // Has no effect with the polygon mode.
    void setUseNormalAsColor(bool useNormalAsColor) { m_UseNormalAsColor = useNormalAsColor; }
    bool getUseNormalAsColor() { return m_UseNormalAsColor; }

    // Throws std::out_of_range "invalid vector<T> subscript", with nothing left begun, at a polygon without vertices or
    // with one that is to be split.
    void draw(GLContext* context, GLSimpleObjectContainer* container) override;

private:
    void drawPolygons() const;
    void drawTriangles() const;

    std::vector<Polygon<PolyVector3f>> m_Polygons;
    bool m_PolygonMode = false;
    Polygon<PolyVector3f> m_CurrentPolygon;
    bool m_UseNormalAsColor = false;
};

// Owns its objects, and keeps them in the order in which they were added. Copies are member-wise and share the objects:
// copying is not a supported use.
class VIREO_EXPORT GLSimpleObjectContainer
{
public:
    GLSimpleObjectContainer() = default;
    GLSimpleObjectContainer(const GLSimpleObjectContainer&) = default;
    GLSimpleObjectContainer& operator=(const GLSimpleObjectContainer&) = default;
    ~GLSimpleObjectContainer();

    // Takes ownership. The object must not be null, which is not checked.
    void addObject(GLSimpleObject* object);

    // Add an object of one box, segment or triangle.
    void addBox(const Box3f& box, unsigned int classID);
    void addLine(const Vector3f& a, const Vector3f& b, unsigned int classID);
    void addTriangle(
        const Vector3f& a, const Vector3f& b, const Vector3f& c, unsigned int classID, bool useNormalAsColor);

    // Draws the objects of that class, or all if it is 0, in their order, and those that are added while it does.
    // Objects must not be cleared meanwhile. Throws what an object throws, without drawing those behind it.
    void drawObjects(GLContext* context, unsigned int classID);

    // Destroys the objects of that class, or all if it is 0. The others keep their order.
    void clear(unsigned int classID);

private:
    void add(std::unique_ptr<GLSimpleObject> object, unsigned int classID);

    std::vector<GLSimpleObject*> m_Objects;
};

// Draws a cube as quads of generic vertex attributes, for the ARB vertex program in use: attribute 0 is the corner, 1
// the face's normal times the size, 2 the centre and, as fourth component, the size, 3 whatever the caller gives; 1 to
// 3 keep their last values. A context must be current. If the attributes were not loaded yet they are now, between
// glBegin and glEnd, where a driver tells its extensions only if it was asked for them before: make the first root
// GLContext first. Without them the quads are left empty.
VIREO_EXPORT void drawGlArbCube(const Vector3f& center, const Vector3f& attribute3, const float& size);

} // namespace tavo
