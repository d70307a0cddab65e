#pragma once

#include <string>
#include <string_view>

#include "vireo/Export.h"

namespace tavo {

// Fetches the entry points of GLExtensions.h, by the names of the extensions they belong to, from the driver of the
// current context. A loader asks the driver once which extensions it supports, at its first request, and goes by that
// answer for ever after. Any thread may ask.
//
// Internal to the library; exported only for its tests.
class VIREO_EXPORT GLExtensionLoader
{
public:
    // The loader that the library makes its requests of.
    static GLExtensionLoader& getInstance();

    // Loads each supported extension of a list of names, separated by blanks, tabs or line feeds. True if all of them
    // were supported and loaded whole. Without a list (null) it only asks for the supported extensions, and is true.
    //
    // An extension is supported if its name and a blank occur in the list of supported extensions: deliberately also as
    // the end of a longer name. GL_VERSION_1_2 to GL_VERSION_1_5 go by the driver's version instead. Without a current
    // context nothing is supported.
    //
    // If the memory for the two lists below runs out, the process ends with exit code -1 and a message on standard
    // output.
    bool request(const char* names);

    // Whether an extension is supported, as request has it. Nothing is before the first request.
    bool isSupported(std::string_view extension) const;

    // Whether an extension is listed by its whole name, and all its entry points have been fetched; what
    // isExtensionSupported answers.
    bool isUsable(std::string_view extension) const;

    // Fetches all entry points of an extension, supported or not, in the order of GLEntryPoints.inc, up to the first
    // that the driver does not have; those fetched before it stay. True if all were found; false for an unknown name.
    static bool load(std::string_view extension);

    // Fetches the entry points of GL_EXT_framebuffer_object, each whether or not the driver has the others.
    static void loadFramebufferObjects();

    // What the driver supports, GL extensions and then WGL extensions, each name followed by a blank; empty before the
    // first request.
    const std::string& getSupportedExtensions() const { return m_SupportedExtensions; }

    // The names that failed in the last request, each followed by a blank. For inspection only.
    const std::string& getUnsupportedExtensions() const { return m_UnsupportedExtensions; }

private:
    void askForSupportedExtensions();

    std::string m_SupportedExtensions;
    std::string m_UnsupportedExtensions;
};

} // namespace tavo
