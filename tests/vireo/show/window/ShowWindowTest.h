#pragma once

#include <DockAreaWidget.h>
#include <DockManager.h>
#include <DockWidget.h>
#include <QAction>
#include <QApplication>
#include <QLayout>
#include <QPlainTextEdit>
#include <QTimer>
#include <gmock/gmock.h>
#include <vector>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tests/support/userEvents.h"
#include "tests/tavo/base/debug/TextDisplayer.h"
#include "vireo/show/show.h"

Q_GUI_EXPORT bool qt_sendShortcutOverrideEvent(QObject* receiver, ulong timestamp, int key, Qt::KeyboardModifiers,
    const QString& text = QString(), bool repeats = false, ushort count = 1);

namespace tavo {

// The window of the front door, with plots and with sections of displayers.
class ShowWindowTest : public testing::Test
{
protected:
    ShowWindowTest() { TextDisplayer::init(EventDisplayer::getClass()); }

    ~ShowWindowTest() override
    {
        clear();
        delete debugOutput.getWindow();
    }

    static DebugWindow* window() { return debugOutput.getWindow(); }
    static ads::CDockManager* manager() { return window()->findChild<ads::CDockManager*>(); }

    // Null if there is none of that title, as people see it.
    static ads::CDockWidget* dock(const QString& title)
    {
        for (ads::CDockWidget* dock : manager()->dockWidgetsMap())
            if (dock->windowTitle() == title)
                return dock;
        return nullptr;
    }

    // The view in a dock: the innermost widget that is all of it.
    static QWidget* viewIn(const QString& title) { return dock(title)->widget()->layout()->itemAt(0)->widget(); }

    static QAction* action(const QString& dockTitle, const char* name)
    {
        return dock(dockTitle)->findChild<QAction*>(name);
    }
    static QAction* menuAction(const char* name) { return window()->findChild<QAction*>(name); }

    // Has the window do what it does between events, until nothing is left to do.
    static void settle()
    {
        const auto isBusy = [] {
            const QTimer* const timer = window() ? window()->findChild<QTimer*>("arrangeSoon") : nullptr;
            return timer && timer->isActive();
        };
        do
            QCoreApplication::processEvents();
        while (isBusy());
        QCoreApplication::processEvents();
    }

    // Plots, shown.
    static void show(const std::vector<std::string>& names)
    {
        for (const std::string& name : names)
            plot(name).curve("y", {1, 3, 2});
        for (const std::string& name : names)
            EXPECT_TRUE(QTest::qWaitFor([&name] { return window() && dock(QString::fromStdString(name)); }));
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window()));
        settle();
    }

    static bool send(const std::string& name, const std::string& text)
    {
        const TextEvent event(text);
        return debugOutput.displayEvent(TextDisplayer::getClass(), name, &event);
    }

    // A key on the keyboard, as far as shortcuts go. The widget's window has the focus of the keyboard afterwards.
    static bool pressShortcut(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        widget->setFocus();
        EXPECT_TRUE(QTest::qWaitFor([widget] {
            if (!widget->isActiveWindow())
                widget->activateWindow();
            // What the system says comes before Qt knows, by which keys go.
            return QApplication::activeWindow() == widget->window() && widget->hasFocus();
        }));
        return qt_sendShortcutOverrideEvent(widget, 0, key, modifiers);
    }

    static QRect onScreen(const QWidget* widget) { return {widget->mapToGlobal({0, 0}), widget->size()}; }
};

} // namespace tavo
