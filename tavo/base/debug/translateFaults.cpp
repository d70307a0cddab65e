#include "tavo/base/debug/translateFaults.h"

// Where there are no structured exceptions; translateFaultsWindows.cpp has what is done where there are.

namespace tavo {

void translateFaults(const std::function<void()>& code)
{
    code();
}

} // namespace tavo
