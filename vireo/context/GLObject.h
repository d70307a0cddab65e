#pragma once

#include <list>

#include "vireo/Export.h"

namespace tavo {

class GLContext;

/// The base of every GPU resource: an object in the share tree of a GLContext. It is registered at the root of that
/// tree, and told when the root dies. After that it has no context and must not call GL.
///
///     GLTexture2D texture(&context);
///     const GLObject& resource = texture;
///     const bool isHere = resource.getContext() == &context;
///
/// An object may die before or after its context. If only the child context dies in which it was made, it lives on in
/// the root. Constructing and destroying the base calls no GL; subclasses hand what they own to the context, which
/// deletes it when it can.
///
/// Do not copy objects. A copy shares the original's entry in the registry: only one of the two may be destroyed, and a
/// copy only while the context lives, which does not tell it. Anything else corrupts the heap.
class VIREO_EXPORT GLObject
{
public:
    /// Registers the object.
    /// @needs The context must not be null; it need not be current.
    explicit GLObject(GLContext* context);

    virtual ~GLObject();

    /// The context that the object lives in; null once the root of its tree has died.
    GLContext* getContext() const { return m_Context; }

    /// The root of that context's tree.
    /// @needs The object must be valid.
    GLContext* getRootContext();

    /// Whether the object still has a context.
    bool isValid() { return m_Context != nullptr; }

    /// Whether this object may be used in that context; false if it is no longer valid.
    bool isCompatible(GLContext* other);

protected:
    /// Refuses to work without a context.
    /// @throws PException With that text, if the object has none.
    void requireContext(const char* refusal) const;

    /// Called when the context is dying, for the last time that it is there: subclasses hand it their GL names.
    virtual void onDeleteContext();

private:
    friend class GLContext;

    void callOnDeleteContext();

    GLContext* m_Context;
    std::list<GLObject*>::iterator m_RegistryEntry;
};

} // namespace tavo
