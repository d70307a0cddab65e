#include "apps/vireo-view/openPng.h"

#include <QFile>
#include <algorithm>
#include <cstdint>
#include <istream>
#include <string>
#include <utility>
#include <vector>
#include <zlib.h>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

constexpr std::size_t SIGNATURE_SIZE = 8;

// A part of the file: how long it is, what it is, and what it holds, with a sum of both at its end.
class PngPart
{
public:
    PngPart(std::istream& stream, const std::filesystem::path& file)
        : m_File(file)
        , m_Size(readNumber(stream))
        , m_Kind(read(stream, 4))
    {
        uLong sum = crc32(0, reinterpret_cast<const Bytef*>(m_Kind.data()), static_cast<uInt>(m_Kind.size()));
        for (std::uint32_t left = m_Size; left > 0;) {
            const std::string piece = read(stream, std::min<std::uint32_t>(left, 1 << 16));
            sum = crc32(sum, reinterpret_cast<const Bytef*>(piece.data()), static_cast<uInt>(piece.size()));
            left -= static_cast<std::uint32_t>(piece.size());
        }
        m_IsWhole = readNumber(stream) == sum;
    }

    std::uint64_t numBytes() const { return 12 + std::uint64_t(m_Size); }
    bool isWhole() const { return m_IsWhole; }
    bool isLast() const { return m_Kind == "IEND"; }

    // What pictures need is written large. Besides, "tRNS" says what is seen through.
    bool isNeeded() const { return m_Kind[0] >= 'A' && m_Kind[0] <= 'Z'; }
    bool isOfPixels() const { return isNeeded() || m_Kind == "tRNS"; }

private:
    std::string read(std::istream& stream, std::size_t count) const
    {
        std::string bytes(count, '\0');
        if (!stream.read(bytes.data(), static_cast<std::streamsize>(count)))
            throw InputError(m_File, "is a PNG that ends too early");
        return bytes;
    }

    std::uint32_t readNumber(std::istream& stream) const
    {
        std::uint32_t number = 0;
        for (const char byte : read(stream, 4))
            number = number << 8 | static_cast<unsigned char>(byte);
        return number;
    }

    const std::filesystem::path& m_File;
    std::uint32_t m_Size;
    std::string m_Kind;
    bool m_IsWhole = false;
};

// Some bytes of a file.
struct Range
{
    std::uint64_t begin;
    std::uint64_t size;
};

// These one after the other.
class Ranges : public QIODevice
{
public:
    Ranges(const std::filesystem::path& file, std::vector<Range> ranges)
        : m_File(QString::fromStdU16String(file.u16string()))
        , m_Ranges(std::move(ranges))
    {
        if (!m_File.open(ReadOnly) || !open(ReadOnly))
            throw InputError(file, m_File.errorString().toStdString());
    }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* bytes, qint64 most) override
    {
        while (m_Current < m_Ranges.size() && m_NumRead == m_Ranges[m_Current].size) {
            ++m_Current;
            m_NumRead = 0;
        }
        if (m_Current == m_Ranges.size())
            return -1;
        const Range& range = m_Ranges[m_Current];
        if (!m_File.seek(static_cast<qint64>(range.begin + m_NumRead)))
            return -1;
        const qint64 count = m_File.read(bytes, std::min(most, static_cast<qint64>(range.size - m_NumRead)));
        m_NumRead += static_cast<std::uint64_t>(std::max<qint64>(count, 0));
        return count;
    }

    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QFile m_File;
    std::vector<Range> m_Ranges;
    std::size_t m_Current = 0;
    std::uint64_t m_NumRead = 0; // of the current one
};

// The parts that the pixels need.
std::vector<Range> rangesOfPixels(const std::filesystem::path& file)
{
    InputBuffer buffer(file, InputBuffer::LineEnds::AS_THEY_ARE, nullptr);
    std::istream stream(&buffer);
    stream.ignore(SIGNATURE_SIZE);
    std::vector<Range> ranges{{0, SIGNATURE_SIZE}};
    std::uint64_t place = SIGNATURE_SIZE;
    for (bool isLast = false; !isLast;) {
        const PngPart part(stream, file);
        if (part.isNeeded() && !part.isWhole())
            throw InputError(file, "is a damaged PNG");
        if (part.isOfPixels() && part.isWhole())
            ranges.push_back({place, part.numBytes()});
        place += part.numBytes();
        isLast = part.isLast();
    }
    return ranges;
}

} // namespace

std::unique_ptr<QIODevice> openPng(const std::filesystem::path& file)
{
    return std::make_unique<Ranges>(file, rangesOfPixels(file));
}

} // namespace vireo_view
