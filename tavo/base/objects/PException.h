#pragma once

#include <exception>
#include <string>

#include "tavo/base/Export.h"

namespace tavo {

/// What the libraries throw on misuse and bad input. Its text is one line that names the class, the operation and the
/// reason.
///
///     #include <tavo/base/debug/displayException.h>
///
///     try {
///         object.assign(nullptr, nullptr);
///     } catch (const PException& exception) {
///         displayPException(exception); // one line in the debug output
///     }
class TAVO_BASE_EXPORT PException : public std::exception
{
public:
    explicit PException(std::string message);
    ~PException() override;

    const std::string& getMessage() const { return m_Message; }
    const char* what() const noexcept override { return m_Message.c_str(); }

private:
    std::string m_Message;
};

} // namespace tavo
