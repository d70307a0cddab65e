#include "apps/vireo-view/NrrdReader.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <fstream>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/VolumeHeader.h"
#include "apps/vireo-view/words.h"

namespace vireo_view {

namespace {

// The names of a type are these, and what the format lets one say more of integers (see baseName).
constexpr std::array<std::pair<std::string_view, VoxelType>, 28> TYPES = {{{"signed char", VoxelType::INT8},
    {"int8", VoxelType::INT8}, {"int8_t", VoxelType::INT8}, {"uchar", VoxelType::UINT8},
    {"unsigned char", VoxelType::UINT8}, {"uint8", VoxelType::UINT8}, {"uint8_t", VoxelType::UINT8},
    {"short", VoxelType::INT16}, {"int16", VoxelType::INT16}, {"int16_t", VoxelType::INT16},
    {"ushort", VoxelType::UINT16}, {"unsigned short", VoxelType::UINT16}, {"uint16", VoxelType::UINT16},
    {"uint16_t", VoxelType::UINT16}, {"int", VoxelType::INT32}, {"int32", VoxelType::INT32},
    {"int32_t", VoxelType::INT32}, {"uint", VoxelType::UINT32}, {"unsigned int", VoxelType::UINT32},
    {"uint32", VoxelType::UINT32}, {"uint32_t", VoxelType::UINT32}, {"longlong", VoxelType::INT64},
    {"long long", VoxelType::INT64}, {"int64", VoxelType::INT64}, {"ulonglong", VoxelType::UINT64},
    {"unsigned long long", VoxelType::UINT64}, {"float", VoxelType::FLOAT}, {"double", VoxelType::DOUBLE}}};

std::string lowerCase(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
        [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

// "signed short int" is "short".
std::string baseName(std::string name)
{
    if (name != "signed char" && name.starts_with("signed "))
        name.erase(0, 7);
    if (name.ends_with(" int") && name != "unsigned int")
        name.erase(name.size() - 4);
    if (name == "int64_t" || name == "uint64_t")
        name.erase(name.size() - 2);
    return name == "uint64" ? "ulonglong" : name;
}

// What an axis of the file counts.
enum class AxisKind
{
    SPACE,
    CHANNELS,
    TIMES
};

class NrrdReader
{
public:
    explicit NrrdReader(const std::filesystem::path& file)
        : m_Header(file)
    {
        if (!m_Header.next() || !m_Header.getLine().starts_with("NRRD000"))
            m_Header.fail("is not a NRRD file: it does not begin with 'NRRD000'");
        while (m_Header.next() && !m_Header.getLine().empty())
            readField();
        m_HeaderSize = m_Header.getPlace();
        m_Extents = m_Header.extents("sizes", numDimensions());
        m_Kinds = kinds();
    }

    Volume read(const Progress& progress)
    {
        Volume volume;
        VoxelData data = findData();
        unsigned int numAxes = 0;
        for (std::size_t i = 0; i < m_Extents.size(); ++i) {
            if (m_Kinds[i] == AxisKind::CHANNELS)
                volume.numChannels = checkedChannels(m_Header.getFile(), m_Extents[i]);
            else if (m_Kinds[i] == AxisKind::TIMES)
                data.layout.numTimes = static_cast<std::size_t>(m_Extents[i]);
            else
                volume.grid.size[numAxes++] = m_Extents[i];
        }
        placeVolume(volume);
        data.layout.numPerTime = numVoxels(m_Header.getFile(), volume.grid.size) * volume.numChannels;
        volume.times = readVoxelData(data, progress);
        return volume;
    }

private:
    void readField()
    {
        const std::string_view line = m_Header.getLine();
        const std::size_t colon = line.find(':');
        if (line.starts_with('#'))
            return;
        if (colon == std::string_view::npos)
            m_Header.failInLine("is no line of a NRRD header");
        if (line.substr(colon).starts_with(":="))
            return; // what a person has noted
        std::string name = lowerCase(line.substr(0, colon));
        name.erase(std::remove(name.begin(), name.end(), ' '), name.end());
        m_Header.set(name, line.substr(colon + 1));
    }

    std::size_t numDimensions() const
    {
        const std::vector<double> number = m_Header.numbers({"dimension"}, 1);
        if (number.empty() || !(number[0] >= 1 && number[0] <= 5 && number[0] == static_cast<int>(number[0])))
            m_Header.fail("has " + quotedText(m_Header.get({"dimension"})) + " dimensions, not 1 to 5");
        return static_cast<std::size_t>(number[0]);
    }

    // Each a vector "(x,y,z)", or "none" for an axis that is none of space.
    std::vector<std::optional<tavo::Vector3d>> vectors(const char* name) const
    {
        std::vector<std::optional<tavo::Vector3d>> result;
        std::string text(m_Header.get({name}));
        for (std::size_t at = 0; (at = text.find_first_not_of(" \t", at)) != std::string::npos;) {
            const std::size_t end = std::min(text.size(), text[at] == '(' ? text.find(')', at) : text.find(' ', at));
            result.push_back(
                text[at] == '(' ? std::optional(vectorOf(text.substr(at + 1, end - at - 1))) : std::nullopt);
            at = std::min(text.size(), end + 1);
        }
        return result;
    }

    tavo::Vector3d vectorOf(std::string text) const
    {
        std::replace(text.begin(), text.end(), ',', ' ');
        std::string_view rest = text;
        tavo::Vector3d vector;
        unsigned int count = 0;
        for (std::string_view word = takeWord(rest); !word.empty(); word = takeWord(rest), ++count) {
            const std::optional<double> number = numberOf(word);
            if (!number || count == 3)
                m_Header.fail("has " + quotedText(text) + " as a place in space");
            vector[count] = *number;
        }
        return vector;
    }

    // Of each axis. Without a word about it, the first three are of space, and a fourth one is time.
    std::vector<AxisKind> kinds() const
    {
        const std::vector<std::optional<tavo::Vector3d>> directions = vectors("spacedirections");
        std::string_view text = m_Header.get({"kinds"});
        std::vector<AxisKind> result;
        for (std::size_t i = 0, numAxes = 0; i < m_Extents.size(); ++i) {
            const std::string_view kind = takeWord(text);
            const bool isSaid = kind == "domain" || kind == "space" || kind.empty() || kind == "???";
            const bool isOfSpace = directions.size() == m_Extents.size() ? directions[i].has_value() : isSaid;
            if (isOfSpace && ++numAxes <= 3)
                result.push_back(AxisKind::SPACE);
            else
                result.push_back(i == 0 ? AxisKind::CHANNELS : AxisKind::TIMES);
            const bool isBehind = i + 1 == m_Extents.size();
            if (result.back() == AxisKind::TIMES && !isBehind)
                m_Header.fail("has more than three axes of space, one before them and one behind them");
        }
        return result;
    }

    // Turned to the front where the file says how people lie in it.
    void placeVolume(Volume& volume) const
    {
        const std::string space = lowerCase(m_Header.get({"space"}));
        const bool isMirrored = space == "left-anterior-superior" || space == "las";
        if (isMirrored || space == "right-anterior-superior" || space == "ras")
            volume.front = Volume::Front::HIGH_Y;
        volume.isOriented =
            volume.front == Volume::Front::HIGH_Y || space == "left-posterior-superior" || space == "lps";
        std::array<tavo::Vector3d, 3> steps = stepsOfAxes();
        const std::vector<std::optional<tavo::Vector3d>> origins = vectors("spaceorigin");
        tavo::Vector3d origin = origins.size() == 1 ? origins[0].value_or(tavo::Vector3d()) : tavo::Vector3d();
        // Or the scene, whose axes are right-handed, would show left and right exchanged.
        for (tavo::Vector3d* const place : {&steps[0], &steps[1], &steps[2], &origin})
            (*place)[0] = isMirrored ? -(*place)[0] : (*place)[0];
        if (isMirrored)
            volume.remarks.emplace_back("its coordinates to the left are shown as negative ones to the right");
        const std::optional<VoxelGrid> grid = gridOfSteps(volume.grid.size, steps, origin);
        if (!grid)
            m_Header.fail("says that its voxels are where they cannot be");
        volume.grid = *grid;
    }

    // From voxel to voxel; 1 along what the file does not say.
    std::array<tavo::Vector3d, 3> stepsOfAxes() const
    {
        const std::vector<std::optional<tavo::Vector3d>> directions = vectors("spacedirections");
        std::string_view spacings = m_Header.get({"spacings"});
        std::array<tavo::Vector3d, 3> steps = {tavo::Vector3d(1, 0, 0), {0, 1, 0}, {0, 0, 1}};
        std::size_t numAxes = 0;
        for (std::size_t i = 0; i < m_Extents.size(); ++i) {
            const std::string spacing = lowerCase(takeWord(spacings));
            if (m_Kinds[i] != AxisKind::SPACE)
                continue;
            if (i < directions.size() && directions[i])
                steps[numAxes] = *directions[i];
            else if (!spacing.empty() && spacing != "nan" && numberOf(spacing))
                steps[numAxes] = steps[numAxes] * *numberOf(spacing);
            ++numAxes;
        }
        return steps;
    }

    VoxelData findData()
    {
        VoxelData data;
        const std::string encoding = lowerCase(m_Header.get({"encoding"}));
        data.isCompressed = encoding == "gzip" || encoding == "gz";
        data.isText = encoding == "txt" || encoding == "text" || encoding == "ascii";
        if (!data.isCompressed && !data.isText && encoding != "raw")
            m_Header.fail("has its voxels in the encoding " + quotedText(encoding) + ", which is not read");
        data.layout.type = type();
        data.layout.isSwapped = isSwapped(data);
        const std::string name(m_Header.has("datafile") ? m_Header.get({"datafile"}) : "");
        if (name.starts_with("LIST") || name.find('%') != std::string::npos)
            m_Header.fail("has its voxels in several files, which are not read");
        data.file = m_Header.has("datafile") ? m_Header.findDataFile(name) : m_Header.getFile();
        data.start = m_Header.has("datafile") ? 0 : m_HeaderSize;
        data.start = placeBehindLines(data.file, data.start, wholeNumber("lineskip"));
        data.isAtEnd = m_Header.get({"byteskip"}) == "-1" && !data.isCompressed && !data.isText;
        data.skipped = data.isAtEnd ? 0 : wholeNumber("byteskip");
        return data;
    }

    VoxelType type() const
    {
        const std::string name = baseName(lowerCase(m_Header.get({"type"})));
        for (const auto& [known, type] : TYPES)
            if (name == known)
                return type;
        m_Header.fail("has voxels of the unknown type " + quotedText(m_Header.get({"type"})));
    }

    bool isSwapped(const VoxelData& data) const
    {
        const std::string endian = lowerCase(m_Header.get({"endian"}));
        if (endian != "big" && endian != "little" && !data.isText && sizeInBytes(data.layout.type) > 1)
            m_Header.fail("does not say in which order the bytes of its numbers are");
        return (endian == "big") != (std::endian::native == std::endian::big);
    }

    std::uint64_t wholeNumber(const char* name) const
    {
        const std::vector<double> number = m_Header.numbers({name}, 1);
        constexpr double LARGEST = 1e15;
        if (!number.empty() && !(number[0] >= 0 && number[0] <= LARGEST))
            m_Header.fail("says that its voxels are where they cannot be");
        return number.empty() ? 0 : static_cast<std::uint64_t>(number[0]);
    }

    std::uint64_t placeBehindLines(const std::filesystem::path& file, std::uint64_t start, std::uint64_t count) const
    {
        std::ifstream stream(file, std::ios::binary);
        stream.seekg(static_cast<std::streamoff>(start));
        constexpr int END = std::ifstream::traits_type::eof();
        for (int c = '\0'; count > 0 && c != END; count -= c == '\n') {
            c = stream.get();
            start += c != END;
        }
        if (count > 0)
            m_Header.fail("ends before its last voxel");
        return start;
    }

    VolumeHeader m_Header;
    std::uint64_t m_HeaderSize = 0;
    std::vector<int> m_Extents;
    std::vector<AxisKind> m_Kinds;
};

} // namespace

Volume readNrrd(const std::filesystem::path& file, const Progress& progress)
{
    return NrrdReader(file).read(progress);
}

} // namespace vireo_view
