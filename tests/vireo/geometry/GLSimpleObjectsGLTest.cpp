#include <cmath>
#include <gmock/gmock.h>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

#include "tests/support/CallRecorder.h"
#include "tests/support/EntryPoints.h"
#include "tests/support/Picture.h"
#include "tests/support/PictureComparison.h"
#include "tests/support/extensions.h"
#include "tests/vireo/ContextTest.h"
#include "tests/vireo/geometry/vertexPrograms.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/geometry/GLSimpleObjects.h"

#include <GL/glu.h>

namespace tavo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

class GLSimpleObjectsGLTest : public ContextTest
{
protected:
    static Calls drawingCalls(GLSimpleObject& object)
    {
        return callsOf([&] { object.draw(nullptr, nullptr); });
    }

    Calls drawingCalls(unsigned int classID = 0)
    {
        return callsOf([&] { m_Container.drawObjects(context(), classID); });
    }

    static std::string vertex(float x, float y, float z) { return vectorCall("glVertex3fv", x, y, z); }

    static std::string vectorCall(const char* function, float x, float y, float z)
    {
        std::ostringstream text;
        text << function << "((" << x << ", " << y << ", " << z << "))";
        return text.str();
    }

    // A camera above and to the right of what lies within -1 to 1.
    static void lookFromAbove()
    {
        glMatrixMode(GL_PROJECTION);
        gluPerspective(40, 1, 1, 10);
        glMatrixMode(GL_MODELVIEW);
        gluLookAt(2, 2.5, 3.5, 0, 0, 0, 0, 1, 0);
        glEnable(GL_DEPTH_TEST);
    }

    GLSimpleObjectContainer m_Container;
};

const Calls BOX_OF_1_2_3_TO_4_5_6{
    "glBegin(GL_QUADS)",
    "glNormal3f(-1, 0, 0)",
    "glVertex3f(1, 2, 3)",
    "glVertex3f(1, 5, 3)",
    "glVertex3f(1, 5, 6)",
    "glVertex3f(1, 2, 6)",
    "glNormal3f(1, 0, 0)",
    "glVertex3f(4, 2, 3)",
    "glVertex3f(4, 2, 6)",
    "glVertex3f(4, 5, 6)",
    "glVertex3f(4, 5, 3)",
    "glNormal3f(0, -1, 0)",
    "glVertex3f(1, 2, 3)",
    "glVertex3f(1, 2, 6)",
    "glVertex3f(4, 2, 6)",
    "glVertex3f(4, 2, 3)",
    "glNormal3f(0, 1, 0)",
    "glVertex3f(1, 5, 3)",
    "glVertex3f(4, 5, 3)",
    "glVertex3f(4, 5, 6)",
    "glVertex3f(1, 5, 6)",
    "glNormal3f(0, 0, -1)",
    "glVertex3f(1, 2, 3)",
    "glVertex3f(4, 2, 3)",
    "glVertex3f(4, 5, 3)",
    "glVertex3f(1, 5, 3)",
    "glNormal3f(0, 0, 1)",
    "glVertex3f(1, 2, 6)",
    "glVertex3f(1, 5, 6)",
    "glVertex3f(4, 5, 6)",
    "glVertex3f(4, 2, 6)",
    "glEnd()",
};

TEST_F(GLSimpleObjectsGLTest, DrawsABoxFaceByFace)
{
    GLSimpleBox box;
    box.setup(Vector3f(1, 2, 3), Vector3f(4, 5, 6));
    EXPECT_EQ(drawingCalls(box), BOX_OF_1_2_3_TO_4_5_6);

    GLSimpleBox other;
    other.setup(Box3f({1, 2, 3}, {4, 5, 6}));
    EXPECT_EQ(drawingCalls(other), BOX_OF_1_2_3_TO_4_5_6);
}

