#pragma once

#include <stdexcept>
#include <string>

namespace tavo {

// The text of the std::out_of_range that the operation throws.
template <typename Operation>
std::string textOutOfRange(Operation operation)
{
    try {
        operation();
    } catch (const std::out_of_range& error) {
        return error.what();
    }
    return "nothing was thrown";
}

} // namespace tavo
