#include <QFile>
#include <QImage>
#include <QLibraryInfo>
#include <QProcess>
#include <QSettings>
#include <QStringList>
#include <csignal>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "tests/support/linux/SmallDisk.h"
#include "tests/vireo/show/ProgramTest.h"

namespace tavo {
namespace {

using testing::StartsWith;

class ShowForksTest : public ProgramTest, public testing::WithParamInterface<const char*>
{};

TEST_P(ShowForksTest, LeaveParentAndChildAlone)
{
    EXPECT_EQ(outputOf(GetParam(), VIREO_SHOW_FORKING_PROGRAM), "the parent goes on\n");
    EXPECT_FALSE(exists("child.png"));
}

INSTANTIATE_TEST_SUITE_P(Children, ShowForksTest,
    testing::Values("returns", "exits", "exits in a thread", "ends at once", "calls"),
    [](const auto& info) { return QString(info.param).replace(' ', '_').toStdString(); });

class ShowChildrenTest : public ProgramTest
{};

TEST_F(ShowChildrenTest, LeaveWhatTheyHaveWritten)
{
    EXPECT_THAT(outputOf("writes", VIREO_SHOW_FORKING_PROGRAM), StartsWith("the child writes\nthe child writes\n"));
}

// The window is their parent's.
TEST_F(ShowChildrenTest, WriteToTheErrorStream)
{
    const Outcome outcome = run("writes to the log", VIREO_SHOW_FORKING_PROGRAM);
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "the parent goes on\n");
    EXPECT_EQ(QString::fromStdString(outcome.errors).count("the child writes\n"), 20);
}

TEST_F(ShowChildrenTest, MayComeWhenTheWindowHasGone)
{
    EXPECT_EQ(outputOf("forks at its end", VIREO_SHOW_FORKING_PROGRAM), "the child of the end ends\n");
}

class ShowSignalsTest : public ProgramTest, public testing::WithParamInterface<int>
{};

// The window's thread is all that is left of the program.
TEST_P(ShowSignalsTest, EndAProgramWithoutAMainThread)
{
    QProcess program;
    program.setWorkingDirectory(path("."));
    program.setProcessEnvironment(environmentOf("ends its main thread"));
    program.start(VIREO_SHOW_SIGNALLED_PROGRAM, QStringList());
    ASSERT_TRUE(program.waitForReadyRead());
    EXPECT_EQ(program.readAllStandardOutput(), "the main thread ends\n");
    kill(static_cast<pid_t>(program.processId()), GetParam());
    EXPECT_TRUE(program.waitForFinished());
    EXPECT_EQ(program.exitStatus(), QProcess::CrashExit);
    EXPECT_EQ(program.exitCode(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Signals, ShowSignalsTest, testing::Values(SIGTERM, SIGINT, SIGHUP, SIGQUIT));

class ShowThreadsSignalsTest : public ProgramTest
{
protected:
    std::string whatIsBlockedBy(const char* program) { return outputOf(program, VIREO_SHOW_SIGNALLED_PROGRAM); }
};

TEST_F(ShowThreadsSignalsTest, AreTheProgramsOwnButForThoseThatEndIt)
{
    const std::string others =
        "SIGINT taken\nSIGHUP taken\nSIGQUIT taken\nSIGSEGV taken\nSIGUSR1 blocked\nSIGALRM blocked\n";
    EXPECT_EQ(whatIsBlockedBy("blocks no signal"), "SIGTERM taken\n" + others);
    EXPECT_EQ(whatIsBlockedBy("blocks a signal"), "SIGTERM blocked\n" + others);
}

// As if it were the program of a person.
class ShowMemoryTest : public ProgramTest
{
protected:
    std::string programAs(const char* name)
    {
        const QString copy = path(name);
        EXPECT_TRUE(QFile::copy(VIREO_SHOW_PROGRAM, copy));
        return copy.toStdString();
    }

    QStringList remembered() const
    {
        return QSettings(path("config/vireo/vireo-show.ini"), QSettings::IniFormat).childGroups();
    }
};

TEST_F(ShowMemoryTest, IsOfTheExecutableWhereTheProgramHasNoApplication)
{
    EXPECT_THAT(outputOf("opens a window", programAs("measure").c_str()), StartsWith("openWindow: true\n"));
    EXPECT_EQ(remembered(), QStringList("measure"));
    EXPECT_THAT(outputOf("opens a window", programAs("control").c_str()), StartsWith("openWindow: true\n"));
    EXPECT_EQ(remembered(), QStringList({"control", "measure"}));
}

class ShowApplicationForksTest : public ProgramTest, public testing::WithParamInterface<const char*>
{};

TEST_P(ShowApplicationForksTest, LeaveParentAndChildAlone)
{
    EXPECT_EQ(outputOf(GetParam(), VIREO_SHOW_FORKING_APPLICATION), "the parent goes on\n");
}

INSTANTIATE_TEST_SUITE_P(Threads, ShowApplicationForksTest,
    testing::Values("in the window's thread", "in another thread"), [](const auto& info) {
        return std::string(info.param).find("window") != std::string::npos ? "OfTheWindow" : "Another";
    });

// The main thread ends, and the window with it, before exit() calls anything.
class ShowHandlersTest : public ProgramTest
{};

TEST_F(ShowHandlersTest, AreToldThatNothingIsSavedWhicheverIsFirst)
{
    const Outcome outcome = run("saves first behind main");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "saveData: false\n");
    EXPECT_EQ(outcome.errors, "warning: tavo: tavo::saveData(\"p\", \"p.csv\") saves nothing: the program is ending\n");
}

class ShowWithoutDisplayTest : public ProgramTest
{
protected:
    void SetUp() override
    {
        ProgramTest::SetUp();
        unset("DISPLAY");
        unset("WAYLAND_DISPLAY");
    }
};

TEST_F(ShowWithoutDisplayTest, PicturesAndDataAreSaved)
{
    const Outcome outcome = run("calls everything");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "openWindow: false\npump: true\nsavePicture: true\nsavePictures: true\nsaveData: true\n");
    EXPECT_EQ(QImage(path("p.png")).size(), QSize(300, 200));
    EXPECT_TRUE(exists("folder/p.png"));
    const std::string why = " shows nothing: there is no display. VIREO_SHOW=pictures:FOLDER saves pictures instead\n";
    EXPECT_EQ(outcome.errors, "warning: tavo: tavo::show()" + why + "warning: tavo: tavo::openWindow()" + why +
                                  "warning: tavo: tavo::pump()" + why);
}

TEST_F(ShowWithoutDisplayTest, ShowIsNotAskedForOnceItWasRefused)
{
    const Outcome outcome = run("sends and shows");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, "warning: tavo: tavo::show() shows nothing: there is no display. "
                              "VIREO_SHOW=pictures:FOLDER saves pictures instead\n");
}

