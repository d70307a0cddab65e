#include "apps/vireo-view/TableParser.h"

#include <QString>
#include <QTextCodec>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/TimeStamp.h"

namespace vireo_view {

namespace {

constexpr double NO_VALUE = std::numeric_limits<double>::quiet_NaN();

// The ways to say that there is none.
bool isEmptyCell(std::string_view cell)
{
    constexpr std::array<std::string_view, 8> WORDS = {"", "NA", "N/A", "n/a", "null", "NULL", "-", "--"};
    return std::find(WORDS.begin(), WORDS.end(), cell) != WORDS.end();
}

std::optional<double> numberIn(std::string_view cell)
{
    double value = NO_VALUE;
    const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), value);
    return error == std::errc() && end == cell.data() + cell.size() ? std::optional(value) : std::nullopt;
}

std::optional<double> numberOf(std::string_view cell, bool mayHaveComma)
{
    if (cell.size() > 1 && cell.front() == '+' && cell[1] != '-')
        cell.remove_prefix(1);
    const std::size_t comma = mayHaveComma ? cell.find(',') : std::string_view::npos;
    std::array<char, 64> text{};
    if (comma == std::string_view::npos || cell.size() > text.size() || cell.find('.') != std::string_view::npos)
        return numberIn(cell);
    std::copy(cell.begin(), cell.end(), text.begin());
    text[comma] = '.';
    return numberIn({text.data(), cell.size()});
}

bool isValue(std::string_view cell, char separator)
{
    const auto number = numberOf(cell, separator != ',');
    return (number && !std::isnan(*number)) || timeStampOf(cell);
}

bool isGap(std::string_view cell)
{
    const auto number = numberIn(cell);
    return isEmptyCell(cell) || (number && std::isnan(*number));
}

bool isBracketed(std::string_view cell)
{
    return cell.size() >= 2 &&
           ((cell.front() == '[' && cell.back() == ']') || (cell.front() == '(' && cell.back() == ')'));
}

// A bracket belongs to the name before it: "pressure [Pa]" separated by blanks is one.
void joinBrackets(Cells& names)
{
    for (std::size_t i = names.size(); i-- > 1;)
        if (isBracketed(names[i])) {
            const char* const end = names[i].data() + names[i].size();
            names[i - 1] = {names[i - 1].data(), static_cast<std::size_t>(end - names[i - 1].data())};
            names.erase(names.begin() + static_cast<std::ptrdiff_t>(i));
        }
}

// Names are UTF-8, or else what old programs of Western Europe write.
std::string utf8Of(std::string_view text)
{
    QTextCodec::ConverterState state;
    const auto size = static_cast<int>(text.size());
    const QString decoded = QTextCodec::codecForName("UTF-8")->toUnicode(text.data(), size, &state);
    const bool isUtf8 = state.invalidChars == 0 && state.remainingChars == 0;
    return (isUtf8 ? decoded : QString::fromLatin1(text.data(), size)).toStdString();
}

std::string nameOf(std::string_view cell)
{
    std::string name = utf8Of(cell);
    for (std::size_t i = name.find("\"\""); i != std::string::npos; i = name.find("\"\"", i + 1))
        name.erase(i, 1);
    return name;
}

std::string numbered(std::size_t number, const std::string& what)
{
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

// What there is of a line up to its end: where tabs separate, those at the beginning are empty cells.
std::string_view rowOf(std::string_view line, char separator)
{
    const auto begin = line.find_first_not_of(separator == '\t' ? " " : " \t\v\f");
    return line.substr(std::min(begin, line.size()));
}

std::string textRemark(const Table& table, std::size_t i)
{
    const Column& column = table.columns[i];
    const std::string text = quotedText(column.firstText) + " in line " + std::to_string(column.lineOfFirstText);
    if (!column.hasNumbers())
        return describe(table, i) + " is text and left out (" + text + ")";
    const std::string remark = describe(table, i) + ": " + text + " is not a " + (column.isTime ? "time" : "number");
    if (column.numTexts == 1)
        return remark + "; there is a gap";
    return remark + (column.numTexts == 2 ? ", nor is " : ", nor are ") + numbered(column.numTexts - 1, "more cell") +
           "; there are gaps";
}

} // namespace

bool Table::hasNumbers() const
{
    return std::any_of(columns.begin(), columns.end(), [](const Column& column) { return column.hasNumbers(); });
}

