#pragma once

namespace tavo {

/// An unsigned number of 32 bits, as the fields of persistent objects hold it.
///
///     #include <tavo/base/objects/Object.h>
///
///     const Card32 hash = object.getFieldsHashValue();
using Card32 = unsigned int;

} // namespace tavo
