#include "tests/support/fullDevice.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace tavo {

// A node of its own: whoever may make one may also, where a test fails, have replaced the system's.
bool makeFullDevice(const std::string& path)
{
    constexpr unsigned int MEMORY_DEVICES = 1;
    constexpr unsigned int FULL = 7;
    return mknod(path.c_str(), S_IFCHR | 0666, makedev(MEMORY_DEVICES, FULL)) == 0;
}

} // namespace tavo