std::vector<std::string> Table::remarks(const Table* before) const
{
    constexpr std::size_t MOST = 10;
    const auto hadTexts = [before](std::size_t i) {
        return before && i < before->columns.size() && before->columns[i].numTexts > 0;
    };
    std::vector<std::string> lines;
    if (numBefore > 0 && !before)
        lines.push_back("the table begins in line " + std::to_string(numBefore + 1) + "; " +
                        numbered(numBefore, "line") + " before it " + (numBefore == 1 ? "is" : "are") + " left out");
    std::size_t numTextColumns = 0;
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i].numTexts > 0 && !hadTexts(i) && ++numTextColumns <= MOST)
            lines.push_back(textRemark(*this, i));
    if (numTextColumns > MOST)
        lines.push_back("so it is with " + std::to_string(numTextColumns - MOST) + " more columns");
    if (numUneven > 0 && !(before && before->numUneven > 0))
        lines.push_back(numbered(numUneven, "line") + (numUneven == 1 ? " has" : " have") +
                        " not as many cells as line " + std::to_string(firstLine) + ", the first of them line " +
                        std::to_string(firstUneven));
    if (columns.size() >= MOST_CELLS && !(before && before->columns.size() >= MOST_CELLS))
        lines.push_back("there are " + std::to_string(MOST_CELLS) + " columns or more; the rest is left out");
    return lines;
}

std::string describe(const Table& table, std::size_t column)
{
    const std::string& name = table.columns[column].name;
    return "column " + std::to_string(column + 1) + (name.empty() ? "" : " " + quotedText(name));
}

void TableParser::parseLine(std::string_view line, std::size_t number)
{
    constexpr std::string_view EXCELS_HINT = "sep=";
    const std::string_view bare = trimmed(withoutComment(line));
    const bool hasStarted = m_NumCells > 0;
    if (bare.empty()) {
        if (const std::size_t mark = line.find('#'); !hasStarted && mark != std::string_view::npos)
            m_Comment = trimmed(line.substr(mark + 1));
        m_HasGap = true;
        return;
    }
    if (number == 1 && bare.size() == EXCELS_HINT.size() + 1 && bare.starts_with(EXCELS_HINT)) {
        m_ToldSeparator = bare.back();
        return;
    }
    if (!hasStarted)
        m_Separator = separatorIn(bare);
    const std::string_view row =
        rowOf(line.substr(0, static_cast<std::size_t>(bare.data() + bare.size() - line.data())), m_Separator);
    if (!hasStarted) {
        split(row);
        if (isHeader())
            return takeHeader(row);
        start(row, number);
    }
    split(row);
    addRow(number);
}

Table TableParser::takeRows()
{
    for (Column& column : m_Table.columns)
        if (!column.values.empty())
            column.values.resize(m_Table.numRows, NO_VALUE);
    Table next; // the same columns, without rows
    next.firstLine = m_Table.firstLine;
    next.numUneven = m_Table.numUneven;
    next.firstUneven = m_Table.firstUneven;
    for (Column& column : m_Table.columns) {
        std::vector<double> values = std::exchange(column.values, {});
        next.columns.push_back(column);
        column.values = std::move(values);
    }
    return std::exchange(m_Table, std::move(next));
}

bool TableParser::isHeader() const
{
    return std::none_of(m_Cells.begin(), m_Cells.end(), [this](auto cell) { return isValue(cell, m_Separator); }) &&
           !std::all_of(m_Cells.begin(), m_Cells.end(), isGap);
}

bool TableParser::isBracketedUnits() const
{
    return !m_Header.empty() && std::all_of(m_Cells.begin(), m_Cells.end(),
                                    [](auto cell) { return cell.empty() || cell == "-" || isBracketed(cell); });
}

void TableParser::takeHeader(std::string_view line)
{
    constexpr std::size_t MOST_ABOVE = 2;
    if (isBracketedUnits()) {
        m_Units = line;
        return;
    }
    const std::string above = std::exchange(m_Header, line);
    m_Units.clear();
    if (std::exchange(m_HasGap, false))
        m_Above.clear();
    else if (!above.empty())
        m_Above.insert(m_Above.begin(), above);
    m_Above.resize(std::min(m_Above.size(), MOST_ABOVE));
}

// Of two lines of text that have a cell for each column, the first has the names and the second the units. Of more, as
// of one, the last has the names.
void TableParser::findUnits()
{
    const auto numCells = [this](std::string_view text) {
        Cells cells;
        splitCells(text, m_Separator, cells);
        return cells.size();
    };
    const auto hasNames = [this](const std::string& text) { return !namesIn(text).empty(); };
    if (!m_Units.empty() || m_Above.empty() || !hasNames(m_Above[0]) || (m_Above.size() > 1 && hasNames(m_Above[1])))
        return;
    std::string units = m_Header;
    if (const std::size_t number = numCells(m_Above[0]); m_Separator == '\t' && numCells(units) < number)
        units.append(number - numCells(units), '\t'); // those at the end of a line are cut off
    if (!hasNames(units))
        return;
    m_Units = units;
    m_Header = m_Above[0];
}

