#include "apps/vireo-view/VolumeHeader.h"

#include <algorithm>
#include <limits>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/tableCells.h"
#include "apps/vireo-view/words.h"

namespace vireo_view {

namespace {

// Takes the numbers of a text one after the other.
class TextReader
{
public:
    TextReader(CompressedFile& file, const Progress& progress)
        : m_File(file)
        , m_Progress(progress)
    {}

    // Numbers become doubles. Those before these, and all, say how far it is.
    NumberColumn read(std::size_t count, std::size_t before, double all)
    {
        std::vector<double> values;
        while (values.size() < count) {
            const std::string word = nextWord();
            if (word.empty())
                throw InputError(m_File.getFile(), "ends before its last voxel");
            const std::optional<double> number = numberOf(word);
            if (!number)
                throw InputError(m_File.getFile(), quotedText(word) + " among the voxels is no number");
            values.push_back(*number);
            tell(static_cast<double>(before + values.size()), all);
        }
        return values;
    }

private:
    void tell(double read, double all) const
    {
        constexpr std::size_t OFTEN = 1 << 16;
        const bool isDue = static_cast<std::size_t>(read) % OFTEN == 0 || read == all;
        if (isDue && m_Progress && !m_Progress(read / all))
            throw InputError(m_File.getFile(), "the reading was stopped");
    }

    // Cut where it is longer than any number.
    std::string nextWord()
    {
        constexpr std::size_t LONGEST = 100;
        std::string word;
        for (char c = next(); c != END && word.size() < LONGEST; c = next()) {
            if (BLANKS.find(c) == std::string_view::npos)
                word += c;
            else if (!word.empty())
                break;
        }
        return word;
    }

    char next()
    {
        if (m_Position == m_Piece.size()) {
            m_Piece.resize(1 << 16);
            m_Piece.resize(m_File.read(m_Piece.data(), m_Piece.size()));
            m_Position = 0;
        }
        return m_Position < m_Piece.size() ? m_Piece[m_Position++] : END;
    }

    static constexpr char END = '\0';
    static constexpr std::string_view BLANKS = " \t\r\n,";

    CompressedFile& m_File;
    const Progress& m_Progress;
    std::vector<char> m_Piece;
    std::size_t m_Position = 0;
};

} // namespace

VolumeHeader::VolumeHeader(const std::filesystem::path& file)
    : m_Input(file, InputBuffer::LineEnds::AS_THEY_ARE, nullptr)
    , m_Stream(&m_Input)
{}

bool VolumeHeader::next()
{
    constexpr std::size_t LONGEST = 1 << 16;
    if (!std::getline(m_Stream, m_Text)) {
        m_Input.checkEnd();
        return false;
    }
    if (m_Text.size() > LONGEST)
        failInLine("the line is too long for a header");
    if (m_Text.ends_with('\r')) // as Windows ends lines
        m_Text.pop_back();
    m_Line = trimmed(m_Text);
    return true;
}

void VolumeHeader::set(const std::string& name, std::string_view value)
{
    if (!m_Fields.emplace(name, trimmed(value)).second)
        failInLine("says " + quotedText(name) + " a second time");
}

std::string_view VolumeHeader::get(std::initializer_list<const char*> names) const
{
    for (const char* const name : names)
        if (const auto found = m_Fields.find(name); found != m_Fields.end())
            return found->second;
    return {};
}

std::vector<double> VolumeHeader::numbers(std::initializer_list<const char*> names, std::size_t count) const
{
    std::string_view text = get(names);
    std::vector<double> values;
    for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text)) {
        const std::optional<double> number = numberOf(word);
        if (!number)
            fail("has " + quotedText(word) + " as a number of " + quotedText(*names.begin()));
        values.push_back(*number);
    }
    if (count > 0 && !values.empty() && values.size() != count)
        fail("has " + std::to_string(values.size()) + " number(s) as " + quotedText(*names.begin()) + ", not " +
             std::to_string(count));
    return values;
}

std::vector<int> VolumeHeader::extents(const char* name, std::size_t count) const
{
    std::vector<int> extents;
    for (const double extent : numbers({name}, count)) {
        if (!(extent >= 1) || extent != static_cast<double>(static_cast<std::int64_t>(std::min(extent, 1e18))))
            fail("has an extent of " + quotedText(get({name})) + " voxels");
        if (extent > std::numeric_limits<int>::max())
            fail("has too many voxels");
        extents.push_back(static_cast<int>(extent));
    }
    if (extents.size() != count)
        fail("does not say how many voxels it has");
    return extents;
}

std::filesystem::path VolumeHeader::findDataFile(const std::string& name) const
{
    std::filesystem::path file =
        getFile().parent_path() / std::filesystem::path(std::u8string(name.begin(), name.end()));
    std::error_code error;
    if (name.empty() || name.find('\0') != std::string::npos || !std::filesystem::is_regular_file(file, error))
        fail("has its voxels in " + quotedText(name) + ", which is no file beside it");
    return file;
}

void VolumeHeader::fail(const std::string& reason) const
{
    throw InputError(getFile(), reason);
}

void VolumeHeader::failInLine(const std::string& reason) const
{
    throw InputError(getFile(), m_Input.getLineNumber(), reason);
}

std::vector<NumberColumn> readVoxelData(const VoxelData& data, const Progress& progress)
{
    std::uint64_t start = data.start;
    if (data.isAtEnd) {
        std::error_code error;
        const std::uint64_t fileSize = std::filesystem::file_size(data.file, error);
        const std::uint64_t perTime = data.layout.numPerTime * std::uint64_t{sizeInBytes(data.layout.type)};
        if (error || perTime > fileSize / data.layout.numTimes)
            throw InputError(data.file, "ends before its last voxel");
        start = fileSize - perTime * data.layout.numTimes;
    }
    CompressedFile file(data.file, start, data.isCompressed);
    file.skip(data.skipped);
    if (!data.isText)
        return readVoxels(file, data.layout, progress);
    TextReader reader(file, progress);
    const std::size_t numPerTime = data.layout.numPerTime;
    const double numOfAll = static_cast<double>(numPerTime) * static_cast<double>(data.layout.numTimes);
    std::vector<NumberColumn> times;
    for (std::size_t time = 0; time < data.layout.numTimes; ++time)
        times.push_back(reader.read(numPerTime, time * numPerTime, numOfAll));
    return times;
}

unsigned int checkedChannels(const std::filesystem::path& file, double number)
{
    if (number != 1 && number != 3 && number != 4)
        throw InputError(file, "has several numbers for each voxel that are no colour, which are not shown");
    return static_cast<unsigned int>(number);
}

} // namespace vireo_view
