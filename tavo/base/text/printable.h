#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tavo/base/Export.h"

namespace tavo {

// Text in UTF-8 from anywhere, as it can be shown in one line, on a terminal too: control characters and line ends are
// written out ("\x1b"), and what is not UTF-8 is shown as U+FFFD. Of text that is longer only that many characters are
// left, with "..." behind them.
TAVO_BASE_EXPORT std::string printable(std::string_view text, std::size_t longest = std::string_view::npos);

} // namespace tavo
