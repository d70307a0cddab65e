#include "tests/support/fullDevice.h"

namespace vireo_test {

bool makeFullDevice(const std::string&)
{
    return false;
}

} // namespace vireo_test
