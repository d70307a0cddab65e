#include "vireo/show/window/viewActions.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/files/saveFile.h"
#include "vireo/show/window/SymbolIcon.h"
#include "vireo/show/window/ViewDock.h"

namespace tavo {

namespace {

QString endingOf(const QString& format)
{
    return format.section("*.", 1, 1).section(QRegExp("[ )]"), 0, 0);
}

// Asks for a file without blocking the program. It ends as the chosen format wants, unless a person says how.
void askForFile(
    ViewDock& dock, const QString& title, const QStringList& formats, const std::function<void(const QString&)>& save)
{
    auto* dialog = new QFileDialog(dock.getContent(), title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilters(formats);
    dialog->setDefaultSuffix(endingOf(formats.front()));
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog,
        [dialog](const QString& format) { dialog->setDefaultSuffix(endingOf(format)); });
    QObject::connect(
        dialog, &QFileDialog::fileSelected, &dock, [save](const QString& file) { runGuarded([&] { save(file); }); });
    dialog->open();
}

void report(const QString& file, const char* what, const std::string& error)
{
    if (!error.empty())
        warning(file.toStdString() + ": " + what + " cannot be saved: " + error);
}

template <typename Work>
QAction* makeAction(ViewDock& dock, Symbol symbol, const char* name, const QString& text, const char* key, Work work)
{
    auto* action = new QAction(symbolIcon(symbol, &dock), text, &dock);
    action->setObjectName(name);
    action->setShortcut(QKeySequence(key));
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setToolTip(text + " (" + action->shortcut().toString(QKeySequence::NativeText) + ")");
    QObject::connect(action, &QAction::triggered, &dock, [work] { runGuarded(work); });
    dock.addAction(action);
    return action;
}

void askWhereToSavePicture(ViewDock& dock, const DockContent& content)
{
    const auto save = [&dock, savePicture = content.savePicture](const QString& file) {
        return savePicture ? savePicture(file) : tavo::savePicture(file, dock.getPicture());
    };
    askForFile(dock, ViewDock::tr("Save picture"),
        content.pictureFormats.isEmpty() ? QStringList("PNG (*.png)") : content.pictureFormats,
        [save](const QString& file) { report(file, "the picture", save(file)); });
}

void askWhereToSaveData(ViewDock& dock, const QString& title, const DataFormats& formats,
    const std::function<std::string(const QString&)>& saveData)
{
    askForFile(
        dock, title, filtersOf(formats), [saveData](const QString& file) { report(file, "the data", saveData(file)); });
}

} // namespace

QList<QAction*> makeViewActions(ViewDock& dock, const DockContent& content)
{
    QList<QAction*> buttons;
    if (content.configure)
        buttons +=
            makeAction(dock, Symbol::Configure, "configure", ViewDock::tr("Configure"), "Ctrl+K", content.configure);
    if (content.picture) {
        buttons += makeAction(dock, Symbol::SavePicture, "savePicture", ViewDock::tr("Save picture"), "Ctrl+S",
            [&dock, content] { askWhereToSavePicture(dock, content); });
        buttons += makeAction(dock, Symbol::CopyPicture, "copyPicture", ViewDock::tr("Copy picture"), "Ctrl+C",
            [&dock] { QApplication::clipboard()->setImage(dock.getPicture()); });
    }
    if (content.saveData)
        buttons += makeAction(dock, Symbol::SaveData, "saveData", ViewDock::tr("Save data"), "Ctrl+D",
            [&dock, formats = content.dataFormats, saveData = content.saveData] {
                askWhereToSaveData(dock, ViewDock::tr("Save data"), formats, saveData);
            });
    if (content.saveSeenData)
        makeAction(dock, Symbol::SaveData, "saveSeenData", ViewDock::tr("Save data in view"), "Ctrl+Shift+D",
            [&dock, saveData = content.saveSeenData] {
                askWhereToSaveData(dock, ViewDock::tr("Save data in view"), tableFormats(), saveData);
            });
    buttons += makeAction(dock, Symbol::FullScreen, "fullScreen", ViewDock::tr("Full screen"), "F11",
        [&dock] { dock.setOnFullScreen(!dock.isOnFullScreen()); });
    makeAction(dock, Symbol::Close, "closeView", ViewDock::tr("Close"), "Ctrl+W", [&dock] { dock.closeDockWidget(); });
    return buttons;
}

} // namespace tavo
