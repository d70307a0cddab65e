// A surface recorded once, as in GL's immediate mode, and drawn from a buffer with every picture.
#include <cmath>
#include <vireo/geometry/GLGeometryList.h>
#include <vireo/textures/GLTexture2D.h>
#include <vireo/textures/GLTextureSettings.h>

#include "ExampleView.h"

namespace {

// One period of a chequered pattern.
tavo::RGBAImage paintPattern()
{
    tavo::RGBAImage image(2, 2);
    image.at(0, 0) = image.at(1, 1) = {200, 60, 20, 255};
    image.at(1, 0) = image.at(0, 1) = {230, 240, 255, 255};
    return image;
}

void recordVertex(tavo::GLGeometryList& list, float x, float y)
{
    const float r = std::hypot(x, y);
    list.texCoord2f(3 * x, 3 * y);
    list.vertex3f(x, y, 0.35f * std::cos(9 * r) / (1 + 3 * r));
}

// A wave on a square of -1 to 1, in strips.
void recordWave(tavo::GLGeometryList& list)
{
    constexpr int steps = 60;
    const auto at = [](int i) { return 2.0f * static_cast<float>(i) / steps - 1; };
    for (int row = 0; row < steps; ++row) {
        list.begin(GL_TRIANGLE_STRIP);
        for (int column = 0; column <= steps; ++column) {
            recordVertex(list, at(column), at(row + 1));
            recordVertex(list, at(column), at(row));
        }
        list.end();
    }
}

class GeometryListView : public ExampleView
{
public:
    using ExampleView::ExampleView;

private:
    void setUp(tavo::GLContext& context) override
    {
        m_Texture = std::make_unique<tavo::GLTexture2D>(&context);
        m_Texture->createFromRGBA(paintPattern(), false);

        m_List = std::make_unique<tavo::GLGeometryList>(&context);
        recordWave(*m_List);
        m_List->compile(&context, true); // true: for the fixed-function arrays, not for a program's attributes
    }

    void draw(tavo::GLContext& context) override
    {
        glEnable(GL_TEXTURE_2D);
        gluLookAt(1.8, -2.8, 1.9, 0, 0, 0, 0, 0, 1);

        tavo::GLTextureSettings sharp;
        sharp.m_MinFilter = tavo::GLTextureSettings::FILTER_NEAREST;
        m_Texture->bind(sharp, 0);
        m_List->execute(&context);
        m_Texture->unbind(0);
    }

    std::unique_ptr<tavo::GLTexture2D> m_Texture;
    std::unique_ptr<tavo::GLGeometryList> m_List;
};

} // namespace

int main(int argc, char** argv)
{
    return showExample<GeometryListView>(argc, argv);
}
