#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "vireo/Export.h"

namespace tavo {

class GLContext;

/// What the library has made in GL and not deleted: textures, buffers, ARB programs, framebuffers and renderbuffers,
/// with the classes that made them. The variable VIREO_LEAKS switches it on: "on" for counts and bytes, "stacks" for
/// the calls that made what is left as well. Then the debug output gets a report whenever the root of a tree dies and
/// leaves something, and another by shutdownVireo(). A program can also ask for itself, at any time:
///
///     LeakReport::setMode(LeakReport::Mode::COUNTS);
///     GLTexture2D texture(&context);
///     debugOutput << LeakReport::ofTree(context).getText();
///
/// Names that were never deleted are told apart from objects that still live. When a root dies, the latter is legal:
/// they hand it their names, and may be destroyed later. Textures of the volume renderers, which know no GLContext, are
/// told of by ofProcess() alone. The library makes no display lists; a GLGeometryList is a buffer.
///
/// Switched off, which is the default, it costs nothing. Otherwise every name costs an entry, and with stacks a walk up
/// the calls. What was made while it was switched off is not known to it. Any thread
/// may ask.
class VIREO_EXPORT LeakReport
{
public:
    enum class Mode
    {
        OFF,
        COUNTS,
        STACKS
    };

    /// Calls that made some of a group, the innermost first.
    struct Place
    {
        std::size_t count;
        std::vector<std::string> calls;
    };

    struct Group
    {
        std::string kind; // "texture", "buffer", "program", "framebuffer", "renderbuffer" or "object"
        std::string className;
        std::size_t count;
        std::uint64_t bytes;       // that GL was asked for
        std::vector<Place> places; // of Mode::STACKS
    };

    static Mode getMode();
    /// Switches it on or off. Off forgets what is known.
    /// @needs No other thread may be using the library.
    static void setMode(Mode mode);

    /// What there is in the tree of a context.
    static LeakReport ofTree(GLContext& context);
    /// What there is in all trees that live, and outside of them.
    static LeakReport ofProcess();

    /// Names that nobody will delete, and those that wait until the tree is activated: they go when it is, and not at
    /// all if it dies first.
    const std::vector<Group>& getNeverDeleted() const { return m_NeverDeleted; }
    /// Objects that live, of the kind "object", with the memory of all their names.
    const std::vector<Group>& getAlive() const { return m_Alive; }

    bool isEmpty() const { return m_NeverDeleted.empty() && m_Alive.empty(); }

    /// For people: a line for each group, and the calls below it. Empty if the report is.
    std::string getText() const;

private:
    LeakReport() = default;

    friend class NameAccounts;

    std::vector<Group> m_NeverDeleted;
    std::vector<Group> m_Alive;
};

} // namespace tavo
