// A cube that shows the faces of a cube map, and beside it a sphere that mirrors the same cube map as its surroundings.
#include <vireo/textures/GLTextureCube.h>

#include "ExampleView.h"

namespace {

using tavo::RGBACubeMap;
using tavo::RGBAImage;

// A chequered face with a dark rim.
void paintFace(RGBAImage& face, const QColor& colour)
{
    constexpr unsigned int size = 64;
    face.resize(size, size);
    for (unsigned int y = 0; y < size; ++y) {
        for (unsigned int x = 0; x < size; ++x) {
            const bool onRim = qMin(qMin(x, y), size - 1 - qMax(x, y)) < 2;
            const QColor shade = colour.darker(onRim ? 400 : (x / 8 + y / 8) % 2 ? 130 : 100);
            face.at(x, y) = {shade.red(), shade.green(), shade.blue(), 255};
        }
    }
}

// On a cube around the origin, the direction by which a texel is found is the position itself.
void drawCube()
{
    constexpr float corners[6][4][3] = {{{1, -1, -1}, {1, 1, -1}, {1, 1, 1}, {1, -1, 1}},
        {{-1, -1, -1}, {-1, -1, 1}, {-1, 1, 1}, {-1, 1, -1}}, {{-1, 1, -1}, {-1, 1, 1}, {1, 1, 1}, {1, 1, -1}},
        {{-1, -1, -1}, {1, -1, -1}, {1, -1, 1}, {-1, -1, 1}}, {{-1, -1, 1}, {1, -1, 1}, {1, 1, 1}, {-1, 1, 1}},
        {{-1, -1, -1}, {-1, 1, -1}, {1, 1, -1}, {1, -1, -1}}};
    glBegin(GL_QUADS);
    for (const auto& face : corners) {
        for (const float(&corner)[3] : face) {
            glTexCoord3fv(corner);
            glVertex3fv(corner);
        }
    }
    glEnd();
}

// On the mirror, GL finds it by reflecting the view at the sphere's normals.
void drawMirror()
{
    for (const GLenum axis : {0, 1, 2}) {
        glTexGeni(GL_S + axis, GL_TEXTURE_GEN_MODE, GL_REFLECTION_MAP);
        glEnable(GL_TEXTURE_GEN_S + axis);
    }
    GLUquadric* const sphere = gluNewQuadric();
    gluSphere(sphere, 1.3, 64, 32);
    gluDeleteQuadric(sphere);
    for (const GLenum axis : {0, 1, 2})
        glDisable(GL_TEXTURE_GEN_S + axis);
}

class CubeMapView : public ExampleView
{
public:
    using ExampleView::ExampleView;

private:
    void setUp(tavo::GLContext& context) override
    {
        RGBACubeMap map;
        for (unsigned int face = 0; face < RGBACubeMap::NUM_FACES; ++face)
            paintFace(map.getImage(RGBACubeMap::Face(face)), QColor::fromHsv(static_cast<int>(face) * 60, 150, 255));
        m_Texture = std::make_unique<tavo::GLTextureCube>(&context);
        m_Texture->createFromImage(map);
    }

    void draw(tavo::GLContext&) override
    {
        glEnable(GL_TEXTURE_CUBE_MAP);
        m_Texture->bind(0);
        glTranslatef(1.7f, 0, -9);
        drawMirror();
        glTranslatef(-3.3f, 0, 0);
        glRotatef(30, 1, 0, 0);
        glRotatef(-35, 0, 1, 0);
        drawCube();
        m_Texture->unbind(0);
    }

    std::unique_ptr<tavo::GLTextureCube> m_Texture;
};

} // namespace

int main(int argc, char** argv)
{
    return showExample<CubeMapView>(argc, argv);
}
