#include "tests/tavo/platform/Drawing.h"

#include <array>

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

namespace tavo {

testing::AssertionResult drawsToSurface()
{
    // Another colour each time, so that nothing left over from an earlier call is taken for it.
    static thread_local unsigned char level = 0;
    level = static_cast<unsigned char>(level + 51);
    const float value = static_cast<float>(level) / 255;
    glClearColor(value, 1 - value, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);

    std::array<unsigned char, 4> pixel{};
    glReadPixels(1, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    if (const GLenum error = glGetError(); error != GL_NO_ERROR)
        return testing::AssertionFailure() << "GL error " << error;
    if (pixel[0] != level || pixel[1] != 255 - level || pixel[2] != 0)
        return testing::AssertionFailure() << "cleared to " << int(level) << ", read back " << int(pixel[0]) << ' '
                                           << int(pixel[1]) << ' ' << int(pixel[2]);
    return testing::AssertionSuccess();
}

testing::AssertionResult drawsToRenderbuffer()
{
    GLuint renderbuffer = 0;
    GLuint framebuffer = 0;
    glGenRenderbuffers(1, &renderbuffer);
    glBindRenderbuffer(GL_RENDERBUFFER, renderbuffer);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, 4, 4);
    glGenFramebuffers(1, &framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, renderbuffer);
    const auto drawn = drawsToSurface();
    glDeleteFramebuffers(1, &framebuffer);
    glDeleteRenderbuffers(1, &renderbuffer);
    return drawn;
}

} // namespace tavo
