#pragma once

#include <functional>

#include "tavo/base/Export.h"

namespace tavo {

// Runs a piece of code; what it throws is thrown on. On 64-bit Windows, a fault of the processor in it (an access
// violation, an integer division by zero, a stack overflow) is thrown too, as an SE_Exception whose record lives as
// long as the exception does.
//
// - Whoever would have seen the fault before an __except block around this call has seen it: debuggers, vectored
//   handlers, __except blocks inside. What they handle is not thrown.
// - The code is left where the fault was. Destructors and catch blocks in it do not run, so what it would have freed,
//   unlocked or set back there stays as it is: have few such things inside. Outside the call, the exception is like any
//   other.
// - Faults elsewhere, on other threads too, go their usual way. So do breakpoints and exceptions of other codes, which
//   are no faults.
//
// Elsewhere a fault ends the process, as it does without this function: it comes as a signal, and a signal handler may
// neither throw nor leave the code that it has interrupted in a way that is defined.
TAVO_BASE_EXPORT void translateFaults(const std::function<void()>& code);

} // namespace tavo
