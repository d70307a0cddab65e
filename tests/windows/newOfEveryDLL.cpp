#include <new>

#include "replaceFunction.h"

// A DLL calls the operator new of its C++ runtime, whatever the program defines: with this, the program's, too.

static const tavo::ReplacedImport newOfEveryDLL("_Znwy", static_cast<void* (*)(std::size_t)>(&operator new));
static const tavo::ReplacedImport newThatDoesNotThrow(
    "_ZnwyRKSt9nothrow_t", static_cast<void* (*)(std::size_t, const std::nothrow_t&) noexcept>(&operator new));
