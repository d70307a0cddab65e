#pragma once

namespace tavo {

// Sets an environment variable that the driver reads once, when the first context of the process is made. With
// run-with-wine the program may end here and be started again with the variable.
void setDriverVariable(const char* name, const char* value);

} // namespace tavo
