#include "tests/support/libraryFunction.h"

#include <dlfcn.h>

namespace vireo_test {

// The program's own definition comes first, the library's next.
AnyFunction libraryFunction(const char* symbol)
{
    return reinterpret_cast<AnyFunction>(dlsym(RTLD_NEXT, symbol));
}

} // namespace vireo_test
