// The three passes of a blur, watched while they run: what is brightest is kept, and blurred along its rows and then
// along its columns. What each pass leaves on the GPU is an image of the window, linked with the others.
#include <vireo/offscreen/GLImage.h>
#include <vireo/offscreen/GLRenderTextureCache.h>
#include <vireo/shaders/GLShaderARB.h>
#include <vireo/show/TextureImage.h>

#include "ExampleView.h"

namespace {

const char* const BRIGHT = R"(!!ARBfp1.0
TEMP colour;
TEX colour, fragment.texcoord[0], texture[0], RECT;
SUB colour, colour, { 0.5, 0.5, 0.5, 0 };
MAD_SAT result.color, colour, { 2, 2, 2, 1 }, { 0, 0, 0, 0 };
END)";

// The mean of nine texels side by side.
std::string makeBlur()
{
    QString source = "!!ARBfp1.0\nPARAM step = program.local[0];\nTEMP place, texel, sum;\nMOV sum, 0;\n";
    for (int i = -4; i <= 4; ++i)
        source += QString("MAD place, step, %1, fragment.texcoord[0];\nTEX texel, place, texture[0], RECT;\n"
                          "ADD sum, sum, texel;\n")
                      .arg(i);
    return (source + "MUL result.color, sum, 0.111111;\nEND").toStdString();
}

class PassesView : public ExampleView
{
public:
    using ExampleView::ExampleView;

    ~PassesView() override { makeCurrent(); } // render textures die in a current context

private:
    void setUp(tavo::GLContext& context) override
    {
        m_KeepBright = std::make_unique<tavo::GLShaderARB>(&context, GL_FRAGMENT_PROGRAM_ARB);
        m_KeepBright->compile(BRIGHT);
        m_Blur = std::make_unique<tavo::GLShaderARB>(&context, GL_FRAGMENT_PROGRAM_ARB);
        m_Blur->compile(makeBlur());
        m_Cache = std::make_unique<tavo::GLRenderTextureCache>(&context);
        auto picture = tavo::RGBAImage::fromQImage(QImage(PICTURE).mirrored()); // row 0 is GL's bottom one
        m_Picture.setup(m_Cache.get(), &picture);
        for (tavo::GLImage* const image : {&m_Bright, &m_Rows, &m_Blurred})
            image->setup(m_Cache.get(), &m_Picture); // of the same kind
    }

    void draw(tavo::GLContext&) override
    {
        m_KeepBright->bind();
        pass(m_Picture, m_Bright);
        m_Blur->bind();
        m_Blur->setLocalParameter4f(0, 1, 0, 0, 0);
        pass(m_Bright, m_Rows);
        m_Blur->setLocalParameter4f(0, 0, 1, 0, 0);
        pass(m_Rows, m_Blurred);
        m_Blur->unbind();
        m_Blurred.drawToScreen();
        tavo::image("1 what is bright", m_Bright).link(tavo::image("2 rows")).channel(0);
        tavo::image("2 rows", m_Rows).link(tavo::image("3 columns")).channel(0);
        tavo::image("3 columns", m_Blurred).channel(0);
    }

    static void pass(tavo::GLImage& from, tavo::GLImage& to)
    {
        to.activate();
        from.drawToScreen();
        to.deactivate();
    }

    std::unique_ptr<tavo::GLShaderARB> m_KeepBright, m_Blur;
    std::unique_ptr<tavo::GLRenderTextureCache> m_Cache;
    tavo::GLImage m_Picture, m_Bright, m_Rows, m_Blurred;
};

} // namespace

int main(int argc, char** argv)
{
    return showExample<PassesView>(argc, argv);
}
