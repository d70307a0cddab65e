#include "apps/vireo-view/GltfReader.h"

#include <QJsonDocument>
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <set>
#include <string_view>
#include <utility>

#include "apps/vireo-view/FaceCollector.h"
#include "apps/vireo-view/GltfBuffers.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/pointFields.h"
#include "tavo/base/text/printable.h"

namespace vireo_view {

namespace {

// How points are joined.
constexpr int POINTS = 0, TRIANGLES = 4, STRIP = 5, FAN = 6;

using Matrix = std::array<double, 16>; // column by column

constexpr Matrix IDENTITY = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

Matrix operator*(const Matrix& a, const Matrix& b)
{
    Matrix product{};
    for (std::size_t column = 0; column < 4; ++column)
        for (std::size_t row = 0; row < 4; ++row)
            for (std::size_t i = 0; i < 4; ++i)
                product[4 * column + row] += a[4 * i + row] * b[4 * column + i];
    return product;
}

template <std::size_t N>
std::array<double, N> numbersOf(const QJsonValue& value, const std::array<double, N>& otherwise)
{
    const QJsonArray array = value.toArray();
    if (array.size() != static_cast<int>(N))
        return otherwise;
    std::array<double, N> numbers;
    for (std::size_t i = 0; i < N; ++i)
        numbers[i] = array[static_cast<int>(i)].toDouble();
    return numbers;
}

// Of a node: its matrix, or its translation, rotation and scale.
Matrix matrixOf(const QJsonObject& node)
{
    if (node.contains("matrix"))
        return numbersOf<16>(node["matrix"], IDENTITY);
    const auto t = numbersOf<3>(node["translation"], {0, 0, 0});
    const auto [x, y, z, w] = numbersOf<4>(node["rotation"], {0, 0, 0, 1});
    const auto s = numbersOf<3>(node["scale"], {1, 1, 1});
    return {s[0] * (1 - 2 * (y * y + z * z)), s[0] * 2 * (x * y + z * w), s[0] * 2 * (x * z - y * w), 0,
        s[1] * 2 * (x * y - z * w), s[1] * (1 - 2 * (x * x + z * z)), s[1] * 2 * (y * z + x * w), 0,
        s[2] * 2 * (x * z + y * w), s[2] * 2 * (y * z - x * w), s[2] * (1 - 2 * (x * x + y * y)), 0, t[0], t[1], t[2],
        1};
}

// As a part of a path.
std::string nameOf(const QJsonObject& object, const char* otherwise, int index)
{
    constexpr std::size_t LONGEST_NAME = 60;
    QString name = object["name"].toString();
    if (name.isEmpty())
        name = QString("%1 %2").arg(otherwise).arg(index);
    return tavo::printable(name.replace('/', '-').toStdString(), LONGEST_NAME);
}

// The description of the file, and the bytes behind it in a binary one.
struct Parts
{
    QJsonObject description;
    std::vector<char> bytes;
};

class PartsReader
{
public:
    explicit PartsReader(InputBuffer& input)
        : m_Input(input)
    {
        input.allowLongLines();
    }

    Parts read()
    {
        std::array<char, 4> magic{};
        const auto numRead = m_Input.sgetn(magic.data(), magic.size());
        const bool isBinary = std::string_view(magic.data(), static_cast<std::size_t>(numRead)) == "glTF";
        Parts parts;
        if (isBinary) {
            readBinary(parts);
        } else {
            m_Input.rewind();
            parts.description = parse(readBytes(m_Input.getFileSize()));
        }
        checkVersion(parts.description);
        return parts;
    }

private:
    [[noreturn]] void fail(const std::string& reason) const { throw InputError(m_Input.getFile(), reason); }

    std::uint64_t readWord()
    {
        std::array<char, 4> bytes{};
        if (m_Input.sgetn(bytes.data(), bytes.size()) != static_cast<std::streamsize>(bytes.size()))
            fail("ends before its data begin");
        return static_cast<std::uint64_t>(
            decodeNumber(NumberKind::UINT32, bytes.data(), std::endian::native == std::endian::big));
    }

    std::vector<char> readBytes(std::uint64_t size)
    {
        if (size > m_Input.getRemainingSize())
            fail("is too short for the data that it promises");
        std::vector<char> bytes(static_cast<std::size_t>(size));
        if (m_Input.sgetn(bytes.data(), static_cast<std::streamsize>(size)) != static_cast<std::streamsize>(size))
            fail("ends within its data");
        return bytes;
    }

