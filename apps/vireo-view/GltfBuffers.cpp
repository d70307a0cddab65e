#include "apps/vireo-view/GltfBuffers.h"

#include <QUrl>
#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>
#include <utility>

#include "apps/vireo-view/InputError.h"

namespace vireo_view {

namespace {

// Parts of a buffer may be read more than once, but not for ever.
constexpr std::uint64_t MOST_READS = 32;

std::optional<NumberKind> kindOf(std::uint64_t componentType)
{
    switch (componentType) {
    case 5120: return NumberKind::INT8;
    case 5121: return NumberKind::UINT8;
    case 5122: return NumberKind::INT16;
    case 5123: return NumberKind::UINT16;
    case 5125: return NumberKind::UINT32;
    case 5126: return NumberKind::FLOAT;
    default: return std::nullopt;
    }
}

unsigned int widthOf(const QString& type)
{
    if (type == "SCALAR")
        return 1;
    return type == "VEC2" ? 2 : type == "VEC3" ? 3 : type == "VEC4" ? 4 : 0;
}

std::vector<char> bytesOfFile(const std::filesystem::path& file)
{
    InputBuffer input(file, InputBuffer::LineEnds::AS_THEY_ARE, nullptr);
    input.allowLongLines();
    std::vector<char> bytes(static_cast<std::size_t>(input.getFileSize()));
    bytes.resize(static_cast<std::size_t>(input.sgetn(bytes.data(), static_cast<std::streamsize>(bytes.size()))));
    input.checkEnd();
    return bytes;
}

} // namespace

struct GltfBuffers::View
{
    const char* bytes;
    std::uint64_t size;
    std::uint64_t stride; // 0: one after the other
};

GltfBuffers::GltfBuffers(const std::filesystem::path& file, const QJsonObject& description, std::vector<char> bytes)
    : m_File(file)
    , m_Description(description)
    , m_NumBytes(bytes.size())
{
    m_Buffers.resize(static_cast<std::size_t>(description["buffers"].toArray().size()));
    if (!m_Buffers.empty())
        m_Buffers.front() = std::move(bytes);
}

void GltfBuffers::fail(const std::string& reason) const
{
    throw InputError(m_File, reason);
}

QJsonObject GltfBuffers::at(const char* array, const QJsonValue& index) const
{
    const QJsonArray items = m_Description[array].toArray();
    const double number = index.toDouble(-1);
    if (!(number >= 0 && number < items.size() && number == std::floor(number)))
        fail(std::string("names one of its ") + array + " that is not there");
    return items[static_cast<int>(number)].toObject();
}

std::uint64_t GltfBuffers::wholeNumber(const QJsonObject& object, const char* name, std::uint64_t otherwise) const
{
    constexpr double MOST = 1e15;
    if (object[name].isUndefined())
        return otherwise;
    const double number = object[name].toDouble(-1);
    if (!(number >= 0 && number <= MOST && number == std::floor(number)))
        fail(std::string("'") + name + "' is not a size or a number of things");
    return static_cast<std::uint64_t>(number);
}

const std::vector<char>& GltfBuffers::bufferAt(const QJsonValue& index)
{
    const QJsonObject buffer = at("buffers", index);
    std::vector<char>& bytes = m_Buffers[static_cast<std::size_t>(index.toDouble())];
    if (bytes.empty() && buffer.contains("uri")) {
        bytes = load(buffer);
        m_NumBytes += bytes.size();
    }
    return bytes;
}

// In the description itself, or a file beside it.
std::vector<char> GltfBuffers::load(const QJsonObject& buffer) const
{
    const QString uri = buffer["uri"].toString();
    if (uri.startsWith("data:")) {
        const int comma = uri.indexOf(',');
        if (comma < 0 || !uri.left(comma).endsWith(";base64"))
            fail("has data that are not written in base 64");
        const QByteArray bytes = QByteArray::fromBase64(uri.midRef(comma + 1).toLatin1());
        return {bytes.begin(), bytes.end()};
    }
    const QUrl url(uri);
    const QString name = url.path(QUrl::FullyDecoded);
    const std::filesystem::path file = m_File.parent_path() / name.toStdU16String();
    std::error_code error;
    if (!url.isRelative() || name.isEmpty() || name.contains(QChar()) || !std::filesystem::is_regular_file(file, error))
        fail("has data in " + quotedText(uri.toStdString()) + ", which is no file beside it");
    return bytesOfFile(file);
}

GltfBuffers::View GltfBuffers::viewAt(const QJsonValue& index, std::uint64_t offset)
{
    const QJsonObject view = at("bufferViews", index);
    const std::vector<char>& bytes = bufferAt(view["buffer"]);
    const std::uint64_t begin = wholeNumber(view, "byteOffset");
    const std::uint64_t size = wholeNumber(view, "byteLength");
    if (begin > bytes.size() || size > bytes.size() - begin)
        fail("is too short for the data that it promises");
    if (offset > size)
        fail("has data behind the end of their part of the file");
    return {bytes.data() + begin + offset, size - offset, wholeNumber(view, "byteStride")};
}

// Files may describe the same bytes again and again.
void GltfBuffers::take(std::uint64_t numBytes)
{
    m_NumBytesTaken += numBytes;
    if (m_NumBytesTaken > MOST_READS * m_NumBytes)
        fail("describes more data than it has");
}

void GltfBuffers::readInto(
    NumberColumn& numbers, const View& view, NumberKind kind, std::uint64_t count, unsigned int width)
{
    const std::uint64_t size = sizeInBytes(kind);
    const std::uint64_t stride = view.stride > 0 ? view.stride : size * width;
    if (count > 0 && (size * width > view.size || (count - 1) > (view.size - size * width) / stride))
        fail("is too short for the data that it promises");
    take(count * width * size);
    std::visit([&](auto& values) { values.reserve(static_cast<std::size_t>(count * width)); }, numbers);
    for (std::uint64_t i = 0; i < count; ++i)
        for (unsigned int c = 0; c < width; ++c)
            append(numbers,
                decodeNumber(kind, view.bytes + i * stride + c * size, std::endian::native == std::endian::big));
}

GltfBuffers::Values GltfBuffers::read(const QJsonValue& index)
{
    const QJsonObject accessor = at("accessors", index);
    const std::optional<NumberKind> kind = kindOf(wholeNumber(accessor, "componentType"));
    Values values;
    values.width = widthOf(accessor["type"].toString());
    if (!kind || values.width == 0)
        fail("has numbers of an unknown type");
    values.isNormalized = accessor["normalized"].toBool();
    values.numbers = columnOf(*kind);
    const std::uint64_t count = wholeNumber(accessor, "count");
    if (accessor.contains("bufferView")) {
        const View view = viewAt(accessor["bufferView"], wholeNumber(accessor, "byteOffset"));
        readInto(values.numbers, view, *kind, count, values.width);
    } else {
        for (std::size_t i = 0; i < m_Buffers.size(); ++i)
            bufferAt(static_cast<int>(i)); // so that it is known how many bytes there are
        take(std::min(count, std::uint64_t(1) << 40) * values.width * sizeInBytes(*kind));
        std::visit([&](auto& all) { all.resize(static_cast<std::size_t>(count * values.width)); }, values.numbers);
    }
    if (accessor.contains("sparse"))
        replaceSparse(values, accessor["sparse"].toObject(), *kind);
    return values;
}

// Some values that are not those of the buffer.
void GltfBuffers::replaceSparse(Values& values, const QJsonObject& sparse, NumberKind kind)
{
    const std::uint64_t count = wholeNumber(sparse, "count");
    const QJsonObject where = sparse["indices"].toObject();
    const QJsonObject what = sparse["values"].toObject();
    const std::optional<NumberKind> indexKind = kindOf(wholeNumber(where, "componentType"));
    if (!indexKind)
        fail("has numbers of an unknown type");
    NumberColumn indices = columnOf(*indexKind);
    NumberColumn numbers = columnOf(kind);
    readInto(indices, viewAt(where["bufferView"], wholeNumber(where, "byteOffset")), *indexKind, count, 1);
    readInto(numbers, viewAt(what["bufferView"], wholeNumber(what, "byteOffset")), kind, count, values.width);
    for (std::size_t i = 0; i < count; ++i) {
        const double index = numberAt(indices, i);
        if (!(index >= 0 && index < static_cast<double>(values.size())))
            fail("replaces a value that is not there");
        std::visit(
            [&](auto& all) {
                for (std::size_t c = 0; c < values.width; ++c)
                    all[static_cast<std::size_t>(index) * values.width + c] =
                        static_cast<std::remove_reference_t<decltype(all[0])>>(numberAt(numbers, i * values.width + c));
            },
            values.numbers);
    }
}

} // namespace vireo_view
