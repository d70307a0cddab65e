#include <QBuffer>
#include <QImage>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tavo/base/objects/OutputObjectStream.h"
#include "tests/apps/vireo-view/DicomFile.h"
#include "tests/apps/vireo-view/NiftiFile.h"
#include "tests/tavo/base/objects/Shapes.h"

// Good input of every kind, from which fuzzers set out.

namespace {

namespace fs = std::filesystem;

using vireo_view::bytesOf;
using vireo_view::NiftiFile;

// A folder that is filled with files, which are numbered.
class Seeds
{
public:
    explicit Seeds(const fs::path& folder)
        : m_Folder(folder)
    {
        fs::create_directories(folder);
    }

    void add(std::string_view bytes) { std::ofstream(nextFile(), std::ios::binary) << bytes; }

    void addCompressed(std::string_view bytes) { vireo_view::writeCompressed(nextFile(), bytes); }

private:
    fs::path nextFile() { return m_Folder / ("seed-" + std::to_string(++m_NumSeeds)); }

    fs::path m_Folder;
    int m_NumSeeds = 0;
};

void makeObjectStreams(const fs::path& folder)
{
    tavo::registerShapes();
    Seeds seeds(folder);
    tavo::OutputObjectStream stream;
    seeds.add(stream.getText().toStdString());
    stream.writeObject(tavo::Shape());
    seeds.add(stream.getText().toStdString());
    stream.writeObject(tavo::boxOf(0, 1, 0x7FFFFFFF, 0xFFFFFFFF));
    stream.writeObject(tavo::boxOf(5, 6, 7, 8));
    seeds.add(stream.getText().toStdString());
}

void makeTables(const fs::path& folder)
{
    Seeds seeds(folder);
    seeds.add("1\n2.5\n-3e2\n");
    seeds.add("time,pressure\n0,1013.25\n1,1012\n2,\n");
    seeds.add("\"x\";\"y, in m\";z\n1;2;3\n4;NA;nan\n");
    seeds.add("x\ty\tz\tw\r\n1\t2\t3\t4\r\n-inf\t+6\t7\t8\r\n");
    seeds.add("# a comment\n\n0.5   1e-3  .25\n1 2 3 # another\n");
    seeds.add("\xEF\xBB\xBF"
              "a b\r1 2\r3 4\r");
    seeds.add("# log\ntimestamp,p [Pa],status\n2024-05-01T12:00:00.5Z,101325,OK\n2024-05-01T12:00:01+02:00,,x\n");
    seeds.add("sep=;\r\nDatum;Uhrzeit;T [\xB0"
              "C]\r\n01.05.2024;12:30:00;20,5\r\n01.05.2024;12:31:00;21,25;\r\n");
    seeds.add("time;p\n[s];(Pa)\n1714521600000;1\n1714521601000;2;3\n");
    std::string longTable;
    for (int row = 0; row < 50; ++row)
        longTable += std::to_string(row) + ',' + std::to_string(row * row) + ',' + std::to_string(100 - row) + '\n';
    seeds.add(longTable);
}

template <typename... Numbers>
std::string bytesOfNumbers(Numbers... numbers)
{
    std::string bytes;
    (bytes.append(reinterpret_cast<const char*>(&numbers), sizeof numbers), ...);
    return bytes;
}

void makePly(Seeds& seeds)
{
    const std::string numbers = "property double x\nproperty double y\nproperty double z\n";
    const std::string fields = "property uchar red\nproperty uchar green\nproperty uchar blue\nproperty float nx\n"
                               "property float ny\nproperty float nz\nproperty ushort intensity\nproperty int label\n";
    const std::string faces = "element face 2\nproperty list uchar int vertex_indices\n";
    seeds.add("ply\nformat ascii 1.0\ncomment a\nelement vertex 4\n" + numbers + faces +
              "end_header\n0 0 0\n1 0 0\n1 1 0.5\n5500000.123 1e-3 nan\n3 0 1 2\n4 0 1 2 3\n");
    seeds.add("ply\nformat ascii 1.0\nelement vertex 1\n" + numbers + fields +
              "end_header\n1 2 3 255 128 0 0 0 1 65535 -7\n");
    using Byte = unsigned char;
    seeds.add("ply\nformat binary_little_endian 1.0\nelement vertex 1\n" + numbers + fields + "end_header\n" +
              bytesOfNumbers(1.0, 2.0, 3.0, Byte(1), Byte(2), Byte(3), 0.f, 0.f, 1.f, std::uint16_t(9), 7));
    seeds.add("ply\nformat binary_big_endian 1.0\nelement vertex 3\nproperty char x\nproperty char y\n"
              "property char z\n" +
              faces + "end_header\n" + bytesOfNumbers(Byte(0), Byte(0), Byte(0), Byte(1), Byte(0), Byte(0)) +
              bytesOfNumbers(Byte(0), Byte(1), Byte(0), Byte(3)) + std::string(11, '\0') + "\1" + std::string(5, '\2'));
}

void makeGltf(Seeds& seeds)
{
    const std::string description =
        R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"mesh":0,"name":"a",)"
        R"("translation":[5500000.5,0,0],"children":[1]},{"mesh":0,"scale":[2,2,2],"rotation":[0,0,1,0]}],)"
        R"("meshes":[{"primitives":[{"attributes":{"POSITION":0,"COLOR_0":1,"_LABEL":1},"indices":1,"material":0}]}],)"
        R"("materials":[{"pbrMetallicRoughness":{"baseColorFactor":[1,0.5,0,1]}}],)"
        R"("accessors":[{"bufferView":0,"componentType":5126,"count":3,"type":"VEC3"},)"
        R"({"bufferView":1,"componentType":5121,"count":3,"type":"SCALAR"}],)"
        R"("bufferViews":[{"buffer":0,"byteLength":36},{"buffer":0,"byteOffset":36,"byteLength":3}],"buffers":[{)";
    const std::string bytes = bytesOfNumbers(0.f, 0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 1.f, 0.f) + std::string("\0\1\2\0", 4);
    seeds.add(description +
              R"("byteLength":39,"uri":"data:;base64,AAAAAAAAAAAAAAAAAACAPwAAAAAAAAAAAAAAAAAAgD8AAAAAAAEC"}]})");
    const std::string json = description + R"("byteLength":40}]})";
    const auto size = static_cast<std::uint32_t>(json.size()), numBytes = static_cast<std::uint32_t>(bytes.size());
    seeds.add("glTF" + bytesOfNumbers(2u, 28 + size + numBytes, size) + "JSON" + json + bytesOfNumbers(numBytes) +
              std::string("BIN\0", 4) + bytes);
}

