#include "apps/vireo-view/LabelTable.h"

#include <array>
#include <cmath>
#include <fstream>
#include <optional>
#include <string_view>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/TextLines.h"
#include "apps/vireo-view/tableCells.h"
#include "apps/vireo-view/words.h"

namespace vireo_view {

namespace {

namespace fs = std::filesystem;

std::optional<fs::path> findBeside(fs::path volume, const char* extension)
{
    if (volume.extension() == ".gz")
        volume.replace_extension();
    for (const fs::path& base : {volume, fs::path(volume).replace_extension()}) {
        fs::path file = base;
        file += extension;
        std::error_code error;
        if (fs::is_regular_file(file, error))
            return file;
    }
    return {};
}

// Behind a name may stand another number, by which others call it.
std::string nameIn(std::string_view text)
{
    text = trimmed(text);
    const std::size_t blank = text.find_last_of(" \t");
    if (blank != std::string_view::npos && numberOf(text.substr(blank + 1)))
        text = trimmed(text.substr(0, blank));
    return std::string(text);
}

std::map<std::int64_t, std::string> readNames(const fs::path& file)
{
    constexpr double LARGEST = 1e15;
    InputBuffer input(file, InputBuffer::LineEnds::UNIVERSAL, nullptr);
    std::map<std::int64_t, std::string> names;
    for (TextLines lines(input); lines.next();) {
        std::string_view line = lines.get();
        const std::optional<double> label = numberOf(takeWord(line));
        if (!label || *label != std::floor(*label) || std::abs(*label) > LARGEST)
            lines.fail("does not begin with the number of a label");
        names.emplace(static_cast<std::int64_t>(*label), nameIn(line));
    }
    return names;
}

std::map<std::int64_t, tavo::RGBA8> readColours(const fs::path& file)
{
    constexpr std::size_t NUM_COLOURS = 256;
    std::array<char, 3 * NUM_COLOURS> levels{};
    std::ifstream stream(file, std::ios::binary);
    stream.read(levels.data(), levels.size());
    if (!stream || stream.peek() != std::ifstream::traits_type::eof())
        throw InputError(file, "is no table of 256 colours, which has 768 bytes");
    std::map<std::int64_t, tavo::RGBA8> colours;
    const auto level = [&levels](std::size_t i) { return static_cast<unsigned char>(levels[i]); };
    for (std::size_t i = 0; i < NUM_COLOURS; ++i)
        colours.emplace(static_cast<std::int64_t>(i),
            tavo::RGBA8(level(i), level(NUM_COLOURS + i), level(2 * NUM_COLOURS + i), 255));
    return colours;
}

} // namespace

LabelTable readLabelTable(const fs::path& volume)
{
    LabelTable table;
    if (const std::optional<fs::path> names = findBeside(volume, ".txt"))
        table.names = readNames(*names);
    if (const std::optional<fs::path> colours = findBeside(volume, ".lut"))
        table.colours = readColours(*colours);
    return table;
}

} // namespace vireo_view
