#include "tests/support/driverVariable.h"

#include <cstdlib>

namespace vireo_test {

void setDriverVariable(const char* name, const char* value)
{
    setenv(name, value, 1);
}

} // namespace vireo_test
