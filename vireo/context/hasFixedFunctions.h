#pragma once

namespace tavo {

// Whether the current context has glBegin, glPushAttrib and the other functions that the core profile, and a context
// that is compatible with its future, do not have. Asks for nothing that the context does not know.
bool hasFixedFunctions();

} // namespace tavo
