#include <gmock/gmock.h>
#include <ostream>
#include <sstream>

#include "tests/apps/vireo-view/VireoViewTest.h"

namespace vireo_view {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// A display, or a driver, that a program can meet, and what it has to say of it.
struct PoorDisplay
{
    const char* name;
    std::vector<std::pair<const char*, const char*>> variables; // to be unset, without a value
    const char* line;
};

void PrintTo(const PoorDisplay& display, std::ostream* stream)
{
    *stream << display.name;
}

class PoorDisplaysGLTest : public VireoViewTest
{
protected:
    PoorDisplaysGLTest() { write("c.csv", "x,y,z\n1,2,0\n2,3,0\n"); }

    void set(const PoorDisplay& display)
    {
        for (const auto& [name, value] : display.variables) {
            if (value)
                m_Environment.insert(name, value);
            else
                m_Environment.remove(name);
        }
    }

    // What the program itself has written: Qt and the driver have their own words.
    static std::vector<std::string> ownLines(const std::string& errors)
    {
        std::vector<std::string> own;
        std::istringstream lines(errors);
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with("vireo-view: "))
                own.push_back(line);
        return own;
    }
};

class WithoutPicturesGLTest : public PoorDisplaysGLTest, public testing::WithParamInterface<PoorDisplay>
{};

#define WITHOUT_CONTEXT                                                                                                \
    "c.csv - curve, x (1 to 2) y (2 to 3) z (0 to 0): GLEventDisplayerWidget::paintGL() - the view has no GL "         \
    "context: "

const PoorDisplay POOR_DISPLAYS[] = {
    {"NoDisplay", {{"DISPLAY", nullptr}, {"QT_QPA_PLATFORM", "xcb"}}, "Qt cannot start: could not connect to display"},
    {"NoAnswer", {{"DISPLAY", ":47110"}, {"QT_QPA_PLATFORM", "xcb"}},
        "Qt cannot start: could not connect to display :47110"},
    {"NoSuchPlatform", {{"QT_QPA_PLATFORM", "nonsense"}},
        "Qt cannot start: Could not find the Qt platform plugin \"nonsense\" in \"\""},
    {"NoDriver", {{"LIBGL_DRIVERS_PATH", "/nonexistent"}}, WITHOUT_CONTEXT "the OpenGL driver makes none"},
};

INSTANTIATE_TEST_SUITE_P(Displays, WithoutPicturesGLTest, testing::ValuesIn(POOR_DISPLAYS),
    [](const auto& display) { return display.param.name; });

TEST_P(WithoutPicturesGLTest, SaysWhyInOneLineAndEndsWithStatus1)
{
    set(GetParam());
    const tavo::Outcome outcome = run({"c.csv", "--path", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(ownLines(outcome.errors), ElementsAre(std::string("vireo-view: ") + GetParam().line));
    EXPECT_THAT(pictures(), IsEmpty());
}

class WithPicturesGLTest : public PoorDisplaysGLTest, public testing::WithParamInterface<PoorDisplay>
{};

const PoorDisplay WITHOUT_GL_WINDOWS[] = {
    {"NoDisplay", {{"DISPLAY", nullptr}, {"QT_QPA_PLATFORM", nullptr}}, ""},
    {"Offscreen", {{"QT_QPA_PLATFORM", "offscreen"}, {"DISPLAY", nullptr}}, ""},
    {"Minimal", {{"QT_QPA_PLATFORM", "minimal"}}, ""},
    {"NoIntegration", {{"QT_XCB_GL_INTEGRATION", "none"}}, ""},
    {"Indirect", {{"LIBGL_ALWAYS_INDIRECT", "1"}}, ""},
};

INSTANTIATE_TEST_SUITE_P(Displays, WithPicturesGLTest, testing::ValuesIn(WITHOUT_GL_WINDOWS),
    [](const auto& display) { return display.param.name; });

TEST_P(WithPicturesGLTest, SavesTheSameAsWithAWindow)
{
    ASSERT_EQ(run({"c.csv", "--path", "--pictures", "usual"}).exitStatus, 0);
    set(GetParam());
    const tavo::Outcome outcome = run({"c.csv", "--path", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
    EXPECT_THAT(ownLines(outcome.errors), IsEmpty());
    ASSERT_EQ(pictures().size(), 1u);
    const QImage usual((directory() / "usual" / pictures()[0]).c_str());
    const QImage saved = picture(pictures()[0].c_str());
    if (saved.size() == usual.size())
        EXPECT_EQ(saved, usual);
    else // a window without a screen has another size
        EXPECT_STREQ(GetParam().name, "Minimal");
}

// Without Qt's words about what failed first.
TEST_F(PoorDisplaysGLTest, SaysNothingElseWithoutADisplay)
{
    set(POOR_DISPLAYS[0]);
    const std::string line = "vireo-view: Qt cannot start: could not connect to display\n";
    EXPECT_EQ(run({"c.csv", "--path", "--pictures", "pictures"}).errors, line);
    EXPECT_EQ(run({"c.csv"}).errors, line) << "where a window is asked for, too";
}

TEST_F(PoorDisplaysGLTest, SaysMistakesOfTheCommandLineWithoutADisplay)
{
    set(POOR_DISPLAYS[0]);
    const tavo::Outcome unknown = run({"c.csv", "--nonsense"});
    EXPECT_EQ(unknown.errors, "vireo-view: Unknown option 'nonsense'. (see vireo-view --help)\n");
    EXPECT_EQ(unknown.exitStatus, 2);
    const tavo::Outcome missing = run({"-style", "fusion", "missing.ply"});
    EXPECT_EQ(missing.errors, "vireo-view: missing.ply: no such file\n");
    EXPECT_EQ(missing.exitStatus, 1);
}

TEST_F(PoorDisplaysGLTest, PassesOnWhatQtSaysIfItStarts)
{
    m_Environment.insert("QT_LOGGING_RULES", "qt.qpa.screen.debug=true");
    const tavo::Outcome outcome = run({"c.csv", "--path", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.errors, HasSubstr("screen"));
}

TEST_F(PoorDisplaysGLTest, SaysThatThereIsNoContextInTooLittleAddressSpace)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer takes far more";
#endif
    const std::string command = "ulimit -v 300000; exec '" VIREO_VIEW "' c.csv --path --pictures pictures";
    const tavo::Outcome outcome =
        tavo::runProgram("sh", {"-c", command.c_str()}, QString::fromStdString(directory().string()), m_Environment);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(ownLines(outcome.errors), ElementsAre(HasSubstr("the view has no GL context")));
}

TEST_F(PoorDisplaysGLTest, SavesTheSamePictureWithoutTexturesOfAnySize)
{
    ASSERT_EQ(run({"c.csv", "--path", "--pictures", "pictures"}).exitStatus, 0);
    ASSERT_EQ(pictures().size(), 1u);
    const QImage usual = picture(pictures()[0].c_str());
    m_Environment.insert("MESA_EXTENSION_OVERRIDE", "-GL_ARB_texture_non_power_of_two");
    const tavo::Outcome outcome = run({"c.csv", "--path", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(ownLines(outcome.errors), IsEmpty());
    EXPECT_EQ(picture(pictures()[0].c_str()), usual);
}

} // namespace
} // namespace vireo_view