    void readBinary(Parts& parts)
    {
        constexpr std::uint64_t JSON = 0x4E4F534A, BIN = 0x004E4942;
        if (const std::uint64_t version = readWord(); version != 2)
            fail("is of version " + std::to_string(version) + " of glTF, not of 2");
        readWord(); // the size of the file
        const std::uint64_t size = readWord();
        if (readWord() != JSON)
            fail("does not begin with its description");
        parts.description = parse(readBytes(size));
        if (m_Input.isAtEnd())
            return;
        const std::uint64_t numBytes = readWord();
        if (readWord() == BIN)
            parts.bytes = readBytes(numBytes);
    }

    // In memory, a description takes many times the room that it has in the file.
    QJsonObject parse(const std::vector<char>& text) const
    {
        constexpr std::size_t LONGEST = std::size_t(1) << 28;
        if (text.size() > LONGEST)
            fail("its description is too long");
        QJsonParseError error{};
        const auto size = static_cast<int>(text.size());
        const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromRawData(text.data(), size), &error);
        if (error.error != QJsonParseError::NoError)
            fail("is no glTF file: " + error.errorString().toStdString() + " at byte " + std::to_string(error.offset));
        return document.object();
    }

    void checkVersion(const QJsonObject& description) const
    {
        const QString version = description["asset"].toObject()["version"].toString();
        if (!version.startsWith("2."))
            fail(version.isEmpty() ? "is no glTF file: it names no version"
                                   : "is of version " + quotedText(version.toStdString()) + " of glTF, not of 2");
    }

    InputBuffer& m_Input;
};

class Reader
{
public:
    Reader(const std::filesystem::path& file, Parts parts)
        : m_File(file)
        , m_Description(parts.description)
        , m_Buffers(file, parts.description, std::move(parts.bytes))
    {}

    GeometryFile read()
    {
        checkExtensions();
        readMeshes();
        placeNodes();
        noteOthers();
        auto& geometries = m_Result.geometries;
        geometries.erase(std::remove_if(geometries.begin(), geometries.end(),
                             [](const Geometry& geometry) { return geometry.placements.empty(); }),
            geometries.end());
        if (geometries.empty())
            fail(m_Result.leftOut.empty() ? "has no points"
                                          : "has no points or triangles, but " + m_Result.leftOut.front());
        return std::move(m_Result);
    }

private:
    [[noreturn]] void fail(const std::string& reason) const { throw InputError(m_File, reason); }

    void leaveOut(const std::string& what)
    {
        constexpr std::size_t MOST = 100;
        if (m_LeftOut.size() < MOST && m_LeftOut.insert(what).second)
            m_Result.leftOut.push_back(what);
    }

    // Quantized numbers are read as all others; materials are not shown.
    void checkExtensions() const
    {
        for (const QJsonValue& extension : m_Description["extensionsRequired"].toArray()) {
            const QString name = extension.toString();
            if (name != "KHR_mesh_quantization" && !name.startsWith("KHR_materials_") &&
                !name.startsWith("KHR_texture_"))
                fail("needs the extension " + quotedText(name.toStdString()) + " of glTF, which is not known");
        }
    }

    void readMeshes()
    {
        const QJsonArray meshes = m_Description["meshes"].toArray();
        for (int i = 0; i < meshes.size(); ++i) {
            const QJsonObject mesh = meshes[i].toObject();
            if (mesh.contains("weights"))
                leaveOut("shapes that change");
            m_FirstGeometries.push_back(m_Result.geometries.size());
            for (const QJsonValue& primitive : mesh["primitives"].toArray())
                readPrimitive(primitive.toObject());
        }
        m_FirstGeometries.push_back(m_Result.geometries.size());
    }

    void readPrimitive(const QJsonObject& primitive)
    {
        const int mode = primitive["mode"].toInt(TRIANGLES);
        const QJsonObject attributes = primitive["attributes"].toObject();
        if (mode != POINTS && mode != TRIANGLES && mode != STRIP && mode != FAN)
            return leaveOut("lines");
        if (!attributes.contains("POSITION"))
            return leaveOut("what has no positions");
        Geometry geometry;
        geometry.placements.clear();
        readAttributes(geometry, attributes);
        geometry.colour = colourOf(primitive["material"]);
        if (mode != POINTS)
            readFaces(geometry, primitive, mode);
        else if (primitive.contains("indices"))
            leaveOut("which of the points are to be drawn");
        m_Result.geometries.push_back(std::move(geometry));
    }

