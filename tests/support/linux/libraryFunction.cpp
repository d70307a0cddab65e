#include "tests/support/libraryFunction.h"

#include <dlfcn.h>

namespace tavo {

// The program's own definition comes first, the library's next.
AnyFunction libraryFunction(const char* symbol)
{
    return reinterpret_cast<AnyFunction>(dlsym(RTLD_NEXT, symbol));
}

} // namespace tavo
