#pragma once

#include <qwt_text.h>

namespace tavo {

// A text of a plot that is shown as it stands. Qwt asks for the margins of a font again and again, and looks for them
// by the font's name: here they are known as long as the font is the same.
QwtText plainText(const QString& text);

} // namespace tavo
