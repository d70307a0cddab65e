#include "apps/vireo-view/FollowedFile.h"

#include <fstream>
#include <utility>

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t MOST_AT_ONCE = 1 << 22;
constexpr std::size_t LONGEST_LINE = 1 << 24;
constexpr std::size_t LONGEST_BEGINNING = 1024;
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

// As many bytes as there are.
std::string readBytes(std::ifstream& stream, std::uintmax_t position, std::size_t most)
{
    std::string bytes(most, '\0');
    stream.clear();
    stream.seekg(static_cast<std::streamoff>(position));
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return bytes;
}

} // namespace

FollowedFile::FollowedFile(const fs::path& file)
    : m_File(file)
{}

FollowedFile::Event FollowedFile::poll(const TakeLine& takeLine)
{
    m_HasMore = false;
    std::error_code error;
    if (fs::exists(m_File, error) && !fs::is_regular_file(m_File, error))
        throw InputError(m_File, "is not a regular file");
    std::ifstream stream(m_File, std::ios::binary);
    const std::uintmax_t size = fs::file_size(m_File, error);
    const fs::file_time_type time = error ? fs::file_time_type() : fs::last_write_time(m_File, error);
    if (error || !stream)
        return std::exchange(m_IsGone, true) ? Event::NONE : Event::GONE;
    if (std::exchange(m_IsGone, false)) {
        begin();
        return Event::APPEARED;
    }
    if (size == m_Position && time == m_Time)
        return Event::NONE;
    m_Time = time;
    if (size < m_Position || !beginsAsBefore(stream)) {
        begin();
        return Event::ANEW;
    }
    read(stream, takeLine);
    m_HasMore = m_Position < size;
    return Event::NONE;
}

bool FollowedFile::beginsAsBefore(std::ifstream& stream) const
{
    return readBytes(stream, 0, m_Beginning.size()) == m_Beginning;
}

void FollowedFile::begin()
{
    m_HasMore = true;
    m_Position = 0;
    m_Time = {};
    m_Beginning.clear();
    m_Partial.clear();
    m_NumLines = 0;
}

void FollowedFile::read(std::ifstream& stream, const TakeLine& takeLine)
{
    const std::string bytes = readBytes(stream, m_Position, MOST_AT_ONCE);
    if (m_Beginning.size() == m_Position)
        m_Beginning += bytes.substr(0, LONGEST_BEGINNING - m_Beginning.size());
    m_Position += bytes.size();
    m_Partial += bytes;
    takeLines(takeLine);
    if (m_Partial.size() > LONGEST_LINE)
        throw InputError(m_File, m_NumLines + 1, "the line is too long");
}

void FollowedFile::takeLines(const TakeLine& takeLine)
{
    std::size_t begin = 0;
    for (std::size_t end = m_Partial.find('\n'); end != std::string::npos; end = m_Partial.find('\n', begin)) {
        std::string_view line = std::string_view(m_Partial).substr(begin, end - begin);
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (m_NumLines == 0 && line.starts_with(BYTE_ORDER_MARK))
            line.remove_prefix(BYTE_ORDER_MARK.size());
        takeLine(line, ++m_NumLines);
        begin = end + 1;
    }
    m_Partial.erase(0, begin);
}

} // namespace vireo_view
