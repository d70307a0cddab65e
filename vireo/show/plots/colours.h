#pragma once

#include <QColor>
#include <cstddef>

namespace tavo {

// The colour of the i-th curve on a light or a dark ground. Colour-blind people can tell them apart.
QColor colourOfCurve(std::size_t i, bool isGroundDark);

} // namespace tavo
