#include <DockAreaTitleBar.h>
#include <FloatingDockContainer.h>
#include <QAbstractButton>
#include <QClipboard>
#include <QFileDialog>
#include <QMenu>
#include <QScreen>
#include <QTemporaryDir>
#include <set>

#include "tests/vireo/show/window/ShowWindowTest.h"

namespace tavo {
namespace {

class ViewActionsTest : public ShowWindowTest
{
protected:
    static QWidget* fullScreenOf(const QString& title)
    {
        return window()->findChild<QWidget*>("fullScreenOf" + dock(title)->objectName());
    }

    // Has what was sent shown: a picture has everything.
    static bool waitUntilShown()
    {
        const QTemporaryDir folder;
        return tavo::savePictures(folder.path().toStdString());
    }

    static void clickMenuButton(QWidget* widget)
    {
        dragMouse(widget, Qt::RightButton, widget->rect().center(), widget->rect().center());
    }

    // Answers the question for a file that something has opened.
    static void answer(const QString& file)
    {
        auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        EXPECT_TRUE(QTest::qWaitForWindowExposed(dialog));
        emit dialog->fileSelected(file);
        dialog->close();
    }
};

TEST_F(ViewActionsTest, HaveButtonsThatCanBeToldApart)
{
    show({"a"});
    std::set<QString> toolTips;
    std::set<QByteArray> icons;
    int numButtons = 0;
    for (const auto* button : dock("a")->dockAreaWidget()->titleBar()->findChildren<QAbstractButton*>()) {
        if (!button->isVisible() || button->icon().isNull())
            continue;
        const QImage icon = button->icon().pixmap(16).toImage().convertToFormat(QImage::Format_ARGB32);
        icons.insert(QByteArray(reinterpret_cast<const char*>(icon.bits()), int(icon.sizeInBytes())));
        toolTips.insert(button->toolTip());
        ++numButtons;
    }
    EXPECT_EQ(numButtons, 6);
    EXPECT_EQ(icons.size(), 6u);
    EXPECT_THAT(toolTips, testing::UnorderedElementsAre("Save picture (Ctrl+S)", "Copy picture (Ctrl+C)",
                              "Save data (Ctrl+D)", "Full screen (F11)", "Detach", "Close (Ctrl+W)"));
    EXPECT_EQ(action("a", "configure"), nullptr) << "there is nothing to configure";
}

TEST_F(ViewActionsTest, FillTheScreenAndLeaveIt)
{
    show({"a", "b"});
    QWidget* const view = viewIn("a");
    const QSize before = view->size();
    EXPECT_TRUE(pressShortcut(view, Qt::Key_F11));
    ASSERT_NE(fullScreenOf("a"), nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] { return onScreen(view) == view->screen()->geometry(); }));
    EXPECT_TRUE(view->isVisible());
    EXPECT_EQ(view->window(), fullScreenOf("a"));
    EXPECT_EQ(fullScreenOf("b"), nullptr);
    plot("a").curve("y", {5, 6}); // which goes on
    settle();

    EXPECT_TRUE(pressShortcut(view, Qt::Key_Escape));
    settle();
    EXPECT_EQ(view->window(), window());
    EXPECT_TRUE(QTest::qWaitFor([&] { return view->size() == before; }));

    action("a", "fullScreen")->trigger();
    EXPECT_TRUE(pressShortcut(view, Qt::Key_F11)) << "leaves it, too";
    EXPECT_EQ(view->window(), window());
    action("a", "fullScreen")->trigger();
    view->window()->close();
    EXPECT_EQ(view->window(), window());
    EXPECT_TRUE(view->isVisible());
}

TEST_F(ViewActionsTest, LetAViewGoThatFillsTheScreen)
{
    show({"a", "b"});
    const QPointer<QWidget> view = viewIn("a");
    action("a", "fullScreen")->trigger();
    EXPECT_TRUE(pressShortcut(view, Qt::Key_W, Qt::ControlModifier));
    EXPECT_TRUE(dock("a")->isClosed());
    dock("a")->toggleView(true);
    EXPECT_EQ(view->window(), window());
    EXPECT_TRUE(view->isVisible());

    action("a", "fullScreen")->trigger();
    remove("a");
    EXPECT_TRUE(QTest::qWaitFor([] { return !dock("a"); }));
    EXPECT_TRUE(view.isNull());

    const QPointer<QWidget> other = viewIn("b");
    action("b", "fullScreen")->trigger();
    window()->close();
    EXPECT_FALSE(other->isVisible());
    window()->show();
    EXPECT_EQ(other->window(), window());
    EXPECT_TRUE(other->isVisible());
}

TEST_F(ViewActionsTest, SaveAndCopyPicturesAndData)
{
    show({"a"});
    const QTemporaryDir folder;
    EXPECT_TRUE(pressShortcut(viewIn("a"), Qt::Key_S, Qt::ControlModifier));
    answer(folder.filePath("a.png"));
    EXPECT_EQ(QImage(folder.filePath("a.png")).size(), viewIn("a")->size());

    EXPECT_TRUE(pressShortcut(viewIn("a"), Qt::Key_D, Qt::ControlModifier));
    answer(folder.filePath("a.csv"));
    QFile data(folder.filePath("a.csv"));
    ASSERT_TRUE(data.open(QIODevice::ReadOnly));
    EXPECT_TRUE(data.readAll().contains("3"));

    EXPECT_TRUE(pressShortcut(viewIn("a"), Qt::Key_C, Qt::ControlModifier));
    EXPECT_EQ(QApplication::clipboard()->image().size(), viewIn("a")->size());

    EXPECT_TRUE(pressShortcut(viewIn("a"), Qt::Key_S, Qt::ControlModifier));
    answer("/no such folder/a.png");
    EXPECT_THAT(
        debugOutput.getText(), testing::HasSubstr("warning: /no such folder/a.png: the picture cannot be saved"));
}

