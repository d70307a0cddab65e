#pragma once

#include <exception>
#include <functional>
#include <string>

#include "tavo/base/Export.h"
#include "tavo/base/debug/SE_Exception.h"
#include "tavo/base/debug/translateFaults.h"
#include "tavo/base/objects/PException.h"

namespace tavo {

/// @file
/// Reports of what went wrong, each one line in the debug output. They never throw, never stop the program and never
/// wait.

/// Reports what the libraries throw.
TAVO_BASE_EXPORT void displayPException(const PException& exception) noexcept;
/// Reports any other standard exception.
TAVO_BASE_EXPORT void displaySTLException(const std::exception& exception) noexcept;

/// Reports an exception of the operating system by its code and its record, which may be null (see SE_Exception).
TAVO_BASE_EXPORT void displayOSException(unsigned int code, const void* record) noexcept;

/// Reports a warning of your own.
TAVO_BASE_EXPORT void warning(const std::string& text) noexcept;

/// Reports the exception that is being handled, by the function above that fits it. An exception of no known kind
/// leaves a line that says so.
/// @needs A catch block around it.
TAVO_BASE_EXPORT void displayCurrentException() noexcept;

/// Runs code from which nothing may escape. Reports what it throws, and its faults as translateFaults does. Returns
/// false if there was anything to report.
///
///     if (!runGuarded([] { compute(); }))
///         warning("nothing was computed");
template <typename Code>
bool runGuarded(Code&& code) noexcept
{
    try {
        translateFaults(std::ref(code));
        return true;
    } catch (...) {
        displayCurrentException();
        return false;
    }
}

} // namespace tavo