TEST_F(ShowWithoutDisplayTest, ShowIsAskedForBehindOneThatHadNothing)
{
    const Outcome outcome = run("shows before it sends");
    EXPECT_THAT(outcome.errors, StartsWith("warning: tavo: tavo::show() shows nothing: nothing was sent\n"));
    EXPECT_THAT(outcome.errors, testing::HasSubstr("what it sent was never shown"));
}

// The second of them has no fonts, of which Qt may say something.
TEST_F(ShowWithoutDisplayTest, PlatformsThatNobodySeesCarryEverything)
{
    for (const char* platform : {"offscreen", "minimal"}) {
        set("QT_QPA_PLATFORM", platform);
        const Outcome outcome = run("calls everything");
        EXPECT_EQ(outcome.exitStatus, 0) << platform;
        EXPECT_EQ(
            outcome.output, "openWindow: false\npump: true\nsavePicture: true\nsavePictures: true\nsaveData: true\n")
            << platform;
        for (const char* program : {"shows with an application", "sends to a displayer"})
            EXPECT_EQ(run(program).exitStatus, 0) << platform << ": " << program;
    }
}

TEST_F(ShowWithoutDisplayTest, NothingIsLeftOnAFullDisk)
{
    ASSERT_TRUE(QDir().mkpath(path("disk")));
    const SmallDisk disk(path("disk").toStdString(), "8k");
    if (!disk.isMounted())
        GTEST_SKIP() << "this process may not mount a small disk";
    QFile filling(path("disk/filling"));
    ASSERT_TRUE(filling.open(QIODevice::WriteOnly) && filling.write(QByteArray(4096, 'x')) == 4096);
    filling.close();
    const Outcome outcome = run("saves to disk");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output,
        "savePicture: false\nsavePicture: false\nsavePicture: false\nsavePictures: false\nsaveData: false\n");
    const std::string why = "No space left on device\n";
    EXPECT_EQ(outcome.errors, "warning: tavo::savePicture(\"p\", \"disk/p.png\"): " + why +
                                  "warning: tavo::savePicture(\"p\", \"disk/p.svg\"): " + why +
                                  "warning: tavo::savePicture(\"p\", \"disk/p.pdf\"): " + why +
                                  "warning: tavo::savePictures(\"disk\"): p.png: " + why +
                                  "warning: tavo::saveData(\"p\", \"disk/p.csv\"): " + why);
    set("VIREO_SHOW", "pictures:disk");
    EXPECT_EQ(run("never shows").errors, "warning: VIREO_SHOW=pictures:disk: p.png: " + why);
    EXPECT_EQ(QDir(path("disk")).entryList(QDir::Files | QDir::Hidden), QStringList("filling"));
}

