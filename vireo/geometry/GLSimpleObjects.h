#pragma once

#include <memory>
#include <vector>

#include "tavo/base/math/Polygon.h"
#include "tavo/base/math/vectors.h"
#include "vireo/Export.h"

/// @file
/// Boxes, lines and polygon meshes that are kept and drawn in immediate mode, for markers, helpers and debugging. Each
/// has a class id, a number of the application's, by which a container draws or clears objects of one kind:
///
///     GLSimpleObjectContainer objects;
///     objects.addBox(Box3f({0, 0, 0}, {1, 1, 1}), 1);
///     objects.addLine({0, 0, 0}, {1, 1, 1}, 2);
///     objects.drawObjects(&context, 1); // the box
///     objects.clear(0);                 // everything
///
/// Drawing needs a current context. It uses matrices, colour, lighting and programs as they are, and changes only the
/// current normal and colour (glBegin, glNormal3f, glColor3fv, glVertex3fv, glEnd). Every drawing sends all vertices
/// anew: for large meshes use GLGeometryList. Setting up needs no context.
namespace tavo {

class GLContext;
class GLSimpleObjectContainer;

/// The base of objects for a container. An object of your own draws itself:
///
///     class Marker : public GLSimpleObject
///     {
///     public:
///         void draw(GLContext*, GLSimpleObjectContainer*) override { GLHelper::drawCoords(); }
///     };
class VIREO_EXPORT GLSimpleObject
{
public:
    GLSimpleObject() = default;
    GLSimpleObject(const GLSimpleObject&) = default;
    GLSimpleObject& operator=(const GLSimpleObject&) = default;
    virtual ~GLSimpleObject();

    /// Draws the object. From a container, the context is the one that drawObjects was given, and the container is the
    /// one that draws. Either may be null; the objects below use neither.
    virtual void draw(GLContext* context, GLSimpleObjectContainer* container) = 0;

    /// The class id. It starts as 0: such an object is drawn and cleared only together with all others.
    unsigned int getClassID() const { return m_ClassID; }
    void setClassID(unsigned int classID) { m_ClassID = classID; }

private:
    unsigned int m_ClassID = 0;
};

/// A solid box along the axes, with one normal per face.
///
///     GLSimpleBox box;
///     box.setup({0, 0, 0}, {1, 1, 1});
///     box.draw(&context, nullptr);
class VIREO_EXPORT GLSimpleBox : public GLSimpleObject
{
public:
    /// Sets the corners, in whatever order they are given.
    void setup(const Box3f& box) { m_Box = box; }
    void setup(const Vector3f& min, const Vector3f& max) { m_Box = {min, max}; }

    void draw(GLContext* context, GLSimpleObjectContainer* container) override;

private:
    Box3f m_Box;
};

/// Line segments.
///
///     GLSimpleLines lines;
///     lines.addLine({0, 0, 0}, {1, 1, 1});
///     lines.draw(&context, nullptr);
class VIREO_EXPORT GLSimpleLines : public GLSimpleObject
{
public:
    void addLine(Vector3f a, Vector3f b);

    void draw(GLContext* context, GLSimpleObjectContainer* container) override;

private:
    std::vector<Vector3f> m_Vertices;
};

/// Polygons without normals, drawn as they are or split into triangles, which may be coloured by their normals.
///
///     GLSimpleMesh mesh;
///     mesh.setPolygonMode(true);
///     mesh.addQuad({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0});
///     mesh.draw(&context, nullptr);
class VIREO_EXPORT GLSimpleMesh : public GLSimpleObject
{
public:
    /// Add a polygon vertex by vertex. beginPoly drops vertices of a polygon that was not ended.
    void beginPoly();
    void addPolyVertex(const Vector3f& v);
    void endPoly();

    void addTriangle(const Vector3f& a, const Vector3f& b, const Vector3f& c);
    void addQuad(const Vector3f& a, const Vector3f& b, const Vector3f& c, const Vector3f& d);
    void addPolygon(const Polygon<PolyVector3f>& polygon);

