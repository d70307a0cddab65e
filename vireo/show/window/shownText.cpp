#include "vireo/show/window/shownText.h"

#include <algorithm>

#include "tavo/base/text/printable.h"

namespace tavo {

QString shownText(std::string text, std::size_t longest)
{
    const auto isBlank = [](char c) { return c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r'; };
    std::replace_if(text.begin(), text.end(), isBlank, ' ');
    return QString::fromStdString(printable(text, longest));
}

} // namespace tavo
