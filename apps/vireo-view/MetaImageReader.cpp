#include "apps/vireo-view/MetaImageReader.h"

#include <algorithm>
#include <bit>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/VolumeHeader.h"

namespace vireo_view {

namespace {

constexpr std::array<std::pair<std::string_view, VoxelType>, 12> TYPES = {
    {{"MET_CHAR", VoxelType::INT8}, {"MET_UCHAR", VoxelType::UINT8}, {"MET_SHORT", VoxelType::INT16},
        {"MET_USHORT", VoxelType::UINT16}, {"MET_INT", VoxelType::INT32}, {"MET_UINT", VoxelType::UINT32},
        {"MET_LONG", VoxelType::INT32}, {"MET_ULONG", VoxelType::UINT32}, {"MET_LONG_LONG", VoxelType::INT64},
        {"MET_ULONG_LONG", VoxelType::UINT64}, {"MET_FLOAT", VoxelType::FLOAT}, {"MET_DOUBLE", VoxelType::DOUBLE}}};

class MetaImageReader
{
public:
    explicit MetaImageReader(const std::filesystem::path& file)
        : m_Header(file)
    {
        while (!m_Header.has("ElementDataFile"))
            readField();
        m_HeaderSize = m_Header.getPlace();
    }

    Volume read(const Progress& progress)
    {
        Volume volume;
        const std::vector<int> extents = m_Header.extents("DimSize", numDimensions());
        std::copy_n(extents.begin(), std::min<std::size_t>(3, extents.size()), volume.grid.size.begin());
        volume.grid = gridOf(volume.grid.size);
        const std::vector<double> channels = m_Header.numbers({"ElementNumberOfChannels"}, 1);
        volume.numChannels = checkedChannels(m_Header.getFile(), channels.empty() ? 1 : channels[0]);
        VoxelData data = findData();
        data.layout.type = type();
        data.layout.isSwapped = isBigEndian() != (std::endian::native == std::endian::big);
        data.layout.numPerTime = numVoxels(m_Header.getFile(), volume.grid.size) * volume.numChannels;
        data.layout.numTimes = extents.size() > 3 ? static_cast<std::size_t>(extents[3]) : 1;
        volume.times = readVoxelData(data, progress);
        return volume;
    }

private:
    void readField()
    {
        if (!m_Header.next())
            m_Header.fail("is no MetaImage: its header does not say where its voxels are");
        const std::string_view line = m_Header.getLine();
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos)
            return line.empty() ? void() : m_Header.failInLine("is no line of a MetaImage");
        std::string_view name = line.substr(0, equals);
        name = name.substr(0, name.find_last_not_of(" \t") + 1);
        m_Header.set(std::string(name), line.substr(equals + 1));
    }

    std::size_t numDimensions() const
    {
        const std::vector<double> number = m_Header.numbers({"NDims"}, 1);
        if (number.empty() || !(number[0] == 2 || number[0] == 3 || number[0] == 4))
            m_Header.fail("has " + quotedText(m_Header.get({"NDims"})) + " dimensions, not 2, 3 or 4");
        return static_cast<std::size_t>(number[0]);
    }

    VoxelType type() const
    {
        const std::string_view name = m_Header.get({"ElementType"});
        for (const auto& [known, type] : TYPES)
            if (name == known)
                return type;
        m_Header.fail("has voxels of the unknown type " + quotedText(name));
    }

    bool isTrue(std::initializer_list<const char*> names) const
    {
        const std::string_view value = m_Header.get(names);
        return value.starts_with('T') || value.starts_with('t') || value.starts_with('1');
    }

    bool isBigEndian() const { return isTrue({"BinaryDataByteOrderMSB", "ElementByteOrderMSB"}); }

    // Each number of the matrix's row belongs to a coordinate, and each row to an index.
    VoxelGrid gridOf(const std::array<int, 3>& size) const
    {
        const std::size_t n = numDimensions();
        std::vector<double> spacing = m_Header.numbers({"ElementSpacing"}, n);
        if (spacing.empty())
            spacing = m_Header.numbers({"ElementSize"}, n);
        const std::vector<double> origin = m_Header.numbers({"Offset", "Position", "Origin"}, n);
        const std::vector<double> matrix = m_Header.numbers({"TransformMatrix", "Rotation", "Orientation"}, n * n);
        std::array<tavo::Vector3d, 3> steps;
        tavo::Vector3d first;
        for (unsigned int i = 0; i < 3; ++i) {
            steps[i][i] = 1;
            for (unsigned int c = 0; c < std::min<std::size_t>(3, n) && i < n && !matrix.empty(); ++c)
                steps[i][c] = matrix[i * n + c];
            steps[i] = steps[i] * (spacing.empty() || i >= n ? 1 : spacing[i]);
            first[i] = origin.empty() || i >= n ? 0 : origin[i];
        }
        const std::optional<VoxelGrid> grid = gridOfSteps(size, steps, first);
        if (!grid)
            m_Header.fail("says that its voxels are where they cannot be");
        return *grid;
    }

    VoxelData findData() const
    {
        VoxelData data;
        const std::string name(m_Header.get({"ElementDataFile"}));
        const bool isInside = name == "LOCAL" || name == "Local" || name == "local";
        if (name == "LIST" || name.find('%') != std::string::npos)
            m_Header.fail("has its voxels in several files, which are not read");
        data.file = isInside ? m_Header.getFile() : m_Header.findDataFile(name);
        const std::vector<double> headerSize = m_Header.numbers({"HeaderSize"}, 1);
        data.isAtEnd = !headerSize.empty() && headerSize[0] == -1;
        const double start = headerSize.empty() || data.isAtEnd ? 0 : headerSize[0];
        if (!(start >= 0 && start <= 1e15))
            m_Header.fail("says that its voxels are where they cannot be");
        data.start = isInside ? m_HeaderSize : static_cast<std::uint64_t>(start);
        data.isAtEnd = data.isAtEnd && !isInside;
        data.isCompressed = isTrue({"CompressedData"});
        data.isText = !m_Header.get({"BinaryData"}).empty() && !isTrue({"BinaryData"});
        if (data.isAtEnd && (data.isCompressed || data.isText))
            m_Header.fail("does not say where its voxels begin");
        return data;
    }

    VolumeHeader m_Header;
    std::uint64_t m_HeaderSize = 0;
};

} // namespace

Volume readMetaImage(const std::filesystem::path& file, const Progress& progress)
{
    return MetaImageReader(file).read(progress);
}

} // namespace vireo_view
