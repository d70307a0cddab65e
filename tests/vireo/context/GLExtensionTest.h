#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/CallRecorder.h"
#include "tests/support/GLTest.h"
#include "tests/support/driverVariable.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"

namespace tavo {

// The recorded calls that fetch these entry points.
inline std::vector<std::string> fetches(const std::vector<std::string>& entryPoints)
{
    std::vector<std::string> calls;
    calls.reserve(entryPoints.size());
    for (const std::string& entryPoint : entryPoints)
        calls.push_back("wglGetProcAddress(\"" + entryPoint + "\")");
    return calls;
}

// Starts each test with no entry point fetched, and without a context, so that the test can choose the driver's version
// and extensions. Only Mesa's drivers give that choice, and only once in a process; elsewhere the test is skipped.
class GLExtensionTest : public GLTest
{
protected:
    GLExtensionTest()
        : GLTest(Start::WITHOUT_CONTEXT)
    {
        glExtensionsInitialized = false;
#define VIREO_GL_ENTRY_POINT(name, ...) name = nullptr;
#define VIREO_GL_FRAMEBUFFER_ENTRY_POINT VIREO_GL_ENTRY_POINT
#include "vireo/context/GLEntryPoints.inc"
    }

    // Makes the main context on a driver with changed extensions: "+NAME" is listed, known to the driver or not, and
    // "-NAME" is hidden. False if the test is skipped instead.
    [[nodiscard]] bool makeMainContextWithExtensions(const char* changes)
    {
        setDriverVariable(extensionOverride, changes);
        if (!makeMainContext())
            return false;
        const std::string extensions = getDriverString(GL_EXTENSIONS) + ' ';
        std::istringstream words(changes);
        for (std::string change; words >> change;) {
            const bool listed = (' ' + extensions).find(' ' + change.substr(1) + ' ') != extensions.npos;
            if (listed != (change.front() == '+'))
                return skip(extensionOverride);
        }
        return true;
    }

    // The same for a driver whose GL_VERSION begins as given.
    [[nodiscard]] bool makeMainContextOfVersion(const char* version)
    {
        setDriverVariable(versionOverride, version);
        return makeMainContext() && (getDriverString(GL_VERSION).starts_with(version) || skip(versionOverride));
    }

    // Unseen by recorders.
    static std::string getDriverString(GLenum name)
    {
        const CallRecorder::Pause ownCalls;
        return reinterpret_cast<const char*>(glGetString(name));
    }

private:
    static constexpr const char* extensionOverride = "MESA_EXTENSION_OVERRIDE";
    static constexpr const char* versionOverride = "MESA_GL_VERSION_OVERRIDE";

    static bool skip(const char* variable)
    {
        [variable] { GTEST_SKIP() << variable << " has no effect on this driver, or none any more in this process"; }();
        return false;
    }
};

// The same with a GLContext around the main context.
class GLExtensionContextTest : public GLExtensionTest
{
protected:
    // False if the test is skipped instead.
    [[nodiscard]] bool wrapContextWithExtensions(const char* changes)
    {
        if (!makeMainContextWithExtensions(changes))
            return false;
        wrapContext();
        return true;
    }

    void wrapContext()
    {
        m_Context = std::make_unique<GLContext>(getDC(), getRC(), nullptr, nullptr);
        initGLExtensions(); // which only the first root of a process does by itself
    }

    void TearDown() override
    {
        m_Context.reset();
        GLTest::TearDown();
    }

    GLContext* context() { return m_Context.get(); }

private:
    std::unique_ptr<GLContext> m_Context;
};

} // namespace tavo
