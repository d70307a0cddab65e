#pragma once

#include <optional>
#include <string_view>

namespace vireo_view {

// Takes the first word from a text, with the blanks before it; empty if there is none.
std::string_view takeWord(std::string_view& text);

// The text without the blanks before it.
std::string_view withoutIndent(std::string_view text);

// The number that a word is, with a decimal point whatever the user's language; nothing if it is none.
std::optional<double> numberOf(std::string_view word);

} // namespace vireo_view
