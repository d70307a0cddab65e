#include "apps/vireo-view/DicomReader.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "apps/vireo-view/DicomHeader.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/VoxelReader.h"

namespace vireo_view {

namespace {

namespace fs = std::filesystem;

constexpr double PART_OF_HEADERS = 0.3; // of the time that all takes

using HeaderPointer = std::shared_ptr<const DicomHeader>;

// How the pixels of a file lie.
struct PixelLayout
{
    std::array<int, 2> size{}; // columns and rows
    unsigned int numChannels = 1;
    bool areInPlanes = false; // all of red, then all of green and of blue
    VoxelType type = VoxelType::UINT8;
    int numUnusedLow = 0; // bits of a number, below and above those that count
    int numUnusedHigh = 0;

    std::size_t numNumbers() const { return std::size_t(size[0]) * std::size_t(size[1]) * numChannels; }
    std::uint64_t numBytes() const { return numNumbers() * std::uint64_t{sizeInBytes(type)}; }
};

VoxelType typeOf(const DicomHeader& header)
{
    const bool isSigned = header.integer(DicomTag::IS_SIGNED, 0) == 1;
    switch (const int bits = header.integer(DicomTag::BITS_ALLOCATED, 16)) {
    case 8: return isSigned ? VoxelType::INT8 : VoxelType::UINT8;
    case 16: return isSigned ? VoxelType::INT16 : VoxelType::UINT16;
    case 32: return isSigned ? VoxelType::INT32 : VoxelType::UINT32;
    default: throw InputError(header.getFile(), "has pixels of " + std::to_string(bits) + " bits, not of 8, 16 or 32");
    }
}

// Throws InputError if the pixels are of a kind that is not read, or fewer than one frame takes.
PixelLayout layoutOf(const DicomHeader& header)
{
    const auto fail = [&](const std::string& reason) { throw InputError(header.getFile(), reason); };
    if (header.getPixelsStart() == 0)
        fail("has no pixels");
    PixelLayout layout;
    layout.size = {header.integer(DicomTag::NUM_COLUMNS, 0), header.integer(DicomTag::NUM_ROWS, 0)};
    if (layout.size[0] < 1 || layout.size[1] < 1)
        fail("has no size");
    layout.type = typeOf(header);
    layout.numChannels = static_cast<unsigned int>(header.integer(DicomTag::NUM_CHANNELS, 1));
    const std::string meaning = header.text(DicomTag::MEANING);
    const bool isGrey = layout.numChannels == 1 && meaning.find("COLOR") == std::string::npos;
    if (!isGrey && !(layout.numChannels == 3 && meaning == "RGB" && layout.type == VoxelType::UINT8))
        fail("has colours that are not read (" + quotedText(meaning) + ")");
    layout.areInPlanes = !isGrey && header.integer(DicomTag::PLANES, 0) == 1;
    const int numBits = static_cast<int>(8 * sizeInBytes(layout.type));
    const int numStored = header.integer(DicomTag::BITS_STORED, numBits);
    const int highest = header.integer(DicomTag::HIGHEST_BIT, numStored - 1);
    if (numStored < 1 || highest >= numBits || highest + 1 < numStored)
        fail("has pixels of bits that cannot be");
    layout.numUnusedHigh = numBits - 1 - highest;
    layout.numUnusedLow = highest + 1 - numStored;
    if (header.getPixelsSize() < layout.numBytes())
        fail("ends before its last voxel");
    return layout;
}

// A file's only frame, or one of several.
struct Slice
{
    HeaderPointer header;
    std::size_t frame = 0;
    tavo::Vector3d position;
    double height = 0; // along the direction from slice to slice
    double number = 0; // of the file in its series
};

struct Series
{
    PixelLayout layout;
    std::array<tavo::Vector3d, 2> directions; // from pixel to pixel, and from row to row
    std::vector<Slice> slices;

