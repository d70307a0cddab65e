#pragma once

namespace tavo {

// Sets the current context right again after code that has thrown in the middle of its GL calls: closes an open
// primitive and display list, takes all pending errors, empties the stacks, and binds framebuffer 0.
void tidyUpGl();

} // namespace tavo