TEST_F(ShowWithoutDisplayTest, EachPictureHasAFileInEveryLocale)
{
    for (const char* locale : {"C", "C.UTF-8"}) {
        set("LC_ALL", locale);
        EXPECT_EQ(run("saves names of letters").output, "savePictures: true\n");
        const int number = QDir(path("letters")).entryList(QDir::Files).size();
        EXPECT_EQ(number, 3) << locale;
        QDir(path("letters")).removeRecursively();
    }
}

TEST_F(ShowWithoutDisplayTest, PicturesAreSavedInsteadOfShowing)
{
    set("VIREO_SHOW", "pictures:folder");
    EXPECT_EQ(outputOf("never shows"), "");
    EXPECT_FALSE(QImage(path("folder/p.png")).isNull());
}

// With no other platform plugins of Qt's than these.
class ShowWithoutPluginsTest : public ProgramTest
{
protected:
    Outcome runWith(const QStringList& plugins)
    {
        const QDir ofQt(QLibraryInfo::location(QLibraryInfo::PluginsPath) + "/platforms");
        EXPECT_TRUE(QDir().mkpath(path("bin/plugins/platforms")));
        for (const QString& plugin : plugins)
            EXPECT_TRUE(QFile::link(ofQt.filePath(plugin), path("bin/plugins/platforms/") + plugin));
        const QString program = path("bin/program");
        EXPECT_TRUE(QFile::copy(VIREO_SHOW_PROGRAM, program));
        QFile settings(path("bin/qt.conf"));
        EXPECT_TRUE(settings.open(QIODevice::WriteOnly));
        settings.write("[Paths]\nPlugins=plugins\n");
        settings.close();
        return run("calls everything", program.toStdString().c_str());
    }
};

std::string refused(const std::string& why)
{
    return "warning: tavo: tavo::show() shows nothing: " + why +
           "\nwarning: tavo: tavo::openWindow() shows nothing: " + why +
           "\nwarning: tavo: tavo::pump() shows nothing: " + why + '\n';
}

