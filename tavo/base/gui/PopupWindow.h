#pragma once

#include <QWidget>

#include "tavo/base/Export.h"

namespace tavo {

/// A small window that pops up at a widget and disappears when people click elsewhere. It is hidden at first, and
/// belongs to its Qt parent.
///
///     PopupWindow* const popup = new PopupWindow(parent);
///     popup->popup(parent);
class TAVO_BASE_EXPORT PopupWindow : public QWidget
{
    Q_OBJECT

public:
    explicit PopupWindow(QWidget* parent);
    ~PopupWindow() override;

    /// Shows the window below the anchor with left edges aligned, or above it and further left where the screen ends.
    void popup(QWidget* anchor);
};

} // namespace tavo
