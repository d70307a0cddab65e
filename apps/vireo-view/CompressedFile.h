#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <vector>

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

    // Makes sure that so many more bytes are there; false if they are not. Of a compressed file that is known only when
    // they have been read: they are taken into memory as they arrive, and tell is called with the part of them that is
    // there, from 0 to 1; read() hands them out and gives the memory back. Throws InputError if the compressed data are
    // damaged.
    bool ensure(std::uint64_t count, const std::function<void(double part)>& tell);

    // Reads so many bytes, or as many as there are, and returns how many. Throws InputError if the compressed data are
    // damaged.
    std::size_t read(void* bytes, std::size_t count);

    // The most uncompressed bytes that the file can hold.
    std::uint64_t getLargestContents() const;

private:
    std::size_t readStream(void* bytes, std::size_t count);
    std::size_t takeLoaded(unsigned char* bytes, std::size_t count);

    std::filesystem::path m_File;
    bool m_IsCompressed;
    znzptr* m_Stream;
    // What ensure() has loaded and read() has not handed out; of the first block, that from a position on.
    std::deque<std::vector<unsigned char>> m_Blocks;
    std::size_t m_BlockPosition = 0;
};

} // namespace vireo_view
