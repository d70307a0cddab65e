#include "vireo/offscreen/GLRenderTextureFBO.h"

#include <cstdint>
#include <memory>

#include "vireo/context/GLExtensions.h"
#include "vireo/context/classNeeds.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/offscreen/imageTexels.h"
#include "vireo/textures/GLTexture2D.h"
#include "vireo/textures/GLTextureRect.h"

namespace tavo {

// Defined here as well as in the class: a DLL exports only what is defined in one of its sources.
constexpr unsigned int GLRenderTextureFBO::FLAG_DEPTH;
constexpr unsigned int GLRenderTextureFBO::FLAG_STENCIL;
constexpr unsigned int GLRenderTextureFBO::FLAG_FLOAT16;
constexpr unsigned int GLRenderTextureFBO::FLAG_FLOAT32;
constexpr unsigned int GLRenderTextureFBO::FLAG_RECTANGLE;

namespace {

// Whether only one bit is set, or none.
bool isPowerOfTwoOrZero(unsigned int value)
{
    return (value & (value - 1)) == 0;
}

// As drivers store depths and stencils.
std::uint64_t bytesOfBuffer(unsigned int format, unsigned int width, unsigned int height)
{
    return std::uint64_t{width} * height * (format == GL_STENCIL_INDEX ? 1 : 4);
}

template <typename Image>
Image* readBack(GLRenderTextureFBO& renderTexture)
{
    auto image = std::make_unique<Image>(renderTexture.getWidth(), renderTexture.getHeight());
    const bool wasActive = renderTexture.isActive();
    const bool wasBound = renderTexture.isBound();
    if (wasActive)
        renderTexture.deactivate();
    if (!wasBound)
        renderTexture.bind(0);
    readTexels(renderTexture.getTextureTarget(), *image);
    if (!wasBound)
        renderTexture.unbind();
    if (wasActive)
        renderTexture.activate();
    return image.release();
}

} // namespace

GLRenderTextureFBO::GLRenderTextureFBO(GLContext* context)
    : GLObject(context)
{
    static const bool isReported = reportMissing("GLRenderTextureFBO");
    static_cast<void>(isReported);
}

GLRenderTextureFBO::~GLRenderTextureFBO()
{
    delete m_Texture;
    if (getContext() && m_Framebuffer != 0) {
        glDeleteFramebuffersEXT(1, &m_Framebuffer);
        noteNameDeleted(NameKind::FRAMEBUFFER, m_Framebuffer, *getContext());
    }
}

bool GLRenderTextureFBO::create(unsigned int width, unsigned int height, unsigned int components, unsigned int flags)
{
    noteNamesLeft(*this); // those of an earlier call
    m_Width = width;
    m_Height = height;
    m_NumComponents = components;
    m_Flags = flags;
    if (isRectangle())
        makeRectangleTexture();
    else
        make2DTexture();
    makeFramebuffer(GL_COLOR_ATTACHMENT0_EXT);
    if (hasDepth())
        m_DepthBuffer = attachRenderbuffer(GL_DEPTH_COMPONENT24, GL_DEPTH_ATTACHMENT_EXT);
    if (hasStencil())
        m_StencilBuffer = attachRenderbuffer(GL_STENCIL_INDEX, GL_STENCIL_ATTACHMENT_EXT);
    return finishFramebuffer();
}

bool GLRenderTextureFBO::createDepthTexture(unsigned int width, unsigned int height)
{
    m_Flags = 0;
    m_PureDepthTexture = true;
    if (!isPowerOfTwoOrZero(width) || !isPowerOfTwoOrZero(height))
        return false;
    noteNamesLeft(*this); // those of an earlier call
    m_Width = width;
    m_Height = height;
    m_NumComponents = 0;
    m_Flags = FLAG_DEPTH;
    makeDepthTexture();
    makeFramebuffer(GL_DEPTH_ATTACHMENT_EXT);
    // There are no colours. This is state of the framebuffer and stays with it.
    glDrawBuffer(GL_NONE);
    glReadBuffer(GL_NONE);
    return finishFramebuffer();
}

void GLRenderTextureFBO::makeRectangleTexture()
{
    auto* const texture = new GLTextureRect(getContext());
    m_Texture = texture;
    if (isFloat16() || isFloat32())
        texture->createFloatTextureFromMemory(m_Width, m_Height, m_NumComponents, nullptr, isFloat32());
    else
        texture->createFromMemory(m_Width, m_Height, m_NumComponents, nullptr);
    glTexParameteri(texture->getTextureTarget(), GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
}

// Deliberately without regard to the flags of floats.
void GLRenderTextureFBO::make2DTexture()
{
    auto* const texture = new GLTexture2D(getContext());
    m_Texture = texture;
    texture->createFromMemory(m_Width, m_Height, m_NumComponents, nullptr, false);
}

void GLRenderTextureFBO::makeDepthTexture()
{
    m_Texture = new GLTexture2D(getContext());
    noteBytes(NameKind::TEXTURE, m_Texture->getTextureID(), *m_Texture,
        bytesOfBuffer(GL_DEPTH_COMPONENT24, m_Width, m_Height));
    m_Texture->bind(0);
    glTexImage2D(m_Texture->getTextureTarget(), 0, GL_DEPTH_COMPONENT, static_cast<GLsizei>(m_Width),
        static_cast<GLsizei>(m_Height), 0, GL_DEPTH_COMPONENT, GL_FLOAT, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    m_Texture->unbind(0);
}

void GLRenderTextureFBO::makeFramebuffer(unsigned int textureAttachment)
{
    glGenFramebuffersEXT(1, &m_Framebuffer);
    noteName(NameKind::FRAMEBUFFER, m_Framebuffer, *this);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, m_Framebuffer);
    glFramebufferTexture2DEXT(
        GL_FRAMEBUFFER_EXT, textureAttachment, m_Texture->getTextureTarget(), m_Texture->getTextureID(), 0);
}

unsigned int GLRenderTextureFBO::attachRenderbuffer(unsigned int format, unsigned int attachment)
{
    unsigned int renderbuffer = 0;
    glGenRenderbuffersEXT(1, &renderbuffer);
    noteName(NameKind::RENDERBUFFER, renderbuffer, *this);
    noteBytes(NameKind::RENDERBUFFER, renderbuffer, *this, bytesOfBuffer(format, m_Width, m_Height));
    glBindRenderbufferEXT(GL_RENDERBUFFER_EXT, renderbuffer);
    glRenderbufferStorageEXT(
        GL_RENDERBUFFER_EXT, format, static_cast<GLsizei>(m_Width), static_cast<GLsizei>(m_Height));
    glFramebufferRenderbufferEXT(GL_FRAMEBUFFER_EXT, attachment, GL_RENDERBUFFER_EXT, renderbuffer);
    return renderbuffer;
}

bool GLRenderTextureFBO::checkStatus()
{
    return glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT) == GL_FRAMEBUFFER_COMPLETE_EXT;
}

bool GLRenderTextureFBO::finishFramebuffer()
{
    if (!checkStatus())
        return false;
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
    return true;
}

void GLRenderTextureFBO::activate()
{
    glGetIntegerv(GL_VIEWPORT, m_SavedViewport.data());
    m_State = STATE_ACTIVE;
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, m_Framebuffer);
    glViewport(0, 0, static_cast<GLsizei>(m_Width), static_cast<GLsizei>(m_Height));
}

void GLRenderTextureFBO::deactivate()
{
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
    m_State = STATE_IDLE;
    glViewport(m_SavedViewport[0], m_SavedViewport[1], m_SavedViewport[2], m_SavedViewport[3]);
}

void GLRenderTextureFBO::bind(unsigned int unit)
{
    m_TextureUnit = unit;
    m_Texture->bind(unit);
    m_State = STATE_BOUND;
}

void GLRenderTextureFBO::unbind()
{
    m_Texture->unbind(m_TextureUnit);
    m_State = STATE_IDLE;
}

RGBAImage* GLRenderTextureFBO::getRGBAImage()
{
    return readBack<RGBAImage>(*this);
}

RGBAFloat32Image* GLRenderTextureFBO::getRGBAFloat32Image()
{
    return readBack<RGBAFloat32Image>(*this);
}

unsigned int GLRenderTextureFBO::getTextureTarget()
{
    return m_Texture->getTextureTarget();
}

} // namespace tavo
