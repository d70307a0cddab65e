#include "apps/vireo-view/checkPng.h"

#include <algorithm>
#include <cstdint>
#include <istream>
#include <string>
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

    // What pictures need is written large.
    bool isDamaged() const { return !m_IsWhole && m_Kind[0] >= 'A' && m_Kind[0] <= 'Z'; }
    bool isLast() const { return m_Kind == "IEND"; }

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

} // namespace

void checkPng(const std::filesystem::path& file)
{
    InputBuffer buffer(file, InputBuffer::LineEnds::AS_THEY_ARE, nullptr);
    std::istream stream(&buffer);
    stream.ignore(SIGNATURE_SIZE);
    for (bool isLast = false; !isLast;) {
        const PngPart part(stream, file);
        if (part.isDamaged())
            throw InputError(file, "is a damaged PNG");
        isLast = part.isLast();
    }
}

} // namespace vireo_view
