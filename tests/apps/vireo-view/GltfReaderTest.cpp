#include <QByteArray>
#include <cstring>
#include <gmock/gmock.h>
#include <map>

#include "apps/vireo-view/GeometryReader.h"
#include "apps/vireo-view/InputError.h"
#include "tests/apps/vireo-view/FilesTest.h"

namespace vireo_view {
namespace {

using tavo::Vector3d;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

template <typename... Numbers>
std::string bytesOf(Numbers... numbers)
{
    std::string bytes;
    (bytes.append(reinterpret_cast<const char*>(&numbers), sizeof numbers), ...);
    return bytes;
}

// Four points, four colours and two triangles: 48, 12 and 6 bytes.
const std::string BYTES = bytesOf(0.f, 0.f, 0.f, 1.f, 0.f, 0.f, 1.f, 1.f, 0.f, 0.f, 1.f, 0.f) +
                          std::string("\xFF\0\0\0\xFF\0\0\0\xFF\1\2\3", 12) + std::string("\0\1\2\0\2\3", 6);

std::string base64Of(const std::string& bytes)
{
    return QByteArray::fromStdString(bytes).toBase64().toStdString();
}

// The parts of a description, of which a test replaces some.
using Parts = std::map<std::string, std::string>;

std::string gltf(const Parts& others = {})
{
    Parts parts = {{"asset", R"({"version":"2.0"})"},
        {"meshes", R"([{"primitives":[{"attributes":{"POSITION":0,"COLOR_0":1},"indices":2}]}])"},
        {"accessors", R"([{"bufferView":0,"componentType":5126,"count":4,"type":"VEC3"},)"
                      R"({"bufferView":1,"componentType":5121,"normalized":true,"count":4,"type":"VEC3"},)"
                      R"({"bufferView":2,"componentType":5121,"count":6,"type":"SCALAR"}])"},
        {"bufferViews", R"([{"buffer":0,"byteLength":48},{"buffer":0,"byteOffset":48,"byteLength":12},)"
                        R"({"buffer":0,"byteOffset":60,"byteLength":6}])"},
        {"buffers", R"([{"byteLength":66,"uri":"data:application/octet-stream;base64,)" + base64Of(BYTES) + R"("}])"}};
    for (const auto& [name, value] : others)
        parts[name] = value;
    std::string text;
    for (const auto& [name, value] : parts)
        text += (text.empty() ? "{\"" : ",\"") + name + "\":" + value;
    return text + "}";
}

std::string glb(std::string json, const std::string& bytes)
{
    json.resize((json.size() + 3) / 4 * 4, ' ');
    const auto size = static_cast<std::uint32_t>(json.size()), numBytes = static_cast<std::uint32_t>(bytes.size());
    return "glTF" + bytesOf(2u, 28 + size + numBytes, size) + "JSON" + json + bytesOf(numBytes) +
           std::string("BIN\0", 4) + bytes;
}

class GltfReaderTest : public FilesTest
{
protected:
    GeometryFile read(const std::string& name, std::string_view contents)
    {
        const auto file = write(name, contents);
        return readGeometry(file, detectFormat(file), nullptr);
    }

