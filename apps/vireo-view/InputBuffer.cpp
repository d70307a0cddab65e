#include "apps/vireo-view/InputBuffer.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t CHUNK_SIZE = 1 << 16;
constexpr std::size_t LONGEST_LINE = 1 << 24;
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

// Opening a pipe would wait for its writer, so what cannot be a file of data is turned away first.
std::uintmax_t checkedSize(const fs::path& file)
{
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (status.type() == fs::file_type::not_found)
        throw InputError(file, "no such file");
    if (error)
        throw InputError(file, "cannot be opened: " + error.message());
    if (status.type() == fs::file_type::directory)
        throw InputError(file, "is a directory");
    if (status.type() != fs::file_type::regular)
        throw InputError(file, "is not a regular file");
    const std::uintmax_t size = fs::file_size(file, error);
    if (error)
        throw InputError(file, "cannot be opened: " + error.message());
    if (size == 0)
        throw InputError(file, "is empty");
    return size;
}

} // namespace

InputBuffer::InputBuffer(const fs::path& file, LineEnds lineEnds, Progress progress)
    : m_File(file)
    , m_LineEnds(lineEnds)
    , m_Progress(std::move(progress))
    , m_FileSize(checkedSize(file))
    , m_Stream(file, std::ios::binary)
{
    if (!m_Stream)
        throw InputError(file, std::string("cannot be opened: ") + std::strerror(errno));
}

std::uintmax_t InputBuffer::getRemainingSize() const
{
    const std::uintmax_t handedOut = m_Loaded - (m_Chunk.size() - m_ChunkPosition) - (egptr() - gptr());
    return m_FileSize > handedOut ? m_FileSize - handedOut : 0;
}

bool InputBuffer::isAtEnd()
{
    return sgetc() == traits_type::eof();
}

void InputBuffer::checkEnd() const
{
    if (m_Stopped)
        throw InputError(m_File, "the reading was stopped");
    if (isLineTooLong())
        throw InputError(m_File, m_LineNumber, "the line is too long");
    if (m_Stream.bad())
        throw InputError(m_File, "cannot be read to its end");
}

bool InputBuffer::isLineTooLong() const
{
    return !m_AllowsLongLines && m_LineLength > LONGEST_LINE;
}

void InputBuffer::rewind()
{
    m_Stream.clear();
    m_Stream.seekg(0);
    m_Loaded = 0;
    m_Chunk.clear();
    m_ChunkPosition = 0;
    m_AfterCarriageReturn = false;
    m_AtLineStart = true;
    m_LineNumber = 0;
    m_LineLength = 0;
    setg(nullptr, nullptr, nullptr);
}

InputBuffer::int_type InputBuffer::underflow()
{
    if (gptr() != egptr())
        return traits_type::to_int_type(*gptr());
    while (m_ChunkPosition == m_Chunk.size()) {
        if (!m_Stream || m_Stopped || isLineTooLong())
            return traits_type::eof();
        load();
    }
    char* const begin = m_Chunk.data() + m_ChunkPosition;
    char* const chunkEnd = m_Chunk.data() + m_Chunk.size();
    char* const lineEnd = std::find(begin, chunkEnd, '\n');
    char* const end = lineEnd == chunkEnd ? chunkEnd : lineEnd + 1;

    if (m_AtLineStart) {
        ++m_LineNumber;
        m_LineLength = 0;
    }
    m_LineLength += end - begin;
    m_AtLineStart = lineEnd != chunkEnd;
    m_ChunkPosition += end - begin;
    setg(begin, begin, end);
    return traits_type::to_int_type(*begin);
}

void InputBuffer::load()
{
    const bool first = m_Loaded == 0;
    m_Chunk.resize(CHUNK_SIZE);
    m_Stream.read(m_Chunk.data(), static_cast<std::streamsize>(m_Chunk.size()));
    m_Chunk.resize(static_cast<std::size_t>(m_Stream.gcount()));
    m_Loaded += m_Chunk.size();
    m_ChunkPosition = 0;
    if (m_LineEnds == LineEnds::UNIVERSAL) {
        if (first && std::string_view(m_Chunk.data(), m_Chunk.size()).starts_with(BYTE_ORDER_MARK))
            m_Chunk.erase(m_Chunk.begin(), m_Chunk.begin() + BYTE_ORDER_MARK.size());
        makeLineEndsUniversal();
    }
    if (m_Progress)
        m_Stopped = !m_Progress(std::min(1.0, static_cast<double>(m_Loaded) / static_cast<double>(m_FileSize)));
}

void InputBuffer::makeLineEndsUniversal()
{
    auto to = m_Chunk.begin();
    for (const char c : m_Chunk) {
        if (c != '\n' || !m_AfterCarriageReturn)
            *to++ = c == '\r' ? '\n' : c;
        m_AfterCarriageReturn = c == '\r';
    }
    m_Chunk.erase(to, m_Chunk.end());
}

} // namespace vireo_view
