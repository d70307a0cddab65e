#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "apps/vireo-view/tableCells.h"

namespace vireo_view {

struct Column
{
    std::string name;           // from the header line; empty without one
    bool isTime = false;        // the values are seconds since 1970, written as dates and times
    std::vector<double> values; // of each row, NaN where there is none; empty where no row has any
    std::size_t numValues = 0;  // and those that were taken out already
    std::size_t numTexts = 0;   // cells that are neither a value nor empty
    std::string firstText;
    std::size_t lineOfFirstText = 0;

    // Otherwise the column is text, or empty.
    bool hasNumbers() const { return numValues > 0 && numValues >= numTexts; }
};

// Columns side by side.
struct Table
{
    std::vector<Column> columns;
    std::size_t numRows = 0;
    std::size_t firstLine = 0; // with numbers
    std::size_t numBefore = 0; // lines before the table, which are left out
    // Lines that have not as many cells as that, and the first of them.
    std::size_t numUneven = 0;
    std::size_t firstUneven = 0;

    bool hasNumbers() const;

    // What a person should know of it, one line each: which columns are text, and what else is not shown. If it has
    // grown, what was true before is left out.
    std::vector<std::string> remarks(const Table* before = nullptr) const;
};

// "column 2 'name'", or without the name where it has none.
std::string describe(const Table& table, std::size_t column);

// Makes a table of the lines of a text, one after another.
//
// The first line with a number or a time stamp is the first row. The last line of text before it, or the last comment
// before it where there is no such line, has the names of the columns if it has as many cells. A line with units may
// follow the names: in brackets, or where just these two lines have a cell for each column. "sep=;" may come first.
//
// Cells are separated by what separates the names, or else by semicolons, tabs or commas, whichever the first row has,
// else by any number of blanks. They may be in double quotes. Numbers have decimal points or, where commas do not
// separate them, commas. Whether a column has time stamps or numbers, its first value says; a day and the time of day
// in cells of their own become one. "nan", "NA" and the like are empty. Empty lines are left out, and comments.
class TableParser
{
public:
    // A line without its end.
    void parseLine(std::string_view line, std::size_t number);

    const Table& getTable() const { return m_Table; }

    // Takes the rows out. Those that come next belong to the same columns.
    Table takeRows();

private:
    bool isHeader() const;
    bool isBracketedUnits() const;
    void takeHeader(std::string_view line);
    void findUnits();
    void start(std::string_view line, std::size_t number);
    char separatorIn(std::string_view line) const;
    char chosenSeparator(std::string_view line);
    void dropEmptyEnd();
    void split(std::string_view line);
    void joinDateAndTime(Cells& cells) const;
    std::vector<std::string> namesIn(std::string_view text) const;
    void setNames();
    void addRow(std::size_t lineNumber);
    void addCell(Column& column, std::string_view cell, std::size_t lineNumber);

    Table m_Table;
    Cells m_Cells;
    std::size_t m_NumCells = 0; // of the first row; 0 before it
    char m_Separator = BLANKS_SEPARATE;
    std::optional<char> m_ToldSeparator;
    std::optional<std::size_t> m_DateColumn; // which the time of day follows
    std::string m_Header;
    std::vector<std::string> m_Above; // lines of text right above it, the nearest first
    bool m_HasGap = false;            // below the header
    std::string m_Units;
    std::string m_Comment;
};

} // namespace vireo_view
