#include "vireo/context/GLContext.h"

#include <algorithm>
#include <exception>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/displayException.h"
#include "tavo/base/objects/PException.h"
#include "tavo/platform/wgl.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/GLObject.h"
#include "vireo/context/nameAccounts.h"
#include "vireo/context/sharedByContexts.h"

#ifdef VIREO_HAVE_CG
#include <Cg/cg.h>
#endif

namespace tavo {

namespace {

_CGcontext* createCgContext()
{
#ifdef VIREO_HAVE_CG
    return cgCreateContext();
#else
    return nullptr;
#endif
}

template <typename DeleteNames>
void deleteOrQueue(bool active, unsigned int name, std::vector<unsigned int>& queue, DeleteNames deleteNames)
{
    if (active)
        deleteNames(1, &name);
    else
        queue.push_back(name);
}

// Leaves the queue empty and its memory reserved.
template <typename DeleteNames>
void deleteQueued(std::vector<unsigned int>& queue, DeleteNames deleteNames)
{
    if (!queue.empty())
        deleteNames(static_cast<GLsizei>(queue.size()), queue.data());
    queue.clear();
}

const char* textOfError(GLenum error)
{
    switch (error) {
    case GL_INVALID_ENUM: return "invalid enum";
    case GL_INVALID_VALUE: return "invalid value";
    case GL_INVALID_OPERATION: return "invalid operation";
    case GL_STACK_OVERFLOW: return "stack overflow";
    case GL_STACK_UNDERFLOW: return "stack underflow";
    case GL_OUT_OF_MEMORY: return "out of memory";
    default: return "unknown gl error";
    }
}

} // namespace

std::uint64_t GLContext::globalContextNumber = 1;
_CGcontext* GLContext::m_CGContext = nullptr;

std::recursive_mutex& sharedByContexts()
{
    static std::recursive_mutex mutex;
    return mutex;
}

GLContext::GLContext(HDC__* dc, HGLRC__* rc, GLContext* parent, QGLWidget* widget)
    : m_ContextNumber(nextContextNumber())
    , m_DC(dc)
    , m_RC(rc)
    , m_ParentContext(parent)
{
    if (parent)
        parent->addChildContext(this);
    if (!parent)
        prepareFirstContext();
    // Deliberately last: what was called above sees a context without a widget.
    m_QGLWidget = widget;
}

GLContext::~GLContext() noexcept(false)
{
    GLContext* const root = getRootContext();
    GLContext* const parent = m_ParentContext;
    std::exception_ptr failure;
    try {
        onDeleteContext();
    } catch (...) {
        failure = std::current_exception();
        // A second exception while one is under way would end the program.
        if (std::uncaught_exceptions() > 0)
            displayCurrentException();
    }
    if (parent)
        bequeath(root, parent);
    if (failure && std::uncaught_exceptions() == 0)
        std::rethrow_exception(failure);
}

std::uint64_t GLContext::nextContextNumber()
{
    const SharedLock lock(sharedByContexts());
    return globalContextNumber++;
}

void GLContext::prepareFirstContext()
{
    const SharedLock lock(sharedByContexts());
    if (m_CGContext)
        return;
    m_CGContext = createCgContext();
    initGLExtensions();
}

_CGcontext* GLContext::getCGContext()
{
    const SharedLock lock(sharedByContexts());
    return m_CGContext;
}

bool GLContext::activate()
{
    if (wglGetCurrentContext() == m_RC) {
        setGlobalActive(true);
        return true;
    }
    setGlobalActive(wglMakeCurrent(m_DC, m_RC) != 0);
    return isGlobalActive();
}

void GLContext::deactivate()
{
    if (wglGetCurrentContext())
        wglMakeCurrent(nullptr, nullptr);
    setGlobalActive(false);
}

bool GLContext::isGlobalActive() const
{
    return const_cast<GLContext*>(this)->getRootContext()->m_GlobalActive;
}

void GLContext::setGlobalActive(bool active)
{
    GLContext* const root = getRootContext();
    root->m_GlobalActive = active;
    if (active)
        root->delayedDelete();
}

GLContext* GLContext::getRootContext()
{
    GLContext* context = this;
    while (context->m_ParentContext)
        context = context->m_ParentContext;
    return context;
}

void GLContext::addChildContext(GLContext* child)
{
    m_ChildContexts.push_back(child);
}

void GLContext::removeChildContext(GLContext* child)
{
    // Children are entered in their parent's list but deliberately looked for in the root's: trees are two levels deep.
    std::list<GLContext*>& children = getRootContext()->m_ChildContexts;
    const auto found = std::find(children.begin(), children.end(), child);
    if (found == children.end())
        throw PException("GLContext::removeChildContext - context ist not a child of this parentcontext!");
    child->m_ParentContext = nullptr;
    children.erase(found);
}

std::list<GLObject*>::iterator GLContext::addObject(GLObject* object)
{
    GLContext* const root = getRootContext();
    noteObject(*object, *root);
    return root->m_Objects.insert(root->m_Objects.end(), object);
}

void GLContext::removeObject(std::list<GLObject*>::iterator entry)
{
    std::list<GLObject*>& objects = getRootContext()->m_Objects;
    if (entry != objects.end())
        objects.erase(entry);
}

void GLContext::deleteTexture(unsigned int name)
{
    GLContext* const root = getRootContext();
    noteDeletion(NameKind::TEXTURE, name, *root);
    deleteOrQueue(root->m_GlobalActive, name, root->m_TexturesToDelete, glDeleteTextures);
}

void GLContext::deleteBuffer(unsigned int name)
{
    GLContext* const root = getRootContext();
    noteDeletion(NameKind::BUFFER, name, *root);
    deleteOrQueue(root->m_GlobalActive, name, root->m_BuffersToDelete, glDeleteBuffersARB);
}

void GLContext::deleteShader(unsigned int name)
{
    GLContext* const root = getRootContext();
    noteDeletion(NameKind::PROGRAM, name, *root);
    deleteOrQueue(root->m_GlobalActive, name, root->m_ShadersToDelete, glDeleteProgramsARB);
}

void GLContext::delayedDelete()
{
    GLContext* const root = getRootContext();
    deleteQueued(root->m_TexturesToDelete, glDeleteTextures);
    deleteQueued(root->m_BuffersToDelete, glDeleteBuffersARB);
    deleteQueued(root->m_ShadersToDelete, glDeleteProgramsARB);
    noteWaitingDeleted(*root);
}

void GLContext::onDeleteContext()
{
    if (m_ParentContext) {
        m_ParentContext->removeChildContext(this);
        return;
    }

    noteTreeEnds(*this);
    std::exception_ptr failure;
    while (!m_Objects.empty()) {
        GLObject* const object = m_Objects.front();
        try {
            object->onDeleteContext();
        } catch (...) {
            if (!failure)
                failure = std::current_exception();
        }
        // Being told, the object may have destroyed others, or itself.
        if (!m_Objects.empty() && m_Objects.front() == object) {
            object->m_Context = nullptr;
            m_Objects.pop_front();
        }
    }
    noteTreeEnded(*this);

    for (GLContext* child : m_ChildContexts)
        child->m_ParentContext = nullptr;

    if (failure)
        std::rethrow_exception(failure);
}

// Leaves nothing in the tree that points to this child context, which is dying: the objects made in it live on in the
// root, whose names they share, and its own children with its parent.
void GLContext::bequeath(GLContext* root, GLContext* parent)
{
    parent->m_ChildContexts.remove(this);
    for (GLContext* child : m_ChildContexts) {
        child->m_ParentContext = parent;
        parent->addChildContext(child);
    }
    for (GLObject* object : root->m_Objects)
        if (object->m_Context == this)
            object->m_Context = root;
}

bool GLContext::isCompatible(GLContext* other)
{
    for (const GLContext* context = this; context; context = context->m_ParentContext)
        if (context->m_ContextNumber == other->m_ContextNumber)
            return true;
    const std::list<GLContext*>& children = getRootContext()->m_ChildContexts;
    return std::find(children.begin(), children.end(), other) != children.end();
}

void GLContext::debug(std::string tag)
{
    const GLenum error = glGetError();
    if (error != GL_NO_ERROR)
        debugOutput << tag << " errortype = " << textOfError(error) << "\n";
}

} // namespace tavo
