#pragma once

#include "vireo/show/Export.h"

namespace tavo {

/// Whether nothing is shown: VIREO_SHOW=off says so, the program is ending, or this is the child of a fork. One load
/// after the first call.
VIREO_SHOW_EXPORT bool isShowOff() noexcept;

} // namespace tavo
