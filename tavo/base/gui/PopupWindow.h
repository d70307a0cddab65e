#pragma once

#include <QWidget>

#include "tavo/base/Export.h"

namespace tavo {

// A small window that pops up at a widget and goes away when the person clicks elsewhere. It belongs to its Qt parent
// and is hidden at first.
class TAVO_BASE_EXPORT PopupWindow : public QWidget
{
    Q_OBJECT

public:
    explicit PopupWindow(QWidget* parent);
    ~PopupWindow() override;

    // Shows the window below the anchor, left edges aligned, or above it and further left where the screen ends.
    void popup(QWidget* anchor);
};

} // namespace tavo
