#include "vireo/context/GLExtensionLoader.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <new>
#include <optional>
#include <span>

#include "tavo/platform/wgl.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/sharedByContexts.h"

namespace tavo {

namespace {

template <auto& entryPoint>
bool fetch(const char* name)
{
    // By way of void (*)(), which compilers take for any function.
    const auto address = reinterpret_cast<void (*)()>(wglGetProcAddress(name));
    const auto fetched = reinterpret_cast<std::decay_t<decltype(entryPoint)>>(address);
    // Other threads may be calling it: what is there already is not written again.
    if (entryPoint != fetched)
        entryPoint = fetched;
    return fetched != nullptr;
}

template <auto& entryPoint>
bool isFetched()
{
    return entryPoint != nullptr;
}

// A line of the list of entry points: either the name of an extension, or an entry point of the extension named last.
struct Line
{
    const char* name;
    bool (*fetch)(const char* name);
    bool (*isFetched)();
};

constexpr Line lines[] = {
#define VIREO_GL_EXTENSION(name) {name, nullptr, nullptr},
#define VIREO_GL_ENTRY_POINT(name, ...) {#name, fetch<name>, isFetched<name>},
#define VIREO_GL_SHARED_ENTRY_POINT(name) {#name, fetch<name>, isFetched<name>},
#include "vireo/context/GLEntryPoints.inc"
};

bool namesExtension(const Line& line)
{
    return !line.fetch;
}

// The entry points of an extension; nothing for an unknown name.
std::optional<std::span<const Line>> entryPointsOf(std::string_view extension)
{
    const Line* const named = std::find_if(std::begin(lines), std::end(lines),
        [extension](const Line& line) { return namesExtension(line) && line.name == extension; });
    if (named == std::end(lines))
        return std::nullopt;
    return std::span(named + 1, std::find_if(named + 1, std::end(lines), namesExtension));
}

bool hasFramebufferObjects()
{
    bool hasAll = true;
#define VIREO_GL_FRAMEBUFFER_ENTRY_POINT(name, ...) hasAll = hasAll && (name);
#include "vireo/context/GLEntryPoints.inc"
    return hasAll;
}

// Whether a list of names, each followed by a blank, has the whole name.
bool lists(std::string_view names, std::string_view name)
{
    if (name.empty())
        return false;
    for (auto found = names.find(name); found != names.npos; found = names.find(name, found + 1))
        if ((found == 0 || names[found - 1] == ' ') && names.substr(found + name.size()).starts_with(' '))
            return true;
    return false;
}

constexpr char separators[] = " \t\n";

// Calls use(name) for each name of a list.
template <typename Use>
void forEachName(std::string_view names, Use use)
{
    for (auto start = names.find_first_not_of(separators); start != names.npos;
         start = names.find_first_not_of(separators, start)) {
        const auto end = std::min(names.find_first_of(separators, start), names.size());
        use(names.substr(start, end - start));
        start = end;
    }
}

std::string_view textOrNothing(const void* text)
{
    return text ? static_cast<const char*>(text) : "";
}

// 2 to 5 for GL_VERSION_1_2 to GL_VERSION_1_5, 0 for any other name.
std::size_t minorVersionNamedBy(std::string_view extension)
{
    constexpr std::string_view names[] = {"GL_VERSION_1_2", "GL_VERSION_1_3", "GL_VERSION_1_4", "GL_VERSION_1_5"};
    const auto* const found = std::find(std::begin(names), std::end(names), extension);
    return found == std::end(names) ? 0 : 2 + static_cast<std::size_t>(found - names);
}

bool isVersionSupported(std::size_t minorVersion)
{
    constexpr std::string_view versions[] = {"1.0", "1.1", "1.2", "1.3", "1.4"};
    const std::string_view version = textOrNothing(glGetString(GL_VERSION));
    return !version.empty() && std::none_of(versions, versions + minorVersion,
                                   [&](std::string_view older) { return version.starts_with(older); });
}

[[noreturn]] void exitForLackOfMemory(int line)
{
    std::printf("Error allocating memory in file %s, line %d\n", "GLExtensionLoader.cpp", line);
    std::exit(-1);
}

} // namespace

GLExtensionLoader& GLExtensionLoader::getInstance()
{
    static GLExtensionLoader loader;
    return loader;
}

bool GLExtensionLoader::request(const char* names)
{
    const SharedLock lock(sharedByContexts());
    if (m_SupportedExtensions.empty())
        askForSupportedExtensions();
    if (!names)
        return true;

    m_UnsupportedExtensions.clear();
    try {
        m_UnsupportedExtensions.reserve(std::string_view(names).size() + 1);
    } catch (const std::bad_alloc&) {
        exitForLackOfMemory(195); // a fixed part of the message
    }
    forEachName(names, [this](std::string_view extension) {
        if (!isSupported(extension) || !load(extension))
            m_UnsupportedExtensions.append(extension).append(1, ' ');
    });
    return m_UnsupportedExtensions.empty();
}

bool GLExtensionLoader::load(std::string_view extension)
{
    const SharedLock lock(sharedByContexts());
    const auto entryPoints = entryPointsOf(extension);
    return entryPoints && std::all_of(entryPoints->begin(), entryPoints->end(),
                              [](const Line& line) { return line.fetch(line.name); });
}

void GLExtensionLoader::loadFramebufferObjects()
{
    const SharedLock lock(sharedByContexts());
#define VIREO_GL_FRAMEBUFFER_ENTRY_POINT(name, ...) fetch<name>(#name);
#include "vireo/context/GLEntryPoints.inc"
}

// Even without a current context what is asked for is never empty, and so never asked for again.
void GLExtensionLoader::askForSupportedExtensions()
{
    try {
        m_SupportedExtensions.append(textOrNothing(glGetString(GL_EXTENSIONS))).append(1, ' ');
        if (fetch<wglGetExtensionsStringARB>("wglGetExtensionsStringARB"))
            m_SupportedExtensions.append(textOrNothing(wglGetExtensionsStringARB(wglGetCurrentDC())));
        m_SupportedExtensions.append(1, ' ');
    } catch (const std::bad_alloc&) {
        exitForLackOfMemory(177); // a fixed part of the message
    }
}

bool GLExtensionLoader::isSupported(std::string_view extension) const
{
    const SharedLock lock(sharedByContexts());
    if (const std::size_t minorVersion = minorVersionNamedBy(extension))
        return isVersionSupported(minorVersion);

    const std::string_view supported = m_SupportedExtensions;
    for (auto found = supported.find(extension); found != supported.npos; found = supported.find(extension, found + 1))
        if (supported.substr(found + extension.size()).starts_with(' '))
            return true;
    return false;
}

bool GLExtensionLoader::isUsable(std::string_view extension) const
{
    if (extension == "GL_EXT_framebuffer_object") // fetched, and there, whether or not it is listed
        return hasFramebufferObjects();
    if (!lists(m_SupportedExtensions, extension))
        return false;
    const auto entryPoints = entryPointsOf(extension);
    return !entryPoints ||
           std::all_of(entryPoints->begin(), entryPoints->end(), [](const Line& line) { return line.isFetched(); });
}

} // namespace tavo
