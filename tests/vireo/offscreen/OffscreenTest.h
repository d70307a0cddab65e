#pragma once

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <string>

#include "tavo/base/debug/DebugOutput.h"
#include "tests/support/CallRecorder.h"
#include "tests/vireo/textures/TextureTest.h"
#include "vireo/offscreen/GLRenderTextureCache.h"
#include "vireo/offscreen/GLRenderTextureFBO.h"

namespace tavo {

using Viewport = std::array<int, 4>;

inline Calls join(std::initializer_list<Calls> parts)
{
    Calls all;
    for (const Calls& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

// The calls of GLTexture::bind and unbind; the name is "0" for the latter.
inline Calls bindCalls(const std::string& unit, const std::string& target, const std::string& name)
{
    return {"glActiveTextureARB(" + unit + ")", "glBindTexture(" + target + ", " + name + ")"};
}

inline const std::string TO_WINDOW = "glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0)";
inline const std::string RECT = "GL_TEXTURE_RECTANGLE_ARB";

// What tests of off-screen targets draw, read and count.
class OffscreenTest : public TextureTest
{
protected:
    static constexpr unsigned int DEPTH = GLRenderTextureFBO::FLAG_DEPTH;
    static constexpr unsigned int STENCIL = GLRenderTextureFBO::FLAG_STENCIL;
    static constexpr unsigned int FLOAT16 = GLRenderTextureFBO::FLAG_FLOAT16;
    static constexpr unsigned int FLOAT32 = GLRenderTextureFBO::FLAG_FLOAT32;
    static constexpr unsigned int RECTANGLE = GLRenderTextureFBO::FLAG_RECTANGLE;

    std::unique_ptr<GLRenderTextureFBO> make() { return std::make_unique<GLRenderTextureFBO>(context()); }

    std::unique_ptr<GLRenderTextureFBO> make(
        unsigned int width, unsigned int height, unsigned int components, unsigned int flags)
    {
        auto renderTexture = make();
        EXPECT_TRUE(renderTexture->create(width, height, components, flags));
        return renderTexture;
    }

    // The GL names that a render texture is made of, as recorded calls show them; "0" for none.
    struct Names
    {
        std::string texture;
        std::string framebuffer;
        std::string depthBuffer;
        std::string stencilBuffer;
    };

    // Those of the framebuffer that is bound.
    static Names boundNames()
    {
        const CallRecorder::Pause ownCalls;
        return {attachedName(GL_COLOR_ATTACHMENT0_EXT), std::to_string(boundFramebuffer()),
            attachedName(GL_DEPTH_ATTACHMENT_EXT), attachedName(GL_STENCIL_ATTACHMENT_EXT)};
    }

    // Those of an idle render texture.
    static Names namesOf(GLRenderTextureFBO& renderTexture)
    {
        const CallRecorder::Pause ownCalls;
        renderTexture.activate();
        const Names names = boundNames();
        renderTexture.deactivate();
        return names;
    }

    static int boundFramebuffer() { return getInteger(GL_FRAMEBUFFER_BINDING_EXT); }

    static Viewport viewport()
    {
        Viewport values{};
        glGetIntegerv(GL_VIEWPORT, values.data());
        return values;
    }

    static void setViewport(const Viewport& values) { glViewport(values[0], values[1], values[2], values[3]); }

    // How many names of each kind the driver holds.
    struct NumNames
    {
        unsigned int textures = 0;
        unsigned int framebuffers = 0;
        unsigned int renderbuffers = 0;

        bool operator==(const NumNames&) const = default;
    };

    static NumNames countNames()
    {
        const CallRecorder::Pause ownCalls;
        constexpr unsigned int highestName = 10000;
        NumNames numbers;
        for (unsigned int name = 1; name < highestName; ++name) {
            numbers.textures += glIsTexture(name) ? 1 : 0;
            numbers.framebuffers += tavo::glIsFramebufferEXT(name) ? 1 : 0;
            numbers.renderbuffers += tavo::glIsRenderbufferEXT(name) ? 1 : 0;
        }
        return numbers;
    }

    // Four colours, one a quarter of the target, which fill it; and the picture of them.
    static void drawQuarters()
    {
        for (unsigned int i = 0; i < QUARTERS.size(); ++i) {
            const float x = i % 2 == 0 ? -1 : 0;
            const float y = i / 2 == 0 ? -1 : 0;
            glColor4ubv(QUARTERS[i].data());
            glRectf(x, y, x + 1, y + 1);
        }
    }

    static Picture quarters(unsigned int width, unsigned int height)
    {
        Picture picture(width, height);
        for (unsigned int y = 0; y < height; ++y)
            for (unsigned int x = 0; x < width; ++x)
                picture.at(x, y) = QUARTERS[(x < width / 2 ? 0 : 1) + (y < height / 2 ? 0 : 2)];
        return picture;
    }

    static constexpr std::array<Pixel, 4> QUARTERS{
        {{250, 10, 20, 30}, {40, 240, 50, 60}, {70, 80, 230, 90}, {220, 210, 100, 255}}};

    // Paints the pixels of a viewport.
    static void paintRect(Picture& picture, const Viewport& where, const Pixel& colour)
    {
        for (int y = where[1]; y < where[1] + where[3]; ++y)
            for (int x = where[0]; x < where[0] + where[2]; ++x)
                picture.at(static_cast<unsigned int>(x), static_cast<unsigned int>(y)) = colour;
    }

    // The picture of an image that is the caller's.
    static Picture pictureOf(const RGBAImage& image)
    {
        return TextureTest::pictureOf(image.getPixels().data()->data(), image.getWidth(), image.getHeight(), 4);
    }

    // The same of one with floats, which must be those of bytes.
    static Picture pictureOf(const RGBAFloat32Image& image)
    {
        Picture picture(image.getWidth(), image.getHeight());
        for (unsigned int y = 0; y < image.getHeight(); ++y)
            for (unsigned int x = 0; x < image.getWidth(); ++x)
                for (unsigned int i = 0; i < 4; ++i)
                    picture.at(x, y)[i] = byteOf(image.at(x, y)[i]);
        return picture;
    }

    template <typename Image>
    static Picture pictureOf(std::unique_ptr<Image> image)
    {
        return pictureOf(*image);
    }

    // A picture no two of whose pixels are alike, as an image.
    template <typename Image>
    static Image makeImage(unsigned int width, unsigned int height)
    {
        Image image(width, height);
        for (unsigned int y = 0; y < height; ++y)
            for (unsigned int x = 0; x < width; ++x)
                image.at(x, y) = typename Image::Pixel(x, y, x + y, x * y);
        return image;
    }

    // What the debug output has got since.
    class DebugText
    {
    public:
        std::string text() const { return debugOutput.getText().substr(m_Start); }

    private:
        std::size_t m_Start = debugOutput.getText().size();
    };

private:
    static std::string attachedName(GLenum attachment)
    {
        if (attachmentParameter(attachment, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE_EXT) == GL_NONE)
            return "0";
        return std::to_string(attachmentParameter(attachment, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME_EXT));
    }

    static int attachmentParameter(GLenum attachment, GLenum name)
    {
        int value = 0;
        tavo::glGetFramebufferAttachmentParameterivEXT(GL_FRAMEBUFFER_EXT, attachment, name, &value);
        return value;
    }

    static unsigned char byteOf(float value)
    {
        const float scaled = 255 * value;
        EXPECT_NEAR(scaled, std::round(scaled), 0.001f);
        return static_cast<unsigned char>(std::lround(scaled));
    }
};

// Gives each test a cache of render textures, too.
class CacheTest : public OffscreenTest
{
protected:
    void SetUp() override
    {
        OffscreenTest::SetUp();
        if (!IsSkipped())
            m_Cache = std::make_unique<GLRenderTextureCache>(context());
    }

    void TearDown() override
    {
        m_Cache.reset();
        OffscreenTest::TearDown();
    }

    GLRenderTextureCache& cache() { return *m_Cache; }
    void destroyCache() { m_Cache.reset(); }

    // The calls that destroy such render textures.
    static Calls destructionCalls(const std::vector<Names>& renderTextures)
    {
        Calls calls;
        for (const Names& names : renderTextures) {
            calls.push_back("glDeleteTextures(1, (" + names.texture + "))");
            calls.push_back("glDeleteFramebuffersEXT(1, (" + names.framebuffer + "))");
        }
        return calls;
    }

private:
    std::unique_ptr<GLRenderTextureCache> m_Cache;
};

} // namespace tavo
