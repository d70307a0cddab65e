#pragma once

#include <QImage>
#include <functional>

#include "tavo/base/Export.h"

class QWidget;

namespace tavo {

// Pictures of widgets. Qt cannot grab what a widget draws through another interface than QPainter; such a widget says
// how its picture is made.

// Sets how the picture of this widget is made; an empty function takes that back. The function is kept with the widget.
TAVO_BASE_EXPORT void setPictureSource(QWidget* widget, std::function<QImage()> source);

// The picture of the widget's view: of itself or the first widget in it that has a source, else what Qt grabs of it.
TAVO_BASE_EXPORT QImage grabPicture(QWidget* widget);

} // namespace tavo