TEST_F(ShowWithoutPluginsTest, PicturesAreSavedWhereWindowsHaveNone)
{
    const Outcome outcome = runWith({"libqoffscreen.so"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "openWindow: false\npump: true\nsavePicture: true\nsavePictures: true\nsaveData: true\n");
    EXPECT_EQ(outcome.errors,
        refused("Qt has no plugin that starts for \"xcb\". VIREO_SHOW=pictures:FOLDER saves pictures instead"));
    EXPECT_EQ(QImage(path("p.png")).size(), QSize(300, 200));
}

TEST_F(ShowWithoutPluginsTest, TheProgramGoesOnWhereThereAreNone)
{
    const Outcome outcome = runWith({});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(
        outcome.output, "openWindow: false\npump: true\nsavePicture: false\nsavePictures: false\nsaveData: false\n");
    EXPECT_THAT(outcome.errors, StartsWith(refused("Qt has no platform plugin that starts")));
}

TEST_F(ShowWithoutPluginsTest, OfAWaylandServerIsSaid)
{
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path("wayland").toStdString().copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(server, 10), 0);
    set("WAYLAND_DISPLAY", "wayland");
    set("XDG_SESSION_TYPE", "wayland");
    unset("DISPLAY");
    const Outcome outcome = runWith({"libqoffscreen.so", "libqxcb.so"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "openWindow: false\npump: true\nsavePicture: true\nsavePictures: true\nsaveData: true\n");
    EXPECT_EQ(outcome.errors, refused("Qt has no plugin that starts for \"wayland;wayland-egl\". "
                                      "VIREO_SHOW=pictures:FOLDER saves pictures instead"));
    close(server);
}

// In a compositor whose screen is a window of the X server.
class ShowOnWaylandTest : public ProgramTest
{
protected:
    void SetUp() override
    {
        ProgramTest::SetUp();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_RUNTIME_DIR", path("."));
        m_Weston.setProcessEnvironment(environment);
        m_Weston.setStandardErrorFile(path("weston.log"));
        m_Weston.start("weston", {"--backend=x11-backend.so", "--use-pixman", "--socket=wayland", "--width=800",
                                     "--height=600", "--idle-time=0", "--no-config"});
        while (m_Weston.state() != QProcess::NotRunning && !exists("wayland"))
            m_Weston.waitForFinished(20);
        set("WAYLAND_DISPLAY", "wayland");
        set("QT_QPA_PLATFORM", "wayland");
    }

    void TearDown() override
    {
        m_Weston.terminate();
        m_Weston.waitForFinished();
    }

    QProcess m_Weston;
};

TEST_F(ShowOnWaylandTest, TakesKeysAndPointer)
{
    if (m_Weston.state() == QProcess::NotRunning)
        GTEST_SKIP() << "there is no weston that runs on this X server";
    set("VIREO_TEST_PLACE", "400 300");
    const Outcome outcome = run("takes keys and pointer");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "wayland\nsavePicture: true\n");
    EXPECT_EQ(outcome.errors, "");
}

// Whatever else is there.
class ShowOnAskedPlatformTest : public ProgramTest
{
protected:
    void expectRefusal(const std::string& why)
    {
        const Outcome outcome = run("calls everything");
        EXPECT_EQ(outcome.exitStatus, 0);
        EXPECT_EQ(
            outcome.output, "openWindow: false\npump: true\nsavePicture: true\nsavePictures: true\nsaveData: true\n");
        EXPECT_THAT(outcome.errors, StartsWith(refused(why)));
    }
};

TEST_F(ShowOnAskedPlatformTest, RefusesOneThatIsNot)
{
    set("QT_QPA_PLATFORM", "nonsense");
    expectRefusal("QT_QPA_PLATFORM is \"nonsense\", which opens no window here");
    set("QT_QPA_PLATFORM", "wayland");
    expectRefusal("QT_QPA_PLATFORM is \"wayland\", which opens no window here");
}

TEST_F(ShowOnAskedPlatformTest, RefusesAServerThatIsNot)
{
    unset("WAYLAND_DISPLAY");
    set("DISPLAY", ":54321");
    expectRefusal("there is no display. VIREO_SHOW=pictures:FOLDER saves pictures instead");
    set("QT_QPA_PLATFORM", "xcb");
    expectRefusal("there is no display. VIREO_SHOW=pictures:FOLDER saves pictures instead");
}

TEST_F(ShowOnAskedPlatformTest, TakesTheFirstThatIs)
{
    set("QT_QPA_PLATFORM", "wayland;xcb");
    EXPECT_EQ(outputOf("opens a window"), "openWindow: true\nsaveData: true\n0,3\n1,1\n2,2\npump: true\n");
}

TEST_F(ShowWithoutDisplayTest, ShowRefusesAnApplicationThatNobodySees)
{
    set("QT_QPA_PLATFORM", "offscreen");
    const Outcome outcome = run("shows with an application");
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.output, "saveData: true\n0,3\n1,1\n2,2\npump: true\n");
    EXPECT_EQ(outcome.errors, "warning: tavo: tavo::show() shows nothing: there is no display. "
                              "VIREO_SHOW=pictures:FOLDER saves pictures instead\n");
}

} // namespace
} // namespace tavo
