#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <vector>

struct z_stream_s;

namespace vireo_view {

// The bytes of a file from a place on, which may be compressed by gzip or zlib.
class CompressedFile
{
public:
    // From the beginning of the file; compressed by gzip where its extension .gz and its first bytes say so. Throws
    // InputError if it cannot be opened.
    explicit CompressedFile(const std::filesystem::path& file);

    // From that place on, compressed or not.
    CompressedFile(const std::filesystem::path& file, std::uint64_t start, bool isCompressed);

    ~CompressedFile();
    CompressedFile(const CompressedFile&) = delete;
    CompressedFile& operator=(const CompressedFile&) = delete;

    const std::filesystem::path& getFile() const { return m_File; }

    // Leaves out so many bytes, counted uncompressed. Throws InputError if there are fewer, or if the compressed data
    // are damaged.
    void skip(std::uint64_t count);

    // Makes sure that so many more bytes are there; false if they are not. Of a compressed file that is known only when
    // they have been read: they are taken into memory as they arrive, and tell is called with the part of them that is
    // there, from 0 to 1; read() hands them out and gives the memory back. Throws InputError if the compressed data are
    // damaged.
    bool ensure(std::uint64_t count, const std::function<void(double part)>& tell);

    // Reads so many bytes, or as many as there are, and returns how many. Throws InputError if the compressed data are
    // damaged.
    std::size_t read(void* bytes, std::size_t count);

    // The most bytes that may be left, uncompressed.
    std::uint64_t getLargestRest() const;

private:
    void open(std::uint64_t start);
    std::size_t readStream(void* bytes, std::size_t count);
    std::size_t readPlain(void* bytes, std::size_t count);
    std::size_t inflate(void* bytes, std::size_t count);
    bool isMoreToInflate();
    std::size_t takeLoaded(unsigned char* bytes, std::size_t count);

    std::filesystem::path m_File;
    std::ifstream m_Stream;
    std::uint64_t m_Rest = 0;              // bytes of the file that have not been read
    std::unique_ptr<z_stream_s> m_Zlib;    // null where nothing is compressed
    std::vector<unsigned char> m_Deflated; // what m_Zlib reads from
    bool m_IsInflated = false;             // all that is compressed has been read
    // What ensure() has loaded and read() has not handed out; of the first block, that from a position on.
    std::deque<std::vector<unsigned char>> m_Blocks;
    std::size_t m_BlockPosition = 0;
};

} // namespace vireo_view