TEST_F(GLSimpleObjectsGLTest, TakesTheCornersOfABoxInWhateverOrder)
{
    GLSimpleBox box;
    box.setup(Vector3f(4, 5, 6), Vector3f(1, 2, 3));
    const Calls calls = drawingCalls(box);
    EXPECT_EQ(calls[1], "glNormal3f(-1, 0, 0)");
    EXPECT_EQ(calls[2], "glVertex3f(4, 5, 6)");
    EXPECT_EQ(calls[3], "glVertex3f(4, 2, 6)");
}

TEST_F(GLSimpleObjectsGLTest, DrawsLinesInTheirOrder)
{
    GLSimpleLines lines;
    EXPECT_THAT(drawingCalls(lines), ElementsAre("glBegin(GL_LINES)", "glEnd()"));
    lines.addLine({1, 2, 3}, {4, 5, 6});
    lines.addLine({7, 8, 9}, {1, 1, 1});
    EXPECT_THAT(drawingCalls(lines), ElementsAre("glBegin(GL_LINES)", vertex(1, 2, 3), vertex(4, 5, 6), vertex(7, 8, 9),
                                         vertex(1, 1, 1), "glEnd()"));
}

TEST_F(GLSimpleObjectsGLTest, DrawsPolygonsAsTheyAre)
{
    GLSimpleMesh mesh;
    mesh.setPolygonMode(true);
    mesh.setUseNormalAsColor(true); // has no effect here
    EXPECT_THAT(drawingCalls(mesh), IsEmpty());
    mesh.addTriangle({1, 0, 0}, {2, 0, 0}, {3, 1, 0});
    Polygon<PolyVector3f> point;
    point.addVertex({5, 5, 5});
    mesh.addPolygon(point);
    mesh.addQuad({1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0});
    EXPECT_THAT(drawingCalls(mesh),
        ElementsAre("glBegin(GL_POLYGON)", vertex(1, 0, 0), vertex(2, 0, 0), vertex(3, 1, 0), "glEnd()",
            "glBegin(GL_POLYGON)", vertex(5, 5, 5), "glEnd()", //
            "glBegin(GL_POLYGON)", vertex(1, 0, 0), vertex(2, 0, 0), vertex(2, 1, 0), vertex(1, 1, 0), "glEnd()"));
}

TEST_F(GLSimpleObjectsGLTest, SplitsPolygonsAsStrips)
{
    GLSimpleMesh mesh;
    EXPECT_THAT(drawingCalls(mesh), ElementsAre("glBegin(GL_TRIANGLES)", "glEnd()"));
    mesh.addTriangle({1, 0, 0}, {2, 0, 0}, {3, 1, 0});
    mesh.addQuad({0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0});
    EXPECT_THAT(
        drawingCalls(mesh), ElementsAre("glBegin(GL_TRIANGLES)", vertex(1, 0, 0), vertex(2, 0, 0), vertex(3, 1, 0), //
                                vertex(0, 0, 0), vertex(1, 0, 0), vertex(1, 1, 0),                                  //
                                vertex(1, 0, 0), vertex(1, 1, 0), vertex(0, 1, 0), "glEnd()"));
}

TEST_F(GLSimpleObjectsGLTest, BuildsPolygonsVertexByVertex)
{
    GLSimpleMesh mesh;
    mesh.addPolyVertex({9, 9, 9}); // dropped by what follows
    mesh.beginPoly();
    for (const float x : {0.0f, 1.0f, 2.0f, 3.0f, 4.0f})
        mesh.addPolyVertex({x, 0, 0});
    EXPECT_THAT(drawingCalls(mesh), ElementsAre("glBegin(GL_TRIANGLES)", "glEnd()")) << "not ended yet";
    mesh.endPoly();
    EXPECT_THAT(
        drawingCalls(mesh), ElementsAre("glBegin(GL_TRIANGLES)", vertex(0, 0, 0), vertex(1, 0, 0), vertex(2, 0, 0), //
                                vertex(1, 0, 0), vertex(2, 0, 0), vertex(3, 0, 0),                                  //
                                vertex(2, 0, 0), vertex(3, 0, 0), vertex(4, 0, 0), "glEnd()"));

    for (const float x : {5.0f, 6.0f, 7.0f}) // a new one, without beginPoly
        mesh.addPolyVertex({x, 0, 0});
    mesh.clear();
    mesh.endPoly();
    EXPECT_THAT(drawingCalls(mesh),
        ElementsAre("glBegin(GL_TRIANGLES)", vertex(5, 0, 0), vertex(6, 0, 0), vertex(7, 0, 0), "glEnd()"))
        << "clearing leaves the polygon that is begun";
}

