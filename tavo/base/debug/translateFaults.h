#pragma once

#include <functional>

#include "tavo/base/Export.h"

namespace tavo {

/// Runs a piece of code, and passes on what it throws. On 64-bit Windows it also throws a fault of the processor in
/// that code (an access violation, an integer division by zero, a stack overflow) as an SE_Exception, whose record
/// lives as long as the exception.
///
///     #include <tavo/base/debug/DebugOutput.h>
///     #include <tavo/base/debug/SE_Exception.h>
///
///     try {
///         translateFaults(compute);
///     } catch (const SE_Exception& fault) {
///         debugOutput << "fault " << fault.getCode() << "\n";
///     }
///
/// - Whoever would have seen the fault before an `__except` block around this call has seen it: debuggers, vectored
///   handlers, `__except` blocks inside. What they handle is not thrown.
/// - The code is abandoned where the fault was. Its destructors and catch blocks do not run, so what they would have
///   freed, unlocked or restored stays as it is: keep such things outside the call, where the exception is like any
///   other.
/// - Faults elsewhere, on other threads too, go their usual way. So do breakpoints and exceptions with other codes,
///   which are not faults.
///
/// On other systems a fault ends the process, as it does without this function: it arrives as a signal, and a signal
/// handler may neither throw nor leave the interrupted code in any defined way.
TAVO_BASE_EXPORT void translateFaults(const std::function<void()>& code);

} // namespace tavo
