#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

struct znzptr;

namespace vireo_view {

// A file for reading that may be compressed by gzip, which its extension .gz says.
class CompressedFile
{
public:
    // Throws InputError if it cannot be opened.
    explicit CompressedFile(const std::filesystem::path& file);
    ~CompressedFile();
    CompressedFile(const CompressedFile&) = delete;
    CompressedFile& operator=(const CompressedFile&) = delete;

    // The next bytes are those at that place, counted uncompressed. Throws InputError if the compressed data are
    // damaged or end before.
    void seek(std::uint64_t place);

    // Reads so many bytes, or as many as there are, and returns how many. Throws InputError if the compressed data are
    // damaged.
    std::size_t read(void* bytes, std::size_t count);

    // The most uncompressed bytes that the file can hold.
    std::uint64_t getLargestContents() const;

private:
    std::filesystem::path m_File;
    bool m_IsCompressed;
    znzptr* m_Stream;
};

} // namespace vireo_view
