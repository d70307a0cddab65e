#pragma once

#include <string>

#include "tavo/base/debug/DebugOutput.h"

namespace tavo {

// What the debug output has got since.
class DebugText
{
public:
    std::string text() const { return debugOutput.getText().substr(m_Start); }

private:
    std::size_t m_Start = debugOutput.getText().size();
};

} // namespace tavo
