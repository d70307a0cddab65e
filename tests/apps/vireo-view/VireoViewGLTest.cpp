#include <QDeadlineTimer>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <algorithm>
#include <gmock/gmock.h>
#include <limits>
#include <utility>

#include "tests/apps/vireo-view/NiftiFile.h"
#include "tests/apps/vireo-view/VireoViewTest.h"
#include "tests/support/fullDevice.h"

namespace vireo_view {
namespace {

using tavo::Outcome;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

using VireoViewGLTest = VireoViewTest;

// The smallest rectangle with everything that has not the colour of the first pixel.
QRect drawnArea(const QImage& picture)
{
    QRect area;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixel(x, y) != picture.pixel(0, 0))
                area |= QRect(x, y, 1, 1);
    return area;
}

QRect areaOf(QRgb colour, const QImage& picture)
{
    QRect area;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixel(x, y) == colour)
                area |= QRect(x, y, 1, 1);
    return area;
}

TEST_F(VireoViewGLTest, AnswersHelpAndVersionWithoutADisplay)
{
    m_Environment.remove("DISPLAY");
    const Outcome help = run({"--help"});
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_THAT(help.output, StartsWith("Usage: "));
    EXPECT_THAT(help.errors, IsEmpty());
    const Outcome version = run({"--version"});
    EXPECT_EQ(version.exitStatus, 0);
    EXPECT_THAT(version.output, StartsWith("vireo-view "));
}

TEST_F(VireoViewGLTest, EndsWithStatus2IfTheCommandLineIsWrong)
{
    const Outcome outcome = run({"--up", "w"});
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_EQ(outcome.errors, "vireo-view: --up is x, y or z, not 'w' (see vireo-view --help)\n");
}

