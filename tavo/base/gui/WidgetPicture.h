#pragma once

#include <QImage>
#include <QSize>
#include <functional>

#include "tavo/base/Export.h"

class QWidget;

namespace tavo {

/// @file
/// Pictures of widgets. Qt cannot grab what a widget draws by means other than QPainter; such a widget says how its
/// picture is made.
///
///     setPictureSource(parent, [] { return QImage("view.png"); });
///     const QImage picture = grabPicture(parent);

/// Sets how the picture of this widget is made. An empty function takes that back.
/// @owns The widget keeps the function.
TAVO_BASE_EXPORT void setPictureSource(QWidget* widget, std::function<QImage()> source);

/// The same, for a widget that can be drawn in any size; in its own, if that is what is grabbed.
TAVO_BASE_EXPORT void setSizedPictureSource(QWidget* widget, std::function<QImage(QSize)> source);

/// The picture of the widget's view: that of the widget itself, or of the first one in it, that has a source; else what
/// Qt grabs.
TAVO_BASE_EXPORT QImage grabPicture(QWidget* widget);

/// The same in another size, in pixels: drawn so, where the source can, and else scaled. Null if the size is empty.
TAVO_BASE_EXPORT QImage grabPicture(QWidget* widget, const QSize& size);

} // namespace tavo
