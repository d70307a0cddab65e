#include <QImage>
#include <QStringList>

#include "tests/support/fullDevice.h"
#include "tests/vireo/show/ProgramTest.h"

// The front door in programs of all kinds: with and without Qt, from their start to their end.
namespace tavo {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ShowProgramsTest : public ProgramTest
{};

const std::string SAVED = "saveData: true\n0,3\n1,1\n2,2\n";

TEST_F(ShowProgramsTest, WithoutQtShowAndReturnWhenTheWindowIsClosed)
{
    EXPECT_EQ(outputOf("without Qt"), SAVED);
}

TEST_F(ShowProgramsTest, ShowTwice)
{
    EXPECT_EQ(outputOf("shows twice"), SAVED + "saveData: true\n0,7\n");
}

TEST_F(ShowProgramsTest, SendBeforeMain)
{
    EXPECT_EQ(outputOf("sends before main"), SAVED);
}

TEST_F(ShowProgramsTest, CallInStaticDestructors)
{
    const Outcome outcome = run("calls in static destructors");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "openWindow: true\n" + SAVED + "pump: true\nopenWindow: false\nsavePicture: false\n");
    EXPECT_EQ(outcome.errors,
        "warning: tavo: tavo::savePicture(\"late\", \"late.png\") saves nothing: the program is ending\n");
}

TEST_F(ShowProgramsTest, SendFromAWorker)
{
    EXPECT_EQ(outputOf("sends from a worker"), SAVED);
}

TEST_F(ShowProgramsTest, PumpUntilTheWindowIsClosed)
{
    EXPECT_EQ(outputOf("pumps"), "the window was closed\n");
}

TEST_F(ShowProgramsTest, OpenAWindow)
{
    EXPECT_EQ(outputOf("opens a window"), "openWindow: true\n" + SAVED + "pump: true\n");
}

TEST_F(ShowProgramsTest, SendAfterTheirApplication)
{
    const Outcome outcome = run("sends after the application");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, SAVED);
    EXPECT_THAT(outcome.errors, StartsWith("warning: tavo: the program ends, and what it sent was never shown"));
}

TEST_F(ShowProgramsTest, SendBeforeTheirApplication)
{
    EXPECT_EQ(outputOf("sends before the application"), "the window is open\n" + SAVED);
}

TEST_F(ShowProgramsTest, ShowWithAnApplication)
{
    EXPECT_EQ(outputOf("shows with an application"), SAVED + "pump: false\n");
}

TEST_F(ShowProgramsTest, ShowFromAWorkerOfAnApplication)
{
    EXPECT_EQ(outputOf("shows from a worker of an application"), SAVED);
}

TEST_F(ShowProgramsTest, AreToldThatTheyHaveNoWidgets)
{
    const std::string why = "the program has a QCoreApplication, where views need a QApplication\n";
    const Outcome outcome = run("has no widgets");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "openWindow: false\npump: true\nsavePicture: false\n" + SAVED);
    for (const char* call : {"nothing is shown", "tavo::show() shows nothing", "tavo::openWindow() shows nothing",
             "tavo::savePicture(\"p\", \"p.png\") shows nothing"})
        EXPECT_THAT(outcome.errors, HasSubstr(std::string("warning: tavo: ") + call + ": " + why));
    EXPECT_THAT(outcome.errors, Not(HasSubstr("what it sent was never shown"))) << "which they know";
}

TEST_F(ShowProgramsTest, EndWhileAWorkerSends)
{
    for (int i = 0; i < 5; ++i)
        outputOf("ends while a worker sends");
}

TEST_F(ShowProgramsTest, EndWhileAWorkerCalls)
{
    for (int i = 0; i < 5; ++i)
        outputOf("ends while a worker calls");
}

class ShowExitsTest : public ShowProgramsTest, public testing::WithParamInterface<const char*>
{};

