#include <array>

#include "tavo/platform/wgl.h"
#include "tests/tavo/platform/WglGLTest.h"

#include <GL/gl.h>

struct HPBUFFERARB__; // NOLINT(bugprone-reserved-identifier): the name on Windows

namespace tavo {
namespace {

constexpr int WIDTH_ATTRIBUTE = 0x2034;
constexpr int HEIGHT_ATTRIBUTE = 0x2035;
constexpr int LOST_ATTRIBUTE = 0x2036;

// The functions of WGL_ARB_pbuffer, which the current context finds.
struct PbufferFunctions
{
    template <typename Function>
    static void find(Function& function, const char* name)
    {
        function = reinterpret_cast<Function>(wglGetProcAddress(name));
        ASSERT_NE(function, nullptr) << name;
    }

    PbufferFunctions()
    {
        find(create, "wglCreatePbufferARB");
        find(getDC, "wglGetPbufferDCARB");
        find(releaseDC, "wglReleasePbufferDCARB");
        find(destroy, "wglDestroyPbufferARB");
        find(query, "wglQueryPbufferARB");
    }

    int get(HPBUFFERARB__* pbuffer, int attribute) const
    {
        int value = -1;
        return query(pbuffer, attribute, &value) ? value : -1;
    }

    HPBUFFERARB__* (*create)(HDC, int, int, int, const int*);
    HDC (*getDC)(HPBUFFERARB__*);
    int (*releaseDC)(HPBUFFERARB__*, HDC);
    int (*destroy)(HPBUFFERARB__*);
    int (*query)(HPBUFFERARB__*, int, int*);
};

using Pixel = std::array<unsigned char, 4>;

Pixel readPixel(int x, int y)
{
    Pixel pixel{};
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    return pixel;
}

void clear(float red, float green)
{
    glClearColor(red, green, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
}

} // namespace

TEST_P(WglGLTest, DrawsToPbuffersInPlaceOfItsDrawable)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const PbufferFunctions pbuffers;
    const HDC own = wglGetCurrentDC();
    const HGLRC context = wglGetCurrentContext();
    const int format = GetPixelFormat(own);
    HPBUFFERARB__* const all[] = {
        pbuffers.create(own, format, 30, 20, nullptr), pbuffers.create(own, format, 7, 50, nullptr)};
    EXPECT_EQ(wglGetCurrentDC(), own) << "making one makes nothing current";
    EXPECT_EQ(pbuffers.get(all[0], WIDTH_ATTRIBUTE), 30);
    EXPECT_EQ(pbuffers.get(all[0], HEIGHT_ATTRIBUTE), 20);
    EXPECT_EQ(pbuffers.get(all[0], LOST_ATTRIBUTE), 0);

    const HDC drawables[] = {pbuffers.getDC(all[0]), pbuffers.getDC(all[1])};
    for (const int i : {0, 1}) {
        ASSERT_NE(wglMakeCurrent(drawables[i], context), 0);
        EXPECT_EQ(wglGetCurrentDC(), drawables[i]);
        EXPECT_EQ(wglGetCurrentContext(), context);
        clear(static_cast<float>(i), static_cast<float>(1 - i));
    }
    EXPECT_EQ(readPixel(6, 49), (Pixel{255, 0, 0, 255}));
    ASSERT_NE(wglMakeCurrent(drawables[0], context), 0);
    EXPECT_EQ(readPixel(29, 19), (Pixel{0, 255, 0, 255})) << "each has its own pixels";
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));

    ASSERT_NE(wglMakeCurrent(own, context), 0);
    for (const int i : {0, 1}) {
        EXPECT_NE(pbuffers.releaseDC(all[i], drawables[i]), 0);
        EXPECT_NE(pbuffers.destroy(all[i]), 0);
        EXPECT_EQ(wglMakeCurrent(drawables[i], context), 0) << "it has gone";
    }
    EXPECT_EQ(wglGetCurrentDC(), own);
    EXPECT_TRUE(draws());
}

TEST_P(WglGLTest, GivesTheFormatOfTheCurrentDrawableAlone)
{
    EXPECT_EQ(GetPixelFormat(nullptr), 0);
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const HDC own = wglGetCurrentDC();
    EXPECT_NE(GetPixelFormat(own), 0);
    EXPECT_EQ(GetPixelFormat(nullptr), 0);
    EXPECT_EQ(GetPixelFormat(reinterpret_cast<HDC>(&m_Contexts)), 0);
    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(GetPixelFormat(own), 0);
}

TEST_P(WglGLTest, RefusesPbuffersThatItCannotMake)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const PbufferFunctions pbuffers;
    const HDC own = wglGetCurrentDC();
    const int format = GetPixelFormat(own);
    const int attributes[] = {0x2033, 1, 0};
    const int noAttributes[] = {0};
    EXPECT_EQ(pbuffers.create(nullptr, format, 8, 8, nullptr), nullptr);
    EXPECT_EQ(pbuffers.create(own, 0, 8, 8, nullptr), nullptr);
    EXPECT_EQ(pbuffers.create(own, format + 1, 8, 8, nullptr), nullptr);
    EXPECT_EQ(pbuffers.create(own, format, 0, 8, nullptr), nullptr);
    EXPECT_EQ(pbuffers.create(own, format, 8, -1, nullptr), nullptr);
    EXPECT_EQ(pbuffers.create(own, format, 8, 8, attributes), nullptr);
    EXPECT_EQ(pbuffers.create(own, format, 1 << 20, 1 << 20, nullptr), nullptr) << "too large, and no X error";
    HPBUFFERARB__* const pbuffer = pbuffers.create(own, format, 8, 8, noAttributes);
    EXPECT_NE(pbuffer, nullptr);

    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(pbuffers.create(own, format, 8, 8, nullptr), nullptr);
    EXPECT_NE(pbuffers.destroy(pbuffer), 0);
}

TEST_P(WglGLTest, RefusesUnknownPbuffers)
{
    ASSERT_TRUE(m_Contexts->makeCurrent(0));
    const PbufferFunctions pbuffers;
    const HDC own = wglGetCurrentDC();
    HPBUFFERARB__* const pbuffer = pbuffers.create(own, GetPixelFormat(own), 8, 8, nullptr);
    EXPECT_EQ(pbuffers.get(pbuffer, 0), -1) << "no attribute";
    EXPECT_EQ(pbuffers.query(pbuffer, WIDTH_ATTRIBUTE, nullptr), 0);
    EXPECT_EQ(pbuffers.releaseDC(pbuffer, own), 0);
    EXPECT_NE(pbuffers.destroy(pbuffer), 0);
    for (HPBUFFERARB__* const unknown : {pbuffer, static_cast<HPBUFFERARB__*>(nullptr)}) {
        EXPECT_EQ(pbuffers.getDC(unknown), nullptr);
        EXPECT_EQ(pbuffers.releaseDC(unknown, nullptr), 0);
        EXPECT_EQ(pbuffers.get(unknown, WIDTH_ATTRIBUTE), -1);
        EXPECT_EQ(pbuffers.destroy(unknown), 0);
    }
}

} // namespace tavo