    void readAttributes(Geometry& geometry, const QJsonObject& attributes)
    {
        GltfBuffers::Values positions = m_Buffers.read(attributes["POSITION"]);
        if (positions.width != 3)
            fail("its points do not have three numbers each");
        if (positions.size() > std::numeric_limits<std::uint32_t>::max())
            fail("has too many points");
        makeExact(positions);
        geometry.positions = std::move(positions.numbers);
        UniqueNames names;
        for (const QString& name : attributes.keys())
            if (name != "POSITION")
                readAttribute(geometry, names, name, attributes[name]);
    }

    // Integers that stand for numbers between 0 and 1, or -1 and 1.
    static void makeExact(GltfBuffers::Values& values)
    {
        if (!values.isNormalized)
            return;
        std::vector<float> numbers;
        numbers.reserve(sizeOf(values.numbers));
        std::visit(
            [&](const auto& all) {
                using Value = typename std::decay_t<decltype(all)>::value_type;
                for (const Value value : all)
                    numbers.push_back(
                        std::max(-1.0f, static_cast<float>(static_cast<double>(value) /
                                                           static_cast<double>(std::numeric_limits<Value>::max()))));
            },
            values.numbers);
        values.numbers = std::move(numbers);
    }

    // Those whose names begin with an underscore are of the program that wrote the file.
    void readAttribute(Geometry& geometry, UniqueNames& names, const QString& name, const QJsonValue& accessor)
    {
        const bool isColour = name == "COLOR_0", isNormal = name == "NORMAL";
        if (!isColour && !isNormal && !name.startsWith('_'))
            return leaveOut(quotedText(name.toStdString()));
        GltfBuffers::Values values = m_Buffers.read(accessor);
        if (values.size() != geometry.getNumPoints())
            fail("has " + std::to_string(values.size()) + " values of " + quotedText(name.toStdString()) + " for " +
                 std::to_string(geometry.getNumPoints()) + " points");
        if (isColour && (values.width == 3 || values.width == 4))
            return setColours(geometry, std::move(values.numbers), values.width);
        makeExact(values);
        if (isNormal && values.width == 3)
            geometry.normals = std::move(values.numbers);
        else if (name.startsWith('_') && values.width == 1)
            addField(geometry, names, name.mid(1).toStdString(), std::move(values.numbers));
        else
            leaveOut(quotedText(name.toStdString()));
    }

    NumberColumn readIndices(const QJsonValue& accessor)
    {
        NumberColumn indices = m_Buffers.read(accessor).numbers;
        const auto kind = static_cast<NumberKind>(indices.index());
        if (kind != NumberKind::UINT8 && kind != NumberKind::UINT16 && kind != NumberKind::UINT32)
            fail("has corners that are not numbers of points");
        return indices;
    }

    void readFaces(Geometry& geometry, const QJsonObject& primitive, int mode)
    {
        const bool hasIndices = primitive.contains("indices");
        NumberColumn indices;
        if (hasIndices)
            indices = readIndices(primitive["indices"]);
        const std::size_t size = hasIndices ? sizeOf(indices) : geometry.getNumPoints();
        const auto corner = [&](std::size_t i) {
            return hasIndices ? static_cast<std::uint64_t>(numberAt(indices, i)) : std::uint64_t(i);
        };
        FaceCollector faces;
        for (std::size_t i = 0; i + 2 < size; i += mode == STRIP || mode == FAN ? 1 : 3) {
            const std::size_t odd = mode == STRIP ? i % 2 : 0; // whose other side is its front
            faces.add({corner(mode == FAN ? 0 : i), corner(i + 1 + odd), corner(i + 2 - odd)});
        }
        faces.finish(m_Result, geometry);
    }

    std::optional<tavo::RGBA8> colourOf(const QJsonValue& index)
    {
        if (!index.isDouble())
            return std::nullopt;
        const QJsonObject material = m_Description["materials"].toArray().at(index.toInt()).toObject();
        const QJsonObject metallic = material["pbrMetallicRoughness"].toObject();
        if (metallic.contains("baseColorTexture"))
            leaveOut("textures");
        if (!metallic.contains("baseColorFactor"))
            return std::nullopt;
        const auto factors = numbersOf<4>(metallic["baseColorFactor"], {1, 1, 1, 1});
        std::array<unsigned char, 4> bytes{};
        for (std::size_t i = 0; i < 4; ++i) {
            const double light = std::clamp(factors[i], 0.0, 1.0);
            const double shown = i == 3 ? light : std::pow(light, 1 / 2.2); // screens are not linear
            bytes[i] = static_cast<unsigned char>(std::lround(255 * shown));
        }
        return tavo::RGBA8(bytes[0], bytes[1], bytes[2], bytes[3]);
    }

