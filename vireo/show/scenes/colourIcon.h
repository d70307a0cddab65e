#pragma once

#include <QIcon>
#include <QSize>
#include <vector>

#include "tavo/base/math/vectors.h"

namespace tavo {

// A picture of colours, from the first at its left end to the last at the right, at every resolution. Categories have
// borders between them.
QIcon colourIcon(const std::vector<RGBA8>& colours, bool areCategories = false);

QColor toQColor(const RGBA8& colour);

} // namespace tavo
