#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <streambuf>
#include <vector>

namespace vireo_view {

// Told, while a file is being read, which part of it has been: from 0 to 1. False stops the reading.
using Progress = std::function<bool(double part)>;

// The bytes of a file, for a std::istream. They are handed out a line at a time, so that a reader's place in the file
// is known whatever library reads: when it stops in a line, that is the line getLineNumber() tells.
class InputBuffer : public std::streambuf
{
public:
    // UNIVERSAL makes CR LF and CR into LF and leaves a UTF-8 byte order mark out.
    enum class LineEnds
    {
        AS_THEY_ARE,
        UNIVERSAL
    };

    // Throws InputError unless the file is a regular one that can be read and holds something.
    InputBuffer(const std::filesystem::path& file, LineEnds lineEnds, Progress progress);

    const std::filesystem::path& getFile() const { return m_File; }
    std::uintmax_t getFileSize() const { return m_FileSize; }

    // The bytes that have not been handed out yet.
    std::uintmax_t getRemainingSize() const;

    // The line, from 1, of what was handed out last.
    std::size_t getLineNumber() const { return m_LineNumber; }

    // In a text, a line of more than 16 MiB is taken for the end, so that nobody keeps the rest of a huge file as one
    // line. This says that what follows is not text.
    void allowLongLines() { m_AllowsLongLines = true; }

    // Whether there is nothing left; if not, the next line becomes the one that was handed out last.
    bool isAtEnd();

    // Throws InputError if the end is not the file's: the device failed, the progress said to stop, or a line was too
    // long.
    void checkEnd() const;

    // Begins again.
    void rewind();

protected:
    int_type underflow() override;

private:
    bool isLineTooLong() const;
    void load();
    void makeLineEndsUniversal();

    std::filesystem::path m_File;
    LineEnds m_LineEnds;
    Progress m_Progress;
    std::uintmax_t m_FileSize;
    std::ifstream m_Stream;
    bool m_Stopped = false;
    std::uintmax_t m_Loaded = 0;
    std::vector<char> m_Chunk;
    std::size_t m_ChunkPosition = 0;
    bool m_AfterCarriageReturn = false;
    bool m_AtLineStart = true;
    std::size_t m_LineNumber = 0;
    std::size_t m_LineLength = 0;
    bool m_AllowsLongLines = false;
};

} // namespace vireo_view