char TableParser::separatorIn(std::string_view line) const
{
    return m_ToldSeparator.value_or(separatorOf(line));
}

// That of the header if it makes as many cells of both.
char TableParser::chosenSeparator(std::string_view line)
{
    if (m_Header.empty())
        return separatorIn(line);
    m_Separator = separatorIn(m_Header);
    splitCells(line, m_Separator, m_Cells);
    dropEmptyEnd();
    Cells names;
    splitCells(m_Header, m_Separator, names);
    return names.size() == m_Cells.size() ? m_Separator : separatorIn(line);
}

// A separator at the end of the first row is no column where the header has none.
void TableParser::dropEmptyEnd()
{
    Cells names;
    splitCells(m_Header, m_Separator, names);
    if (m_Cells.size() == names.size() + 1 && m_Cells.back().empty())
        m_Cells.pop_back();
}

void TableParser::start(std::string_view line, std::size_t number)
{
    m_Separator = chosenSeparator(line);
    splitCells(line, m_Separator, m_Cells);
    dropEmptyEnd();
    for (std::size_t i = 0; i + 1 < m_Cells.size() && !m_DateColumn; ++i)
        if (isDate(m_Cells[i]) && isTimeOfDay(m_Cells[i + 1]))
            m_DateColumn = i;
    joinDateAndTime(m_Cells);
    m_NumCells = m_Cells.size();
    m_Table.firstLine = number;
    m_Table.columns.resize(m_NumCells);
    findUnits();
    setNames();
}

void TableParser::split(std::string_view line)
{
    splitCells(line, m_Separator, m_Cells);
    joinDateAndTime(m_Cells);
}

void TableParser::joinDateAndTime(Cells& cells) const
{
    if (!m_DateColumn || *m_DateColumn + 1 >= cells.size())
        return;
    std::string_view& date = cells[*m_DateColumn];
    const std::string_view time = cells[*m_DateColumn + 1];
    if (!date.empty() && !time.empty())
        date = {date.data(), static_cast<std::size_t>(time.data() + time.size() - date.data())};
    cells.erase(cells.begin() + static_cast<std::ptrdiff_t>(*m_DateColumn + 1));
}

// One for each column, or none.
std::vector<std::string> TableParser::namesIn(std::string_view text) const
{
    Cells cells;
    splitCells(text, m_Separator, cells);
    if (m_Separator == BLANKS_SEPARATE && cells.size() != m_NumCells)
        joinBrackets(cells);
    if (m_DateColumn && cells.size() == m_NumCells + 1)
        cells.erase(cells.begin() + static_cast<std::ptrdiff_t>(*m_DateColumn + 1));
    if (cells.size() != m_NumCells)
        return {};
    std::vector<std::string> names(cells.size());
    std::transform(cells.begin(), cells.end(), names.begin(), nameOf);
    return names;
}

void TableParser::setNames()
{
    const std::vector<std::string> names = namesIn(m_Header.empty() ? m_Comment : m_Header);
    const std::vector<std::string> units = m_Units.empty() ? std::vector<std::string>() : namesIn(m_Units);
    for (std::size_t i = 0; i < names.size(); ++i) {
        m_Table.columns[i].name = names[i];
        if (i < units.size() && !isGap(units[i]))
            m_Table.columns[i].name += " " + (isBracketed(units[i]) ? units[i] : "[" + units[i] + "]");
    }
}

void TableParser::addRow(std::size_t lineNumber)
{
    if (!m_Cells.empty() && m_Cells.size() > m_NumCells && m_Cells.back().empty())
        m_Cells.pop_back(); // a separator at the end of the line
    if (m_Cells.size() != m_NumCells && m_Table.numUneven++ == 0)
        m_Table.firstUneven = lineNumber;
    if (m_Cells.size() > m_Table.columns.size())
        m_Table.columns.resize(m_Cells.size());
    for (std::size_t i = 0; i < m_Cells.size(); ++i)
        addCell(m_Table.columns[i], m_Cells[i], lineNumber);
    ++m_Table.numRows;
}

void TableParser::addCell(Column& column, std::string_view cell, std::size_t lineNumber)
{
    if (cell.empty())
        return;
    std::optional<double> value;
    if (!column.isTime)
        value = numberOf(cell, m_Separator != ',');
    if (!value && (column.isTime || column.numValues == 0)) {
        value = timeStampOf(cell);
        column.isTime = column.isTime || value;
    }
    if (value && !std::isnan(*value)) {
        column.values.resize(m_Table.numRows, NO_VALUE);
        column.values.push_back(*value);
        ++column.numValues;
    } else if (!value && !isEmptyCell(cell) && column.numTexts++ == 0) {
        column.firstText = cell.substr(0, 1000);
        column.lineOfFirstText = lineNumber;
    }
}

} // namespace vireo_view
