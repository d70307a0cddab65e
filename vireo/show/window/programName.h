#pragma once

#include <QString>

namespace tavo {

// What the program that shows something is called: its own name, or else the executable's.
QString programName();

} // namespace tavo