TEST_P(ShowExitsTest, EndTheWindowInOrder)
{
    for (const int milliseconds : {0, 1, 5, 20, 60, 150, 400}) {
        set("VIREO_TEST_EXIT", QString("%1 %2").arg(GetParam()).arg(milliseconds));
        const Outcome outcome = run("exits");
        EXPECT_EQ(outcome.exitStatus, 3) << "after " << milliseconds << " ms";
        EXPECT_EQ(outcome.errors, "") << "after " << milliseconds << " ms";
    }
}

INSTANTIATE_TEST_SUITE_P(Threads, ShowExitsTest, testing::Values("main", "worker", "window"),
    [](const auto& info) { return std::string("Of_") + info.param; });

TEST_F(ShowProgramsTest, AreToldThatTheyNeverShowed)
{
    const Outcome outcome = run("never shows");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors,
        "warning: tavo: the program ends, and what it sent was never shown: call tavo::show() at its end, tavo::pump() "
        "in its loop, or tavo::openWindow() once\n");
}

TEST_F(ShowProgramsTest, AreToldOfLooksWhoseCurveNeverComes)
{
    const Outcome outcome = run("styles what never comes");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.output, AllOf(HasSubstr("plot(\"p\"): there is no curve \"z\", whose colour or style was sent"),
                                    Not(HasSubstr("\"y\""))));
}

// Before anything was shown, and although nobody waits as long as for what may still come.
TEST_F(ShowProgramsTest, AreToldOfMistakesInWhatTheySendLast)
{
    for (const char* program : {"is mistaken at its end", "is mistaken at the end of its application"}) {
        const Outcome outcome = run(program);
        EXPECT_EQ(outcome.exitStatus, 0) << program;
        EXPECT_THAT(outcome.errors,
            AllOf(HasSubstr("plot(\"p\"): there is no curve \"z\""), HasSubstr("scene(\"s\"), \"c\": ")))
            << program;
    }
}

TEST_F(ShowProgramsTest, AreToldThatNothingIsSavedBehindMain)
{
    const Outcome outcome = run("saves behind main");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "saveData: false\n");
    EXPECT_EQ(outcome.errors, "warning: tavo: tavo::saveData(\"p\", \"p.csv\") saves nothing: the program is ending\n");
}

TEST_F(ShowProgramsTest, OpenTheWindowOnlyWhereTheyAskForIt)
{
    for (const char* program : {"saves pictures before the window", "saves pictures before it pumps"})
        EXPECT_EQ(outputOf(program),
            "savePicture: true\nsavePicture: true\nis a window seen: false\nis a window seen: true\n");
}

TEST_F(ShowProgramsTest, AreToldThatThereIsNothingToShow)
{
    const Outcome outcome = run("shows nothing");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, "warning: tavo: tavo::show() shows nothing: nothing was sent\n");
}

TEST_F(ShowProgramsTest, AreToldThatTheyHaveTwoApplications)
{
    for (const auto& [program, output] : {std::pair("makes another application", "openWindow: true\n"),
             {"saves a picture before the application", "savePicture: true\n"}}) {
        const Outcome outcome = run(program);
        EXPECT_EQ(outcome.exitStatus, EXIT_FAILURE);
        EXPECT_EQ(outcome.output, output);
        EXPECT_THAT(outcome.errors, HasSubstr("tavo: the program makes a QApplication, but vireo has one already"));
    }
}

TEST_F(ShowProgramsTest, SaveDataWithoutAnApplication)
{
    const Outcome outcome = run("saves data around applications");
    EXPECT_EQ(outcome.exitStatus, 0);
    const std::string first = "saveData: true\n0,3\n1,1\n2,2\n3,7\n";
    EXPECT_EQ(outcome.output, first + first +
                                  "saveData: false\nsaveData: true\n0,0\nsaveData: true\n0,0\n"
                                  "saveData: false\nsaveData: true\n0,1\n");
    EXPECT_THAT(outcome.errors, HasSubstr("warning: tavo::saveData(\"p\", \"gone.csv\"): there is no view \"p\"\n"));
}

