#include "apps/vireo-view/ColumnReader.h"

#include <istream>
#include <new>
#include <string>

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

Table parseTable(InputBuffer& input)
{
    TableParser parser;
    std::istream stream(&input);
    std::string line;
    while (std::getline(stream, line))
        parser.parseLine(line, input.getLineNumber());
    if (stream.bad())
        throw std::bad_alloc(); // which the stream has swallowed
    input.checkEnd();
    return parser.takeRows();
}

} // namespace

Table readColumns(const std::filesystem::path& file, const Progress& progress)
{
    InputBuffer input(file, InputBuffer::LineEnds::UNIVERSAL, progress);
    try {
        Table table = parseTable(input);
        if (!table.hasNumbers())
            throw InputError(file, "has no numbers");
        return table;
    } catch (const std::bad_alloc&) {
        throw InputError(file, "does not fit into memory");
    }
}

} // namespace vireo_view