    // Where a file has no scene, its meshes are shown as they are.
    void placeNodes()
    {
        const QJsonArray nodes = m_Description["nodes"].toArray();
        const QJsonArray scenes = m_Description["scenes"].toArray();
        const QJsonObject scene = scenes[m_Description["scene"].toInt(0)].toObject();
        if (nodes.isEmpty() || scene.isEmpty()) {
            for (std::size_t mesh = 0; mesh + 1 < m_FirstGeometries.size(); ++mesh)
                place(mesh, IDENTITY, "");
            return;
        }
        if (scenes.size() > 1)
            leaveOut(scenes.size() == 2 ? "the other scene" : "the other scenes");
        m_WasVisited.assign(static_cast<std::size_t>(nodes.size()), false);
        struct Step
        {
            int node;
            Matrix matrix;
        };
        std::vector<Step> steps;
        for (const QJsonValue& node : scene["nodes"].toArray())
            steps.push_back({node.toInt(-1), IDENTITY});
        while (!steps.empty()) {
            const Step step = steps.back();
            steps.pop_back();
            const QJsonObject node = visit(nodes, step.node);
            const Matrix matrix = step.matrix * matrixOf(node);
            if (node["mesh"].isDouble())
                placeMesh(node, step.node, matrix);
            for (const QJsonValue& child : node["children"].toArray())
                steps.push_back({child.toInt(-1), matrix});
        }
    }

    // Each node has one place.
    QJsonObject visit(const QJsonArray& nodes, int index)
    {
        if (index < 0 || index >= nodes.size())
            fail("names one of its nodes that is not there");
        if (m_WasVisited[static_cast<std::size_t>(index)])
            fail("has a node in two places");
        m_WasVisited[static_cast<std::size_t>(index)] = true;
        return nodes[index].toObject();
    }

    void placeMesh(const QJsonObject& node, int index, const Matrix& matrix)
    {
        const double mesh = node["mesh"].toDouble();
        if (!(mesh >= 0 && mesh + 1 < static_cast<double>(m_FirstGeometries.size())))
            fail("names one of its meshes that is not there");
        if (!std::all_of(matrix.begin(), matrix.end(), [](double number) { return std::isfinite(number); }))
            fail("has a node whose place is not finite");
        if (node.contains("skin"))
            leaveOut("skins");
        place(static_cast<std::size_t>(mesh), matrix, nameOf(node, "node", index));
    }

    void place(std::size_t mesh, const Matrix& matrix, const std::string& name)
    {
        const std::size_t first = m_FirstGeometries[mesh], end = m_FirstGeometries[mesh + 1];
        const std::string base = name.empty()
                                     ? nameOf(m_Description["meshes"].toArray().at(static_cast<int>(mesh)).toObject(),
                                           "mesh", static_cast<int>(mesh))
                                     : name;
        for (std::size_t i = first; i < end; ++i) {
            Geometry& geometry = m_Result.geometries[i];
            m_NumPlaced += geometry.getNumPoints();
            if (m_NumPlaced > std::numeric_limits<std::uint32_t>::max())
                fail("has too many points");
            const std::string path = m_Paths.add(end - first > 1 ? base + "/" + std::to_string(i - first) : base);
            geometry.placements.push_back({path, matrix == IDENTITY ? std::nullopt : std::optional(matrix)});
        }
    }

    void noteOthers()
    {
        if (m_Description.contains("animations"))
            leaveOut("animations");
    }

    std::filesystem::path m_File;
    QJsonObject m_Description;
    GltfBuffers m_Buffers;
    std::vector<std::size_t> m_FirstGeometries; // of each mesh, and behind the last
    std::vector<bool> m_WasVisited;
    UniqueNames m_Paths;
    std::uint64_t m_NumPlaced = 0;
    std::set<std::string> m_LeftOut;
    GeometryFile m_Result;
};

} // namespace

GeometryFile readGltf(InputBuffer& input)
{
    return Reader(input.getFile(), PartsReader(input).read()).read();
}

} // namespace vireo_view
