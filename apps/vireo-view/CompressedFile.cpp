#include "apps/vireo-view/CompressedFile.h"

#include <cstdio>
#include <nifti2_io.h>
#include <system_error>

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
    if (znzseek(m_Stream, static_cast<znz_off_t>(place), SEEK_SET) < 0)
        throw InputError(m_File, "ends before its data, or is damaged");
}

std::size_t CompressedFile::read(void* bytes, std::size_t count)
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
