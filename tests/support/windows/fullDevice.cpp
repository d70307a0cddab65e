#include "tests/support/fullDevice.h"

namespace tavo {

bool makeFullDevice(const std::string&)
{
    return false;
}

} // namespace tavo