    std::string errorReading(std::string_view contents)
    {
        return messageOf<InputError>([&] { read("a.gltf", contents); });
    }
};

void expectSquare(const GeometryFile& file)
{
    ASSERT_THAT(file.geometries, SizeIs(1));
    const Geometry& geometry = file.geometries[0];
    ASSERT_EQ(geometry.getNumPoints(), 4u);
    EXPECT_EQ(geometry.getPoint(2), Vector3d(1, 1, 0));
    EXPECT_THAT(geometry.faces, ElementsAre(0, 1, 2, 0, 2, 3));
    EXPECT_EQ(numberAt(geometry.colours, 0), 255);
    EXPECT_EQ(numberAt(geometry.colours, 11), 3);
    ASSERT_THAT(geometry.placements, SizeIs(1));
    EXPECT_EQ(geometry.placements[0].path, "mesh 0");
    EXPECT_FALSE(geometry.placements[0].matrix);
}

TEST_F(GltfReaderTest, ReadsWhatIsInTheDescriptionBehindItOrBesideIt)
{
    expectSquare(read("a.gltf", gltf()));
    expectSquare(read("a.glb", glb(gltf({{"buffers", R"([{"byteLength":66}])"}}), BYTES)));
    write("a b.bin", BYTES);
    expectSquare(read("a.gltf", gltf({{"buffers", R"([{"byteLength":66,"uri":"a%20b.bin"}])"}})));
}

TEST_F(GltfReaderTest, PlacesMeshesWhereNodesSayInDoublePrecision)
{
    const GeometryFile file =
        read("a.gltf", gltf({{"scenes", R"([{"nodes":[0]}])"},
                           {"nodes", R"([{"name":"car/body","mesh":0,"translation":[5500000.123,0,0],"children":[1]},)"
                                     R"({"mesh":0,"scale":[2,2,2],"rotation":[0,0,1,0]}])"}}));
    ASSERT_THAT(file.geometries, SizeIs(1));
    const std::vector<Placement>& placements = file.geometries[0].placements;
    ASSERT_THAT(placements, SizeIs(2));
    EXPECT_EQ(placements[0].path, "car-body");
    EXPECT_EQ(placements[0].apply({1, 2, 3}), Vector3d(5500001.123, 2, 3));
    EXPECT_EQ(placements[1].path, "node 1");
    EXPECT_EQ(placements[1].apply({1, 2, 3}), Vector3d(5499998.123, -4, 6));
}

TEST_F(GltfReaderTest, ReadsPointsStripsFansAndFieldsOfTheirOwn)
{
    const GeometryFile file = read("a.gltf",
        gltf({{"meshes", R"([{"primitives":[{"mode":0,"attributes":{"POSITION":0,"_INTENSITY":2,"_LABEL":2}},)"
                         R"({"mode":5,"attributes":{"POSITION":0}},{"mode":6,"attributes":{"POSITION":0}},)"
                         R"({"mode":1,"attributes":{"POSITION":0}}]}])"},
            {"accessors", R"([{"bufferView":0,"componentType":5126,"count":4,"type":"VEC3"},{},)"
                          R"({"bufferView":2,"componentType":5121,"count":4,"type":"SCALAR"}])"}}));
    ASSERT_THAT(file.geometries, SizeIs(3));
    EXPECT_THAT(file.geometries[0].faces, IsEmpty());
    EXPECT_EQ(file.geometries[0].scalars.at(0).name, "INTENSITY");
    EXPECT_EQ(numberAt(file.geometries[0].scalars[0].values, 2), 2);
    EXPECT_EQ(numberAt(file.geometries[0].labels, 1), 1);
    EXPECT_EQ(file.geometries[0].placements[0].path, "mesh 0/0");
    EXPECT_THAT(file.geometries[1].faces, ElementsAre(0, 1, 2, 1, 3, 2));
    EXPECT_THAT(file.geometries[2].faces, ElementsAre(0, 1, 2, 0, 2, 3));
    EXPECT_THAT(file.leftOut, ElementsAre("lines"));
}

TEST_F(GltfReaderTest, ReadsSparseNumbersAndThoseOfStrides)
{
    const GeometryFile sparse = read("a.gltf",
        gltf({{"meshes", R"([{"primitives":[{"mode":0,"attributes":{"POSITION":0}}]}])"},
            {"accessors",
                R"([{"componentType":5126,"count":4,"type":"VEC3","sparse":{"count":2,"indices":)"
                R"({"bufferView":2,"byteOffset":1,"componentType":5121},"values":{"bufferView":0,"byteOffset":12}}}])"}}));
    EXPECT_EQ(sparse.geometries[0].getPoint(0), Vector3d(0, 0, 0));
    EXPECT_EQ(sparse.geometries[0].getPoint(1), Vector3d(1, 0, 0));
    EXPECT_EQ(sparse.geometries[0].getPoint(2), Vector3d(1, 1, 0));
    const GeometryFile strided =
        read("a.gltf", gltf({{"meshes", R"([{"primitives":[{"mode":0,"attributes":{"POSITION":0}}]}])"},
                           {"accessors", R"([{"bufferView":0,"componentType":5126,"count":2,"type":"VEC3"}])"},
                           {"bufferViews", R"([{"buffer":0,"byteLength":48,"byteStride":24}])"}}));
    EXPECT_EQ(strided.geometries[0].getPoint(1), Vector3d(1, 1, 0));
}

TEST_F(GltfReaderTest, GivesMeshesTheColourOfTheirMaterial)
{
    const GeometryFile file = read("a.gltf",
        gltf({{"meshes", R"([{"primitives":[{"attributes":{"POSITION":0,"TEXCOORD_0":1},"material":0}]}])"},
            {"materials", R"([{"pbrMetallicRoughness":{"baseColorFactor":[1,0,0,1],"baseColorTexture":{}}}])"}}));
    ASSERT_TRUE(file.geometries[0].colour);
    EXPECT_EQ(*file.geometries[0].colour, tavo::RGBA8(255, 0, 0, 255));
    EXPECT_THAT(file.leftOut, ElementsAre("'TEXCOORD_0'", "textures"));
}

TEST_F(GltfReaderTest, RefusesWhatDoesNotHold)
{
    EXPECT_EQ(errorReading("{}"), "a.gltf: is no glTF file: it names no version");
    EXPECT_THAT(errorReading("{"), testing::StartsWith("a.gltf: is no glTF file: "));
    EXPECT_EQ(errorReading(gltf({{"asset", R"({"version":"1.0"})"}})), "a.gltf: is of version '1.0' of glTF, not of 2");
    EXPECT_EQ(errorReading(gltf({{"meshes", "[]"}})), "a.gltf: has no points");
    EXPECT_EQ(errorReading(gltf({{"meshes", R"([{"primitives":[{"attributes":{"POSITION":0},"mode":1}]}])"}})),
        "a.gltf: has no points or triangles, but lines");
    EXPECT_EQ(errorReading(gltf({{"extensionsRequired", R"(["KHR_draco_mesh_compression"])"}})),
        "a.gltf: needs the extension 'KHR_draco_mesh_compression' of glTF, which is not known");
    EXPECT_EQ(errorReading(gltf({{"accessors", R"([{"bufferView":0,"componentType":5126,"count":5,"type":"VEC3"}])"}})),
        "a.gltf: is too short for the data that it promises");
    EXPECT_EQ(errorReading(gltf({{"accessors", R"([{"componentType":5126,"count":1e15,"type":"VEC3"}])"}})),
        "a.gltf: describes more data than it has");
    EXPECT_EQ(errorReading(gltf({{"accessors", "[]"}})), "a.gltf: names one of its accessors that is not there");
    EXPECT_EQ(errorReading(gltf({{"buffers", R"([{"byteLength":66,"uri":"no.bin"}])"}})),
        "a.gltf: has data in 'no.bin', which is no file beside it");
    EXPECT_EQ(errorReading(gltf({{"buffers", R"([{"byteLength":66,"uri":"a.gltf%00.bin"}])"}})),
        "a.gltf: has data in 'a.gltf%00.bin', which is no file beside it");
    EXPECT_EQ(errorReading(gltf({{"buffers", R"([{"byteLength":66,"uri":")" + std::string(5000, 'x') + R"("}])"}})),
        "a.gltf: has data in '" + std::string(40, 'x') + "...', which is no file beside it");
    EXPECT_EQ(errorReading(gltf({{"buffers", R"([{"byteLength":66,"uri":"http://a/b"}])"}})),
        "a.gltf: has data in 'http://a/b', which is no file beside it");
    EXPECT_EQ(errorReading(gltf({{"scenes", R"([{"nodes":[0]}])"}, {"nodes", R"([{"children":[0]}])"}})),
        "a.gltf: has a node in two places");
    EXPECT_EQ(errorReading(glb(gltf(), BYTES).substr(0, 40)), "a.gltf: is too short for the data that it promises");
}

TEST_F(GltfReaderTest, SurvivesEveryTruncation)
{
    const std::string whole = glb(gltf({{"buffers", R"([{"byteLength":66}])"}}), BYTES);
    for (std::size_t size = 1; size < whole.size(); ++size)
        EXPECT_EQ(errorReading(whole.substr(0, size)).find('\n'), std::string::npos);
}

} // namespace
} // namespace vireo_view