TEST_F(ShowProgramsTest, DoNothingWhereItIsOff)
{
    set("VIREO_SHOW", "off");
    EXPECT_EQ(outputOf("calls everything"),
        "openWindow: false\npump: true\nsavePicture: false\nsavePictures: false\nsaveData: false\n");
    EXPECT_FALSE(exists("p.png"));
    EXPECT_EQ(outputOf("never shows"), "");
    EXPECT_EQ(outputOf("has no widgets"), "openWindow: false\npump: true\nsavePicture: false\nsaveData: false\n");
}

TEST_F(ShowProgramsTest, SavePicturesInsteadOfShowing)
{
    set("VIREO_SHOW", "pictures:" + path("a folder/within"));
    EXPECT_EQ(outputOf("never shows"), "") << "at their end";
    EXPECT_EQ(QImage(path("a folder/within/p.png")).size(), QSize(1000, 700));

    set("VIREO_SHOW", "pictures:shown");
    EXPECT_EQ(outputOf("calls everything"),
        "openWindow: false\npump: true\nsavePicture: true\nsavePictures: true\nsaveData: true\n");
    EXPECT_FALSE(QImage(path("shown/p.png")).isNull());

    set("VIREO_SHOW", "pictures:application");
    outputOf("sends after the application");
    EXPECT_FALSE(QImage(path("application/p.png")).isNull());

    set("VIREO_SHOW", "pictures:worker");
    outputOf("sends from a worker");
    EXPECT_FALSE(QImage(path("worker/p.png")).isNull());
}

bool hasInk(const QImage& picture, const QRect& part)
{
    for (int y = part.top(); y <= part.bottom(); ++y)
        for (int x = part.left(); x <= part.right(); ++x)
            if (picture.pixel(x, y) != picture.pixel(0, 0))
                return true;
    return false;
}

int numRed(const QImage& picture)
{
    int number = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            number += qRed(picture.pixel(x, y)) > 100 && qGreen(picture.pixel(x, y)) < 50;
    return number;
}

class ShowPicturesTest : public ProgramTest
{
protected:
    // Of what all these programs send: a plot, which has a title, and a scene.
    void expectPictures(const QString& folder)
    {
        const QImage plot(folder + "/p.png");
        ASSERT_FALSE(plot.isNull());
        const int middle = plot.width() / 2;
        EXPECT_TRUE(hasInk(plot, {middle - 30, 2, 60, 20})) << "the title";
        EXPECT_GT(numRed(QImage(folder + "/s.png")), 5'000);
    }
};

TEST_F(ShowPicturesTest, HaveTextsAndSurfacesAtTheEndOfTheProgram)
{
    set("VIREO_SHOW", "pictures:folder");
    EXPECT_EQ(outputOf("sends a plot and a scene"), "");
    expectPictures(path("folder"));
}

TEST_F(ShowPicturesTest, NeedNoQt)
{
    EXPECT_EQ(outputOf("saves pictures without Qt"), "savePicture: true\nsavePicture: true\n");
    expectPictures(path("."));
}

TEST_F(ShowPicturesTest, OpenNoWindow)
{
    set("VIREO_SHOW", "pictures:folder");
    EXPECT_EQ(outputOf("saves pictures with Qt"),
        "savePicture: true\nsavePicture: true\nsavePicture: true\nis a window seen: false\n");
    for (const char* folder : {".", "folder"}) {
        expectPictures(path(folder));
        EXPECT_GT(numRed(QImage(path(folder) + "/graph.png")), 100);
    }
}

TEST_F(ShowProgramsTest, SavePicturesOfDisplayersToo)
{
    set("VIREO_SHOW", "pictures:folder");
    EXPECT_EQ(outputOf("sends to a displayer"), "");
    for (const char* file : {"folder/p.png", "folder/section.png"})
        EXPECT_EQ(QImage(path(file)).size(), QSize(1000, 700)) << file;
}

TEST_F(ShowProgramsTest, AreToldOfAFolderThatCannotBeMade)
{
    QFile(path("file")).open(QIODevice::WriteOnly);
    set("VIREO_SHOW", "pictures:file/folder");
    const Outcome outcome = run("never shows");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, "warning: VIREO_SHOW=pictures:file/folder: the folder cannot be made\n");
}