    std::size_t numVoxels() const { return layout.numNumbers() * slices.size(); }
};

tavo::Vector3d normalOf(const std::array<tavo::Vector3d, 2>& directions)
{
    const tavo::Vector3d normal = cross(directions[0], directions[1]);
    return length(normal) > 0 ? normal * (1 / length(normal)) : tavo::Vector3d(0, 0, 1);
}

std::array<tavo::Vector3d, 2> directionsOf(const DicomHeader& header)
{
    const std::vector<double> c = header.numbers(DicomTag::DIRECTIONS, 6);
    if (c.empty())
        return {tavo::Vector3d(1, 0, 0), tavo::Vector3d(0, 1, 0)};
    return {tavo::Vector3d(c[0], c[1], c[2]), tavo::Vector3d(c[3], c[4], c[5])};
}

// Which series a file is of. What differs in size or direction is no part of the same volume, and frames of one file
// are a series of their own.
std::string keyOf(const DicomHeader& header, const PixelLayout& layout, std::size_t numFrames)
{
    std::string key = header.text(DicomTag::SERIES);
    for (const int number : {layout.size[0], layout.size[1], int(layout.numChannels), int(layout.type)})
        key += '\n' + std::to_string(number);
    for (const double number : header.numbers(DicomTag::DIRECTIONS, 6))
        key += '\n' + std::to_string(std::lround(1000 * std::clamp(number, -1.0, 1.0)));
    return numFrames > 1 ? key + '\n' + printableName(header.getFile()) : key;
}

std::size_t numFramesOf(const DicomHeader& header, const PixelLayout& layout)
{
    const double number = header.number(DicomTag::NUM_FRAMES, 1);
    if (number <= 1)
        return 1;
    if (number > static_cast<double>(header.getPixelsSize() / layout.numBytes()))
        throw InputError(header.getFile(), "ends before its last voxel");
    return static_cast<std::size_t>(number);
}

void addSlices(Series& series, const HeaderPointer& header, std::size_t numFrames)
{
    const std::vector<tavo::Vector3d>& positions = header->getFramePositions();
    const std::vector<double> xyz = header->numbers(DicomTag::POSITION, 3);
    const tavo::Vector3d position = xyz.empty() ? tavo::Vector3d() : tavo::Vector3d(xyz[0], xyz[1], xyz[2]);
    const double number = header->number(DicomTag::NUMBER, 0);
    for (std::size_t frame = 0; frame < numFrames; ++frame) {
        const tavo::Vector3d& place = positions.size() == numFrames ? positions[frame] : position;
        series.slices.push_back({header, frame, place, dot(place, normalOf(series.directions)), number});
    }
}

// Reads headers and puts them into series.
class SeriesFinder
{
public:
    SeriesFinder(const std::vector<fs::path>& files, const Progress& progress)
        : m_Files(files)
        , m_Progress(progress)
    {}

    // Of the one file, or of all; the one with the most voxels.
    Series find(std::vector<std::string>& remarks)
    {
        const bool isOne = m_Files.size() == 1 && !isFolder(m_Files.front());
        if (isOne)
            add(m_Files.front()); // what is wrong with it is said
        const std::string key = isOne ? m_Series.begin()->first : "";
        const std::vector<fs::path> found = filesToLookAt();
        for (std::size_t i = 0; i < found.size(); ++i) {
            addIfPossible(found[i]);
            if (m_Progress && !m_Progress(PART_OF_HEADERS * double(i + 1) / double(found.size())))
                throw InputError(found[i], "the reading was stopped");
        }
        if (m_Series.empty())
            throw InputError(m_Files.front(), m_FirstError.empty()
                                                  ? "is a directory without DICOM files"
                                                  : "has no DICOM file that can be read; " + m_FirstError);
        sayWhatIsLeftOut(remarks, isOne);
        return std::move(isOne ? m_Series[key] : largest()->second);
    }

private:
    static bool isFolder(const fs::path& file)
    {
        std::error_code error;
        return fs::is_directory(file, error);
    }

    // Of a single file also what is beside it.
    std::vector<fs::path> filesToLookAt() const
    {
        std::vector<fs::path> found;
        const bool isOne = m_Files.size() == 1;
        for (const fs::path& path : m_Files) {
            if (!isOne && !isFolder(path)) {
                found.push_back(path);
                continue;
            }
            const std::size_t start = found.size();
            const fs::path parent = path.parent_path().empty() ? fs::path(".") : path.parent_path();
            std::error_code error;
            for (fs::directory_iterator entry(isFolder(path) ? path : parent, error), end; !error && entry != end;
                 entry.increment(error))
                if (entry->path().filename() != path.filename() && isDicom(entry->path()))
                    found.push_back(entry->path());
            std::sort(found.begin() + static_cast<std::ptrdiff_t>(start), found.end());
        }
        return found;
    }

    void add(const fs::path& file)
    {
        const auto header = std::make_shared<const DicomHeader>(file);
        const PixelLayout layout = layoutOf(*header);
        const std::size_t numFrames = numFramesOf(*header, layout);
        Series& series = m_Series[keyOf(*header, layout, numFrames)];
        if (series.slices.empty()) {
            series.layout = layout;
            series.directions = directionsOf(*header);
        }
        addSlices(series, header, numFrames);
    }

    void addIfPossible(const fs::path& file)
    {
        try {
            add(file);
        } catch (const InputError& error) {
            if (m_NumBad++ == 0)
                m_FirstError = error.what();
        }
    }

