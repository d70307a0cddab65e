#include "tests/support/extensions.h"

#include <string>

#include "tests/support/CallRecorder.h"

#include <GL/gl.h>

namespace tavo {

bool hasExtension(const char* name)
{
    const CallRecorder::Pause ownCalls;
    const auto* const extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    return extensions && (' ' + std::string(extensions) + ' ').find(' ' + std::string(name) + ' ') != std::string::npos;
}

} // namespace tavo
