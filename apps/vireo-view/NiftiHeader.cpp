#include "apps/vireo-view/NiftiHeader.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <memory>
#include <nifti2_io.h>
#include <string>
#include <system_error>

#include "apps/vireo-view/CompressedFile.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/lowerCaseExtension.h"

namespace vireo_view {

namespace {

namespace fs = std::filesystem;

constexpr int ANALYZE = 0;
constexpr int NIFTI_2 = 2;

constexpr unsigned int MOST_DIMENSIONS = 7;

struct ImageDeleter
{
    void operator()(nifti_image* image) const { nifti_image_free(image); }
};
using Image = std::unique_ptr<nifti_image, ImageDeleter>;

// The other file of a pair; empty if it is not there. niftilib looks for it by a name in bytes, in which Windows has
// only the letters of its code page.
fs::path otherOfPair(fs::path file, std::initializer_list<const char*> extensions)
{
    if (const fs::path packed = file.extension(); packed == ".gz" || packed == ".GZ")
        file.replace_extension();
    for (const char* const extension : extensions) {
        const fs::path other = fs::path(file).replace_extension(extension);
        std::error_code error;
        if (fs::is_regular_file(other, error))
            return other;
    }
    return {};
}

bool isImageFile(const fs::path& file)
{
    return lowerCaseExtension(file) == ".img";
}

bool isHeaderFile(const fs::path& file)
{
    return lowerCaseExtension(file) == ".hdr";
}

fs::path findHeaderFile(const fs::path& file)
{
    if (!isImageFile(file))
        return file;
    fs::path header = otherOfPair(file, {".hdr", ".hdr.gz", ".HDR", ".HDR.GZ"});
    if (header.empty())
        throw InputError(file, "has no header: the file with the extension .hdr beside it is missing");
    return header;
}

fs::path findDataFile(const fs::path& file)
{
    if (!isHeaderFile(file))
        return file;
    fs::path data = otherOfPair(file, {".img", ".img.gz", ".IMG", ".IMG.GZ"});
    if (data.empty())
        throw InputError(file, "has no image: the file with the extension .img beside it is missing");
    return data;
}

// The extents along x, y, z and time, of which a header need not name all.
template <typename Header>
std::array<int, 4> extentsOf(const fs::path& file, const Header& header)
{
    if (header.dim[0] < 1 || header.dim[0] > static_cast<int>(MOST_DIMENSIONS))
        throw InputError(file, "cannot have " + std::to_string(header.dim[0]) + " dimensions");
    std::array<int, 4> extents = {1, 1, 1, 1};
    for (unsigned int i = 0; i < MOST_DIMENSIONS && i < static_cast<unsigned int>(header.dim[0]); ++i) {
        const auto extent = static_cast<std::int64_t>(header.dim[i + 1]);
        if (extent < 1)
            throw InputError(file, "has an extent of " + std::to_string(extent) + " voxels");
        if (extent > std::numeric_limits<int>::max())
            throw InputError(file, "has too many voxels");
        if (i < extents.size())
            extents[i] = static_cast<int>(extent);
    }
    return extents;
}

double millimetresPerUnit(int units)
{
    switch (units) {
    case NIFTI_UNITS_METER: return 1e3;
    case NIFTI_UNITS_MICRON: return 1e-3;
    default: return 1;
    }
}

double secondsPerUnit(int units)
{
    switch (units) {
    case NIFTI_UNITS_SEC: return 1;
    case NIFTI_UNITS_MSEC: return 1e-3;
    case NIFTI_UNITS_USEC: return 1e-6;
    default: return 0;
    }
}

// As large as the header says, along x, y and z, from the origin on.
VoxelGrid uprightGrid(const fs::path& file, const std::array<int, 3>& size, const nifti_image& image)
{
    const double unit = millimetresPerUnit(image.xyz_units);
    const std::array<double, 3> sizes = {image.dx, image.dy, image.dz};
    VoxelGrid grid;
    grid.size = size;
    for (unsigned int i = 0; i < 3; ++i) {
        // Where it is none, that of niftilib for those that are missing.
        grid.spacing[i] = std::abs(sizes[i] == 0 || !std::isfinite(sizes[i]) ? 1 : sizes[i]) * unit;
        constexpr double SMALLEST = 1e-12;
        constexpr double LARGEST = 1e12;
        if (grid.spacing[i] < SMALLEST || grid.spacing[i] > LARGEST)
            throw InputError(file, "has voxels of a size that cannot be");
    }
    return grid;
}

// Where the matrix or the quaternion of the file puts the voxels, if it has one that can be.
VoxelGrid gridOf(const fs::path& file, const std::array<int, 3>& size, const nifti_image& image)
{
    const VoxelGrid upright = uprightGrid(file, size, image);
    if (image.sform_code <= 0 && image.qform_code <= 0)
        return upright;
    const double unit = millimetresPerUnit(image.xyz_units);
    const nifti_dmat44& matrix = image.sform_code > 0 ? image.sto_xyz : image.qto_xyz;
    const auto column = [&](int i) { return tavo::Vector3d(matrix.m[0][i], matrix.m[1][i], matrix.m[2][i]) * unit; };
    return gridOfSteps(size, {column(0), column(1), column(2)}, column(3)).value_or(upright);
}

bool isKnownType(int datatype)
{
    int size = 0;
    int swapSize = 0;
    nifti_datatype_sizes(datatype, &size, &swapSize);
    return datatype != DT_BINARY && size > 0;
}

// What is in the byte order of this machine.
template <typename Header>
NiftiHeader interpret(const fs::path& file, const Header& header, Image (*convert)(const Header&))
{
    NiftiHeader result{};
    const std::array<int, 4> extents = extentsOf(file, header);
    if (!isKnownType(header.datatype))
        throw InputError(file, "has voxels of the unknown type " + std::to_string(header.datatype));
    // Beyond that niftilib's offsets would be others.
    constexpr double LARGEST_OFFSET = 1 << 30;
    const auto offset = static_cast<double>(header.vox_offset);
    if (!(offset >= 0 && offset <= LARGEST_OFFSET))
        throw InputError(file, "says that its voxels are where they cannot be");
    const Image image = convert(header);
    if (!image)
        throw InputError(file, "is no NIfTI file that can be read");
    result.dataOffset = static_cast<std::uint64_t>(image->iname_offset);
    result.grid = gridOf(file, {extents[0], extents[1], extents[2]}, *image);
    result.numTimes = static_cast<std::size_t>(extents[3]);
    const double interval = image->dt * secondsPerUnit(image->time_units);
    result.secondsPerTime = interval > 0 && std::isfinite(interval) ? interval : 0;
    result.datatype = image->datatype;
    const bool isScaled = image->scl_slope != 0;
    result.slope = isScaled ? image->scl_slope : 1;
    result.intercept = isScaled ? image->scl_inter : 0;
    return result;
}

Image convert1(const nifti_1_header& header)
{
    return Image(nifti_convert_n1hdr2nim(header, nullptr));
}

Image convert2(const nifti_2_header& header)
{
    return Image(nifti_convert_n2hdr2nim(header, nullptr));
}

// Interprets the bytes of a header of either size.
template <typename Header>
NiftiHeader interpretBytes(const fs::path& file, const char* bytes, int version, Image (*convert)(const Header&))
{
    Header header;
    std::memcpy(&header, bytes, sizeof header);
    const bool isSwapped = header.sizeof_hdr != static_cast<int>(sizeof header);
    if (isSwapped)
        swap_nifti_header(&header, version);
    NiftiHeader result = interpret(file, header, convert);
    result.isSwapped = isSwapped;
    return result;
}

} // namespace

NiftiHeader readNiftiHeader(const fs::path& file)
{
    // What it says on the standard error stream is said here, too, in the program's own words.
    nifti_set_debug_level(0);
    const fs::path headerFile = findHeaderFile(file);
    const fs::path dataFile = findDataFile(headerFile);

    std::array<char, sizeof(nifti_2_header)> bytes{};
    const std::size_t size = CompressedFile(headerFile).read(bytes.data(), bytes.size());
    const int version = size < sizeof(nifti_1_header) ? -1 : nifti_header_version(bytes.data(), size);
    const bool isWholeFile = headerFile == dataFile;
    if (version < ANALYZE || (version == ANALYZE && isWholeFile))
        throw InputError(headerFile, "is not a NIfTI file: it does not begin with such a header");
    if (version == NIFTI_2 && size < sizeof(nifti_2_header))
        throw InputError(headerFile, "ends within its header");

    NiftiHeader header = version == NIFTI_2
                             ? interpretBytes<nifti_2_header>(headerFile, bytes.data(), version, convert2)
                             : interpretBytes<nifti_1_header>(headerFile, bytes.data(), version, convert1);
    header.dataFile = dataFile;
    return header;
}

} // namespace vireo_view
