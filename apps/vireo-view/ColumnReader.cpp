#include "apps/vireo-view/ColumnReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <istream>
#include <limits>
#include <new>
#include <optional>
#include <string_view>

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

constexpr std::string_view BLANKS = " \t\v\f";
constexpr char ANY_BLANKS = ' ';
constexpr double NO_VALUE = std::numeric_limits<double>::quiet_NaN();

std::string_view trimmed(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(BLANKS);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(BLANKS) + 1 - begin);
}

std::string_view unquoted(std::string_view cell)
{
    return cell.size() >= 2 && cell.front() == '"' && cell.back() == '"' ? cell.substr(1, cell.size() - 2) : cell;
}

char separatorOf(std::string_view line)
{
    for (const char separator : {';', ',', '\t'})
        if (line.find(separator) != std::string_view::npos)
            return separator;
    return ANY_BLANKS;
}

// The end of the cell that begins the text; a separator in quotes does not end it.
std::size_t cellEnd(std::string_view text, char separator)
{
    bool inQuotes = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"')
            inQuotes = !inQuotes;
        const bool separates =
            separator == ANY_BLANKS ? BLANKS.find(text[i]) != std::string_view::npos : text[i] == separator;
        if (separates && !inQuotes)
            return i;
    }
    return std::string_view::npos;
}

std::vector<std::string_view> splitCells(std::string_view line, char separator)
{
    std::vector<std::string_view> cells;
    for (;;) {
        const std::size_t end = cellEnd(line, separator);
        cells.push_back(unquoted(trimmed(line.substr(0, end))));
        if (end == std::string_view::npos)
            return cells;
        line.remove_prefix(end + 1);
        if (separator == ANY_BLANKS)
            line = trimmed(line);
    }
}

// Nothing if the cell is neither a number nor one of the ways to say that there is none.
std::optional<double> valueOf(std::string_view cell)
{
    if (cell.empty() || cell == "NA")
        return NO_VALUE;
    if (cell.size() > 1 && cell.front() == '+' && cell[1] != '-')
        cell.remove_prefix(1);
    double value = NO_VALUE;
    const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), value);
    if (error != std::errc() || end != cell.data() + cell.size())
        return std::nullopt;
    return std::isfinite(value) ? value : NO_VALUE;
}

bool isNumber(std::string_view cell)
{
    return !cell.empty() && valueOf(cell).has_value();
}

class ColumnParser
{
public:
    explicit ColumnParser(InputBuffer& input)
        : m_Input(input)
    {}

    void parseLine(std::string_view line)
    {
        line = trimmed(line.substr(0, line.find('#')));
        if (line.empty())
            return;
        if (m_FirstLine == 0)
            startWith(line);
        const std::vector<std::string_view> cells = splitCells(line, m_Separator);
        if (cells.size() != m_Columns.getNumColumns())
            fail("has " + numbered(cells.size(), "column") + " where line " + std::to_string(m_FirstLine) + " has " +
                 std::to_string(m_Columns.getNumColumns()));
        if (m_FirstLine == m_Input.getLineNumber() && std::none_of(cells.begin(), cells.end(), isNumber))
            m_Columns.names.assign(cells.begin(), cells.end());
        else
            addRow(cells);
    }

    Columns takeColumns()
    {
        for (std::size_t i = m_Columns.getNumColumns(); i-- > 0;)
            if (std::all_of(
                    m_Columns.values[i].begin(), m_Columns.values[i].end(), [](double v) { return std::isnan(v); }))
                dropColumn(i);
        return std::move(m_Columns);
    }

private:
    [[noreturn]] void fail(const std::string& reason) const
    {
        m_Input.checkEnd(); // a line that was cut off is not the file's fault
        throw InputError(m_Input.getFile(), m_Input.getLineNumber(), reason);
    }

    static std::string numbered(std::size_t number, const std::string& what)
    {
        return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
    }

    void startWith(std::string_view line)
    {
        m_FirstLine = m_Input.getLineNumber();
        m_Separator = separatorOf(line);
        m_Columns.values.resize(splitCells(line, m_Separator).size());
    }

    void addRow(const std::vector<std::string_view>& cells)
    {
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::optional<double> value = valueOf(cells[i]);
            if (!value)
                fail(quotedText(cells[i]) + " is not a number");
            m_Columns.values[i].push_back(*value);
        }
    }

    void dropColumn(std::size_t i)
    {
        m_Columns.values.erase(m_Columns.values.begin() + static_cast<std::ptrdiff_t>(i));
        if (!m_Columns.names.empty())
            m_Columns.names.erase(m_Columns.names.begin() + static_cast<std::ptrdiff_t>(i));
    }

    InputBuffer& m_Input;
    Columns m_Columns;
    std::size_t m_FirstLine = 0;
    char m_Separator = ANY_BLANKS;
};

Columns parseColumns(InputBuffer& input)
{
    ColumnParser parser(input);
    std::istream stream(&input);
    std::string line;
    while (std::getline(stream, line))
        parser.parseLine(line);
    if (stream.bad())
        throw std::bad_alloc(); // which the stream has swallowed
    input.checkEnd();
    return parser.takeColumns();
}

} // namespace

Columns readColumns(const std::filesystem::path& file, const Progress& progress)
{
    InputBuffer input(file, InputBuffer::LineEnds::UNIVERSAL, progress);
    try {
        Columns columns = parseColumns(input);
        if (columns.getNumColumns() == 0)
            throw InputError(file, "has no numbers");
        return columns;
    } catch (const std::bad_alloc&) {
        throw InputError(file, "does not fit into memory");
    }
}

} // namespace vireo_view
