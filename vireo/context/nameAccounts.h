#pragma once

#include <cstdint>
#include <vector>

#include "vireo/Export.h"

namespace tavo {

class GLContext;
class GLObject;

// The accounts of GL names and objects that LeakReport is made of. Whoever makes a GL name in the library, gives it
// memory or deletes it notes that here. While nobody keeps accounts, that is a look at one flag.

enum class NameKind
{
    TEXTURE,
    BUFFER,
    PROGRAM,
    FRAMEBUFFER,
    RENDERBUFFER
};

// Read without a lock, and so not to be changed while other threads use the library.
extern VIREO_OWN bool keepsNameAccounts;

namespace accounts {

void enterObject(const GLObject& object, GLContext& root);
void closeObject(const GLObject& object);
void enterName(NameKind kind, unsigned int name, const GLObject& owner);
void enterForeignName(NameKind kind, unsigned int name, const char* className, std::uint64_t bytes);
void enterBytes(NameKind kind, unsigned int name, const GLObject& owner, std::uint64_t bytes);
void leaveNames(const GLObject& owner);
void closeName(NameKind kind, unsigned int name, GLContext& context);
void closeForeignNames(NameKind kind, const std::vector<unsigned int>& names);
void enterDeletion(NameKind kind, unsigned int name, GLContext& root);
void closeWaiting(GLContext& root);
void reportTree(GLContext& root);
void closeTree(GLContext& root);

inline bool areKept()
{
    return __builtin_expect(keepsNameAccounts, false);
}

} // namespace accounts

// Of an object.
inline void noteObject(const GLObject& object, GLContext& root)
{
    if (accounts::areKept())
        accounts::enterObject(object, root);
}

inline void noteObjectGone(const GLObject& object)
{
    if (accounts::areKept())
        accounts::closeObject(object);
}

// Of a name that an object has made, while the object has a context.
inline void noteName(NameKind kind, unsigned int name, const GLObject& owner)
{
    if (accounts::areKept())
        accounts::enterName(kind, name, owner);
}

// The memory that GL was asked for; once more for other memory in its place.
inline void noteBytes(NameKind kind, unsigned int name, const GLObject& owner, std::uint64_t bytes)
{
    if (accounts::areKept())
        accounts::enterBytes(kind, name, owner, bytes);
}

// The object knows its names no longer, which live on.
inline void noteNamesLeft(const GLObject& owner)
{
    if (accounts::areKept())
        accounts::leaveNames(owner);
}

inline void noteNameDeleted(NameKind kind, unsigned int name, GLContext& context)
{
    if (accounts::areKept())
        accounts::closeName(kind, name, context);
}

// Of a name that a tree deletes: at once if it is active, else when it is activated. And of the activation.
inline void noteDeletion(NameKind kind, unsigned int name, GLContext& root)
{
    if (accounts::areKept())
        accounts::enterDeletion(kind, name, root);
}

inline void noteWaitingDeleted(GLContext& root)
{
    if (accounts::areKept())
        accounts::closeWaiting(root);
}

// Of a name that belongs to no object, in the current context.
inline void noteForeignName(NameKind kind, unsigned int name, const char* className, std::uint64_t bytes)
{
    if (accounts::areKept())
        accounts::enterForeignName(kind, name, className, bytes);
}

inline void noteForeignNamesDeleted(NameKind kind, const std::vector<unsigned int>& names)
{
    if (accounts::areKept())
        accounts::closeForeignNames(kind, names);
}

// The tree ends: first what it leaves is reported, then, when its objects know, it is forgotten.
inline void noteTreeEnds(GLContext& root)
{
    if (accounts::areKept())
        accounts::reportTree(root);
}

inline void noteTreeEnded(GLContext& root)
{
    if (accounts::areKept())
        accounts::closeTree(root);
}

// At the end of the library's use: what is left of all trees.
void reportLeaksOfProcess();

} // namespace tavo
