#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/View.h"
#include "benchmarks/support/inputs.h"
#include "benchmarks/works.h"
#include "vireo/textures/GLTexture2D.h"

#include <GL/gl.h>

namespace vireo_bench {

namespace {

// Makes a 2D texture of an image whose red and blue are exchanged.
class ImageUpload : public Contestant
{
public:
    explicit ImageUpload(unsigned int side)
        : m_Image(makeImage(side))
    {}
    void prepare() override { m_Context = &View::context(); }
    void run() override
    {
        upload();
        glFinish();
    }
    Bytes result() override
    {
        Bytes texels(4 * m_Image.getPixels().size());
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
        return texels;
    }

protected:
    virtual void upload() = 0;

    tavo::GLContext* m_Context = nullptr;
    tavo::RGBAImage m_Image;
};

class VireoUpload : public ImageUpload
{
public:
    using ImageUpload::ImageUpload;
    void cleanUp() override { m_Texture.reset(); }

protected:
    void upload() override
    {
        m_Texture = std::make_unique<tavo::GLTexture2D>(m_Context);
        m_Texture->createFromImage(m_Image, false);
    }

private:
    std::unique_ptr<tavo::GLTexture2D> m_Texture;
};

class BareUpload : public ImageUpload
{
public:
    using ImageUpload::ImageUpload;
    void cleanUp() override { glDeleteTextures(1, &m_Texture); }

protected:
    void upload() override
    {
        glGenTextures(1, &m_Texture);
        glBindTexture(GL_TEXTURE_2D, m_Texture);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_REPEAT);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_REPEAT);
        const std::unique_ptr<std::uint32_t[]> exchanged = exchangeRedAndBlue();
        const auto side = static_cast<GLsizei>(m_Image.getWidth());
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, side, side, 0, GL_RGBA, GL_UNSIGNED_BYTE, exchanged.get());
    }

private:
    // The compiler makes vector instructions of it. The bytes are in the order of the machines that this runs on.
    std::unique_ptr<std::uint32_t[]> exchangeRedAndBlue() const
    {
        const std::size_t count = m_Image.getPixels().size();
        auto exchanged = std::make_unique_for_overwrite<std::uint32_t[]>(count);
        const auto* const pixels = reinterpret_cast<const std::uint32_t*>(m_Image.getPixels().data());
        for (std::size_t i = 0; i < count; ++i)
            exchanged[i] = (pixels[i] & 0xFF00FF00) | (pixels[i] & 0xFF) << 16 | (pixels[i] >> 16 & 0xFF);
        return exchanged;
    }

    GLuint m_Texture = 0;
};

} // namespace

Comparison uploadImage(unsigned int side)
{
    const std::string length = std::to_string(side);
    return {length + " x " + length + " image into a 2D texture, red and blue exchanged",
        {{"vireo", [side] { return std::make_unique<VireoUpload>(side); }},
            {"floor", [side] { return std::make_unique<BareUpload>(side); }, 1.05}}};
}

void addTextureWorks()
{
    add(uploadImage(4096));
}

} // namespace vireo_bench
