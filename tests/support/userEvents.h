#pragma once

#include <QObject>
#include <QPoint>
#include <qtestsupport_core.h>
#include <qtestsupport_widgets.h>

class QWidget;

// What a person does with mouse and keyboard, without those: Qt's events, handed to a widget by way of the application
// before the call returns. Positions are in pixels of the widget.
//
// The header brings QTest::qWait and QTest::qWaitForWindowExposed too, which are in Qt's own libraries, not in its
// library for tests: that one is not needed.

namespace tavo {

void pressMouse(QWidget* widget, Qt::MouseButton button, const QPoint& position);
void moveMouse(QWidget* widget, Qt::MouseButtons held, const QPoint& position);
void releaseMouse(QWidget* widget, Qt::MouseButton button, const QPoint& position);
void clickMouse(QWidget* widget, const QPoint& position);
void clickMouse(QWidget* widget); // in its middle

// Presses a button, moves the mouse and releases the button.
void dragMouse(QWidget* widget, Qt::MouseButton button, const QPoint& from, const QPoint& to);

void pressKey(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {});
void releaseKey(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {});
void clickKey(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = {});

// Counts how often an object emits a signal, for as long as both live.
//
//     const SignalCount changed(panel, &GLEventConfiguration::changed);
class SignalCount
{
public:
    template <typename Sender, typename Signal>
    SignalCount(Sender* sender, Signal signal)
    {
        QObject::connect(sender, signal, &m_Receiver, [this] { ++m_Count; });
    }

    int count() const { return m_Count; }

private:
    QObject m_Receiver;
    int m_Count = 0;
};

} // namespace tavo