TEST_F(ViewActionsTest, SavePicturesInAllFormatsOfAView)
{
    show({"a"});
    const QTemporaryDir folder;
    action("a", "savePicture")->trigger();
    auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_THAT(dialog->nameFilters(), testing::ElementsAre("PNG (*.png)", "SVG (*.svg)", "PDF (*.pdf)"));
    EXPECT_EQ(dialog->defaultSuffix(), "png");
    emit dialog->filterSelected("SVG (*.svg)");
    EXPECT_EQ(dialog->defaultSuffix(), "svg");
    answer(folder.filePath("a.svg"));
    QFile picture(folder.filePath("a.svg"));
    ASSERT_TRUE(picture.open(QIODevice::ReadOnly));
    EXPECT_TRUE(picture.readAll().contains("<svg"));
}

TEST_F(ViewActionsTest, SaveDataInAllFormatsOfAView)
{
    slices("s", {1, 2, 3, 4, 5, 6, 7, 8}, {2, 2, 2});
    show({"a"});
    EXPECT_TRUE(QTest::qWaitFor([] { return dock("s") != nullptr; }));
    const QTemporaryDir folder;
    action("s", "saveData")->trigger();
    auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    EXPECT_THAT(
        dialog->nameFilters(), testing::ElementsAre("Comma-separated values (*.csv)", "Volume, NIfTI-1 (*.nii)"));
    emit dialog->filterSelected("Volume, NIfTI-1 (*.nii)");
    EXPECT_EQ(dialog->defaultSuffix(), "nii");
    answer(folder.filePath("s.nii"));
    EXPECT_GT(QFileInfo(folder.filePath("s.nii")).size(), 352) << "a header and samples";
}

TEST_F(ViewActionsTest, SaveTheDataInView)
{
    show({"a"});
    plot("a").xRange(0.5, 1.5);
    EXPECT_TRUE(waitUntilShown());
    const QTemporaryDir folder;
    EXPECT_TRUE(pressShortcut(viewIn("a"), Qt::Key_D, Qt::ControlModifier | Qt::ShiftModifier));
    answer(folder.filePath("a.csv"));
    QFile data(folder.filePath("a.csv"));
    ASSERT_TRUE(data.open(QIODevice::ReadOnly));
    EXPECT_EQ(data.readAll().toStdString(), "\"y x\",\"y\"\n1,3\n");
}

TEST_F(ViewActionsTest, AreInTheMenuOfAPlotToo)
{
    show({"a", "b"});
    const QWidget* const view = viewIn("a");
    const auto menuOf = [](const QWidget* view) {
        QStringList names;
        clickMenuButton(view->focusProxy());
        auto* const menu = view->findChild<QMenu*>("plotMenu");
        for (const QAction* action : menu->actions())
            names += action->objectName();
        menu->close();
        return names;
    };
    const auto hasAll = testing::IsSupersetOf({"copyPicture", "savePicture", "saveData", "saveSeenData"});
    EXPECT_THAT(menuOf(view), hasAll);
    settle();
    action("a", "fullScreen")->trigger();
    EXPECT_THAT(menuOf(view), hasAll) << "in full screen";
}

TEST_F(ViewActionsTest, OfTheMenuSaveAllAndClear)
{
    show({"a", "b/c"});
    send("event", "hello");
    settle();
    const QTemporaryDir folder;
    menuAction("savePictures")->trigger();
    answer(folder.path());
    EXPECT_THAT(QDir(folder.path()).entryList(QDir::Files), testing::ElementsAre("a.png", "b_c.png", "event.png"));

    menuAction("clear")->trigger();
    EXPECT_TRUE(QTest::qWaitFor([] { return !dock("a") && !dock("b/c"); }));
    EXPECT_NE(dock("event"), nullptr) << "a section is the debug output's";
}

TEST_F(ViewActionsTest, OfTheMenuListAllViews)
{
    show({"a & b", "c"});
    QStringList entries;
    for (const QAction* entry : window()->findChild<QMenu*>("views")->actions())
        if (!entry->isSeparator())
            entries += entry->text();
    EXPECT_THAT(entries, testing::ElementsAre("Log", "a && b", "c"));
}

TEST_F(ViewActionsTest, OfTheMenuChooseATheme)
{
    show({"a", "b", "c"});
    dock("b")->setFloating();
    action("a", "fullScreen")->trigger();
    const QPalette desktop = QApplication::palette();
    auto* const menu = window()->findChild<QMenu*>("themes");
    const auto isDark = [](const QWidget* widget) { return widget->palette().color(QPalette::Base).lightness() < 100; };
    const auto choose = [menu](int i) {
        emit menu->aboutToShow();
        menu->actions()[i]->trigger();
        EXPECT_TRUE(menu->actions()[i]->isChecked());
    };
    choose(2);
    EXPECT_TRUE(isDark(window()));
    EXPECT_TRUE(isDark(viewIn("c")));
    EXPECT_TRUE(isDark(viewIn("b"))) << "detached";
    EXPECT_TRUE(isDark(fullScreenOf("a"))) << "in full screen";
    EXPECT_EQ(QApplication::palette(), desktop) << "the program's own windows stay as they are";
    choose(1);
    EXPECT_FALSE(isDark(viewIn("b")));
    choose(0);
    EXPECT_EQ(window()->palette().color(QPalette::Base), desktop.color(QPalette::Base));
}

} // namespace
} // namespace tavo
