#include "vireo/show/scenes/DrawingFence.h"

#include "vireo/show/scenes/fetchEntryPoint.h"

namespace tavo {

namespace {

struct Fences
{
    PFNGLFENCESYNCPROC make = nullptr;
    PFNGLCLIENTWAITSYNCPROC wait = nullptr;
    PFNGLDELETESYNCPROC remove = nullptr;

    bool fetch()
    {
        return isExtensionSupported("GL_ARB_sync") && fetchEntryPoint(make, "glFenceSync") &&
               fetchEntryPoint(wait, "glClientWaitSync") && fetchEntryPoint(remove, "glDeleteSync");
    }
};

} // namespace

DrawingFence::DrawingFence()
{
    Fences fences;
    if (fences.fetch())
        m_Fence = fences.make(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    m_Fence ? glFlush() : glFinish();
}

DrawingFence::~DrawingFence()
{
    Fences fences;
    if (m_Fence && fences.fetch())
        fences.remove(static_cast<GLsync>(m_Fence));
}

void DrawingFence::wait() const
{
    constexpr GLuint64 LONGEST = 1'000'000'000; // in nanoseconds
    Fences fences;
    if (m_Fence && fences.fetch())
        fences.wait(static_cast<GLsync>(m_Fence), GL_SYNC_FLUSH_COMMANDS_BIT, LONGEST);
}

} // namespace tavo
