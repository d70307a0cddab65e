#pragma once

#include <QString>
#include <cstddef>
#include <string>

namespace tavo {

// A name or a title as one line of text in the window or a picture: line ends and tabs are blanks, anything else is
// made printable, and cut where it is longer than that.
QString shownText(std::string text, std::size_t longest = std::string::npos);

} // namespace tavo
