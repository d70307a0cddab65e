#include "vireo/context/LeakReport.h"

#include <cstdlib>
#include <cxxabi.h>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <sstream>
#include <tuple>
#include <typeinfo>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"
#include "tavo/platform/callStack.h"
#include "tavo/platform/wgl.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLObject.h"
#include "vireo/context/nameAccounts.h"

namespace tavo {

namespace {

using Stack = std::vector<void*>;

constexpr std::uint64_t NO_TREE = 0; // context numbers count from 1

struct Free
{
    void operator()(char* memory) const { std::free(memory); }
};

std::string classNameOf(const GLObject& object)
{
    const std::unique_ptr<char, Free> name(abi::__cxa_demangle(typeid(object).name(), nullptr, nullptr, nullptr));
    const std::string_view whole = name ? name.get() : typeid(object).name();
    constexpr std::string_view ours = "tavo::";
    return std::string(whole.starts_with(ours) ? whole.substr(ours.size()) : whole);
}

const char* wordOf(NameKind kind)
{
    switch (kind) {
    case NameKind::TEXTURE: return "texture";
    case NameKind::BUFFER: return "buffer";
    case NameKind::PROGRAM: return "program";
    case NameKind::FRAMEBUFFER: return "framebuffer";
    default: return "renderbuffer";
    }
}

LeakReport::Mode modeOf(const std::string& value)
{
    if (value == "on" || value == "1")
        return LeakReport::Mode::COUNTS;
    if (value == "stacks")
        return LeakReport::Mode::STACKS;
    if (!value.empty() && value != "0" && value != "off")
        warning("VIREO_LEAKS is \"" + printable(value, 100) +
                "\", which means nothing: it may be \"on\", \"stacks\" or \"off\".");
    return LeakReport::Mode::OFF;
}

LeakReport::Mode modeOfEnvironment()
{
    const char* const variable = std::getenv("VIREO_LEAKS");
    static const LeakReport::Mode mode = modeOf(variable ? variable : "");
    return mode;
}

// What tells a name from others: framebuffers, and what belongs to no tree, are of one native context.
struct NameKey
{
    std::uint64_t tree;
    HGLRC native;
    NameKind kind;
    unsigned int name;

    auto operator<=>(const NameKey& other) const
    {
        return std::tie(tree, native, kind, name) <=> std::tie(other.tree, other.native, other.kind, other.name);
    }
};

NameKey keyOf(NameKind kind, unsigned int name, std::uint64_t tree)
{
    const bool isNative = tree == NO_TREE || kind == NameKind::FRAMEBUFFER;
    return {tree, isNative ? wglGetCurrentContext() : nullptr, kind, name};
}

struct NameEntry
{
    const GLObject* owner; // null for one that nobody knows any more
    std::string className;
    std::uint64_t bytes = 0;
    bool isWaiting = false;
    Stack stack;
};

struct ObjectEntry
{
    std::uint64_t tree;
    Stack stack;
};

// Puts what is alike together.
class Groups
{
public:
    void add(const std::string& kind, const std::string& className, std::uint64_t bytes, const Stack& stack)
    {
        Group& group = m_Groups[{kind, className}];
        ++group.count;
        group.bytes += bytes;
        if (!stack.empty())
            ++group.stacks[stack];
    }

    std::vector<LeakReport::Group> take() const
    {
        std::vector<LeakReport::Group> all;
        for (const auto& [key, group] : m_Groups) {
            all.push_back({key.first, key.second, group.count, group.bytes, {}});
            for (const auto& [stack, count] : group.stacks) {
                LeakReport::Place place{count, {}};
                for (void* const address : stack)
                    place.calls.push_back(describeCall(address));
                all.back().places.push_back(std::move(place));
            }
        }
        return all;
    }

private:
    struct Group
    {
        std::size_t count = 0;
        std::uint64_t bytes = 0;
        std::map<Stack, std::size_t> stacks;
    };

