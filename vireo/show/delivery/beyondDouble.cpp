#include "vireo/show/delivery/beyondDouble.h"

#include "tavo/base/debug/displayException.h"
#include "vireo/show/delivery/sayOnce.h"

namespace tavo {

void sayBeyondDouble() noexcept
{
    runGuarded([] { sayOnce("numbers of type long double that are beyond double are taken for infinite"); });
}

} // namespace tavo