    std::map<std::string, Series>::iterator largest()
    {
        return std::max_element(m_Series.begin(), m_Series.end(),
            [](const auto& a, const auto& b) { return a.second.numVoxels() < b.second.numVoxels(); });
    }

    void sayWhatIsLeftOut(std::vector<std::string>& remarks, bool isOne)
    {
        if (m_NumBad > 0 && !isOne)
            remarks.push_back(std::to_string(m_NumBad) + " file(s) are left out; " + m_FirstError);
        if (m_Series.size() == 1 || isOne)
            return;
        constexpr std::size_t MOST = 4;
        std::string others;
        std::size_t number = 0;
        const auto shown = largest();
        for (auto series = m_Series.begin(); series != m_Series.end(); ++series)
            if (series != shown && ++number <= MOST) {
                const DicomHeader& header = *series->second.slices.front().header;
                others += (number == 1 ? "" : ", ") + quotedText(header.text(DicomTag::DESCRIPTION)) + " (" +
                          printableName(header.getFile().filename()) + ")";
            }
        if (number > MOST)
            others += " and " + std::to_string(number - MOST) + " more";
        remarks.push_back("has " + std::to_string(m_Series.size()) +
                          " series, of which the largest is shown; a file's name shows another: " + others);
    }

    const std::vector<fs::path>& m_Files;
    const Progress& m_Progress;
    std::map<std::string, Series> m_Series;
    std::size_t m_NumBad = 0;
    std::string m_FirstError;
};

// The slices of one series as a volume.
class SeriesReader
{
public:
    SeriesReader(Series series, const Progress& progress)
        : m_Layout(series.layout)
        , m_Directions(series.directions)
        , m_Slices(std::move(series.slices))
        , m_Progress(progress)
    {
        std::stable_sort(m_Slices.begin(), m_Slices.end(), [](const Slice& a, const Slice& b) {
            return std::tuple(a.height, a.number, a.frame) < std::tuple(b.height, b.number, b.frame);
        });
        m_IsScaled = std::any_of(m_Slices.begin(), m_Slices.end(),
            [](const Slice& slice) { return slopeOf(*slice.header) != 1 || interceptOf(*slice.header) != 0; });
    }

    Volume read()
    {
        countPlaces();
        placeVolume();
        m_Volume.numChannels = m_Layout.numChannels;
        m_Volume.front = Volume::Front::LOW_Y;
        m_Volume.isOriented = true;
        m_Volume.times.resize(numTimes());
        for (std::size_t i = 0; i < m_Slices.size(); ++i) {
            append(m_Volume.times[i % numTimes()], readSlice(m_Slices[i]));
            const double part = static_cast<double>(i + 1) / static_cast<double>(m_Slices.size());
            if (m_Progress && !m_Progress(PART_OF_HEADERS + (1 - PART_OF_HEADERS) * part))
                throw InputError(m_Slices[i].header->getFile(), "the reading was stopped");
        }
        return std::move(m_Volume);
    }

private:
    static double slopeOf(const DicomHeader& header) { return header.number(DicomTag::SLOPE, 1); }
    static double interceptOf(const DicomHeader& header) { return header.number(DicomTag::INTERCEPT, 0); }

    static bool isFarther(const Slice& slice, const Slice& before)
    {
        constexpr double NOTHING = 1e-4; // millimetres
        return slice.height - before.height > NOTHING;
    }

    std::size_t numTimes() const { return m_Slices.size() / m_NumPlaces; }

    // Several slices at each place are of several times. Slices without places lie in the order of their numbers.
    void countPlaces()
    {
        m_NumPlaces = 1;
        for (std::size_t i = 1; i < m_Slices.size(); ++i)
            m_NumPlaces += isFarther(m_Slices[i], m_Slices[i - 1]);
        bool areTimes = m_NumPlaces > 1 && m_Slices.size() % m_NumPlaces == 0;
        for (std::size_t i = 1; areTimes && i < m_Slices.size(); ++i)
            areTimes = isFarther(m_Slices[i], m_Slices[i - 1]) == (i % numTimes() == 0);
        if (areTimes)
            return;
        if (m_NumPlaces > 1)
            m_Volume.remarks.emplace_back("has several slices at some places, which are shown behind each other");
        m_NumPlaces = m_Slices.size();
    }