TEST_F(VireoViewGLTest, SavesAPictureOfEverySectionThatShowsAllOfIt)
{
    write("cloud.xyz", "5e8 0 0\n5e8 1000 0\n500002000 0 0\n500002000 1000 0\n");
    write("curve.txt", "0 0 0\n1 1 1\n2 0 2\n");
    const Outcome outcome = run({"cloud.xyz", "curve.txt", "--path", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.errors, IsEmpty());
    ASSERT_THAT(pictures(), ElementsAre("01-cloud.xyz.png", "02-curve.txt-curve-x-y-z.png"));
    for (const std::string& name : pictures()) {
        const QImage shown = picture(name.c_str());
        const QRect area = drawnArea(shown);
        EXPECT_GT(area.width(), shown.height() / 4) << name;
        EXPECT_TRUE(shown.rect().adjusted(1, 1, -1, -1).contains(area)) << name;
    }
}

TEST_F(VireoViewGLTest, ShowsFilesApartOrTogether)
{
    write("a.ply", "ply\nformat ascii 1.0\nelement vertex 3\nproperty double x\nproperty double y\nproperty double z\n"
                   "element face 1\nproperty list uchar int vertex_indices\nend_header\n"
                   "5500000.125 0 0\n5500001.125 0 0\n5500000.125 1 0\n3 0 1 2\n");
    write("b.xyz", "5500000.125 2 0\n5500001.125 3 0\n");
    write("c.csv", "1\n2\n");
    EXPECT_EQ(run({"a.ply", "b.xyz", "--pictures", "pictures"}).errors, "");
    EXPECT_THAT(pictures(), ElementsAre("01-a.ply.png", "02-b.xyz.png"));
    const Outcome outcome = run({"a.ply", "c.csv", "b.xyz", "--together", "--pictures", "pictures"});
    EXPECT_EQ(outcome.errors, "");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(pictures(), ElementsAre("01-a.ply.png", "01-together.png", "02-b.xyz.png", "02-c.csv.png"));
    const QRgb surface = picture("01-a.ply.png").pixel(500, 450);
    EXPECT_NE(surface, picture("01-a.ply.png").pixel(0, 0));
    const int height = areaOf(surface, picture("01-a.ply.png")).height();
    EXPECT_GT(height, picture("01-a.ply.png").height() / 2);
    EXPECT_LT(areaOf(surface, picture("01-together.png")).height(), height / 2) << "the points are above it";
}

TEST_F(VireoViewGLTest, SaysWhatOfAFileIsLeftOut)
{
    write("a.off", "OFF\n3 2 0\n0 0 0\n1 0 0\n0 1 0\n3 0 1 2 255 0 0\n3 0 1 7\n");
    const Outcome outcome = run({"a.off", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, "vireo-view: a.off: left out: 1 face of points that are not there, or of fewer than "
                              "three and colours of the faces, which not every face has\n");
}

// The pixels that are as blue as the first curve of a plot.
int numBluePixels(const QImage& picture)
{
    int number = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const QColor pixel = picture.pixelColor(x, y);
            number += pixel.blue() > 120 && pixel.red() < 80;
        }
    return number;
}

TEST_F(VireoViewGLTest, SavesPicturesOfPlotsInTheOrderOfTheFiles)
{
    write("a.csv", "t [s],p [Pa]\n0,1e-12\n1,3e-12\n2,2e-12\n");
    write("cloud.xyz", "0 0 0\n1 1 1\n");
    write("b.dat", "0,5\t1\n2,5\t3\n");
    m_Environment.insert("VIREO_SHOW", "off");
    const Outcome outcome = run({"a.csv", "cloud.xyz", "b.dat", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.errors, IsEmpty());
    ASSERT_THAT(pictures(), ElementsAre("01-a.csv.png", "02-cloud.xyz.png", "03-b.dat.png"));
    EXPECT_GT(numBluePixels(picture("01-a.csv.png")), 300);
    EXPECT_GT(numBluePixels(picture("03-b.dat.png")), 300);
}

TEST_F(VireoViewGLTest, SavesPicturesOfPlotsWithoutADisplay)
{
    write("a.csv", "t,p,s\n0,1,x\n1,3,y\n");
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        m_Environment.remove(variable);
    const Outcome outcome = run({"a.csv", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, "vireo-view: a.csv: column 3 's' is text and left out ('x' in line 2)\n");
    ASSERT_THAT(pictures(), ElementsAre("01-a.csv.png"));
    EXPECT_GT(numBluePixels(picture("01-a.csv.png")), 300);
}

TEST_F(VireoViewGLTest, ShowsPointsAsAPlotAndColumnsInSpaceIfToldSo)
{
    write("a.xyz", "0 1 2\n1 3 4\n2 2 3\n");
    write("b.csv", "x,y,z\n0,0,0\n1,1,1\n2,0,1\n");
    const auto show = [this](const QStringList& options) {
        EXPECT_EQ(run(QStringList{"a.xyz", "b.csv", "--pictures", "pictures"} + options).errors, "");
        return std::pair(picture("01-a.xyz.png"), picture("02-b.csv.png"));
    };
    const auto [cloud, columns] = show({});
    const auto [cloudAsPlot, columnsAsPlot] = show({"--plot"});
    const auto [cloudInSpace, columnsInSpace] = show({"--space"});
    EXPECT_GT(numBluePixels(cloudAsPlot), 300);
    EXPECT_NE(cloudAsPlot, cloud);
    EXPECT_EQ(columnsAsPlot, columns);
    EXPECT_EQ(cloudInSpace, cloud);
    EXPECT_NE(columnsInSpace, columns);
}

TEST_F(VireoViewGLTest, EndsWithStatus2IfAFileHasNoSuchColumn)
{
    write("a.csv", "t,p\n0,1\n1,3\n");
    const Outcome outcome = run({"a.csv", "--x", "nosuch"});
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_EQ(outcome.errors, "vireo-view: a.csv: has no column 'nosuch'; its columns are t, p\n");
    EXPECT_EQ(run({"a.csv", "--columns", "p,q", "--pictures", "pictures"}).exitStatus, 2);
    EXPECT_EQ(run({"a.csv", "--x", "nosuch", "--follow"}).exitStatus, 2);
}

// The program while it shows a window.
class FollowingGLTest : public VireoViewTest
{
protected:
    void start(const QStringList& arguments)
    {
        m_Environment.insert("VIREO_SHOW", "fresh");
        m_Process.setProcessEnvironment(m_Environment);
        m_Process.setWorkingDirectory(QString::fromStdString(directory().string()));
        m_Process.start(VIREO_VIEW, arguments);
    }

    // Until the program has said that.
    void waitFor(const char* text)
    {
        constexpr int LONGEST_MILLISECONDS = 30'000;
        const QDeadlineTimer deadline(LONGEST_MILLISECONDS);
        while (!m_Said.contains(text) && !deadline.hasExpired() && m_Process.state() != QProcess::NotRunning) {
            m_Process.waitForReadyRead(100);
            m_Said += m_Process.readAllStandardError();
            m_Said.replace("\r\n", "\n"); // as lines end on Windows
        }
        EXPECT_TRUE(m_Said.contains(text)) << m_Said.toStdString();
        m_Said.remove(0, m_Said.indexOf(text) + static_cast<int>(qstrlen(text)));
    }

    void TearDown() override
    {
        m_Process.kill();
        m_Process.waitForFinished();
        VireoViewTest::TearDown();
    }

    QProcess m_Process;

private:
    QByteArray m_Said;
};

TEST_F(FollowingGLTest, GoesOnWhateverBecomesOfTheFile)
{
    start({"a.csv", "--follow"});
    waitFor("vireo-view: a.csv: is not there; waiting for it\n");
    write("a.csv", "t,s,p\n0,x,1\n");
    waitFor("vireo-view: a.csv: is there\n");
    waitFor("vireo-view: a.csv: column 2 's' is text and left out ('x' in line 2)\n");
    write("a.csv", "t,p\n");
    waitFor("vireo-view: a.csv: was cut or replaced, and is shown anew\n");
    std::filesystem::remove(directory() / "a.csv");
    waitFor("vireo-view: a.csv: is not there; waiting for it\n");
    EXPECT_EQ(m_Process.state(), QProcess::Running);
}

TEST_F(FollowingGLTest, ShowsWhatIsAddedToTheFile)
{
    constexpr int LONGEST_MILLISECONDS = 30'000;
    // A window that opens may have other blue at first, such as what has the focus.
    const auto waitForPixels = [this](int least, int most) {
        const QDeadlineTimer deadline(LONGEST_MILLISECONDS);
        int number = 0;
        while (
            (number < least || number > most) && !deadline.hasExpired() && m_Process.state() != QProcess::NotRunning) {
            m_Process.waitForReadyRead(100);
            number = numBluePixels(QGuiApplication::primaryScreen()->grabWindow(0).toImage());
        }
        EXPECT_GE(number, least);
        EXPECT_LE(number, most);
        return number;
    };
    write("a.csv", "t,p\n0,1\n");
    start({"a.csv", "--follow"});
    const int ofTheMark = waitForPixels(5, 100);
    std::ofstream(directory() / "a.csv", std::ios::app) << "1,3\n2,2\n3,5\n";
    waitForPixels(ofTheMark + 300, 100'000);
}

// The smallest rectangle with everything that has a colour.
QRect coloured(const QImage& picture)
{
    QRect area;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.pixelColor(x, y).hsvSaturation() > 60)
                area |= QRect(x, y, 1, 1);
    return area;
}

TEST_F(VireoViewGLTest, SavesAPictureOfAVolumeThatShowsAllOfIt)
{
    const NiftiFile file({10, 20, 30}, NIFTI_TYPE_UINT8, std::string(5999, '\x7F') + '\0');
    writeCompressed(directory() / "head.nii.gz", file.getBytes());
    const Outcome outcome = run({"head.nii.gz", "--curves", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.errors, IsEmpty());
    ASSERT_THAT(
        pictures(), ElementsAre("01-head.nii.gz-10-x-20-x-30-voxels.png", "02-head.nii.gz-voxels-per-density.png"));
    const QImage shown = picture(pictures()[0].c_str());
    const QRect area = coloured(shown.copy(0, 0, 3 * shown.width() / 4, shown.height())); // beside the bar of colours
    EXPECT_GT(area.height(), shown.height() / 3);
    EXPECT_NEAR(area.width() * 3, area.height(), 50) << "seen from the front, with Z upwards";
}

TEST_F(VireoViewGLTest, SavesAPictureOfAVolumeWithoutADisplay)
{
    write("a.nii", NiftiFile({10, 20, 30}, NIFTI_TYPE_UINT8, std::string(5999, '\x7F') + '\0').getBytes());
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        m_Environment.remove(variable);
    const Outcome outcome = run({"a.nii", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.errors, IsEmpty());
    ASSERT_THAT(pictures(), ElementsAre("01-a.nii-10-x-20-x-30-voxels.png"));
    EXPECT_FALSE(coloured(picture(pictures()[0].c_str())).isEmpty());
}

TEST_F(VireoViewGLTest, ShowsTheExamplesAndThenTheCurvesOfBoth)
{
    const NiftiFile file({2, 1, 1}, NIFTI_TYPE_UINT8, {0, 1});
    writeCompressed(directory() / "ch2.nii.gz", file.getBytes());
    write("building.ply", "ply\nformat ascii 1.0\nelement vertex 2\nproperty float x\nproperty float y\n"
                          "property float z\nend_header\n0 0 0\n1 1 1\n");
    EXPECT_EQ(run({"--data", ".", "--pictures", "pictures"}).errors, "");
    EXPECT_THAT(pictures(), ElementsAre("01-ch2.nii.gz-in-slices.png", "02-ch2.nii.gz-2-x-1-x-1-voxels.png",
                                "03-building.ply.png", "04-ch2.nii.gz-voxels-per-density.png",
                                "05-building.ply-points-per-z.png", "06-building.ply-highest-and-lowest-z.png"));
}

// A volume of floats that are all the same.
std::string volumeOf(float number)
{
    return NiftiFile({3, 3, 3}, NIFTI_TYPE_FLOAT32, bytesOf(std::vector<float>(27, number))).getBytes();
}

TEST_F(VireoViewGLTest, SaysWhatIsRefusedOfWhatPicturesAreSavedOf)
{
    constexpr float NONE = std::numeric_limits<float>::quiet_NaN();
    write("nan.nii", volumeOf(NONE));
    write("good.nii", volumeOf(1));
    write("nan.pfm", "Pf\n2 1\n-1\n" + bytesOf(std::vector<float>(2, NONE)));
    write("far.ply", "ply\nformat ascii 1.0\nelement vertex 2\nproperty double x\nproperty double y\n"
                     "property double z\nend_header\n1e31 0 0\n1e31 1 1\n");
    for (const QStringList& arguments : {QStringList{"nan.nii"}, {"--slices", "good.nii", "--overlay", "nan.nii"},
             {"--slices", "good.nii", "--labels", "nan.nii"}, {"nan.pfm"}, {"far.ply"}}) {
        const Outcome outcome = run(arguments + QStringList{"--pictures", "pictures"});
        const std::string what = arguments.join(' ').toStdString();
        EXPECT_EQ(outcome.exitStatus, 1) << what;
        EXPECT_THAT(outcome.errors, StartsWith("vireo-view: ")) << what;
        EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
        EXPECT_THAT(outcome.errors, testing::Not(HasSubstr("there is no view"))) << what;
    }
}

TEST_F(VireoViewGLTest, ShowsTheOtherFilesIfOneIsBad)
{
    write("good.csv", "1\n2\n");
    write("empty.ply", "");
    write("bad.csv", "x\ny\n");
    write("bad.nii.gz", "x");
    const Outcome outcome =
        run({"missing.ply", "good.csv", "empty.ply", "bad.csv", ".", "bad.nii.gz", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.errors, "vireo-view: missing.ply: no such file\n"
                              "vireo-view: empty.ply: is empty\n"
                              "vireo-view: bad.csv: has no numbers\n"
                              "vireo-view: .: is a directory without DICOM files\n"
                              "vireo-view: bad.nii.gz: is not a NIfTI file: it does not begin with such a header\n");
    EXPECT_THAT(pictures(), ElementsAre("01-good.csv.png"));
}

TEST_F(VireoViewGLTest, ShowsAVolumeAndPointsTogether)
{
    write("a.nii", NiftiFile({3, 3, 3}, NIFTI_TYPE_UINT8, std::string(26, '\x7F') + '\0').getBytes());
    write("b.xyz", "0 0 0\n1 1 1\n");
    EXPECT_EQ(run({"a.nii", "b.xyz", "--together", "--pictures", "pictures"}).errors, "");
    EXPECT_THAT(pictures(), ElementsAre("01-together.png"));
}

TEST_F(VireoViewGLTest, ShowsVolumesThatAreLongerThanTextures)
{
    constexpr short WIDE = 32767;
    write("wide.nii", NiftiFile({WIDE, 1, 1}, NIFTI_TYPE_UINT8, std::string(WIDE - 1, '\1') + '\0').getBytes());
    EXPECT_EQ(run({"wide.nii", "--pictures", "pictures"}).exitStatus, 0);
    EXPECT_THAT(pictures(), SizeIs(1));
}

// Of a driver that is Mesa's, which can be told to do without.
TEST_F(VireoViewGLTest, SaysThatThereIsNoPictureWhereTheDriverDrawsNone)
{
    write("v.nii", NiftiFile({2, 2, 2}, NIFTI_TYPE_UINT8, std::string(7, '\x7F') + '\0').getBytes());
    m_Environment.insert("MESA_GL_VERSION_OVERRIDE", "4.5FC"); // the core profile only
    const Outcome outcome = run({"v.nii", "--pictures", "pictures"});
    if (!pictures().empty())
        GTEST_SKIP() << "the driver does not go by the variable";
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.errors, StartsWith("vireo-view: pictures/01-v.nii-2-x-2-x-2-voxels.png: the picture cannot be "
                                           "saved: "));
}

TEST_F(VireoViewGLTest, TellsFilesOfTheSameNameApart)
{
    std::filesystem::create_directory(directory() / "other");
    write("a.csv", "1\n2\n");
    write("other/a.csv", "1\n2\n");
    EXPECT_EQ(run({"a.csv", "other/a.csv", "a.csv", "--pictures", "pictures"}).exitStatus, 0);
    EXPECT_THAT(pictures(), ElementsAre("01-a.csv.png", "02-other-a.csv.png", "03-a.csv.png"));
}

TEST_F(VireoViewGLTest, EndsAtOnceIfThereIsNothingToShow)
{
    const Outcome outcome = run({"missing.ply"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.errors, "vireo-view: missing.ply: no such file\n");
}

TEST_F(VireoViewGLTest, SaysWhereItLookedForItsExampleData)
{
    const Outcome outcome = run({"--data", "nowhere", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("vireo-view: nowhere: no example data: building.ply is not there"));
}

TEST_F(VireoViewGLTest, SaysThatPicturesCannotBeSaved)
{
    write("a.csv", "1\n2\n");
    const Outcome outcome = run({"a.csv", "--pictures", "a.csv/pictures"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.errors, "vireo-view: a.csv/pictures: the directory cannot be made\n");
}

TEST_F(VireoViewGLTest, LeavesNoNewDirectoryWhereItSavesNoPicture)
{
    write("a.csv", "t,p\n0,1\n");
    std::filesystem::create_directory(directory() / "kept");
    EXPECT_EQ(run({"a.csv", "--columns", "nosuch", "--pictures", "kept/new/5"}).exitStatus, 2);
    EXPECT_FALSE(std::filesystem::exists(directory() / "kept" / "new"));
    EXPECT_EQ(run({"a.csv", "--columns", "nosuch", "--pictures", "kept"}).exitStatus, 2);
    EXPECT_TRUE(std::filesystem::exists(directory() / "kept"));
}

TEST_F(VireoViewGLTest, SaysThatAPictureCannotBeSavedAndSavesTheOthers)
{
    write("a.csv", "1\n2\n");
    write("b.csv", "1\n2\n");
    std::filesystem::create_directory(directory() / "pictures");
    const char* const name = "01-a.csv.png";
    if (!tavo::makeFullDevice((directory() / "pictures" / name).string()))
        GTEST_SKIP() << "this process may not make a device that is full";
    const Outcome outcome = run({"a.csv", "b.csv", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.errors, "vireo-view: pictures/01-a.csv.png: the picture cannot be saved: is not a "
                              "regular file\n");
    EXPECT_FALSE(picture("02-b.csv.png").isNull());
}

TEST_F(VireoViewGLTest, SavesThePictureOfAColumnWithALongName)
{
    write("a.csv", "t,\x1B[31m" + std::string(5000, 'n') + "\n1,2\n2,3\n");
    const Outcome outcome = run({"a.csv", "--pictures", "pictures"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, "vireo-view: a.csv: the name of column 2 has 5005 characters; names are cut after 100\n");
    ASSERT_THAT(pictures(), SizeIs(1));
    EXPECT_FALSE(drawnArea(picture(pictures()[0].c_str())).isEmpty());
}

TEST_F(VireoViewGLTest, SaysThatItsAnswerCannotBeWritten)
{
    if (!tavo::makeFullDevice((directory() / "full").string()))
        GTEST_SKIP() << "this process may not make a device that is full";
    const Outcome outcome = tavo::runProgram("sh", {"-c", "exec \"$0\" --help >full", VIREO_VIEW},
        QString::fromStdString(directory().string()), m_Environment);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.errors, "vireo-view: standard output: No space left on device\n");
}

} // namespace
} // namespace vireo_view
