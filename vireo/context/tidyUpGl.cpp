#include "vireo/context/tidyUpGl.h"

#include "vireo/context/GLExtensions.h"

namespace tavo {

namespace {

// Pops what was left on a stack of the current context.
template <typename Pop>
void popDownTo(int wanted, GLenum depthName, Pop pop)
{
    GLint depth = wanted;
    glGetIntegerv(depthName, &depth);
    for (; depth > wanted; --depth)
        pop();
}

} // namespace

void tidyUpGl()
{
    constexpr int MOST_ERRORS = 16;

    glEnd();
    glEndList();
    for (int i = 0; i < MOST_ERRORS && glGetError() != GL_NO_ERROR; ++i) {
    }

    popDownTo(0, GL_ATTRIB_STACK_DEPTH, glPopAttrib);
    popDownTo(0, GL_CLIENT_ATTRIB_STACK_DEPTH, glPopClientAttrib);
    glMatrixMode(GL_TEXTURE);
    popDownTo(1, GL_TEXTURE_STACK_DEPTH, glPopMatrix);
    glMatrixMode(GL_PROJECTION);
    popDownTo(1, GL_PROJECTION_STACK_DEPTH, glPopMatrix);
    glMatrixMode(GL_MODELVIEW);
    popDownTo(1, GL_MODELVIEW_STACK_DEPTH, glPopMatrix);

    if (isExtensionSupported("GL_EXT_framebuffer_object"))
        glBindFramebufferEXT(GL_FRAMEBUFFER_EXT, 0);
}

} // namespace tavo
