#pragma once

#include <list>

#include "vireo/Export.h"

namespace tavo {

class GLContext;

// Base of every GPU resource: an object that lives in the share tree of a GLContext. It is registered at the root of
// that tree, and is told when the root dies; from then on it has no context and must not call GL any more.
//
// An object may die before or after its context. If only the child context dies that it was created in, it goes on
// living in the root. Neither constructing nor destroying the base calls GL; what subclasses own is handed to the
// context, which deletes it when it can.
//
// Copying is not a supported use. Copies are member-wise: a copy has the original's entry in the registry, and none of
// its own. Only one of an object and its copies may therefore be destroyed, and a copy only while the context lives,
// which does not tell it; anything else corrupts the heap.
class VIREO_EXPORT GLObject
{
public:
    // Registers the object. The context, which must not be null, need not be current for the base.
    explicit GLObject(GLContext* context);

    virtual ~GLObject();

    // The context that the object lives in; null once its tree's root has died.
    GLContext* getContext() const { return m_Context; }

    // The root of that context's tree. The object must be valid.
    GLContext* getRootContext();

    // Whether the object still has a context.
    bool isValid() { return m_Context != nullptr; }

    // Whether this object may be used in that context; false once it is not valid.
    bool isCompatible(GLContext* other);

protected:
    // For operations that refuse to work without a context: throws PException with that text if the object has none.
    void requireContext(const char* refusal) const;

    // The context is dying and is still there for the last time: subclasses hand it their GL names.
    virtual void onDeleteContext();

private:
    friend class GLContext;

    void callOnDeleteContext();

    GLContext* m_Context;
    std::list<GLObject*>::iterator m_RegistryEntry;
};

} // namespace tavo
