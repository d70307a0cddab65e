#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "tests/support/Picture.h"
#include "tests/support/WindowSystem.h"

namespace tavo {

// Gives each test a current GL compatibility context with a 64x64 RGBA drawable, without Qt. VIREO_TEST_WINSYS=glx asks
// for a window of the X server, VIREO_TEST_WINSYS=egl (the default) for a pbuffer on a surfaceless display. Where there
// is none, the test is skipped, and says what is missing. A GL error that a test leaves pending fails it.
class GLTest : public testing::Test
{
protected:
    enum class Start
    {
        WITH_CONTEXT,
        WITHOUT_CONTEXT
    };

    // A fixture that starts without a context calls makeMainContext() itself, for example once it has set MESA_*
    // environment variables. Mesa reads those once, when the first context of the process is made.
    explicit GLTest(Start start = Start::WITH_CONTEXT);
    ~GLTest() override;

    void SetUp() override;
    void TearDown() override;

    // Makes the main context and makes it current. False if the test is skipped instead.
    [[nodiscard]] bool makeMainContext();

    // The main context; it is current when the test starts.
    TestContext& mainContext() { return *m_MainContext; }
    HDC getDC() const { return m_MainContext->getDC(); }
    HGLRC getRC() const { return m_MainContext->getRC(); }

    // Another context, with a drawable of its own, that shares GL names with the main one or with none. What is current
    // stays current. To be destroyed before the test ends.
    std::unique_ptr<TestContext> makeSharedContext() { return m_WindowSystem->makeContext(m_MainContext.get()); }
    std::unique_ptr<TestContext> makeUnsharedContext() { return m_WindowSystem->makeContext(nullptr); }

private:
    Start m_Start;
    std::unique_ptr<WindowSystem> m_WindowSystem;
    std::unique_ptr<TestContext> m_MainContext;
};

// Reads from the lower left corner of the current read buffer. Bindings and pixel storage stay as they are; recorders
// do not see the calls.
Picture readPixels(unsigned int width = WindowSystem::DRAWABLE_SIZE, unsigned int height = WindowSystem::DRAWABLE_SIZE);

// The errors that are pending in the current context, oldest first; afterwards none is. Unseen by recorders.
std::vector<unsigned int> drainErrors();

} // namespace tavo
