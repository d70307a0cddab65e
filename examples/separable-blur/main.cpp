// A picture that glows, by three passes on the GPU: it is blurred along its rows, then along its columns, and what
// comes of that is added to it in the colour of embers.
#include <cmath>
#include <vireo/offscreen/GLImage.h>
#include <vireo/offscreen/GLRenderTextureCache.h>
#include <vireo/shaders/GLShaderARB.h>

#include "ExampleView.h"

namespace {

constexpr int RADIUS = 8;

// The mean of the texels that lie up to RADIUS steps before and behind one, whose weights are a bell curve of the
// sum 1. A blur in both directions is one along the rows and one along the columns, of 17 texels each instead of 17
// times 17.
std::string makeBlur()
{
    const auto bell = [](int i) { return std::exp(-i * i / 32.0); };
    double sum = 0;
    for (int i = -RADIUS; i <= RADIUS; ++i)
        sum += bell(i);
    QString source = "!!ARBfp1.0\nPARAM step = program.local[0];\nTEMP place, texel, sum;\nMOV sum, 0;\n";
    for (int i = -RADIUS; i <= RADIUS; ++i)
        source += QString("MAD place, step, %1, fragment.texcoord[0];\nTEX texel, place, texture[0], RECT;\n"
                          "MAD sum, texel, %2, sum;\n")
                      .arg(i)
                      .arg(bell(i) / sum, 0, 'f', 6);
    return (source + "MOV result.color, sum;\nEND").toStdString();
}

const char* const GLOW = R"(!!ARBfp1.0
PARAM embers = { 1.5, 0.75, 0.25, 1 };
TEMP blurred, picture;
TEX blurred, fragment.texcoord[0], texture[0], RECT;
TEX picture, fragment.texcoord[0], texture[1], RECT;
MUL picture, picture, { 0.5, 0.5, 0.5, 0 };
MAD_SAT result.color, blurred, embers, picture;
END)";

std::unique_ptr<tavo::GLShaderARB> makeProgram(tavo::GLContext& context, const std::string& source)
{
    auto program = std::make_unique<tavo::GLShaderARB>(&context, GL_FRAGMENT_PROGRAM_ARB);
    if (!program->compile(source))
        std::fprintf(stderr, "at character %d: %s", program->getLastErrorPosition(), program->getLastError().c_str());
    return program;
}

class BlurView : public ExampleView
{
public:
    using ExampleView::ExampleView;

    ~BlurView() override { makeCurrent(); } // render textures die in a current context

private:
    void setUp(tavo::GLContext& context) override
    {
        m_Blur = makeProgram(context, makeBlur());
        m_Glow = makeProgram(context, GLOW);
        m_Cache = std::make_unique<tavo::GLRenderTextureCache>(&context);
        auto picture = tavo::RGBAImage::fromQImage(QImage(PICTURE).mirrored()); // row 0 is GL's bottom one
        m_Picture.setup(m_Cache.get(), &picture);
        m_Rows.setup(m_Cache.get(), &m_Picture); // of the same kind
        m_Blurred.setup(m_Cache.get(), &m_Picture);
    }

    void draw(tavo::GLContext&) override
    {
        m_Blur->bind();
        blur(m_Picture, m_Rows, 1, 0);
        blur(m_Rows, m_Blurred, 0, 1);
        m_Glow->bind();
        m_Picture.bind(1);
        m_Blurred.drawToScreen();
        m_Picture.unbind();
        m_Glow->unbind();
    }

    // An image that is drawn over the whole of another has its texels side by side with the other one's.
    void blur(tavo::GLImage& from, tavo::GLImage& to, float stepX, float stepY)
    {
        m_Blur->setLocalParameter4f(0, stepX, stepY, 0, 0);
        to.activate();
        from.drawToScreen();
        to.deactivate();
    }

    std::unique_ptr<tavo::GLShaderARB> m_Blur, m_Glow;
    std::unique_ptr<tavo::GLRenderTextureCache> m_Cache;
    tavo::GLImage m_Picture, m_Rows, m_Blurred;
};

} // namespace

int main(int argc, char** argv)
{
    return showExample<BlurView>(argc, argv);
}
