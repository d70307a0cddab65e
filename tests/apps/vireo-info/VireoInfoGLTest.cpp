#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gmock/gmock.h>

#include "tests/apps/vireo-info/VireoInfoTest.h"

namespace tavo {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using VireoInfoGLTest = VireoInfoTest;

TEST_F(VireoInfoGLTest, TellsOfEverySubject)
{
    const Outcome outcome = run();
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.errors, IsEmpty());
    for (const char* const section :
        {"System", "Ways to OpenGL", "Driver", "Programs", "Targets", "Targets of floats", "Limits", "Classes"})
        EXPECT_THAT(outcome.output, HasSubstr(std::string(section) + '\n'));
    for (const char* const subject : {"vireo", "system", "Qt", "context", "vendor", "renderer", "version",
             "compatibility profile", "ARB vertex programs", "ARB fragment programs", "Cg", "framebuffer objects",
             "colours with depths", "colours with stencil", "colours with depths and stencil apart", "2D texture",
             "target", "texture units", "GLTexture2D", "GLShaderARB for fragments", "GLImage", "SliceVolumeRenderer",
             "GLShaderCG for vertices", "scenes of libvireoshow"})
        EXPECT_NE(lineOn(subject, outcome.output), "") << subject;
}

TEST_F(VireoInfoGLTest, SaysWhatToDoInEveryLineThatSaysNo)
{
    std::istringstream lines(run().output);
    int numRefusals = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.find(" NO ") == std::string::npos)
            continue;
        ++numRefusals;
        EXPECT_THAT(line, HasSubstr(". To do: "));
    }
    EXPECT_GT(numRefusals, 0) << "no driver has everything";
}

TEST_F(VireoInfoGLTest, WritesTheSameAsJson)
{
    const std::string text = run().output;
    const Outcome outcome = run({"--json"});
    EXPECT_EQ(outcome.exitStatus, 0);
    QJsonParseError error;
    const QJsonObject report = QJsonDocument::fromJson(QByteArray::fromStdString(outcome.output), &error).object();
    ASSERT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    EXPECT_THAT(report["library"].toString().toStdString(), StartsWith("vireo "));
    EXPECT_TRUE(report["openGL"].toBool());
    const QJsonArray lines = report["lines"].toArray();
    EXPECT_GT(lines.size(), 40);
    for (const QJsonValue& value : lines) {
        const QJsonObject line = value.toObject();
        const std::string subject = line["subject"].toString().toStdString();
        const std::string shown = lineOn(subject, text);
        EXPECT_THAT(shown, HasSubstr(line["finding"].toString().toStdString())) << subject;
        EXPECT_THAT(shown, HasSubstr(line["advice"].toString().toStdString())) << subject;
        const QJsonValue works = line["works"];
        EXPECT_EQ(answerOn(subject, text), works.isNull() ? "" : works.toBool() ? "yes" : "NO") << subject;
    }
}

TEST_F(VireoInfoGLTest, AnswersHelpAndVersion)
{
    const Outcome help = run({"--help"});
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_THAT(help.output, StartsWith("Usage: "));
    EXPECT_THAT(help.output, HasSubstr("--json"));
    EXPECT_THAT(help.output, HasSubstr("The exit status is 0, or 1"));
    const Outcome version = run({"--version"});
    EXPECT_EQ(version.exitStatus, 0);
    EXPECT_THAT(version.output, StartsWith("vireo-info "));
}

TEST_F(VireoInfoGLTest, EndsWithStatus2IfTheCommandLineIsWrong)
{
    const Outcome option = run({"--jason"});
    EXPECT_EQ(option.exitStatus, 2);
    EXPECT_EQ(option.errors, "vireo-info: Unknown option 'jason'. (see vireo-info --help)\n");
    const Outcome file = run({"volume.nii"});
    EXPECT_EQ(file.exitStatus, 2);
    EXPECT_EQ(file.errors, "vireo-info: it takes no files (see vireo-info --help)\n");
}

} // namespace
} // namespace tavo
