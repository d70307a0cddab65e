#include "vireo/context/GLObject.h"

#include "vireo/context/GLContext.h"

namespace tavo {

GLObject::GLObject(GLContext* context)
    : m_Context(context)
    , m_RegistryEntry(context->addObject(this))
{}

GLObject::~GLObject()
{
    if (m_Context)
        m_Context->removeObject(m_RegistryEntry);
}

GLContext* GLObject::getRootContext()
{
    return m_Context->getRootContext();
}

bool GLObject::isCompatible(GLContext* other)
{
    return m_Context && m_Context->isCompatible(other);
}

void GLObject::onDeleteContext() {}

void GLObject::callOnDeleteContext()
{
    onDeleteContext();
    m_Context = nullptr;
}

} // namespace tavo
