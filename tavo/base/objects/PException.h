#pragma once

#include <exception>
#include <string>

#include "tavo/base/Export.h"

namespace tavo {

// What the libraries throw on misuse and bad input: one line of text, which names the class, the operation and the
// reason.
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