TEST_F(GLSimpleObjectsGLTest, DrawsNothingOfTwoVertices)
{
    GLSimpleMesh mesh;
    mesh.setUseNormalAsColor(true);
    mesh.addPolyVertex({1, 0, 0});
    mesh.addPolyVertex({2, 0, 0});
    mesh.endPoly();
    EXPECT_THAT(drawingCalls(mesh),
        ElementsAre("glBegin(GL_TRIANGLES)", vectorCall("glColor3fv", 0.5f, 0.5f, 0.5f), "glEnd()"));
}

TEST_F(GLSimpleObjectsGLTest, ThrowsAtShorterPolygonsAndLeavesNothingBegun)
{
    for (const unsigned int numVertices : {0u, 1u}) {
        GLSimpleMesh mesh;
        for (unsigned int i = 0; i < numVertices; ++i)
            mesh.addPolyVertex({1, 0, 0});
        mesh.endPoly();
        Calls calls;
        EXPECT_THAT(
            [&] {
                CallRecorder recorder;
                try {
                    mesh.draw(nullptr, nullptr);
                } catch (...) {
                    calls = recorder.calls();
                    throw;
                }
            },
            ThrowsMessage<std::out_of_range>("invalid vector<T> subscript"));
        ASSERT_FALSE(calls.empty());
        EXPECT_EQ(calls.front(), "glBegin(GL_TRIANGLES)");
        EXPECT_EQ(calls.back(), "glEnd()");
    }
}

TEST_F(GLSimpleObjectsGLTest, ColoursTrianglesByTheirNormals)
{
    GLSimpleMesh mesh;
    EXPECT_FALSE(mesh.getUseNormalAsColor());
    mesh.setUseNormalAsColor(true);
    EXPECT_TRUE(mesh.getUseNormalAsColor());
    mesh.addTriangle({0, 0, 0}, {3, 0, 0}, {0, 4, 0}); // counter-clockwise from positive Z
    mesh.addTriangle({0, 0, 0}, {0, 4, 0}, {0, 0, 5});
    mesh.addTriangle({1, 1, 1}, {1, 1, 1}, {2, 0, 0});
    const Calls calls = drawingCalls(mesh);
    EXPECT_EQ(calls[1], vectorCall("glColor3fv", 0.5f, 0.5f, 0)) << "away from who sees it so";
    EXPECT_EQ(calls[5], vectorCall("glColor3fv", 0, 0.5f, 0.5f));
    EXPECT_EQ(calls[9], vectorCall("glColor3fv", 0.5f, 0.5f, 0.5f)) << "it has no normal";
}

// The cross product of these is as long as the last argument.
TEST_F(GLSimpleObjectsGLTest, HasNoNormalIfItWouldBeShorterThan1EMinus20)
{
    const auto colourOf = [](float length) {
        GLSimpleMesh mesh;
        mesh.setUseNormalAsColor(true);
        mesh.addTriangle({0, 0, 0}, {length, 0, 0}, {0, 1, 0});
        return drawingCalls(mesh)[1];
    };
    EXPECT_EQ(colourOf(1e-20f), vectorCall("glColor3fv", 0.5f, 0.5f, 0));
    EXPECT_EQ(colourOf(std::nextafter(1e-20f, 0.0f)), vectorCall("glColor3fv", 0.5f, 0.5f, 0.5f));
}