    void placeVolume()
    {
        const DicomHeader& header = *m_Slices.front().header;
        std::vector<double> spacing = header.numbers(DicomTag::PIXEL_SPACING, 2);
        if (spacing.empty())
            spacing = {1, 1};
        const double distance = header.number(DicomTag::DISTANCE, header.number(DicomTag::THICKNESS, 1));
        tavo::Vector3d step = normalOf(m_Directions) * (distance > 0 ? distance : 1);
        const tavo::Vector3d way = m_Slices.back().position - m_Slices.front().position;
        if (m_NumPlaces > 1 && m_Slices.back().height > m_Slices.front().height) {
            step = way * (1 / static_cast<double>(m_NumPlaces - 1));
            checkGaps(length(step));
        }
        const std::array<int, 3> size = {m_Layout.size[0], m_Layout.size[1], static_cast<int>(m_NumPlaces)};
        numVoxels(header.getFile(), size);
        // The first number of the spacing is from row to row.
        const std::optional<VoxelGrid> grid = gridOfSteps(
            size, {m_Directions[0] * spacing[1], m_Directions[1] * spacing[0], step}, m_Slices.front().position);
        if (!grid)
            throw InputError(header.getFile(), "says that its pixels are where they cannot be");
        m_Volume.grid = *grid;
    }

    void checkGaps(double step)
    {
        constexpr double MOST = 0.02;
        for (std::size_t i = numTimes(); i < m_Slices.size(); i += numTimes())
            if (std::abs(length(m_Slices[i].position - m_Slices[i - 1].position) / step - 1) > MOST) {
                m_Volume.remarks.emplace_back(
                    "has slices that are not equally far apart, and is shown as if they were");
                return;
            }
    }

    NumberColumn readSlice(const Slice& slice) const
    {
        const DicomHeader& header = *slice.header;
        VoxelLayout layout;
        layout.type = m_Layout.type;
        layout.isSwapped = header.isBigEndian() != (std::endian::native == std::endian::big);
        layout.numPerTime = m_Layout.numNumbers();
        CompressedFile file(header.getFile(), header.getPixelsStart() + slice.frame * m_Layout.numBytes(), false);
        NumberColumn numbers = std::move(readVoxels(file, layout, nullptr).front());
        takeUsedBits(numbers);
        if (m_Layout.areInPlanes)
            numbers = interleavePlanes(numbers);
        return m_IsScaled ? scaled(numbers, slopeOf(header), interceptOf(header)) : std::move(numbers);
    }

    // Files of old scanners have something else in the bits beside the number.
    void takeUsedBits(NumberColumn& column) const
    {
        const int left = m_Layout.numUnusedHigh;
        const int right = m_Layout.numUnusedHigh + m_Layout.numUnusedLow;
        if (right == 0)
            return;
        std::visit(
            [left, right](auto& numbers) {
                using Number = typename std::remove_reference_t<decltype(numbers)>::value_type;
                if constexpr (std::is_integral_v<Number>)
                    for (Number& number : numbers) {
                        const auto moved =
                            static_cast<Number>(static_cast<std::make_unsigned_t<Number>>(number) << left);
                        number = static_cast<Number>(moved >> right);
                    }
            },
            column);
    }

    static NumberColumn interleavePlanes(const NumberColumn& planes)
    {
        const auto& numbers = std::get<std::vector<std::uint8_t>>(planes);
        const std::size_t numPixels = numbers.size() / 3;
        std::vector<std::uint8_t> pixels(numbers.size());
        for (std::size_t i = 0; i < numbers.size(); ++i)
            pixels[i % numPixels * 3 + i / numPixels] = numbers[i];
        return pixels;
    }

    static NumberColumn scaled(const NumberColumn& column, double slope, double intercept)
    {
        std::vector<float> result;
        result.reserve(sizeOf(column));
        std::visit(
            [&](const auto& numbers) {
                for (const auto number : numbers)
                    result.push_back(static_cast<float>(static_cast<double>(number) * slope + intercept));
            },
            column);
        return result;
    }

    // The first slice brings the type.
    void append(NumberColumn& all, NumberColumn slice) const
    {
        if (sizeOf(all) == 0) {
            all = std::move(slice);
            std::visit([this](auto& values) { values.reserve(m_Layout.numNumbers() * m_NumPlaces); }, all);
            return;
        }
        std::visit(
            [&slice](auto& values) {
                const auto& more = std::get<std::remove_cvref_t<decltype(values)>>(slice);
                values.insert(values.end(), more.begin(), more.end());
            },
            all);
    }

    PixelLayout m_Layout;
    std::array<tavo::Vector3d, 2> m_Directions;
    std::vector<Slice> m_Slices;
    const Progress& m_Progress;
    std::size_t m_NumPlaces = 1;
    bool m_IsScaled = false;
    Volume m_Volume;
};

} // namespace

Volume readDicom(const std::vector<fs::path>& files, const Progress& progress)
{
    std::vector<std::string> remarks;
    Series series = SeriesFinder(files, progress).find(remarks);
    Volume volume = SeriesReader(std::move(series), progress).read();
    volume.remarks.insert(volume.remarks.begin(), remarks.begin(), remarks.end());
    return volume;
}

} // namespace vireo_view
