#include <QOffscreenSurface>
#include <QWindow>
#include <gmock/gmock.h>
#include <optional>
#include <stdexcept>

#include "tests/support/CallRecorder.h"
#include "tests/vireo/CurrentState.h"
#include "vireo/context/CurrentContextGuard.h"

namespace tavo {
namespace {

using testing::Each;
using testing::StartsWith;

class CurrentContextGuardGLTest : public testing::Test
{
protected:
    ~CurrentContextGuardGLTest() override { m_Application.make(Made::NOTHING); }

    Application m_Application;
};

TEST_F(CurrentContextGuardGLTest, RestoresWhateverWasCurrentWhateverHasBecomeSo)
{
    for (const Made before : ALL_MADE) {
        for (const Made within : ALL_MADE) {
            SCOPED_TRACE(testing::PrintToString(before) + ", then " + testing::PrintToString(within));
            m_Application.make(before);
            const CurrentState state;
            {
                const CurrentContextGuard guard;
                m_Application.make(within);
            }
            EXPECT_EQ(CurrentState(), state);
        }
    }
}

TEST_F(CurrentContextGuardGLTest, RestoresASurfaceThatIsNoWindow)
{
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext context;
    ASSERT_TRUE(context.create());
    ASSERT_TRUE(context.makeCurrent(&surface));
    const CurrentState state;
    {
        const CurrentContextGuard guard;
        m_Application.make(Made::OWN);
    }
    EXPECT_EQ(CurrentState(), state);
}

TEST_F(CurrentContextGuardGLTest, RestoresTheDrawableOfAContextThatHasStayed)
{
    m_Application.make(Made::QT);
    const CurrentState state;
    QGLWidget other;
    {
        const CurrentContextGuard guard;
        QOpenGLContext::currentContext()->makeCurrent(other.windowHandle());
        ASSERT_NE(CurrentState(), state);
    }
    EXPECT_EQ(CurrentState(), state);
}

TEST_F(CurrentContextGuardGLTest, RestoresAfterAnException)
{
    m_Application.make(Made::OWN);
    const CurrentState state;
    const auto fail = [&] {
        const CurrentContextGuard guard;
        m_Application.make(Made::QT);
        throw std::runtime_error("while Qt's context is current");
    };
    EXPECT_THROW(fail(), std::runtime_error);
    EXPECT_EQ(CurrentState(), state);
}

TEST_F(CurrentContextGuardGLTest, OnlyAsksWhereNothingHasChanged)
{
    for (const Made made : ALL_MADE) {
        SCOPED_TRACE(testing::PrintToString(made));
        m_Application.make(made);
        EXPECT_THAT(callsOf([] { const CurrentContextGuard guard; }), Each(StartsWith("wglGetCurrent")));
    }
}

TEST_F(CurrentContextGuardGLTest, LeavesNothingCurrentOfWhatHasDied)
{
    m_Application.make(Made::QT);
    {
        const CurrentContextGuard guard;
        m_Application.make(Made::OWN);
        m_Application.deleteWidget();
        m_Application.context().makeCurrent();
    }
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(QOpenGLContext::currentContext(), nullptr);

    QGLWidget widget;
    m_Application.context().makeCurrent();
    {
        const CurrentContextGuard guard;
        m_Application.deleteContext();
        widget.makeCurrent();
    }
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_EQ(QOpenGLContext::currentContext(), nullptr);
}

} // namespace
} // namespace tavo
