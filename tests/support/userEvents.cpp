#include "tests/support/userEvents.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

namespace tavo {

namespace {

// The button is the one that the event is about, if any; all those that are down then are held.
void sendMouseEvent(
    QWidget* widget, QEvent::Type type, Qt::MouseButton button, Qt::MouseButtons held, const QPoint& position)
{
    QMouseEvent event(type, position, widget->mapToGlobal(position), button, held, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

void sendKeyEvent(QWidget* widget, QEvent::Type type, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QKeyEvent event(type, key, modifiers);
    QApplication::sendEvent(widget, &event);
}

} // namespace

void pressMouse(QWidget* widget, Qt::MouseButton button, const QPoint& position)
{
    sendMouseEvent(widget, QEvent::MouseButtonPress, button, button, position);
}

void moveMouse(QWidget* widget, Qt::MouseButtons held, const QPoint& position)
{
    sendMouseEvent(widget, QEvent::MouseMove, Qt::NoButton, held, position);
}

void releaseMouse(QWidget* widget, Qt::MouseButton button, const QPoint& position)
{
    sendMouseEvent(widget, QEvent::MouseButtonRelease, button, Qt::NoButton, position);
}

void clickMouse(QWidget* widget, const QPoint& position)
{
    pressMouse(widget, Qt::LeftButton, position);
    releaseMouse(widget, Qt::LeftButton, position);
}

void clickMouse(QWidget* widget)
{
    clickMouse(widget, widget->rect().center());
}

void dragMouse(QWidget* widget, Qt::MouseButton button, const QPoint& from, const QPoint& to)
{
    pressMouse(widget, button, from);
    moveMouse(widget, button, to);
    releaseMouse(widget, button, to);
}

void pressKey(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    sendKeyEvent(widget, QEvent::KeyPress, key, modifiers);
}

void releaseKey(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    sendKeyEvent(widget, QEvent::KeyRelease, key, modifiers);
}

void clickKey(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    pressKey(widget, key, modifiers);
    releaseKey(widget, key, modifiers);
}

} // namespace tavo