TEST_F(GLSimpleObjectsGLTest, AddsOneObjectOfAClassEach)
{
    m_Container.addBox({{1, 2, 3}, {4, 5, 6}}, 1);
    m_Container.addLine({1, 2, 3}, {4, 5, 6}, 2);
    m_Container.addTriangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, 3, false);
    m_Container.addTriangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, 4, true);
    EXPECT_EQ(drawingCalls(1), BOX_OF_1_2_3_TO_4_5_6);
    EXPECT_THAT(drawingCalls(2), ElementsAre("glBegin(GL_LINES)", vertex(1, 2, 3), vertex(4, 5, 6), "glEnd()"));
    EXPECT_THAT(drawingCalls(3),
        ElementsAre("glBegin(GL_TRIANGLES)", vertex(0, 0, 0), vertex(1, 0, 0), vertex(0, 1, 0), "glEnd()"));
    EXPECT_THAT(drawingCalls(4), ElementsAre("glBegin(GL_TRIANGLES)", vectorCall("glColor3fv", 0.5f, 0.5f, 0),
                                     vertex(0, 0, 0), vertex(1, 0, 0), vertex(0, 1, 0), "glEnd()"));
}

TEST_F(GLSimpleObjectsGLTest, ShowsASceneOfAllKinds)
{
    lookFromAbove();
    glEnable(GL_COLOR_MATERIAL);
    glEnable(GL_LIGHT0);
    m_Container.addBox({{-1, -0.5f, -0.2f}, {0, 0.5f, 0.8f}}, 1);
    for (const float x : {0.2f, 0.5f, 0.8f})
        m_Container.addLine({x, -1, 0}, {x, 1, 0}, 2);
    m_Container.addTriangle({-1, -0.6f, 1}, {1, -0.6f, 1}, {0, -0.6f, -1}, 3, true);
    auto mesh = std::make_unique<GLSimpleMesh>();
    mesh->addQuad({0.2f, 0, -0.5f}, {1, 0, -0.5f}, {0.2f, 0.8f, -0.5f}, {1, 0.8f, -0.5f});
    mesh->setClassID(2);
    m_Container.addObject(mesh.release());

    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glEnable(GL_LIGHTING);
    glColor3f(1, 0.8f, 0.2f);
    m_Container.drawObjects(context(), 1);
    glDisable(GL_LIGHTING);
    glColor3f(0.3f, 0.8f, 1);
    m_Container.drawObjects(context(), 2);
    m_Container.drawObjects(context(), 3);
    // Drivers place the edges of slanted faces differently.
    EXPECT_TRUE(matchesReference(readPixels(), "GLSimpleObjects/scene", {.perChannel = 8, .differingPixels = 0.02}));
}

const Calls CUBE_OF_10_20_30_AND_4{
    "glBegin(GL_QUADS)",
    "glVertexAttrib3fvARB(3, (7, 8, 9))",
    "glVertexAttrib4fARB(2, 10, 20, 30, 4)",
    "glVertexAttrib3fvARB(1, (0, -4, 0))",
    "glVertexAttrib3fvARB(0, (8, 18, 28))",
    "glVertexAttrib3fvARB(0, (12, 18, 28))",
    "glVertexAttrib3fvARB(0, (12, 18, 32))",
    "glVertexAttrib3fvARB(0, (8, 18, 32))",
    "glVertexAttrib3fvARB(1, (0, 0, -4))",
    "glVertexAttrib3fvARB(0, (12, 18, 28))",
    "glVertexAttrib3fvARB(0, (8, 18, 28))",
    "glVertexAttrib3fvARB(0, (8, 22, 28))",
    "glVertexAttrib3fvARB(0, (12, 22, 28))",
    "glVertexAttrib3fvARB(1, (0, 0, 4))",
    "glVertexAttrib3fvARB(0, (12, 18, 32))",
    "glVertexAttrib3fvARB(0, (8, 18, 32))",
    "glVertexAttrib3fvARB(0, (8, 22, 32))",
    "glVertexAttrib3fvARB(0, (12, 22, 32))",
    "glVertexAttrib3fvARB(1, (0, 4, 0))",
    "glVertexAttrib3fvARB(0, (12, 22, 28))",
    "glVertexAttrib3fvARB(0, (8, 22, 28))",
    "glVertexAttrib3fvARB(0, (8, 22, 32))",
    "glVertexAttrib3fvARB(0, (12, 22, 32))",
    "glVertexAttrib3fvARB(1, (-4, 0, 0))",
    "glVertexAttrib3fvARB(0, (8, 18, 28))",
    "glVertexAttrib3fvARB(0, (8, 22, 28))",
    "glVertexAttrib3fvARB(0, (8, 22, 32))",
    "glVertexAttrib3fvARB(0, (8, 18, 32))",
    "glVertexAttrib3fvARB(1, (4, 0, 0))",
    "glVertexAttrib3fvARB(0, (12, 22, 28))",
    "glVertexAttrib3fvARB(0, (12, 18, 28))",
    "glVertexAttrib3fvARB(0, (12, 18, 32))",
    "glVertexAttrib3fvARB(0, (12, 22, 32))",
    "glEnd()",
};