TEST_F(ShowProgramsTest, AreToldOfAValueThatMeansNothing)
{
    for (const char* value : {"of", "pictures:", "OFF"}) {
        set("VIREO_SHOW", value);
        const Outcome outcome = run("without Qt");
        EXPECT_EQ(outcome.output, SAVED) << "as without it";
        EXPECT_EQ(outcome.errors, std::string("warning: VIREO_SHOW is \"") + value +
                                      "\", which means nothing: it may be \"off\", \"fresh\" or \"pictures:\" and a "
                                      "folder.\n");
    }
}

TEST_F(ShowProgramsTest, AreFreshWhereAskedFor)
{
    set("VIREO_SHOW", "fresh");
    EXPECT_EQ(outputOf("without Qt"), SAVED);
}

TEST_F(ShowProgramsTest, DoNotWaitForEverForTheirApplication)
{
    const Outcome outcome = run("does not serve events");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "savePicture: false\n");
    EXPECT_THAT(outcome.errors,
        StartsWith("warning: tavo::savePicture(\"p\", \"p.png\"): the thread of the QApplication does not answer\n"));
}

TEST_F(ShowProgramsTest, AreToldWhyNothingIsSaved)
{
    QDir().mkpath(path("full"));
    QDir().rmdir(path("full"));
    QFile(path("full")).open(QIODevice::WriteOnly);
    set("QT_QPA_PLATFORM", "offscreen"); // a window would have a log for it
    const Outcome outcome = run("saves badly");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.output, Not(HasSubstr("true")));
    const QStringList lines = QString::fromStdString(outcome.errors).split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(lines.size(), 13) << outcome.errors;
    for (const QString& line : lines)
        EXPECT_TRUE(line.startsWith("warning: tavo::save")) << line.toStdString();
}

TEST_F(ShowProgramsTest, TakeOddThings)
{
    const Outcome outcome = run("sends odd things");
    const std::string stays = "; what was shown stays\n";
    const std::string why = ": a range goes from one number to another" + stays;
    const std::string curve = "warning: tavo: plot(\"values\").curve";
    const std::string said =
        curve + "(\"none\"): there are no samples to show" + stays + curve +
        "(\"NaN\"): none of the samples is finite" + stays + curve + "(\"x NaN\"): none of the x is finite" + stays +
        "warning: tavo: plot(\"values\").xRange(nan, inf)" + why + "warning: tavo: plot(\"values\").yRange(1, 1)" + why;
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, said);
    EXPECT_EQ(outcome.output,
        "openWindow: true\nsavePictures: true\nsaveData: true\nsaveData: true\nsaveData: true\nlog: " + said + "\n");
    const QStringList pictures = QDir(path("folder")).entryList(QDir::Files);
    EXPECT_EQ(pictures.size(), 8) << pictures.join(' ').toStdString();
    for (const QString& picture : pictures)
        EXPECT_FALSE(QImage(path("folder/") + picture).isNull()) << picture.toStdString();
}

// They are moved in: the sanitizers' allocators alone would take more than the samples do.
TEST_F(ShowProgramsTest, SendManySamples)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizers take too much memory";
#endif
    EXPECT_EQ(outputOf("sends many samples"), "savePicture: true\n");
    EXPECT_EQ(QImage(path("p.png")).size(), QSize(300, 200));
}

} // namespace
} // namespace tavo
