// What VIREO_LEAKS does to a program.
#include <QCoreApplication>
#include <gmock/gmock.h>

#include "tests/support/Program.h"

namespace tavo {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class LeaksOfProgramsTest : public testing::Test
{
protected:
    std::string reportWith(const char* value)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("VIREO_LEAKS");
        if (value)
            environment.insert("VIREO_LEAKS", value);
        const Outcome outcome = runProgram(VIREO_LEAKING_PROGRAM, {}, ".", environment);
        m_HasDriver = outcome.exitStatus != 77;
        return outcome.errors;
    }

    bool m_HasDriver = false;

private:
    char m_Name[5] = "test";
    char* m_Arguments[2] = {m_Name, nullptr};
    int m_NumArguments = 1;
    QCoreApplication m_Application{m_NumArguments, m_Arguments};
};

TEST_F(LeaksOfProgramsTest, SaysNothingByDefault)
{
    EXPECT_THAT(reportWith(nullptr), IsEmpty());
    EXPECT_THAT(reportWith("off"), IsEmpty());
}

TEST_F(LeaksOfProgramsTest, SaysThatAValueMeansNothing)
{
    EXPECT_EQ(reportWith("banana"),
        "warning: VIREO_LEAKS is \"banana\", which means nothing: it may be \"on\", \"stacks\" or \"off\".\n");
}

TEST_F(LeaksOfProgramsTest, ReportsAtTheDeathOfARootAndAtShutdown)
{
    const std::string report = reportWith("on");
    if (!m_HasDriver)
        GTEST_SKIP() << "EGL makes no context here";
    EXPECT_EQ(report, "LeakReport: the tree of context 2 ends\n"
                      "  names that were never deleted:\n"
                      "    1 renderbuffer of GLRenderTextureFBO, 256 bytes\n"
                      "  objects that still live, which is legal:\n"
                      "    1 object of GLTexture2D, 64 bytes\n"
                      "LeakReport: the library is shut down\n"
                      "  objects that still live, which is legal:\n"
                      "    1 object of GLTexture2D, 0 bytes\n");
}

TEST_F(LeaksOfProgramsTest, NamesTheCallsOfEach)
{
    const std::string report = reportWith("stacks");
    if (!m_HasDriver)
        GTEST_SKIP() << "EGL makes no context here";
    const std::size_t texture = report.find("1 object of GLTexture2D");
    ASSERT_NE(texture, std::string::npos);
    EXPECT_THAT(report.substr(texture), HasSubstr("leakATexture"));
    EXPECT_THAT(report.substr(0, texture), HasSubstr("tavo::GLRenderTextureFBO::create(")) << "the renderbuffer";
    EXPECT_THAT(report, Not(HasSubstr("NameAccounts")));
}

} // namespace
} // namespace tavo