    std::map<std::pair<std::string, std::string>, Group> m_Groups;
};

} // namespace

bool keepsNameAccounts = modeOfEnvironment() != LeakReport::Mode::OFF;

// All that is known. Never destroyed, since objects may be as late as the last destructor.
class NameAccounts
{
public:
    static NameAccounts& get()
    {
        static auto* const all = new NameAccounts;
        return *all;
    }

    LeakReport::Mode getMode()
    {
        const std::scoped_lock lock(m_Mutex);
        return m_Mode;
    }

    void setMode(LeakReport::Mode mode)
    {
        const std::scoped_lock lock(m_Mutex);
        m_Mode = mode;
        if (mode == LeakReport::Mode::OFF) {
            m_Names.clear();
            m_Objects.clear();
        }
        keepsNameAccounts = mode != LeakReport::Mode::OFF;
    }

    void enterObject(const GLObject& object, GLContext& root)
    {
        const std::scoped_lock lock(m_Mutex);
        m_Objects[&object] = {root.getContextNumber(), stack()};
    }

    void closeObject(const GLObject& object)
    {
        const std::scoped_lock lock(m_Mutex);
        m_Objects.erase(&object);
        disown(object);
    }

    void leaveNames(const GLObject& owner)
    {
        const std::scoped_lock lock(m_Mutex);
        disown(owner);
    }

    void enterName(const NameKey& key, const GLObject* owner, const std::string& className)
    {
        const std::scoped_lock lock(m_Mutex);
        m_Names[key] = {owner, className, 0, false, stack()};
    }

    void enterBytes(const NameKey& key, const std::string& className, std::uint64_t bytes)
    {
        const std::scoped_lock lock(m_Mutex);
        const auto found = m_Names.find(key);
        if (found == m_Names.end())
            return;
        found->second.bytes = bytes;
        found->second.className = className; // while its object was being made it had the name of the base
    }

    void closeName(const NameKey& key)
    {
        const std::scoped_lock lock(m_Mutex);
        m_Names.erase(key);
    }

    void noteWaiting(const NameKey& key)
    {
        const std::scoped_lock lock(m_Mutex);
        if (const auto found = m_Names.find(key); found != m_Names.end())
            found->second.isWaiting = true;
    }

    void closeWaiting(std::uint64_t tree)
    {
        const std::scoped_lock lock(m_Mutex);
        std::erase_if(
            m_Names, [tree](const auto& entry) { return entry.first.tree == tree && entry.second.isWaiting; });
    }

    void closeTree(std::uint64_t tree)
    {
        const std::scoped_lock lock(m_Mutex);
        std::erase_if(m_Names, [tree](const auto& entry) { return entry.first.tree == tree; });
        std::erase_if(m_Objects, [tree](const auto& entry) { return entry.second.tree == tree; });
    }

    // Of all trees without a number.
    LeakReport report(std::optional<std::uint64_t> tree = std::nullopt)
    {
        const std::scoped_lock lock(m_Mutex);
        Groups neverDeleted;
        std::map<const GLObject*, std::uint64_t> bytesOf;
        for (const auto& [key, entry] : m_Names) {
            if (tree && key.tree != *tree)
                continue;
            if (entry.owner && !entry.isWaiting)
                bytesOf[entry.owner] += entry.bytes;
            else
                neverDeleted.add(wordOf(key.kind), entry.className, entry.bytes, entry.stack);
        }
        Groups alive;
        for (const auto& [object, entry] : m_Objects)
            if (!tree || entry.tree == *tree)
                alive.add("object", classNameOf(*object), bytesOf[object], entry.stack);
        LeakReport made;
        made.m_NeverDeleted = neverDeleted.take();
        made.m_Alive = alive.take();
        return made;
    }

private:
    void disown(const GLObject& owner)
    {
        for (auto& [key, entry] : m_Names)
            if (entry.owner == &owner)
                entry.owner = nullptr;
    }

    Stack stack() const
    {
        constexpr int OWN_CALLS = 3;
        return m_Mode == LeakReport::Mode::STACKS ? captureCallStack(OWN_CALLS) : Stack();
    }

