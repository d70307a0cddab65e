#pragma once

#include <string>

namespace tavo {

// GL's state for slices, and what it needs of the driver.

// Throws PException that begins with the operation's name without GL_ARB_multitexture.
void requireMultitexture(const std::string& operation);

// Filters, wrap modes and texture environment of the bound 2D texture and the active unit for drawing slices.
void setSliceParameters();

// State in which slices are drawn from the back to the front.
void enableBlendedSlices();

} // namespace tavo
