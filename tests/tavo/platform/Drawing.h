#pragma once

#include <gtest/gtest.h>

namespace tavo {

// Whether the current context draws: a colour that is cleared to is read back, without a GL error. Draws to the
// surface, or to a renderbuffer of its own for a context without one.
testing::AssertionResult drawsToSurface();
testing::AssertionResult drawsToRenderbuffer();

} // namespace tavo
