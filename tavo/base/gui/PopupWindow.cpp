#include "tavo/base/gui/PopupWindow.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace tavo {

namespace {

// Where a window of that size stands at the anchor without leaving the screen.
QPoint placeAt(const QRect& anchor, const QSize& size, const QRect& screen)
{
    const int below = anchor.bottom() + 1;
    const bool fitsBelow = below + size.height() - 1 <= screen.bottom();
    const int x = std::max(screen.left(), std::min(anchor.left(), screen.right() - size.width() + 1));
    return QPoint(x, fitsBelow ? below : std::max(screen.top(), anchor.top() - size.height()));
}

} // namespace

PopupWindow::PopupWindow(QWidget* parent)
    : QWidget(parent, Qt::Popup)
{}

PopupWindow::~PopupWindow() = default;

void PopupWindow::popup(QWidget* anchor)
{
    const QRect anchorArea(anchor->mapToGlobal(QPoint(0, 0)), anchor->size());
    const QScreen* screen = QGuiApplication::screenAt(anchorArea.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();

    adjustSize();
    move(placeAt(anchorArea, size(), screen->availableGeometry()));
    show();
}

} // namespace tavo
