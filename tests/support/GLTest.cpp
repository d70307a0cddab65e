#include "tests/support/GLTest.h"

#include "tests/support/CallFormats.h"
#include "tests/support/CallRecorder.h"

#include <GL/gl.h>

namespace tavo {

GLTest::GLTest(Start start)
    : m_Start(start)
{}

GLTest::~GLTest() = default;

void GLTest::SetUp()
{
    if (m_Start == Start::WITH_CONTEXT)
        (void)makeMainContext();
}

void GLTest::TearDown()
{
    if (!m_MainContext)
        return;
    m_MainContext->makeCurrent();
    for (const unsigned int error : drainErrors())
        ADD_FAILURE() << "unexpected GL error " << format::errorText(error);
    m_MainContext.reset();
    m_WindowSystem.reset();
}

bool GLTest::makeMainContext()
{
    std::string reason;
    m_WindowSystem = WindowSystem::open(reason);
    if (!m_WindowSystem) {
        [&reason] { GTEST_SKIP() << reason; }();
        return false;
    }
    m_MainContext = m_WindowSystem->makeContext(nullptr);
    m_MainContext->makeCurrent();
    return true;
}

Picture readPixels(unsigned int width, unsigned int height)
{
    const CallRecorder::Pause ownCalls;
    Picture picture(width, height);
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
    glPixelStorei(GL_PACK_SKIP_ROWS, 0);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
    glReadPixels(0, 0, static_cast<GLsizei>(width), static_cast<GLsizei>(height), GL_RGBA, GL_UNSIGNED_BYTE,
        picture.pixels.data());
    glPopClientAttrib();
    return picture;
}

std::vector<unsigned int> drainErrors()
{
    const CallRecorder::Pause ownCalls;
    std::vector<unsigned int> errors;
    // Without a current context glGetError may answer GL_INVALID_OPERATION for ever.
    constexpr std::size_t mostErrors = 16;
    while (errors.size() < mostErrors) {
        const GLenum error = glGetError();
        if (error == GL_NO_ERROR)
            break;
        errors.push_back(error);
    }
    return errors;
}

} // namespace tavo
