#include "apps/vireo-view/NiftiReader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <nifti2_io.h>
#include <string>
#include <vector>

#include "apps/vireo-view/CompressedFile.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/NiftiHeader.h"

namespace vireo_view {

namespace {

// How the values of a type become floats.
struct ValueType
{
    std::size_t size;
    double (*valueAt)(const unsigned char* bytes);
};

template <typename Value>
ValueType valueType()
{
    return {sizeof(Value), [](const unsigned char* bytes) {
                Value value;
                std::memcpy(&value, bytes, sizeof value);
                return static_cast<double>(value);
            }};
}

ValueType valueTypeOf(const std::filesystem::path& file, int datatype)
{
    switch (datatype) {
    case NIFTI_TYPE_UINT8: return valueType<std::uint8_t>();
    case NIFTI_TYPE_INT8: return valueType<std::int8_t>();
    case NIFTI_TYPE_UINT16: return valueType<std::uint16_t>();
    case NIFTI_TYPE_INT16: return valueType<std::int16_t>();
    case NIFTI_TYPE_UINT32: return valueType<std::uint32_t>();
    case NIFTI_TYPE_INT32: return valueType<std::int32_t>();
    case NIFTI_TYPE_UINT64: return valueType<std::uint64_t>();
    case NIFTI_TYPE_INT64: return valueType<std::int64_t>();
    case NIFTI_TYPE_FLOAT32: return valueType<float>();
    case NIFTI_TYPE_FLOAT64: return valueType<double>();
    default:
        throw InputError(file, std::string("has voxels of the type ") + nifti_datatype_string(datatype) +
                                   ", which are no single numbers of up to 64 bits");
    }
}

std::size_t countVoxels(const std::filesystem::path& file, const std::array<int, 3>& extents)
{
    std::uint64_t count = 1;
    for (const int extent : extents) {
        count *= static_cast<std::uint64_t>(extent);
        if (count > std::numeric_limits<unsigned int>::max())
            throw InputError(file, "has too many voxels");
    }
    return static_cast<std::size_t>(count);
}

// Where the voxels of a file come to lie in a volume, whose X counts fastest.
class VoxelOrder
{
public:
    explicit VoxelOrder(const NiftiHeader& header)
    {
        for (unsigned int i = 0; i < 3; ++i)
            m_Extends[header.axes[i].axis] = header.extents[i];
        const std::array<std::ptrdiff_t, 3> steps = {
            1, m_Extends[0], static_cast<std::ptrdiff_t>(m_Extends[0]) * m_Extends[1]};
        for (unsigned int i = 0; i < 3; ++i) {
            m_Steps[i] = steps[header.axes[i].axis];
            if (!header.axes[i].isReversed)
                continue;
            m_First += m_Steps[i] * (header.extents[i] - 1);
            m_Steps[i] = -m_Steps[i];
        }
    }

    const tavo::Vector3i& getExtends() const { return m_Extends; }

    std::ptrdiff_t placeOf(int i, int j, int k) const
    {
        return m_First + i * m_Steps[0] + j * m_Steps[1] + k * m_Steps[2];
    }
    std::ptrdiff_t getStep() const { return m_Steps[0]; }

private:
    tavo::Vector3i m_Extends;
    std::array<std::ptrdiff_t, 3> m_Steps{};
    std::ptrdiff_t m_First = 0;
};

tavo::Box3f boxOf(const NiftiHeader& header)
{
    tavo::Vector3f corner;
    for (unsigned int i = 0; i < 3; ++i)
        corner[header.axes[i].axis] = static_cast<float>(header.extents[i] * header.spacings[i] / 2);
    return {corner * -1.0f, corner};
}

// Reads the file's voxels slice by slice.
class VoxelReader
{
public:
    VoxelReader(const NiftiHeader& header, const Progress& progress)
        : m_Header(header)
        , m_Progress(progress)
        , m_Type(valueTypeOf(header.dataFile, header.datatype))
        , m_NumVoxels(countVoxels(header.dataFile, header.extents))
        , m_Order(header)
        , m_File(header.dataFile)
    {
        if (m_File.getLargestContents() < header.dataOffset + getNumBytes())
            endsTooSoon();
    }

    tavo::RegularVolume read()
    {
        m_File.seek(m_Header.dataOffset);
        // The volume takes up its room when all that shall fill it is known to be there. To decompress takes about as
        // long as the rest.
        double partBefore = 0.0;
        const bool areThere = m_File.ensure(getNumBytes(), [&](double part) {
            partBefore = part / 2;
            tell(partBefore);
        });
        if (!areThere)
            endsTooSoon();

        tavo::VertexDescriptor channels;
        channels.pushAttrib({DENSITY, 1, tavo::VertexAttribDescriptor::TYPE_FLOAT});
        auto samples = std::make_unique<tavo::PointSet>(channels, static_cast<unsigned int>(m_NumVoxels));
        unsigned char* const out = samples->getData();
        for (int k = 0; k < m_Header.extents[2]; ++k) {
            for (int j = 0; j < m_Header.extents[1]; ++j)
                readRow(j, k, out);
            tell(partBefore + (1 - partBefore) * (k + 1.0) / m_Header.extents[2]);
        }
        // Behind the last voxel a compressed file says whether all before it was right.
        unsigned char behind = 0;
        m_File.read(&behind, 1);
        return tavo::RegularVolume(m_Order.getExtends(), boxOf(m_Header), std::move(samples));
    }

private:
    std::uint64_t getNumBytes() const { return m_NumVoxels * std::uint64_t{m_Type.size}; }

    void tell(double part) const
    {
        if (m_Progress && !m_Progress(part))
            throw InputError(m_Header.dataFile, "the reading was stopped");
    }

    // A piece at a time: there may be one row only.
    void readRow(int j, int k, unsigned char* out)
    {
        constexpr int PIECE = 1 << 14;
        const int width = m_Header.extents[0];
        for (int i = 0; i < width; i += std::min(PIECE, width - i)) {
            const int count = std::min(PIECE, width - i);
            m_Piece.resize(static_cast<std::size_t>(count) * m_Type.size);
            if (m_File.read(m_Piece.data(), m_Piece.size()) < m_Piece.size())
                endsTooSoon();
            if (m_Header.isSwapped && m_Type.size > 1) // niftilib complains of single bytes
                nifti_swap_Nbytes(count, static_cast<int>(m_Type.size), m_Piece.data());
            convertPiece(m_Order.placeOf(i, j, k), out);
        }
    }

    void convertPiece(std::ptrdiff_t place, unsigned char* out) const
    {
        for (std::size_t at = 0; at < m_Piece.size(); at += m_Type.size, place += m_Order.getStep()) {
            const double value = m_Type.valueAt(m_Piece.data() + at) * m_Header.slope + m_Header.intercept;
            const auto density = static_cast<float>(value);
            std::memcpy(out + place * static_cast<std::ptrdiff_t>(sizeof density), &density, sizeof density);
        }
    }

    [[noreturn]] void endsTooSoon() const { throw InputError(m_Header.dataFile, "ends before its last voxel"); }

    const NiftiHeader& m_Header;
    const Progress& m_Progress;
    ValueType m_Type;
    std::size_t m_NumVoxels;
    VoxelOrder m_Order;
    CompressedFile m_File;
    std::vector<unsigned char> m_Piece;
};

} // namespace

tavo::RegularVolume readNifti(const std::filesystem::path& file, const Progress& progress)
{
    const NiftiHeader header = readNiftiHeader(file);
    return VoxelReader(header, progress).read();
}

} // namespace vireo_view
