#include "vireo/textures/GLTexture.h"

#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/textures/GLTextureSettings.h"
#include "vireo/textures/textureFormats.h"

namespace tavo {

GLTexture::GLTexture(GLContext* context)
    : GLObject(context)
{
    glGenTextures(1, &m_TextureID);
    noteName(NameKind::TEXTURE, m_TextureID, *this);
}

GLTexture::~GLTexture()
{
    GLTexture::onDeleteContext();
}

void GLTexture::onDeleteContext()
{
    if (GLContext* const context = getContext())
        context->deleteTexture(m_TextureID);
}

void GLTexture::bind(unsigned int unit)
{
    glActiveTextureARB(GL_TEXTURE0 + unit);
    glBindTexture(m_TextureTarget, m_TextureID);
}

void GLTexture::bind(const GLTextureSettings& settings, unsigned int unit)
{
    bind(unit);
    settings.set(m_TextureTarget, m_Mipmapped);
}

void GLTexture::unbind(unsigned int unit)
{
    glActiveTextureARB(GL_TEXTURE0 + unit);
    glBindTexture(m_TextureTarget, 0);
}

void GLTexture::setStage(int stage)
{
    glActiveTextureARB(GL_TEXTURE0 + static_cast<unsigned int>(stage));
}

bool GLTexture::isFloatTexture() const
{
    return isArbFloatFormat(m_Format);
}

} // namespace tavo
