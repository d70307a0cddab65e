#pragma once

#include <QImage>
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

/// The picture of the widget's view: that of the widget itself, or of the first one in it, that has a source; else what
/// Qt grabs.
TAVO_BASE_EXPORT QImage grabPicture(QWidget* widget);

} // namespace tavo