void makeGeometries(const fs::path& folder)
{
    Seeds seeds(folder);
    makePly(seeds);
    makeGltf(seeds);
    seeds.add("OFF\n# a comment\n4 2 0\n0 0 0\n1 0 0\n1 1 0\n0 1 0\n3 0 1 2\n4 0 1 2 3 255 0 0\n");
    seeds.add("STCN4OFF\n1 0 0\n2 4 6 2 0 0 1 .5 .5 .5 1 0 0\n");
    seeds.add("OFF BINARY\n" + std::string("\0\0\0\1\0\0\0\0\0\0\0\0\x3F\x80\0\0\x40\0\0\0\x40\x40\0\0", 24));
    seeds.add("v 0 0 0 1 0 0\nv 1 0 0 0 1 0\nv 0 1 0 0 0 1\nvn 0 0 1\nvn 0 1 0\nvt 0 0\nusemtl a\n"
              "f 1/1/1 2/1/1 \\\n3/1/2\nf -1//1 -2//2 -3//2\nl 1 2\n");
    seeds.add("solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\n");
    seeds.add(std::string(80, ' ') + bytesOfNumbers(1u) + std::string(46, '\0') + bytesOfNumbers(1.f));
    seeds.add("2\n1 2 3 -5 255 0 0\n4\t5 6 7 1 2 3\n");
    seeds.add("//X Y Z Intensity class s\n1 2 3 .5 2 a\n4 5 6 nan 3 b\n");
    seeds.add("1 2 3 0 0 1\n4 5 6 .6 .8 0\n");
}

