#pragma once

#include <functional>

namespace tavo {

// Whether the driver can say what isAnySeen() asks: it has queries of occlusion, which came with OpenGL 1.5. The
// context must be current, here and below.
bool canAskWhatIsSeen();

// Calls draw(), and waits until the driver says whether any pixel of that has passed all tests.
bool isAnySeen(const std::function<void()>& draw);

} // namespace tavo
