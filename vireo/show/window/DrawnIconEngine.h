#pragma once

#include <QIconEngine>

namespace tavo {

// An icon that paint() draws at whatever size is asked for, and leaves transparent elsewhere. An empty size has an
// empty pixmap.
class DrawnIconEngine : public QIconEngine
{
public:
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
};

} // namespace tavo
