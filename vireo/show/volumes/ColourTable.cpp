#include "vireo/show/volumes/ColourTable.h"

#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"

namespace tavo {

namespace {

void bindTo(unsigned int unit, unsigned int name)
{
    glActiveTextureARB(GL_TEXTURE0 + unit);
    glBindTexture(GL_TEXTURE_1D, name);
    glActiveTextureARB(GL_TEXTURE0);
}

} // namespace

ColourTable::ColourTable(GLContext& context)
    : GLObject(&context)
{
    glGenTextures(1, &m_Name);
}

ColourTable::~ColourTable()
{
    onDeleteContext();
}

void ColourTable::onDeleteContext()
{
    if (isValid())
        getContext()->deleteTexture(m_Name);
}

void ColourTable::write(const Entries& entries)
{
    glBindTexture(GL_TEXTURE_1D, m_Name);
    for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        glTexParameteri(GL_TEXTURE_1D, filter, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_1D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexImage1D(GL_TEXTURE_1D, 0, GL_RGBA16, SIZE, 0, GL_RGBA, GL_UNSIGNED_SHORT, entries.data());
}

void ColourTable::bind(unsigned int unit) const
{
    bindTo(unit, m_Name);
}

void ColourTable::unbind(unsigned int unit)
{
    bindTo(unit, 0);
}

} // namespace tavo
