#include "apps/vireo-view/CompressedFile.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <nifti2_io.h>
#include <system_error>
#include <utility>

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

// To open anything else might wait for ever.
bool isRegular(const std::filesystem::path& file)
{
    std::error_code error;
    return std::filesystem::is_regular_file(file, error);
}

} // namespace

CompressedFile::CompressedFile(const std::filesystem::path& file)
    : m_File(file)
    , m_IsCompressed(nifti_is_gzfile(file.string().c_str()) != 0)
    , m_Stream(isRegular(file) ? znzopen(file.string().c_str(), "rb", m_IsCompressed) : nullptr)
{
    if (znz_isnull(m_Stream))
        throw InputError(m_File, "cannot be opened");
}

CompressedFile::~CompressedFile()
{
    znzclose(m_Stream);
}

void CompressedFile::seek(std::uint64_t place)
{
    m_Blocks.clear();
    m_BlockPosition = 0;
    if (znzseek(m_Stream, static_cast<znz_off_t>(place), SEEK_SET) < 0)
        throw InputError(m_File, "ends before its data, or is damaged");
}

bool CompressedFile::ensure(std::uint64_t count, const std::function<void(double part)>& tell)
{
    constexpr std::uint64_t BLOCK_SIZE = 1 << 18;
    if (!m_IsCompressed)
        return static_cast<std::uint64_t>(znztell(m_Stream)) + count <= getLargestContents();
    for (std::uint64_t numLoaded = 0; numLoaded < count;) {
        std::vector<unsigned char> block(static_cast<std::size_t>(std::min(BLOCK_SIZE, count - numLoaded)));
        if (readStream(block.data(), block.size()) < block.size())
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
    const std::size_t numRead = znzread(bytes, 1, count, m_Stream);
    if (numRead > count) // the library's -1
        throw InputError(m_File, "is damaged: what is compressed in it cannot be read");
    return numRead;
}

std::uint64_t CompressedFile::getLargestContents() const
{
    // The best that deflate can do.
    constexpr std::uint64_t LARGEST_RATIO = 1032;
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(m_File, error);
    if (error)
        return 0;
    return m_IsCompressed ? size * LARGEST_RATIO : size;
}

} // namespace vireo_view
