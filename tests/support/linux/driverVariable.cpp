#include "tests/support/driverVariable.h"

#include <cstdlib>

namespace tavo {

void setDriverVariable(const char* name, const char* value)
{
    setenv(name, value, 1);
}

} // namespace tavo
