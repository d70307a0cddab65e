#pragma once

#include "vireo/show/Export.h"

namespace tavo {

/// Says, the first time only, that numbers were sent that are finite and that no double can hold.
VIREO_SHOW_EXPORT void sayBeyondDouble() noexcept;

} // namespace tavo
