#include "apps/vireo-view/words.h"

#include <algorithm>
#include <charconv>

namespace vireo_view {

namespace {

constexpr std::string_view BLANKS = " \t\r\n\v\f";

} // namespace

std::string_view withoutIndent(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(BLANKS), text.size()));
    return text;
}

std::string_view takeWord(std::string_view& text)
{
    text = withoutIndent(text);
    const std::string_view word = text.substr(0, text.find_first_of(BLANKS));
    text.remove_prefix(word.size());
    return word;
}

std::optional<double> numberOf(std::string_view word)
{
    if (word.size() > 1 && word.front() == '+' && word[1] != '-')
        word.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    return error == std::errc() && end == word.data() + word.size() ? std::optional(value) : std::nullopt;
}

} // namespace vireo_view
