#include "apps/vireo-view/checkJpeg.h"

#include <istream>

#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

constexpr int BEFORE_MARK = 0xFF;
constexpr int STUFFED = 0x00; // behind a byte of pixels that looks like the one before a mark
constexpr int END_OF_IMAGE = 0xD9;

// Marks that nothing follows but pixels.
bool standsAlone(int mark)
{
    constexpr int FIRST_RESTART = 0xD0;
    constexpr int BEGIN_OF_IMAGE = 0xD8;
    constexpr int TEMPORARY = 0x01;
    return (mark >= FIRST_RESTART && mark <= BEGIN_OF_IMAGE) || mark == TEMPORARY;
}

// The next mark, behind what pixels there are before it; that the file ends if there is none.
int nextMark(std::istream& stream)
{
    int byte = stream.get();
    while (stream) {
        while (stream && byte != BEFORE_MARK)
            byte = stream.get();
        while (stream && byte == BEFORE_MARK)
            byte = stream.get();
        if (byte != STUFFED)
            return byte;
    }
    return std::istream::traits_type::eof();
}

void skipPart(std::istream& stream)
{
    constexpr int SIZE_OF_SIZE = 2;
    const int upper = stream.get();
    const int lower = stream.get();
    if (const int size = 256 * upper + lower; stream && size > SIZE_OF_SIZE)
        stream.ignore(size - SIZE_OF_SIZE);
}

} // namespace

void checkJpeg(const std::filesystem::path& file)
{
    InputBuffer buffer(file, InputBuffer::LineEnds::AS_THEY_ARE, nullptr);
    std::istream stream(&buffer);
    for (int mark = nextMark(stream); mark != END_OF_IMAGE; mark = nextMark(stream)) {
        if (!stream)
            throw InputError(file, "is a JPEG that ends too early");
        if (!standsAlone(mark))
            skipPart(stream);
    }
}

} // namespace vireo_view