template <typename Value>
NiftiFile volumeOf(short datatype)
{
    return {{3, 2, 2}, datatype, bytesOf<Value>({0, 1, 2, 3, 5, 8, 13, 21, 34, 55, 89, 127})};
}

std::vector<NiftiFile> volumes()
{
    std::vector<NiftiFile> files = {volumeOf<std::uint8_t>(NIFTI_TYPE_UINT8), volumeOf<std::int8_t>(NIFTI_TYPE_INT8),
        volumeOf<std::uint16_t>(NIFTI_TYPE_UINT16), volumeOf<std::int16_t>(NIFTI_TYPE_INT16),
        volumeOf<std::uint32_t>(NIFTI_TYPE_UINT32), volumeOf<std::int32_t>(NIFTI_TYPE_INT32),
        volumeOf<std::uint64_t>(NIFTI_TYPE_UINT64), volumeOf<std::int64_t>(NIFTI_TYPE_INT64),
        volumeOf<float>(NIFTI_TYPE_FLOAT32), volumeOf<double>(NIFTI_TYPE_FLOAT64)};

    NiftiFile scaled = files[3];
    scaled.header.scl_slope = 0.5f;
    scaled.header.scl_inter = -10.0f;
    scaled.header.xyzt_units = NIFTI_UNITS_MICRON;
    files.push_back(scaled);

    NiftiFile turned = files[0];
    turned.header.sform_code = 1;
    turned.header.srow_x[1] = -1.0f;
    turned.header.srow_y[0] = 2.0f;
    turned.header.srow_z[2] = 1.0f;
    files.push_back(turned);

    NiftiFile turnedByQuaternion = files[0];
    turnedByQuaternion.header.qform_code = 1;
    turnedByQuaternion.header.quatern_d = 1.0f;
    files.push_back(turnedByQuaternion);

    NiftiFile swapped = files[3];
    swap_nifti_header(&swapped.header, 1);
    nifti_swap_Nbytes(12, 2, swapped.voxels.data());
    files.push_back(swapped);

    files.push_back({{2, 1, 1, 3}, NIFTI_TYPE_UINT8, bytesOf<unsigned char>({1, 2, 3, 4, 5, 6})});
    return files;
}

// With the voxels at that offset: behind the header, or in a file of their own.
std::string headerOfVersion2(std::int64_t offset, const char* magic)
{
    nifti_2_header header{};
    header.sizeof_hdr = sizeof header;
    std::memcpy(header.magic, magic, sizeof header.magic);
    header.datatype = NIFTI_TYPE_UINT8;
    const std::int64_t extents[] = {3, 3, 2, 2, 1, 1, 1, 1};
    std::copy(std::begin(extents), std::end(extents), header.dim);
    std::fill(header.pixdim + 1, header.pixdim + 8, 0.25);
    header.vox_offset = offset;
    return {reinterpret_cast<const char*>(&header), sizeof header};
}

std::vector<std::string> singleFiles()
{
    std::vector<std::string> files;
    for (const NiftiFile& volume : volumes())
        files.push_back(volume.getBytes());
    constexpr std::int64_t OFFSET = 544;
    std::string ofVersion2 = headerOfVersion2(OFFSET, "n+2\0\r\n\032\n");
    ofVersion2.resize(OFFSET);
    files.push_back(ofVersion2 + volumes().front().voxels);
    return files;
}

