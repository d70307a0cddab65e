#pragma once

#include <gtest/gtest.h>
#include <string>

#include "tavo/base/objects/PException.h"

namespace tavo {

// The message of the PException that the code throws; empty, and a failure of the test, if it throws none.
template <typename Code>
std::string messageOf(Code code)
{
    try {
        code();
    } catch (const PException& exception) {
        return exception.getMessage();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

} // namespace tavo
