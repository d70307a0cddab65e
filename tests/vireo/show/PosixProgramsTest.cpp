#include <QFile>
#include <QImage>

#include "tests/support/linux/SmallDisk.h"
#include "tests/vireo/show/ProgramTest.h"

namespace tavo {
namespace {

class ShowForksTest : public ProgramTest, public testing::WithParamInterface<const char*>
{};

TEST_P(ShowForksTest, LeaveParentAndChildAlone)
{
    EXPECT_EQ(outputOf(GetParam(), VIREO_SHOW_FORKING_PROGRAM), "the parent goes on\n");
    EXPECT_FALSE(exists("child.png"));
}

INSTANTIATE_TEST_SUITE_P(Children, ShowForksTest, testing::Values("returns", "exits", "ends at once", "calls"),
    [](const auto& info) { return QString(info.param).replace(' ', '_').toStdString(); });

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
