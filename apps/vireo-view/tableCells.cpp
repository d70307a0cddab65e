#include "apps/vireo-view/tableCells.h"

namespace vireo_view {

namespace {

constexpr std::string_view BLANKS = " \t\v\f";

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}

std::string_view unquoted(std::string_view cell)
{
    return cell.size() >= 2 && cell.front() == '"' && cell.back() == '"' ? cell.substr(1, cell.size() - 2) : cell;
}

bool separates(char c, char separator)
{
    return separator == BLANKS_SEPARATE ? isBlank(c) : c == separator;
}

// The end of the cell that begins the text.
std::size_t cellEnd(std::string_view text, char separator)
{
    bool inQuotes = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"')
            inQuotes = !inQuotes;
        else if (!inQuotes && separates(text[i], separator))
            return i;
    }
    return std::string_view::npos;
}

} // namespace

std::string_view trimmed(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(BLANKS);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(BLANKS) + 1 - begin);
}

std::string_view withoutComment(std::string_view line)
{
    for (std::size_t i = line.find('#'); i != std::string_view::npos; i = line.find('#', i + 1)) {
        const bool isAlone = i > 0 && isBlank(line[i - 1]) && (i + 1 == line.size() || isBlank(line[i + 1]));
        if (isAlone || trimmed(line.substr(0, i)).empty())
            return line.substr(0, i);
    }
    return line;
}

char separatorOf(std::string_view line)
{
    for (const char separator : {';', '\t', ','})
        if (cellEnd(line, separator) != std::string_view::npos)
            return separator;
    return BLANKS_SEPARATE;
}

void splitCells(std::string_view line, char separator, Cells& cells)
{
    cells.clear();
    while (cells.size() < MOST_CELLS) {
        const std::size_t end = cellEnd(line, separator);
        cells.push_back(unquoted(trimmed(line.substr(0, end))));
        if (end == std::string_view::npos)
            return;
        line.remove_prefix(end + 1);
        if (separator == BLANKS_SEPARATE)
            line = trimmed(line);
    }
}

} // namespace vireo_view
