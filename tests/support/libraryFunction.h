#pragma once

namespace tavo {

using AnyFunction = void (*)();

// The function proper behind one that VIREO_REPLACE has replaced; null if no library of this program has it.
AnyFunction libraryFunction(const char* symbol);

} // namespace tavo
