#pragma once

namespace tavo {

/// An unsigned number of 32 bits, as the fields of persistent objects hold it.
using Card32 = unsigned int;

} // namespace tavo
