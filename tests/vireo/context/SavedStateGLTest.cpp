#include <gmock/gmock.h>
#include <stdexcept>

#include "tests/support/CallRecorder.h"
#include "tests/support/GLTest.h"
#include "vireo/context/SavedState.h"

namespace tavo {
namespace {

using testing::ElementsAre;

class SavedStateGLTest : public GLTest
{};

TEST_F(SavedStateGLTest, PutsAttributesBack)
{
    EXPECT_THAT(
        callsOf([] { const SavedAttributes all; }), ElementsAre("glPushAttrib(GL_ALL_ATTRIB_BITS)", "glPopAttrib()"));
    glLineWidth(3);
    {
        const SavedAttributes attributes(GL_LINE_BIT);
        glLineWidth(5);
    }
    GLfloat width = 0;
    glGetFloatv(GL_LINE_WIDTH, &width);
    EXPECT_EQ(width, 3);
}

TEST_F(SavedStateGLTest, PutsClientAttributesBack)
{
    glPixelStorei(GL_UNPACK_ALIGNMENT, 2);
    {
        const SavedClientAttributes storage(GL_CLIENT_PIXEL_STORE_BIT);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 8);
    }
    GLint alignment = 0;
    glGetIntegerv(GL_UNPACK_ALIGNMENT, &alignment);
    EXPECT_EQ(alignment, 2);
}

TEST_F(SavedStateGLTest, PutsTheMatrixOfItsModeBackWhateverModeIsSelected)
{
    EXPECT_THAT(callsOf([] {
        const SavedMatrix matrix(GL_PROJECTION);
        glMatrixMode(GL_MODELVIEW);
    }),
        ElementsAre("glMatrixMode(GL_PROJECTION)", "glPushMatrix()", "glMatrixMode(GL_MODELVIEW)",
            "glMatrixMode(GL_PROJECTION)", "glPopMatrix()"));
}

TEST_F(SavedStateGLTest, EndsAPrimitiveAndPutsBackAfterAnException)
{
    const auto fail = [] {
        const SavedAttributes attributes(GL_LINE_BIT);
        const Primitive lines(GL_LINES);
        throw std::runtime_error("in the middle");
    };
    EXPECT_THAT(callsOf([&] { EXPECT_THROW(fail(), std::runtime_error); }),
        ElementsAre("glPushAttrib(GL_LINE_BIT)", "glBegin(GL_LINES)", "glEnd()", "glPopAttrib()"));
}

} // namespace
} // namespace tavo
