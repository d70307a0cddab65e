#include "vireo/show/window/viewActions.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QStyle>
#include <functional>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/files/saveFile.h"
#include "vireo/show/window/View.h"

namespace tavo {

namespace {

// Asks for a file without blocking the program.
void askForFile(
    View& view, const QString& title, const QString& filter, const std::function<void(const QString&)>& save)
{
    auto* dialog = new QFileDialog(&view, title, QString(), filter);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(filter.section("*.", 1, 1).section(QRegExp("[ )]"), 0, 0));
    QObject::connect(
        dialog, &QFileDialog::fileSelected, &view, [save](const QString& file) { runGuarded([&] { save(file); }); });
    dialog->open();
}

void report(const QString& file, const char* what, const std::string& error)
{
    if (!error.empty())
        warning(file.toStdString() + ": " + what + " cannot be saved: " + error);
}

QAction* makeAction(QWidget& dock, QStyle::StandardPixmap icon, const QString& text, const QKeySequence& key)
{
    auto* action = new QAction(dock.style()->standardIcon(icon), text, &dock);
    action->setShortcut(key);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    action->setToolTip(text + " (" + key.toString(QKeySequence::NativeText) + ")");
    dock.addAction(action);
    return action;
}

} // namespace

QList<QAction*> makeViewActions(View& view, QWidget& dock)
{
    View* const shown = &view;
    QAction* const savePictureAction =
        makeAction(dock, QStyle::SP_DialogSaveButton, View::tr("Save picture"), QKeySequence("Ctrl+S"));
    QObject::connect(savePictureAction, &QAction::triggered, shown, [shown] {
        askForFile(*shown, View::tr("Save picture"), View::tr("Pictures (*.png)"), [shown](const QString& file) {
            report(file, "the picture", savePicture(file, shown->picture(shown->size())));
        });
    });
    QAction* const copyAction = makeAction(dock, QStyle::SP_FileIcon, View::tr("Copy picture"), QKeySequence("Ctrl+C"));
    QObject::connect(copyAction, &QAction::triggered, shown,
        [shown] { QApplication::clipboard()->setImage(shown->picture(shown->size())); });
    QAction* const saveDataAction =
        makeAction(dock, QStyle::SP_FileDialogDetailedView, View::tr("Save data"), QKeySequence("Ctrl+D"));
    QObject::connect(saveDataAction, &QAction::triggered, shown, [shown] {
        askForFile(*shown, View::tr("Save data"), View::tr("Comma-separated values (*.csv)"),
            [shown](const QString& file) { report(file, "the data", shown->saveData(file)); });
    });
    return {savePictureAction, copyAction, saveDataAction};
}

} // namespace tavo
