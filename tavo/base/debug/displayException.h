#pragma once

#include <exception>
#include <functional>
#include <string>

#include "tavo/base/Export.h"
#include "tavo/base/debug/SE_Exception.h"
#include "tavo/base/debug/translateFaults.h"
#include "tavo/base/objects/PException.h"

namespace tavo {

// Reports of what went wrong, each one line in the debug output. They never throw, never stop the program and wait for
// nobody.

TAVO_BASE_EXPORT void displayPException(const PException& exception) noexcept;
TAVO_BASE_EXPORT void displaySTLException(const std::exception& exception) noexcept;

// An exception of the operating system, by its code and its record (see SE_Exception; may be null).
TAVO_BASE_EXPORT void displayOSException(unsigned int code, const void* record) noexcept;

TAVO_BASE_EXPORT void warning(const std::string& text) noexcept;

// Hands the exception that is being handled to the function above that is made for it; one of no known kind leaves a
// line that says so. To be called in a catch block.
TAVO_BASE_EXPORT void displayCurrentException() noexcept;

// Runs a piece of code from which nothing may escape, and reports what it throws, and its faults as translateFaults
// does. False if there was anything to report.
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
