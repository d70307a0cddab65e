#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vireo_view {

// The cells of a line of a table. They are parts of the line.
using Cells = std::vector<std::string_view>;

// Stands for any number of blanks and tabs.
constexpr char BLANKS_SEPARATE = ' ';

// How many cells of a line are looked at.
constexpr std::size_t MOST_CELLS = 10'000;

// Without blanks at its ends.
std::string_view trimmed(std::string_view text);

// Without a comment: what follows a '#' that begins the line or stands between blanks.
std::string_view withoutComment(std::string_view line);

// What separates the cells of a line: semicolons, tabs or commas, whichever it has, looked for in this order, else
// blanks.
char separatorOf(std::string_view line);

// Splits a trimmed line. Separators in double quotes are text; cells lose their quotes and the blanks around them.
void splitCells(std::string_view line, char separator, Cells& cells);

} // namespace vireo_view
