#include "apps/vireo-view/CommandLine.h"

#include <QRegularExpression>
#include <QStandardPaths>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "apps/vireo-view/qtArguments.h"

namespace vireo_view {
namespace {

Options optionsOf(const QStringList& arguments)
{
    return std::get<Options>(parseCommandLine(QStringList("vireo-view") + arguments));
}

std::string misuseOf(const QStringList& arguments)
{
    const auto answer = std::get<Answer>(parseCommandLine(QStringList("vireo-view") + arguments));
    EXPECT_EQ(answer.exitStatus, EXIT_STATUS_USAGE);
    return answer.text.toStdString();
}

std::string answerTo(const QStringList& arguments)
{
    const auto answer = std::get<Answer>(parseCommandLine(QStringList("vireo-view") + arguments));
    EXPECT_EQ(answer.exitStatus, 0);
    return answer.text.toStdString();
}

TEST(CommandLineTest, HasDefaults)
{
    const Options options = optionsOf({});
    EXPECT_TRUE(options.files.isEmpty());
    EXPECT_TRUE(options.picturesDirectory.isEmpty());
    EXPECT_EQ(options.load.columnsAs, ColumnsAs::AUTOMATIC);
    EXPECT_EQ(options.load.up, Axis::Y);
    EXPECT_FALSE(options.load.withCurves);
    EXPECT_FALSE(options.isFollowing);
    EXPECT_FALSE(options.areTogether);
    EXPECT_EQ(options.load.columns.x, "");
    EXPECT_THAT(options.load.columns.columns, testing::IsEmpty());
}

TEST(CommandLineTest, TakesHowColumnsAreShown)
{
    EXPECT_EQ(optionsOf({"--plot"}).load.columnsAs, ColumnsAs::PLOT);
    EXPECT_EQ(optionsOf({"--space"}).load.columnsAs, ColumnsAs::POINTS);
    EXPECT_EQ(optionsOf({"--path"}).load.columnsAs, ColumnsAs::PATH);
    EXPECT_TRUE(optionsOf({"--follow", "a.csv"}).isFollowing);
    EXPECT_TRUE(optionsOf({"--together", "a.ply"}).areTogether);
}

TEST(CommandLineTest, TakesWhatLiesOnSlices)
{
    EXPECT_FALSE(optionsOf({"head.nii"}).areSliced);
    EXPECT_TRUE(optionsOf({"--slices", "head.nii"}).areSliced);
    EXPECT_TRUE(optionsOf({"--slices", "head.tif"}).load.areVolumes);
    EXPECT_TRUE(optionsOf({"--volume", "head.tif"}).load.areVolumes);
    EXPECT_FALSE(optionsOf({"head.tif"}).load.areVolumes);
    const Options options = optionsOf({"head.nii", "--overlay", "warmth.nii", "--labels", "atlas.nii"});
    EXPECT_TRUE(options.areSliced);
    EXPECT_EQ(options.overlay, "warmth.nii");
    EXPECT_EQ(options.labels, "atlas.nii");
    EXPECT_THAT(misuseOf({"--slices"}), testing::HasSubstr("--slices, --overlay and --labels need a file"));
}

TEST(CommandLineTest, TakesColumnsTogetherAndOneByOne)
{
    EXPECT_THAT(
        optionsOf({"--columns", "p, T", "--columns", "3"}).load.columns.columns, testing::ElementsAre("p", "T", "3"));
}

TEST(CommandLineTest, TakesFilesAndOptionsInAnyOrder)
{
    const Options options =
        optionsOf({"a.ply", "--columns", "p,T", "--x", "t", "--up=z", "b.csv", "--curves", "--pictures", "out"});
    EXPECT_EQ(options.files, QStringList({"a.ply", "b.csv"}));
    EXPECT_THAT(options.load.columns.columns, testing::ElementsAre("p", "T"));
    EXPECT_EQ(options.load.columns.x, "t");
    EXPECT_EQ(options.load.up, Axis::Z);
    EXPECT_TRUE(options.load.withCurves);
    EXPECT_EQ(options.picturesDirectory, "out");
}

TEST(CommandLineTest, TakesWhatComesBehindTwoDashesForFiles)
{
    EXPECT_EQ(optionsOf({"--", "--up"}).files, QStringList("--up"));
}

TEST(CommandLineTest, LeavesQtsArgumentsToQt)
{
    EXPECT_EQ(
        withoutQtArguments({"vireo-view", "-platform", "offscreen", "a.ply", "--reverse", "-style=fusion", "-x", "2"}),
        QStringList({"vireo-view", "a.ply", "-x", "2"}));
    EXPECT_EQ(withoutQtArguments({"vireo-view", "--", "-platform", "a.ply"}),
        QStringList({"vireo-view", "--", "-platform", "a.ply"}));
    EXPECT_EQ(withoutQtArguments({"vireo-view", "-platform"}), QStringList("vireo-view")) << "whose value is missing";
}

TEST(CommandLineTest, LooksForExampleDataWhereToldElseWhereTheEnvironmentSaysElseInTheCache)
{
    qputenv("VIREO_VIEW_DATA", "/env");
    EXPECT_EQ(optionsOf({"--data", "/told"}).dataDirectory, "/told");
    EXPECT_EQ(optionsOf({}).dataDirectory, "/env");
    qunsetenv("VIREO_VIEW_DATA");
    qputenv("XDG_CACHE_HOME", "/cache");
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    EXPECT_EQ(optionsOf({}).dataDirectory, cache + "/vireo-view");
}

TEST(CommandLineTest, SaysInOneLineWhatIsWrong)
{
    EXPECT_EQ(misuseOf({"--plot", "--space"}),
        "vireo-view: --plot, --space and --path cannot go together (see vireo-view --help)\n");
    EXPECT_EQ(misuseOf({"a.csv", "--follow", "--pictures", "out"}),
        "vireo-view: --follow and --pictures cannot go together (see vireo-view --help)\n");
    EXPECT_EQ(misuseOf({"--raw", "2x2x2:int8"}), "vireo-view: --raw needs a file (see vireo-view --help)\n");
    EXPECT_EQ(misuseOf({"--follow"}), "vireo-view: --follow needs a file (see vireo-view --help)\n");
    EXPECT_EQ(misuseOf({"--up", "w"}), "vireo-view: --up is x, y or z, not 'w' (see vireo-view --help)\n");
    EXPECT_EQ(
        misuseOf({"--pictures="}), "vireo-view: --pictures needs the name of a directory (see vireo-view --help)\n");
    EXPECT_EQ(misuseOf({"--raw", "2x2:uint8"}),
        "vireo-view: --raw is a size and a type, such as 256x256x128:int16, not "
        "'2x2:uint8' (see vireo-view --help)\n");
    EXPECT_EQ(misuseOf({"--wrong"}), "vireo-view: Unknown option 'wrong'. (see vireo-view --help)\n");
}

TEST(CommandLineTest, AnswersHelpAndVersion)
{
    for (const auto* option : {"--help", "-h"})
        EXPECT_THAT(answerTo({option, "a.ply"}), testing::StartsWith("Usage: vireo-view [options] [FILE...]\n"));
    const QRegularExpression version(R"(\Avireo-view \d+\.\d+\.\d+\n\z)");
    for (const auto* option : {"--version", "-v"})
        EXPECT_TRUE(version.match(QString::fromStdString(answerTo({option}))).hasMatch()) << answerTo({option});
}

} // namespace
} // namespace vireo_view
