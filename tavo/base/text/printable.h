#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tavo/base/Export.h"

namespace tavo {

/// UTF-8 text from anywhere, made fit to be shown in one line, on a terminal too: control characters and line ends are
/// escaped (`\x1b`), and what is not UTF-8 becomes U+FFFD. Where this shows more than `longest` characters, it is cut,
/// and ends in "...".
///
///     debugOutput << printable("two\nlines", 80) << "\n";
TAVO_BASE_EXPORT std::string printable(std::string_view text, std::size_t longest = std::string_view::npos);

} // namespace tavo
