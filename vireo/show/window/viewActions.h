#pragma once

#include <QList>

class QAction;

namespace tavo {

struct DockContent;
class ViewDock;

// What can be done with what a dock shows, as buttons of its title bar: configure it, save and copy its picture, save
// its data, show it full screen. They belong to the dock, and their keys work where it has the focus. Closing it has a
// key here, too, and a button of the title bar's own; saving the data that are in view has a key and no button.
QList<QAction*> makeViewActions(ViewDock& dock, const DockContent& content);

} // namespace tavo
