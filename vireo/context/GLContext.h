#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <vector>

#include "vireo/Export.h"

struct HDC__;      // NOLINT(bugprone-reserved-identifier): the name on Windows
struct HGLRC__;    // NOLINT(bugprone-reserved-identifier): the name on Windows
struct _CGcontext; // NOLINT(bugprone-reserved-identifier): the Cg runtime's name
class QGLWidget;

namespace tavo {

class GLObject;

/// A rendering context of the window system in a share tree: a context made with a parent shares GL names with it. The
/// root of a tree holds the registry of the tree's GLObjects, knows whether a context of the tree is current, and keeps
/// the GL names that could not be deleted at once until the tree is active again.
///
///     GLContext context(wglGetCurrentDC(), wglGetCurrentContext(), nullptr, nullptr);
///     context.activate();
///     GLTexture2D texture(&context);
///
/// Threads may make contexts at the same time; a tree belongs to one thread at a time. It is at most two levels deep: a
/// root and its children. A context of a third level throws when it is destroyed; inside a std::unique_ptr or a
/// container, that ends the program.
///
/// @owns A context owns neither the native contexts it is given nor its objects or children, which may all die first.
class VIREO_EXPORT GLContext
{
public:
    /// Wraps a device context and a rendering context (see tavo/platform/wgl.h), and optionally the widget that owns
    /// them. The first root of the process fetches the GL entry points and makes the Cg context.
    /// @needs That first root must be current already; the constructor does not make it so.
    GLContext(HDC__* dc, HGLRC__* rc, GLContext* parent, QGLWidget* widget);

    /// Leaves the tree. A root tells all objects of its tree, in the order of their registration, and its children
    /// become roots. Names waiting for deletion die with the rendering context.
    /// @throws PException If the parent is itself a child; the context is gone all the same. What an object throws when
    /// told is passed on after all were told.
    ~GLContext() noexcept(false);

    /// Makes the context current, unless it is, and deletes the names that wait for it (wglMakeCurrent,
    /// glDeleteTextures, glDeleteBuffersARB, glDeleteProgramsARB). Returns false if that failed.
    bool activate();

    /// Releases whatever context is current, and marks this tree inactive (wglMakeCurrent).
    void deactivate();

    /// Whether the tree was activated, and not deactivated since. What others make current or release is not seen: two
    /// trees that were both activated both count as active.
    bool isGlobalActive() const;

    /// The root of this context's tree.
    GLContext* getRootContext();

    /// Deletes a texture, buffer or ARB program name: at once if the tree is active, else when it is next activated.
    /// "At once" means in whatever context is current. If that belongs to another tree, because it was made current
    /// while this one counted as active, the other tree loses its object of that name.
    void deleteTexture(unsigned int name);
    void deleteBuffer(unsigned int name);
    void deleteShader(unsigned int name);

    /// Whether GL names of the other context may be used in this one: true for this context, its ancestors and the
    /// children of its root. Deeper descendants are deliberately not recognised.
    bool isCompatible(GLContext* other);

    /// Writes a pending GL error to the debug output, after the tag. Takes one error from the queue of whatever context
    /// is current (glGetError).
    void debug(std::string tag);

    /// A number unique in the process; they count from 1 in the order of construction.
    std::uint64_t getContextNumber() { return m_ContextNumber; }
    HDC__* getDC() { return m_DC; }
    HGLRC__* getRC() { return m_RC; }
    QGLWidget* getQGLWidget() const { return m_QGLWidget; }

    /// A preference for those who draw here: buffer objects (the default) or client-side arrays. The library only
    /// stores it.
    bool getUseVertexBufferObjects() const { return m_UseVertexBufferObjects; }
    void setUseVertexBufferObjects(bool use) { m_UseVertexBufferObjects = use; }

    /// The one Cg context of the process; null before the first root context, and in a build without the Cg runtime.
    _CGcontext* getCGContext();

protected:
    /// Says that a context of the tree was made current, or released, by other means. True deletes the names that wait.
    void setGlobalActive(bool active);

    /// Enters a child, which must not be in the list yet: one that is being made, or whose own parent dies.
    void addChildContext(GLContext* child);

    /// Looks among the root's children.
    /// @throws PException If the child is not there.
    void removeChildContext(GLContext* child);

    /// The registry of the tree, at its root. The position returned is for removing the object.
    std::list<GLObject*>::iterator addObject(GLObject* object);
    void removeObject(std::list<GLObject*>::iterator entry);

    /// Deletes all names that wait, each kind with one call.
    /// @needs A context of the tree must be current.
    void delayedDelete();

    /// What the destructor does about the end of the context.
    void onDeleteContext();

private:
    friend class GLObject;

    void bequeath(GLContext* root, GLContext* parent);
    static std::uint64_t nextContextNumber();
    static void prepareFirstContext();

    static std::uint64_t globalContextNumber;
    static _CGcontext* m_CGContext;

    std::uint64_t m_ContextNumber;
    HDC__* m_DC;
    HGLRC__* m_RC;
    bool m_GlobalActive = false;
    std::list<GLContext*> m_ChildContexts;
    GLContext* m_ParentContext;
    bool m_UseVertexBufferObjects = true;
    QGLWidget* m_QGLWidget = nullptr;
    std::list<GLObject*> m_Objects;
    std::vector<unsigned int> m_TexturesToDelete;
    std::vector<unsigned int> m_BuffersToDelete;
    std::vector<unsigned int> m_ShadersToDelete;
};

} // namespace tavo
