#pragma once

#include <string>

#include "vireo/show/delivery/NumberArray.h"

namespace tavo {

// Why nothing is seen of so many numbers, `what` they are, for a person: there are none, or none is finite. Empty if
// there is anything to see. The first finite number ends the search.
std::string whyNothingIsSeen(const NumberArray& numbers, const char* what);

} // namespace tavo
