#pragma once

#include <QList>

class QAction;
class QWidget;

namespace tavo {

class View;

// What can be done with any view, as buttons of its title bar: save and copy its picture, save its data, and show it
// full screen. They belong to the dock.
QList<QAction*> makeViewActions(View& view, QWidget& dock);

} // namespace tavo
