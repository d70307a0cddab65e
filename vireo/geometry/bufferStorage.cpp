#include "vireo/geometry/bufferStorage.h"

#include "vireo/context/GLExtensions.h"

namespace tavo {

bool makeBufferStorage(unsigned int target, unsigned int buffer, unsigned int sizeInBytes, unsigned int usage)
{
    glBindBufferARB(target, buffer);
    glBufferDataARB(target, static_cast<GLsizeiptrARB>(sizeInBytes), nullptr, usage);
    if (glGetError() != GL_NO_ERROR)
        return false;
    glBindBufferARB(target, 0);
    return true;
}

} // namespace tavo
