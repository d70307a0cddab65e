#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <vector>

#include "vireo/Export.h"

struct HDC__;
struct HGLRC__;
struct _CGcontext;
class QGLWidget;

namespace tavo {

class GLObject;

// A rendering context of the window system in a share tree: a context made with a parent shares GL names with it. The
// root of a tree holds the registry of the tree's GLObjects, knows whether a context of the tree is current, and keeps
// the GL names that could not be deleted at once until the tree is active again.
//
// Threads may make contexts at the same time; a tree belongs to one thread at a time.
//
// A context owns neither the native contexts it is given nor its objects or children; any of them may die first. The
// tree that is supported is two levels deep: a root and its children. A context of a third level throws when it is
// destroyed; what lets no exception through, a std::unique_ptr or a container, ends the program then.
class VIREO_EXPORT GLContext
{
public:
    // Wraps a device context and a rendering context (see tavo/platform/wgl.h for how to get at them), and optionally
    // the widget that owns them. The first root of the process loads the GL extensions and makes the Cg context: it
    // must be current, the constructor does not make it so.
    GLContext(HDC__* dc, HGLRC__* rc, GLContext* parent, QGLWidget* widget);

    // Leaves the tree. A root tells all objects of its tree, in the order of their registration, and its children
    // become roots; names waiting for deletion are left to die with the rendering context. Throws PException if the
    // parent is itself a child, the context being gone all the same, and what an object throws when it is told, after
    // all were told.
    ~GLContext() noexcept(false);

    // Makes the context current, unless it is, and deletes the names that wait for it. False if that failed.
    bool activate();

    // Releases whatever context is current, and marks this tree inactive.
    void deactivate();

    // Whether the tree was activated and not deactivated since. What others make current or release is not seen: of
    // two trees that were both activated, both count as active.
    bool isGlobalActive() const;

    GLContext* getRootContext();

    // Delete a texture, buffer or ARB program name: at once if the tree is active, else when it is activated next. At
    // once means in whatever context is current: if that is another tree's, because it was made current while this one
    // counted as active, it loses its own object of that name.
    void deleteTexture(unsigned int name);
    void deleteBuffer(unsigned int name);
    void deleteShader(unsigned int name);

    // Whether GL names of the other context may be used in this one: true for this context, its ancestors and the
    // children of its root. Deeper descendants are deliberately not recognised.
    bool isCompatible(GLContext* other);

    // Writes the pending GL error, if there is one, to the debug output, with the tag before it. Takes one error from
    // the queue, of whatever context is current.
    void debug(std::string tag);

    // Unique in the process, in the order of construction from 1 on.
    std::uint64_t getContextNumber() { return m_ContextNumber; }
    HDC__* getDC() { return m_DC; }
    HGLRC__* getRC() { return m_RC; }
    QGLWidget* getQGLWidget() const { return m_QGLWidget; }

    // A preference for those who draw here: buffer objects (at first), or client-side arrays. The library only keeps
    // it.
    bool getUseVertexBufferObjects() const { return m_UseVertexBufferObjects; }
    void setUseVertexBufferObjects(bool use) { m_UseVertexBufferObjects = use; }

    // The one Cg context of the process; null before the first root context, and in a build without the Cg runtime.
    _CGcontext* getCGContext();

protected:
    // Says that a context of the tree was made current, or released, by other means; true deletes the waiting names.
    void setGlobalActive(bool active);

    void addChildContext(GLContext* child);

    // Looks among the root's children. Throws PException if the child is not there.
    void removeChildContext(GLContext* child);

    // The registry of the tree, at its root. The position is where the object can be removed again.
    std::list<GLObject*>::iterator addObject(GLObject* object);
    void removeObject(std::list<GLObject*>::iterator entry);

    // Deletes all names that wait for it, each kind by one call. A context of the tree must be current.
    void delayedDelete();

    // The context is dying: what the destructor does about it.
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
