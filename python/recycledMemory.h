#pragma once

#include <cstddef>
#include <memory>

namespace tavo::python {

// Memory for a copy of numbers. When nobody has the copy any more, it is kept for the next one: to get as much anew,
// the system has to clear it, which takes several times as long as copying numbers into it. Any thread may let go of
// it.
std::shared_ptr<std::byte> recycledMemory(std::size_t size);

} // namespace tavo::python
