#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "tavo/base/objects/OutputObjectStream.h"
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
    makeVolumes(folder);
    return 0;
}
