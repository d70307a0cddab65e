#include <QDir>
#include <QSettings>
#include <QTemporaryDir>

#include "tests/vireo/show/window/ShowWindowTest.h"

namespace tavo {
namespace {

using FreshWindowTest = ShowWindowTest;

TEST_F(FreshWindowTest, RemembersNothing)
{
    const QTemporaryDir folder;
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, folder.path());
    QWidget other;
    other.show();
    show({"a", "b"});
    dock("b")->setFloating();
    window()->close();
    delete window();
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
    show({"a", "b"});
    EXPECT_FALSE(dock("b")->isFloating());
}

} // namespace
} // namespace tavo
