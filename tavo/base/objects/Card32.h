#pragma once

namespace tavo {

// A number of 32 bits without a sign, as the fields of persistent objects hold it.
using Card32 = unsigned int;

} // namespace tavo
