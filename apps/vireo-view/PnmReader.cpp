#include "apps/vireo-view/PnmReader.h"

#include <istream>
#include <string>

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

constexpr int LARGEST_BYTE = 255;
constexpr int LARGEST_NUMBER = 65535;
constexpr int END = std::istream::traits_type::eof();

// The next character of a text. A remark, from a # to the end of its line, counts as that end.
int nextCharacter(std::istream& stream)
{
    int c = stream.get();
    if (c == '#')
        while (c != '\n' && c != END)
            c = stream.get();
    return c;
}

bool isBlank(int c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

// The next number of a text, and the one character after it; nothing if there is none that can be.
std::optional<int> nextNumber(std::istream& stream)
{
    constexpr int MOST = 100'000'000;
    int c = nextCharacter(stream);
    while (isBlank(c))
        c = nextCharacter(stream);
    std::optional<int> number;
    for (; c >= '0' && c <= '9' && number.value_or(0) < MOST; c = nextCharacter(stream))
        number = 10 * number.value_or(0) + (c - '0');
    return number;
}

struct Head
{
    bool isText;
    int channels;
    int width;
    int height;
    int greatest;
};

Head readHead(std::istream& stream, const std::filesystem::path& file)
{
    stream.get();
    const int kind = stream.get();
    const auto width = nextNumber(stream);
    const auto height = nextNumber(stream);
    const auto greatest = nextNumber(stream);
    if (!width || !height || !greatest || *greatest == 0 || *greatest > LARGEST_NUMBER)
        throw InputError(file, "does not begin as a PGM or a PPM does: with its width, its height and a number from 1 "
                               "to 65535");
    return {kind == '2' || kind == '3', kind == '3' || kind == '6' ? 3 : 1, *width, *height, *greatest};
}

template <typename T>
std::vector<T> readText(std::istream& stream, std::size_t count, int greatest, const std::filesystem::path& file)
{
    std::vector<T> numbers(count);
    for (T& number : numbers) {
        const auto read = nextNumber(stream);
        if (!read)
            throw InputError(file, "ends before its last row");
        if (*read > greatest)
            throw InputError(
                file, "has a number above " + std::to_string(greatest) + ", which it says is its greatest");
        number = static_cast<T>(*read);
    }
    return numbers;
}

// The greater byte of a number comes first.
template <typename T>
std::vector<T> readBytes(std::istream& stream, std::size_t count)
{
    std::vector<unsigned char> bytes(count * sizeof(T));
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    std::vector<T> numbers(count);
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t byte = 0; byte < sizeof(T); ++byte)
            numbers[i] = static_cast<T>(numbers[i] << (8 * byte) | bytes[i * sizeof(T) + byte]);
    return numbers;
}

template <typename T>
Picture readNumbers(std::istream& stream, InputBuffer& buffer, const Head& head)
{
    const std::filesystem::path& file = buffer.getFile();
    const std::size_t size = checkedSizeOfPicture(file, static_cast<std::uint64_t>(head.width),
        static_cast<std::uint64_t>(head.height), sizeof(T) * static_cast<std::uint64_t>(head.channels));
    const std::size_t count = size / sizeof(T);
    const std::size_t leastBytes = head.isText ? 2 * count - 1 : size; // numbers of text have a blank between them
    if (buffer.getRemainingSize() < leastBytes)
        throw InputError(file, "ends before its last row");
    Picture picture;
    picture.numbers = head.isText ? readText<T>(stream, count, head.greatest, file) : readBytes<T>(stream, count);
    picture.width = head.width;
    picture.height = head.height;
    picture.channels = head.channels;
    buffer.checkEnd();
    return picture;
}

} // namespace

bool beginsLikePnm(std::string_view beginning)
{
    for (const std::string_view kind : {"P2", "P3", "P5", "P6"})
        if (beginning.size() > kind.size() && beginning.starts_with(kind) &&
            (isBlank(beginning[kind.size()]) || beginning[kind.size()] == '#'))
            return true;
    return false;
}

std::optional<Picture> readPnm(const std::filesystem::path& file, const Progress& progress)
{
    InputBuffer buffer(file, InputBuffer::LineEnds::AS_THEY_ARE, progress);
    buffer.allowLongLines();
    std::istream stream(&buffer);
    const Head head = readHead(stream, file);
    if (head.greatest < LARGEST_BYTE) {
        if (head.isText)
            readNumbers<std::uint8_t>(stream, buffer, head); // Qt does not notice numbers above the greatest
        return {};
    }
    return head.greatest == LARGEST_BYTE ? readNumbers<std::uint8_t>(stream, buffer, head)
                                         : readNumbers<std::uint16_t>(stream, buffer, head);
}

} // namespace vireo_view
