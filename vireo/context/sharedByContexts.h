#pragma once

#include <mutex>

namespace tavo {

// Guards what all contexts of the process share: the number of the next, the Cg context, and the entry points while
// they are fetched. Threads may make contexts at the same time, each its own. It is recursive: whoever makes the first
// context fetches entry points.
std::recursive_mutex& sharedByContexts();

using SharedLock = std::lock_guard<std::recursive_mutex>;

} // namespace tavo
