#pragma once

#include <QIcon>

class QWidget;

namespace tavo {

enum class Symbol
{
    Configure,
    SavePicture,
    CopyPicture,
    SaveData,
    FullScreen,
    Close,
    Detach,
    Menu
};

// A small drawing for a button, in the colour that text has on that widget, whatever the theme is at the time.
QIcon symbolIcon(Symbol symbol, const QWidget* on);

} // namespace tavo