TEST_F(GLSimpleObjectsGLTest, SendsACubeOfGenericAttributes)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    EXPECT_EQ(callsOf([] { drawGlArbCube({10, 20, 30}, {7, 8, 9}, 4); }), CUBE_OF_10_20_30_AND_4);
}

TEST_F(GLSimpleObjectsGLTest, LoadsTheAttributesOfTheCubeIfNeedBe)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    glVertexAttrib3fvARB = nullptr;
    Calls calls = callsOf([] { drawGlArbCube({10, 20, 30}, {7, 8, 9}, 4); });
    EXPECT_NE(glVertexAttrib3fvARB, nullptr);
    EXPECT_EQ(calls.front(), "glBegin(GL_QUADS)") << "and then asks for them";
    std::erase_if(calls, [](const std::string& call) { return call.starts_with("wglGet"); });
    EXPECT_EQ(calls, CUBE_OF_10_20_30_AND_4);
}

TEST_F(GLSimpleObjectsGLTest, LeavesTheQuadsEmptyWithoutTheAttributesOfTheCube)
{
    const auto loaded = glVertexAttrib3fvARB;
    const WithheldEntryPoint withheld("glVertexAttrib3fvARB");
    glVertexAttrib3fvARB = nullptr;
    Calls calls = callsOf([] { drawGlArbCube({10, 20, 30}, {7, 8, 9}, 4); });
    glVertexAttrib3fvARB = loaded;
    std::erase_if(calls, [](const std::string& call) { return call.starts_with("wglGet"); });
    EXPECT_THAT(calls, ElementsAre("glBegin(GL_QUADS)", "glEnd()"));
}

TEST_F(GLSimpleObjectsGLTest, ShowsACubeUnderAVertexProgram)
{
    NEEDS_EXTENSION("GL_ARB_vertex_program");
    // The face's normal, made positive, as colour, tinted by attribute 3; the centre and size of attribute 2 put the
    // cube back to the origin and to the size 1.
    useVertexProgram("!!ARBvp1.0\n"
                     "PARAM mvp[4] = { state.matrix.mvp };\n"
                     "TEMP p, s, n;\n"
                     "RCP s.x, vertex.attrib[2].w;\n"
                     "SUB p, vertex.attrib[0], vertex.attrib[2];\n"
                     "MUL p, p, s.x;\n"
                     "MOV p.w, 1;\n"
                     "DP4 result.position.x, mvp[0], p;\n"
                     "DP4 result.position.y, mvp[1], p;\n"
                     "DP4 result.position.z, mvp[2], p;\n"
                     "DP4 result.position.w, mvp[3], p;\n"
                     "MUL n, vertex.attrib[1], s.x;\n"
                     "ABS n, n;\n"
                     "MUL result.color.xyz, n, vertex.attrib[3];\n"
                     "MOV result.color.w, 1;\n"
                     "END");
    lookFromAbove();
    glScalef(1.8f, 1.8f, 1.8f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    drawGlArbCube({100, 200, 300}, {1, 0.6f, 0.8f}, 16);
    // Drivers place the edges of slanted faces differently.
    EXPECT_TRUE(matchesReference(readPixels(), "GLSimpleObjects/arbCube", {.perChannel = 8, .differingPixels = 0.02}));
}

} // namespace
} // namespace tavo