    std::mutex m_Mutex;
    LeakReport::Mode m_Mode = modeOfEnvironment();
    std::map<NameKey, NameEntry> m_Names;
    std::map<const GLObject*, ObjectEntry> m_Objects;
};

namespace accounts {

namespace {

std::uint64_t treeOf(const GLObject& object)
{
    return object.getContext() ? object.getContext()->getRootContext()->getContextNumber() : NO_TREE;
}

void write(const std::string& occasion, const LeakReport& report)
{
    if (!report.isEmpty())
        debugOutput << "LeakReport: " << occasion << "\n" << report.getText();
}

} // namespace

void enterObject(const GLObject& object, GLContext& root)
{
    NameAccounts::get().enterObject(object, root);
}

void closeObject(const GLObject& object)
{
    NameAccounts::get().closeObject(object);
}

void enterName(NameKind kind, unsigned int name, const GLObject& owner)
{
    NameAccounts::get().enterName(keyOf(kind, name, treeOf(owner)), &owner, classNameOf(owner));
}

void enterForeignName(NameKind kind, unsigned int name, const char* className, std::uint64_t bytes)
{
    const NameKey key = keyOf(kind, name, NO_TREE);
    NameAccounts::get().enterName(key, nullptr, className);
    NameAccounts::get().enterBytes(key, className, bytes);
}

void enterBytes(NameKind kind, unsigned int name, const GLObject& owner, std::uint64_t bytes)
{
    NameAccounts::get().enterBytes(keyOf(kind, name, treeOf(owner)), classNameOf(owner), bytes);
}

void leaveNames(const GLObject& owner)
{
    NameAccounts::get().leaveNames(owner);
}

void closeName(NameKind kind, unsigned int name, GLContext& context)
{
    NameAccounts::get().closeName(keyOf(kind, name, context.getRootContext()->getContextNumber()));
}

void closeForeignNames(NameKind kind, const std::vector<unsigned int>& names)
{
    for (const unsigned int name : names)
        NameAccounts::get().closeName(keyOf(kind, name, NO_TREE));
}

void enterDeletion(NameKind kind, unsigned int name, GLContext& root)
{
    const NameKey key = keyOf(kind, name, root.getContextNumber());
    if (root.isGlobalActive())
        NameAccounts::get().closeName(key);
    else
        NameAccounts::get().noteWaiting(key);
}

void closeWaiting(GLContext& root)
{
    NameAccounts::get().closeWaiting(root.getContextNumber());
}

void reportTree(GLContext& root)
{
    const std::string number = std::to_string(root.getContextNumber());
    write("the tree of context " + number + " ends", NameAccounts::get().report(root.getContextNumber()));
}

void closeTree(GLContext& root)
{
    NameAccounts::get().closeTree(root.getContextNumber());
}

} // namespace accounts

void reportLeaksOfProcess()
{
    if (accounts::areKept())
        accounts::write("the library is shut down", LeakReport::ofProcess());
}

LeakReport::Mode LeakReport::getMode()
{
    return NameAccounts::get().getMode();
}

void LeakReport::setMode(Mode mode)
{
    NameAccounts::get().setMode(mode);
}

LeakReport LeakReport::ofTree(GLContext& context)
{
    return NameAccounts::get().report(context.getRootContext()->getContextNumber());
}

LeakReport LeakReport::ofProcess()
{
    return NameAccounts::get().report();
}

namespace {

void describe(const char* title, const std::vector<LeakReport::Group>& groups, std::ostream& text)
{
    if (groups.empty())
        return;
    text << "  " << title << '\n';
    for (const LeakReport::Group& group : groups) {
        text << "    " << group.count << ' ' << group.kind << (group.count == 1 ? "" : "s") << " of " << group.className
             << ", " << group.bytes << " bytes\n";
        for (const LeakReport::Place& place : group.places) {
            text << "      " << place.count << " made by\n";
            for (const std::string& call : place.calls)
                text << "        " << call << '\n';
        }
    }
}

} // namespace

std::string LeakReport::getText() const
{
    std::ostringstream text;
    describe("names that were never deleted:", m_NeverDeleted, text);
    describe("objects that still live, which is legal:", m_Alive, text);
    return text.str();
}

} // namespace tavo