    /// Drops the polygons that were added, but not the one that was begun.
    void clear();

    /// Whether to draw each polygon whole (GL_POLYGON). If not, which is the default, polygons are split into the
    /// triangles (0, 1, 2), (1, 2, 3), (2, 3, 4), ...: deliberately as in a strip, not as in a fan, so that of a quad
    /// one corner is left out and another covered twice. Then a polygon of two vertices is not drawn.
    void setPolygonMode(bool polygonMode) { m_PolygonMode = polygonMode; }

    /// Whether to colour triangles by the normal n of their polygon: n / 2 + 1/2 per component, grey without a normal.
    /// n is that of the first three vertices, and deliberately points away from viewers who see them counter-clockwise.
    /// This has no effect in polygon mode.
    void setUseNormalAsColor(bool useNormalAsColor) { m_UseNormalAsColor = useNormalAsColor; }
    bool getUseNormalAsColor() { return m_UseNormalAsColor; }

    /// Draws the polygons (GL_POLYGON or GL_TRIANGLES).
    /// @throws std::out_of_range "invalid vector<T> subscript", after glEnd, at a polygon without vertices or with one
    /// vertex that is to be split.
    void draw(GLContext* context, GLSimpleObjectContainer* container) override;

private:
    void drawPolygons() const;
    void drawTriangles() const;

    std::vector<Polygon<PolyVector3f>> m_Polygons;
    bool m_PolygonMode = false;
    Polygon<PolyVector3f> m_CurrentPolygon;
    bool m_UseNormalAsColor = false;
};

/// Objects in the order in which they were added (see above for a use).
///
///     GLSimpleObjectContainer markers;
///     markers.addObject(new GLSimpleBox);
///     markers.drawObjects(&context, 0);
///
/// @owns The container owns its objects. Do not copy containers: a copy shares the objects.
class VIREO_EXPORT GLSimpleObjectContainer
{
public:
    GLSimpleObjectContainer() = default;
    GLSimpleObjectContainer(const GLSimpleObjectContainer&) = default;
    GLSimpleObjectContainer& operator=(const GLSimpleObjectContainer&) = default;
    ~GLSimpleObjectContainer();

    /// Adds an object, which must not be null.
    /// @owns The container owns it from now on.
    void addObject(GLSimpleObject* object);

    /// Adds an object of one box, segment or triangle.
    void addBox(const Box3f& box, unsigned int classID);
    void addLine(const Vector3f& a, const Vector3f& b, unsigned int classID);
    void addTriangle(
        const Vector3f& a, const Vector3f& b, const Vector3f& c, unsigned int classID, bool useNormalAsColor);

    /// Draws the objects of that class, or all if it is 0, in order, including those that are added meanwhile. Objects
    /// must not be cleared meanwhile. What an object throws is passed on, and those after it are not drawn.
    void drawObjects(GLContext* context, unsigned int classID);

    /// Destroys the objects of that class, or all if it is 0. The others keep their order.
    void clear(unsigned int classID);

private:
    void add(std::unique_ptr<GLSimpleObject> object, unsigned int classID);

    std::vector<GLSimpleObject*> m_Objects;
};

/// Draws a cube as quads of generic vertex attributes, for the ARB vertex program in use (glVertexAttrib3fvARB,
/// glVertexAttrib4fARB). Attribute 0 is the corner; 1 the face's normal times the size; 2 the centre, with the size as
/// fourth component; 3 what the caller gives. Attributes 1 to 3 keep their last values. Without the entry points the
/// quads are empty.
/// @needs A current context. Make the first root GLContext before: otherwise the entry points are fetched between
/// glBegin and glEnd, where some drivers do not list their extensions.
VIREO_EXPORT void drawGlArbCube(const Vector3f& center, const Vector3f& attribute3, const float& size);

} // namespace tavo