// The header in front of the image.
std::vector<std::string> pairs()
{
    std::vector<std::string> files;
    for (NiftiFile volume : volumes()) {
        volume.header.vox_offset = 0;
        std::strcpy(volume.header.magic, "ni1");
        files.push_back(volume.getHeaderBytes() + volume.voxels);
        std::memset(volume.header.magic, 0, sizeof volume.header.magic); // as of ANALYZE
        files.push_back(volume.getHeaderBytes() + volume.voxels);
    }
    files.push_back(headerOfVersion2(0, "ni2\0\r\n\032\n") + volumes().front().voxels);
    return files;
}

void makeVolumes(const fs::path& folder)
{
    Seeds single(folder / "nifti");
    Seeds compressed(folder / "nifti-gz");
    for (const std::string& bytes : singleFiles()) {
        single.add(bytes);
        compressed.add(bytes);
        compressed.addCompressed(bytes);
    }
    Seeds pair(folder / "nifti-pair");
    for (const std::string& bytes : pairs())
        pair.add(bytes);
}

void makeNrrd(const fs::path& folder)
{
    Seeds seeds(folder);
    const std::string header =
        "NRRD0004\n# a comment\ntype: short\ndimension: 3\nsizes: 2 1 2\nendian: big\nkey:=value\n";
    const std::string voxels = "abcdefgh";
    seeds.add(header + "encoding: raw\nspacings: 0.5 nan 2\n\n" + voxels);
    seeds.add(header +
              "encoding: raw\nspace: left-anterior-superior\nspace directions: (0,2,0) (-3,0,0) (0,0,4)\n"
              "space origin: (5,6.5,7)\nbyte skip: -1\n\n" +
              voxels);
    seeds.add(header + "encoding: text\nline skip: 1\n\na line\n1 -2 3e1 4\n");
    seeds.add("NRRD0005\ntype: uchar\ndimension: 4\nsizes: 3 1 1 2\nencoding: raw\nkinds: RGB-color domain domain "
              "domain\n\nabcdef");
    seeds.add("NRRD0005\ntype: float\ndimension: 4\nsizes: 1 1 1 2\nencoding: raw\nendian: little\n\n" + voxels);
}

void makeMetaImage(const fs::path& folder)
{
    Seeds seeds(folder);
    const std::string header = "ObjectType = Image\nNDims = 3\nDimSize = 2 1 2\nElementType = MET_SHORT\n";
    seeds.add(header + "ElementSpacing = 0.5 1 2\nOffset = 5 6 7\nElementDataFile = LOCAL\nabcdefgh");
    seeds.add(header + "TransformMatrix = 0 1 0 -1 0 0 0 0 1\nBinaryDataByteOrderMSB = True\n"
                       "ElementDataFile = LOCAL\nabcdefgh");
    seeds.add(header + "BinaryData = False\nElementDataFile = LOCAL\n1 -2 3e1 4\n");
    seeds.add("NDims = 4\nDimSize = 1 1 1 2\nElementNumberOfChannels = 3\nElementType = MET_UCHAR\n"
              "ElementDataFile = LOCAL\nabcdef");
}

// Two pages of 2 x 1 bytes, uncompressed.
void makeTiff(const fs::path& folder)
{
    const auto page = [](std::uint32_t next, std::uint32_t pixels) {
        const auto entry = [](std::uint16_t tag, std::uint32_t value) {
            constexpr std::uint16_t LONG = 4;
            return bytesOfNumbers(tag, LONG, std::uint32_t{1}, value);
        };
        return bytesOfNumbers(std::uint16_t{9}) + entry(256, 2) + entry(257, 1) + entry(258, 8) + entry(259, 1) +
               entry(262, 1) + entry(273, pixels) + entry(277, 1) + entry(278, 1) + entry(279, 2) +
               bytesOfNumbers(next);
    };
    constexpr std::uint32_t FIRST = 12, SIZE_OF_PAGE = 114;
    Seeds(folder).add(
        std::string("II*\0", 4) + bytesOfNumbers(FIRST) + "abcd" + page(FIRST + SIZE_OF_PAGE, 8) + page(0, 10));
}

