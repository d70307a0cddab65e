#include "apps/vireo-view/CompressedFile.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <system_error>
#include <utility>
#include <zlib.h>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/lowerCaseExtension.h"

namespace vireo_view {

namespace {

constexpr std::size_t BLOCK_SIZE = 1 << 18;
constexpr std::size_t DEFLATED_SIZE = 1 << 14;
constexpr unsigned char GZIP[] = {0x1F, 0x8B}; // how such data begin

std::unique_ptr<z_stream> makeZlib()
{
    constexpr int EITHER_FORMAT = 32; // of zlib and gzip
    auto zlib = std::make_unique<z_stream>();
    if (inflateInit2(zlib.get(), MAX_WBITS + EITHER_FORMAT) != Z_OK)
        throw std::bad_alloc();
    return zlib;
}

} // namespace

CompressedFile::CompressedFile(const std::filesystem::path& file)
    : m_File(file)
{
    open(0);
    std::array<unsigned char, sizeof GZIP> beginning{};
    const bool isNamedSo = file.extension() == ".gz" || file.extension() == ".GZ";
    if (isNamedSo && readPlain(beginning.data(), beginning.size()) == sizeof GZIP &&
        std::equal(beginning.begin(), beginning.end(), GZIP))
        m_Zlib = makeZlib();
    open(0);
}

CompressedFile::CompressedFile(const std::filesystem::path& file, std::uint64_t start, bool isCompressed)
    : m_File(file)
    , m_Zlib(isCompressed ? makeZlib() : nullptr)
{
    open(start);
}

CompressedFile::~CompressedFile()
{
    if (m_Zlib)
        inflateEnd(m_Zlib.get());
}

void CompressedFile::open(std::uint64_t start)
{
    // To open anything else might wait for ever.
    std::error_code error;
    const bool isRegular = std::filesystem::is_regular_file(m_File, error);
    const std::uint64_t size = isRegular ? std::filesystem::file_size(m_File, error) : 0;
    m_Stream = isRegular && !error ? std::ifstream(m_File, std::ios::binary) : std::ifstream();
    if (!m_Stream.is_open())
        throw InputError(m_File, "cannot be opened");
    m_Rest = size > start ? size - start : 0;
    m_Stream.seekg(static_cast<std::streamoff>(std::min(start, size)));
}

void CompressedFile::skip(std::uint64_t count)
{
    if (!m_Zlib) {
        m_Stream.seekg(static_cast<std::streamoff>(std::min(count, m_Rest)), std::ios::cur);
        m_Rest -= std::min(count, m_Rest);
        return;
    }
    std::array<unsigned char, 1 << 12> skipped{};
    while (count > 0) {
        const std::size_t size = static_cast<std::size_t>(std::min<std::uint64_t>(count, skipped.size()));
        if (inflate(skipped.data(), size) < size)
            throw InputError(m_File, "ends before its data, or is damaged");
        count -= size;
    }
}

bool CompressedFile::ensure(std::uint64_t count, const std::function<void(double part)>& tell)
{
    if (!m_Zlib)
        return count <= m_Rest;
    for (std::uint64_t numLoaded = 0; numLoaded < count;) {
        std::vector<unsigned char> block(
            static_cast<std::size_t>(std::min<std::uint64_t>(BLOCK_SIZE, count - numLoaded)));
        if (inflate(block.data(), block.size()) < block.size())
            return false;
        numLoaded += block.size();
        m_Blocks.push_back(std::move(block));
        tell(static_cast<double>(numLoaded) / static_cast<double>(count));
    }
    return true;
}

std::size_t CompressedFile::read(void* bytes, std::size_t count)
{
    auto* const to = static_cast<unsigned char*>(bytes);
    const std::size_t numTaken = takeLoaded(to, count);
    return numTaken < count ? numTaken + readStream(to + numTaken, count - numTaken) : numTaken;
}

std::size_t CompressedFile::takeLoaded(unsigned char* bytes, std::size_t count)
{
    std::size_t numTaken = 0;
    while (numTaken < count && !m_Blocks.empty()) {
        const std::vector<unsigned char>& block = m_Blocks.front();
        const std::size_t size = std::min(count - numTaken, block.size() - m_BlockPosition);
        std::memcpy(bytes + numTaken, block.data() + m_BlockPosition, size);
        numTaken += size;
        m_BlockPosition += size;
        if (m_BlockPosition == block.size()) {
            m_Blocks.pop_front();
            m_BlockPosition = 0;
        }
    }
    return numTaken;
}

std::size_t CompressedFile::readStream(void* bytes, std::size_t count)
{
    return m_Zlib ? inflate(bytes, count) : readPlain(bytes, count);
}

std::size_t CompressedFile::readPlain(void* bytes, std::size_t count)
{
    m_Stream.read(static_cast<char*>(bytes), static_cast<std::streamsize>(count));
    const auto numRead = static_cast<std::size_t>(m_Stream.gcount());
    m_Rest -= std::min<std::uint64_t>(m_Rest, numRead);
    return numRead;
}

std::size_t CompressedFile::inflate(void* bytes, std::size_t count)
{
    auto* const to = static_cast<unsigned char*>(bytes);
    std::size_t numDone = 0;
    while (numDone < count && isMoreToInflate()) {
        const std::size_t size = std::min(count - numDone, BLOCK_SIZE);
        m_Zlib->next_out = to + numDone;
        m_Zlib->avail_out = static_cast<uInt>(size);
        const int result = ::inflate(m_Zlib.get(), Z_NO_FLUSH);
        numDone += size - m_Zlib->avail_out;
        if (result == Z_MEM_ERROR)
            throw std::bad_alloc();
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR)
            throw InputError(m_File, "is damaged: what is compressed in it cannot be read");
        // One such stream may follow another; anything else behind it is none of it.
        if (result == Z_STREAM_END) {
            m_IsInflated = !isMoreToInflate() || *m_Zlib->next_in != GZIP[0];
            inflateReset(m_Zlib.get());
        }
    }
    return numDone;
}

// Whether there is compressed data, of which some is read where there was none.
bool CompressedFile::isMoreToInflate()
{
    if (m_Zlib->avail_in == 0 && !m_IsInflated) {
        m_Deflated.resize(DEFLATED_SIZE);
        m_Zlib->avail_in = static_cast<uInt>(readPlain(m_Deflated.data(), m_Deflated.size()));
        m_Zlib->next_in = m_Deflated.data();
    }
    return m_Zlib->avail_in > 0 && !m_IsInflated;
}

std::uint64_t CompressedFile::getLargestRest() const
{
    constexpr std::uint64_t LARGEST_RATIO = 1032; // the best that deflate can do
    constexpr std::uint64_t MOST_IN_ZLIB = 16;    // bytes that it has taken and has not made anything of yet
    return m_Zlib ? (m_Rest + m_Zlib->avail_in + MOST_IN_ZLIB) * LARGEST_RATIO : m_Rest;
}

} // namespace vireo_view
