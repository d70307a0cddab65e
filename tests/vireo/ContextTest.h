#pragma once

#include <memory>

#include "tests/support/GLTest.h"
#include "vireo/context/GLContext.h"

namespace tavo {

// Gives each test an active GLContext around its main context.
class ContextTest : public GLTest
{
protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if (IsSkipped())
            return;
        m_Context = std::make_unique<GLContext>(getDC(), getRC(), nullptr, nullptr);
        m_Context->activate();
    }

    void TearDown() override
    {
        m_Context.reset();
        GLTest::TearDown();
    }

    GLContext* context() { return m_Context.get(); }

    // A root of its own for the main context, current, but in a tree that is not active.
    std::unique_ptr<GLContext> makeContext() { return std::make_unique<GLContext>(getDC(), getRC(), nullptr, nullptr); }

    // The context dies before the test ends.
    void destroyContext() { m_Context.reset(); }

private:
    std::unique_ptr<GLContext> m_Context;
};

} // namespace tavo