void makeDicom(const fs::path& folder)
{
    Seeds seeds(folder);
    for (const char* const syntax : {"1.2.840.10008.1.2", "1.2.840.10008.1.2.1", "1.2.840.10008.1.2.2"}) {
        vireo_view::DicomFile file;
        file.syntax = syntax;
        file.intercept = "-1024";
        file.bitsStored = 12;
        seeds.add(file.bytes());
    }
    vireo_view::DicomFile frames;
    const std::string item("\xFE\xFF\x00\xE0\xFF\xFF\xFF\xFF", 8), endOfItem("\xFE\xFF\x0D\xE0\0\0\0\0", 8);
    frames.before = frames.field(0x28, 0x08, "IS", "1") +
                    frames.field(0x5200, 0x9230, "SQ", item + frames.field(0x20, 0x32, "DS", "1\\2\\3") + endOfItem);
    seeds.add(frames.bytes());
}

std::string pictureAs(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return bytes.toStdString();
}

// A page of one strip, whose numbers have so many bits and are of that kind.
std::string tiffOf(std::uint32_t width, std::uint32_t height, std::uint32_t bits, std::uint32_t kind)
{
    const std::uint32_t numBytes = width * height * bits / 8;
    struct Entry
    {
        std::uint16_t tag, type;
        std::uint32_t count, value;
    };
    constexpr std::uint16_t NUM_ENTRIES = 10;
    constexpr std::uint32_t BEHIND_ENTRIES = 8 + 2 + 12 * NUM_ENTRIES + 4;
    const Entry entries[NUM_ENTRIES] = {{256, 4, 1, width}, {257, 4, 1, height}, {258, 3, 1, bits}, {259, 3, 1, 1},
        {262, 3, 1, 1}, {273, 4, 1, BEHIND_ENTRIES}, {277, 3, 1, 1}, {278, 4, 1, height}, {279, 4, 1, numBytes},
        {339, 3, 1, kind}};
    std::string bytes = std::string("II*\0", 4) + bytesOfNumbers(8u) + bytesOfNumbers(NUM_ENTRIES);
    for (const Entry& entry : entries)
        bytes += bytesOfNumbers(entry.tag) + bytesOfNumbers(entry.type) + bytesOfNumbers(entry.count, entry.value);
    return bytes + bytesOfNumbers(0u) + std::string(numBytes, 'x');
}

void makeImages(const fs::path& folder)
{
    Seeds seeds(folder);
    for (const QImage::Format format : {QImage::Format_RGB32, QImage::Format_ARGB32, QImage::Format_Grayscale8,
             QImage::Format_Grayscale16, QImage::Format_RGBA64, QImage::Format_Mono}) {
        QImage image(3, 2, format);
        image.fill(1);
        seeds.add(pictureAs(image, "png"));
    }
    QImage image(9, 5, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (const char* const format : {"jpg", "bmp", "ppm"})
        seeds.add(pictureAs(image, format));
    seeds.add("Pf\n2 1\n-1.0\n" + bytesOfNumbers(1.f, 2.f));
    seeds.add("PF\n1 1\n1\n" + bytesOfNumbers(1.f, 2.f, 3.f));
    for (const std::uint32_t bits : {1u, 8u, 16u, 32u})
        seeds.add(tiffOf(8, 2, bits, 1));
    for (const std::uint32_t bits : {16u, 32u, 64u})
        seeds.add(tiffOf(3, 2, bits, 3));
}

} // namespace

// makeSeeds FOLDER: writes seeds for each reader to a folder of its name in that folder.
int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "makeSeeds: name a folder\n");
        return 2;
    }
    const fs::path folder = argv[1];
    makeObjectStreams(folder / "objects");
    makeTables(folder / "columns");
    makeGeometries(folder / "geometry");
    makeImages(folder / "images");
    makeVolumes(folder);
    makeNrrd(folder / "nrrd");
    makeMetaImage(folder / "metaimage");
    makeTiff(folder / "tiff");
    makeDicom(folder / "dicom");
    return 0;
}
