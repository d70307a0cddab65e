#include "vireo/offscreen/GLRenderTargetFBO.h"

#include <cstdint>

#include "tavo/base/objects/PException.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/classNeeds.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/textures/GLTextureRect.h"
#include "vireo/textures/GLTextureSettings.h"

namespace tavo {

namespace {

bool isSize(unsigned int width, unsigned int height)
{
    int most = 0;
    glGetIntegerv(GL_MAX_RECTANGLE_TEXTURE_SIZE_ARB, &most);
    const auto limit = static_cast<unsigned int>(most);
    return width > 0 && height > 0 && width <= limit && height <= limit;
}

} // namespace

GLRenderTargetFBO::GLRenderTargetFBO(GLContext* context)
    : GLObject(context)
{}

GLRenderTargetFBO::~GLRenderTargetFBO()
{
    release();
}

bool GLRenderTargetFBO::isSupported()
{
    return isExtensionSupported("GL_EXT_framebuffer_object") && isExtensionSupported("GL_ARB_texture_rectangle") &&
           isExtensionSupported("GL_ARB_depth_texture") && isExtensionSupported("GL_ARB_multitexture");
}

bool GLRenderTargetFBO::create(unsigned int width, unsigned int height)
{
    requireContext("GLRenderTargetFBO::create() - invalid context!");
    release();
    if (!isSupported())
        reportMissing("GLRenderTargetFBO");
    if (!isSupported() || !isSize(width, height))
        return false;
    makeTextures(width, height);
    if (!makeFramebuffer()) {
        release();
        return false;
    }
    m_Width = width;
    m_Height = height;
    return true;
}

void GLRenderTargetFBO::makeTextures(unsigned int width, unsigned int height)
{
    m_Colour = std::make_unique<GLTextureRect>(getContext());
    m_Colour->createFromMemory(width, height, 4, nullptr);
    m_Depth = std::make_unique<GLTextureRect>(getContext());
    m_Depth->bind(0);
    GLTextureSettings::setFloatDefaults(m_Depth->getTextureTarget());
    glTexParameteri(m_Depth->getTextureTarget(), GL_DEPTH_TEXTURE_MODE_ARB, GL_INTENSITY);
    glTexImage2D(m_Depth->getTextureTarget(), 0, GL_DEPTH_COMPONENT24, static_cast<GLsizei>(width),
        static_cast<GLsizei>(height), 0, GL_DEPTH_COMPONENT, GL_UNSIGNED_INT, nullptr);
    m_Depth->unbind(0);
    constexpr unsigned int BYTES = 4; // of a depth
    noteBytes(NameKind::TEXTURE, m_Depth->getTextureID(), *m_Depth, std::uint64_t{BYTES} * width * height);
}

bool GLRenderTargetFBO::makeFramebuffer()
{
    int boundBefore = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &boundBefore);
    m_Home = wglGetCurrentContext();
    glGenFramebuffersEXT(1, &m_Framebuffer);
    noteName(NameKind::FRAMEBUFFER, m_Framebuffer, *this);
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, m_Framebuffer);
    glFramebufferTexture2DEXT(
        GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT, m_Colour->getTextureTarget(), m_Colour->getTextureID(), 0);
    glFramebufferTexture2DEXT(
        GL_FRAMEBUFFER_EXT, GL_DEPTH_ATTACHMENT_EXT, m_Depth->getTextureTarget(), m_Depth->getTextureID(), 0);
    const bool isComplete = glCheckFramebufferStatusEXT(GL_FRAMEBUFFER_EXT) == GL_FRAMEBUFFER_COMPLETE_EXT;
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, static_cast<unsigned int>(boundBefore));
    return isComplete;
}

bool GLRenderTargetFBO::isAtHome() const
{
    return getContext() && m_Framebuffer != 0 && wglGetCurrentContext() == m_Home;
}

void GLRenderTargetFBO::release()
{
    if (isAtHome()) {
        deactivate();
        glDeleteFramebuffersEXT(1, &m_Framebuffer);
        noteNameDeleted(NameKind::FRAMEBUFFER, m_Framebuffer, *getContext());
    }
    m_Active = false;
    m_Framebuffer = 0;
    m_Home = nullptr;
    m_Depth.reset();
    m_Colour.reset();
    m_Width = 0;
    m_Height = 0;
}

void GLRenderTargetFBO::activate()
{
    requireContext("GLRenderTargetFBO::activate() - invalid context!");
    if (!isCreated())
        throw PException("GLRenderTargetFBO::activate() - there is no target!");
    if (m_Active)
        return;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &m_SavedFramebuffer);
    glGetIntegerv(GL_VIEWPORT, m_SavedViewport.data());
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, m_Framebuffer);
    glViewport(0, 0, static_cast<GLsizei>(m_Width), static_cast<GLsizei>(m_Height));
    m_Active = true;
}

void GLRenderTargetFBO::deactivate()
{
    requireContext("GLRenderTargetFBO::deactivate() - invalid context!");
    if (!m_Active)
        return;
    glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, static_cast<unsigned int>(m_SavedFramebuffer));
    glViewport(m_SavedViewport[0], m_SavedViewport[1], m_SavedViewport[2], m_SavedViewport[3]);
    m_Active = false;
}

GLTexture* GLRenderTargetFBO::getColourTexture() const
{
    return m_Colour.get();
}

GLTexture* GLRenderTargetFBO::getDepthTexture() const
{
    return m_Depth.get();
}

} // namespace tavo
