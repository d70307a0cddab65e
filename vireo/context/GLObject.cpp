#include "vireo/context/GLObject.h"

#include <cassert>

#include "tavo/base/objects/PException.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/nameAccounts.h"

namespace tavo {

namespace {

GLContext* notNull(GLContext* context)
{
    assert(context && "a GLObject needs a context");
    return context;
}

} // namespace

GLObject::GLObject(GLContext* context)
    : m_Context(notNull(context))
    , m_RegistryEntry(context->addObject(this))
{}

GLObject::~GLObject()
{
    noteObjectGone(*this);
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

void GLObject::requireContext(const char* refusal) const
{
    if (!m_Context)
        throw PException(refusal);
}

void GLObject::onDeleteContext() {}

void GLObject::callOnDeleteContext()
{
    onDeleteContext();
    m_Context = nullptr;
}

} // namespace tavo
