#include "vireo/show/volumes/VolumeSlices.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "vireo/context/GLContext.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"
#include "vireo/show/scenes/Stopwatch.h"
#include "vireo/show/volumes/largestStack.h"

namespace tavo {

namespace {

constexpr int LARGEST_EXTENT = 2048;     // slices of a stack, or fewer if textures are smaller
constexpr std::size_t NUM_TOGETHER = 32; // slices across x, whose samples share cache lines
constexpr double LARGEST = 1e300;
constexpr std::size_t LARGEST_GROUP = 4 << 20; // in components

// As the renderer takes textures to be.
unsigned int textureSize(int extent)
{
    const auto size = static_cast<unsigned int>(extent);
    return isExtensionSupported("GL_ARB_texture_non_power_of_two") ? size : std::bit_ceil(size);
}

int largestExtent()
{
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    return std::min(largest, LARGEST_EXTENT);
}

std::size_t index(unsigned int axis)
{
    return axis;
}

// NaN is 0.
template <typename Component, typename Real>
Component withinComponent(Real value)
{
    const Real largest = std::numeric_limits<Component>::max();
    const Real positive = value > 0 ? value : 0;
    return static_cast<Component>(static_cast<int>(positive < largest ? positive : largest));
}

// Of a part of the whole, 0 to 1.
template <typename Component>
Component toComponent(double part)
{
    return withinComponent<Component>(part * std::numeric_limits<Component>::max() + 0.5);
}

template <typename T>
bool isNumber(T value)
{
    if constexpr (std::is_floating_point_v<T>)
        return std::abs(value) <= LARGEST; // differences of larger ones may overflow
    else
        return true;
}

// The least and the greatest of numbers, and whether some are none.
template <typename T>
struct Extremes
{
    T least = std::numeric_limits<T>::max();
    T greatest = std::numeric_limits<T>::lowest();
    bool haveGaps = false;

    void add(T value)
    {
        if (!isNumber(value)) {
            haveGaps = true;
            return;
        }
        least = std::min(least, value);
        greatest = std::max(greatest, value);
    }

    // In so many lanes, each of which has its own, that processors do several at a time. What is no number compares
    // with nothing; what is infinite, or too large, is left to the slow way.
    void add(const T* values, std::size_t size)
    {
        constexpr std::size_t LANES = 64 / sizeof(T);
        std::array<T, LANES> low;
        std::array<T, LANES> high;
        std::array<T, LANES> gaps{};
        low.fill(least);
        high.fill(greatest);
        std::size_t i = 0;
        for (; i + LANES <= size; i += LANES)
            for (std::size_t lane = 0; lane < LANES; ++lane) {
                const T value = values[i + lane];
                low[lane] = value < low[lane] ? value : low[lane];
                high[lane] = value > high[lane] ? value : high[lane];
                if constexpr (std::is_floating_point_v<T>)
                    gaps[lane] = std::isnan(value) ? T(1) : gaps[lane];
            }
        const T lowest = *std::min_element(low.begin(), low.end());
        const T highest = *std::max_element(high.begin(), high.end());
        if (isNumber(lowest) && isNumber(highest)) {
            least = lowest;
            greatest = highest;
            haveGaps = haveGaps || *std::max_element(gaps.begin(), gaps.end()) != 0;
        } else
            i = 0;
        for (; i < size; ++i)
            add(values[i]);
    }
};

void setTextureParameters(GLint filter)
{
    for (const GLenum parameter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
        glTexParameteri(GL_TEXTURE_2D, parameter, filter);
    for (const GLenum parameter : {GL_TEXTURE_WRAP_S, GL_TEXTURE_WRAP_T})
        glTexParameteri(GL_TEXTURE_2D, parameter, GL_CLAMP_TO_EDGE);
}

// Rows without gaps between them.
class PackedRows
{
public:
    PackedRows() { glPixelStorei(GL_UNPACK_ALIGNMENT, 1); }

private:
    SavedClientAttributes m_Before{GL_CLIENT_PIXEL_STORE_BIT};
};

} // namespace

struct VolumeSlices::Layout
{
    std::size_t numComponents;
    std::size_t bytesOfComponent;
    GLint internalFormat;
    GLenum format;
};

VolumeSlices::VolumeSlices(
    GLContext& context, const VolumeGrid& grid, NumberTuples samples, const Survey& survey, bool areCoarse)
    : GLObject(&context)
    , m_Samples(std::move(samples))
    , m_Grid(grid)
    , m_Survey(survey)
    , m_Range(survey.range)
    , m_AreCoarse(areCoarse)
{
    setCentred(true);
    settleScale();
    settleSize();
}

VolumeSlices::~VolumeSlices()
{
    freeTextures();
}

void VolumeSlices::onDeleteContext()
{
    freeTextures();
}

void VolumeSlices::freeTextures()
{
    if (!isValid())
        return;
    for (const std::vector<unsigned int>& names : textureNames)
        for (const unsigned int name : names)
            if (name != 0)
                getContext()->deleteTexture(name);
    textureNames.clear();
}

// Bytes keep their own range, of which there is no more than 256 values.
VolumeSlices::Survey VolumeSlices::surveyOf(
    const NumberTuples& samples, std::size_t step, const std::atomic<bool>& isUnwanted)
{
    constexpr std::size_t PIECE = 1 << 16; // of those that are looked at, from one look at what is wanted to the next
    Survey survey;
    samples.numbers.visit([&]<typename T>(const T* numbers, std::size_t size) {
        if (sizeof(T) == 1) {
            survey.range = {double(std::numeric_limits<T>::min()), double(std::numeric_limits<T>::max())};
            return;
        }
        Extremes<T> extremes;
        for (std::size_t begin = 0; begin < size && !isUnwanted; begin += step * PIECE) {
            const std::size_t end = std::min(begin + step * PIECE, size);
            if (step == 1)
                extremes.add(numbers + begin, end - begin);
            else
                for (std::size_t i = begin; i < end; i += step)
                    extremes.add(numbers[i]);
        }
        survey.haveGaps = extremes.haveGaps;
        if (extremes.least <= extremes.greatest)
            survey.range = {static_cast<double>(extremes.least), static_cast<double>(extremes.greatest)};
    });
    return survey;
}

void VolumeSlices::settleScale()
{
    m_AreBytes = m_Samples.width > 1 ||
                 m_Samples.numbers.visit([]<typename T>(const T*, std::size_t) { return sizeof(T) == 1; });
    if (categories())
        m_AreBytes = categories()->categories().size() <= std::numeric_limits<std::uint8_t>::max();
    const double span = m_Range.second - m_Range.first;
    m_ScaleOfOne = span > 0 ? std::numeric_limits<std::uint16_t>::max() / span : 0;
}

// So far beyond it that a range that is dragged seldom needs others.
void VolumeSlices::show(const std::pair<double, double>& range)
{
    constexpr double WIDEST = 256; // of the range that is shown
    constexpr double BEYOND = 8;
    const auto [least, greatest] = m_Survey.range;
    const auto [low, high] = std::minmax(range.first, range.second);
    const double span = high - low;
    if (m_AreBytes || categories() || !(span > 0))
        return;
    std::pair<double, double> wanted = m_Survey.range;
    if (greatest - least > WIDEST * span && low < greatest && high > least)
        wanted = {std::max(least, low - BEYOND * span), std::min(greatest, high + BEYOND * span)};
    const bool isWide = m_Range.first <= std::max(least, low) && m_Range.second >= std::min(greatest, high);
    if (wanted == m_Range || (isWide && m_Range.second - m_Range.first <= WIDEST * span))
        return;
    m_Range = wanted;
    m_NumPrepared = {};
    settleScale();
}

VolumeSlices::Layout VolumeSlices::layout() const
{
    if (m_Samples.width == 4 || (m_Samples.width == 3 && m_Survey.haveGaps))
        return {4, 1, GL_RGBA8, GL_RGBA};
    if (m_Samples.width == 3)
        return {3, 1, GL_RGB8, GL_RGB};
    if (m_AreBytes)
        return {1, 1, GL_LUMINANCE8, GL_LUMINANCE};
    return m_Survey.haveGaps ? Layout{2, 2, GL_LUMINANCE16_ALPHA16, GL_LUMINANCE_ALPHA}
                             : Layout{1, 2, GL_LUMINANCE16, GL_LUMINANCE};
}

// The whole volume, or its half, its quarter and so on.
void VolumeSlices::settleSize()
{
    const int largest = largestExtent();
    const double bytes = static_cast<double>(layout().numComponents * layout().bytesOfComponent);
    Vector3i size = m_Grid.size;
    const auto halve = [&](std::size_t i) {
        m_Steps[i] *= 2;
        size[i] = static_cast<int>((static_cast<std::size_t>(m_Grid.size[i]) + m_Steps[i] - 1) / m_Steps[i]);
    };
    for (std::size_t i = 0; i < 3; ++i)
        while (size[i] > largest)
            halve(i);
    const double most = m_AreCoarse ? std::min(largestStack, COARSE * bytes) : largestStack;
    while (bytes * size[0] * size[1] * size[2] > most)
        for (std::size_t i = 0; i < 3; ++i)
            if (size[i] > 1)
                halve(i);
    const Vector3d extent = m_Grid.extent();
    const double unit = std::max({extent[0], extent[1], extent[2]});
    Vector3f min;
    Vector3f max;
    for (std::size_t i = 0; i < 3; ++i) {
        min[i] = static_cast<float>(-0.5 * extent[i] / unit);
        max[i] =
            static_cast<float>((double(size[i]) * double(m_Steps[i]) * m_Grid.spacing[i] - 0.5 * extent[i]) / unit);
    }
    m_Drawn = std::make_unique<RegularVolume>(size, Box3f(min, max));
}

double VolumeSlices::largestEntry() const
{
    return m_AreBytes ? std::numeric_limits<std::uint8_t>::max() : std::numeric_limits<std::uint16_t>::max();
}

double VolumeSlices::distanceOf(unsigned int axis) const
{
    return double(m_Steps[axis]) * m_Grid.spacing[axis] / m_Grid.smallestSpacing();
}

std::pair<float, float> VolumeSlices::textureSizeOf(unsigned int axis) const
{
    const Vector3i& size = getDrawnSize();
    return {static_cast<float>(textureSize(size[axis == 0 ? 1 : 0])),
        static_cast<float>(textureSize(size[axis == 2 ? 1 : 2]))};
}

void VolumeSlices::draw(const Vector3f& viewDir)
{
    static const std::vector<std::string> ONE_CHANNEL{"samples"};
    drawVolume(m_Drawn.get(), viewDir, ONE_CHANNEL, nullptr, nullptr);
}

unsigned int VolumeSlices::axisOf(const Vector3f& viewDir)
{
    unsigned int axis = 0;
    int direction = 0;
    computeOrder(viewDir, axis, direction);
    return axis;
}

void VolumeSlices::prepareTextures(RegularVolume*, Vector3f viewDir, const std::vector<std::string>&, Mapping, void*)
{
    prepare(viewDir, std::numeric_limits<double>::infinity());
}

bool VolumeSlices::isPrepared(const Vector3f& viewDir)
{
    const unsigned int axis = axisOf(viewDir);
    return m_NumPrepared[axis] == getDrawnSize()[axis];
}

double VolumeSlices::partPrepared(const Vector3f& viewDir)
{
    const unsigned int axis = axisOf(viewDir);
    return double(m_NumPrepared[axis]) / getDrawnSize()[axis];
}

bool VolumeSlices::prepare(const Vector3f& viewDir, double seconds)
{
    if (isPrepared(viewDir))
        return true;
    const Vector3i& size = getDrawnSize();
    const auto nx = static_cast<std::size_t>(size[0]);
    const auto ny = static_cast<std::size_t>(size[1]);
    textureNames.resize(1);
    textureNames[0].resize(nx + ny + static_cast<std::size_t>(size[2]));
    slabStarts.assign(1, {0, nx, nx + ny});
    const unsigned int axis = axisOf(viewDir);
    layout().bytesOfComponent == 1 ? prepareStackOf<std::uint8_t>(axis, seconds)
                                   : prepareStackOf<std::uint16_t>(axis, seconds);
    return isPrepared(viewDir);
}

template <typename Component>
void VolumeSlices::prepareStackOf(unsigned int axis, double seconds)
{
    const Stopwatch watch;
    const PackedRows packed;
    const Layout layout = this->layout();
    const auto [u, v] = std::pair(index(axis == 0 ? 1 : 0), index(axis == 2 ? 1 : 2));
    const Vector3i& size = getDrawnSize();
    const unsigned int width = textureSize(size[u]);
    const unsigned int height = textureSize(size[v]);
    const std::size_t sliceSize = layout.numComponents * width * height;
    const std::size_t wanted = axis == 0 ? std::clamp<std::size_t>(LARGEST_GROUP / sliceSize, 1, NUM_TOGETHER) : 1;
    std::vector<Component> texels(wanted * sliceSize);
    unsigned int* const names = textureNames[0].data() + slabStarts[0][axis];
    constexpr GLenum type = sizeof(Component) == 1 ? GL_UNSIGNED_BYTE : GL_UNSIGNED_SHORT;
    int& first = m_NumPrepared[axis];
    while (first < size[axis] && watch.seconds() < seconds) {
        const int count = std::min(static_cast<int>(wanted), size[axis] - first);
        m_Samples.numbers.visit(
            [&](const auto* numbers, std::size_t) { fillSlices(axis, first, count, numbers, texels.data()); });
        for (int i = 0; i < count; ++i) {
            unsigned int& name = names[first + i];
            if (name == 0)
                glGenTextures(1, &name);
            glBindTexture(GL_TEXTURE_2D, name);
            setTextureParameters(categories() ? GL_NEAREST : GL_LINEAR);
            glTexImage2D(GL_TEXTURE_2D, 0, layout.internalFormat, static_cast<GLsizei>(width),
                static_cast<GLsizei>(height), 0, layout.format, type,
                texels.data() + static_cast<std::size_t>(i) * sliceSize);
        }
        first += count;
    }
}

template <typename Component, typename T>
void VolumeSlices::fillSlices(unsigned int axis, int first, int count, const T* numbers, Component* texels) const
{
    const bool areOnes = m_AreCoarse || m_Steps == std::array<std::size_t, 3>{1, 1, 1};
    const bool isSimple = m_Samples.width == 1 && !m_Survey.haveGaps && areOnes &&
                          std::isfinite(m_ScaleOfOne); // not so if the range is next to none
    if (categories())
        forEachTexel(axis, first, count, texels, [this, numbers](const Vector3i& place, Component* texel) {
            *texel = static_cast<Component>(categories()->entryOf(numbers[sampleAt(place)]));
        });
    else if (isSimple)
        encodeRows(axis, first, count, numbers, texels);
    else
        forEachTexel(axis, first, count, texels,
            [this, numbers](const Vector3i& place, Component* texel) { encodeMean(numbers, place, texel); });
}

// Most volumes are this: a sample is a number, and a texel. Row by row, along x.
template <typename Component, typename T>
void VolumeSlices::encodeRows(unsigned int axis, int first, int count, const T* numbers, Component* texels) const
{
    const std::size_t step = m_Steps[0];
    const Texels order = texelsOf(axis, first);
    Vector3i begin;
    Vector3i end = getDrawnSize();
    begin[axis] = first;
    end[axis] = first + count;
    const auto length = static_cast<std::size_t>(end[0] - begin[0]);
    Vector3i place = begin;
    for (place[2] = begin[2]; place[2] < end[2]; ++place[2])
        for (place[1] = begin[1]; place[1] < end[1]; ++place[1]) {
            const T* const row = numbers + sampleAt(place);
            Component* const to = texels + order.at(place);
            if (step == 1 && order.distance() == 1)
                encodeRow(row, length, 1, to, 1);
            else
                encodeRow(row, length, step, to, order.distance());
        }
}

// Of numbers that are so far apart, into texels that are.
template <typename Component, typename T>
void VolumeSlices::encodeRow(
    const T* numbers, std::size_t length, std::size_t step, Component* texels, std::size_t distance) const
{
    if constexpr (sizeof(T) == 1) {
        for (std::size_t i = 0; i < length; ++i)
            texels[i * distance] = static_cast<Component>(numbers[i * step] - std::numeric_limits<T>::min());
        return;
    }
    const auto encode = [=](auto from, auto scale) {
        using Real = decltype(from);
        for (std::size_t i = 0; i < length; ++i)
            texels[i * distance] =
                withinComponent<Component>((static_cast<Real>(numbers[i * step]) - from) * scale + Real(0.5));
    };
    // Floats tell numbers of up to 24 bits apart, and are twice as fast.
    const auto from = static_cast<float>(m_Range.first);
    const bool areFloats = sizeof(T) <= 2 || std::is_same_v<T, float>;
    const auto scale = static_cast<float>(m_ScaleOfOne);
    if (areFloats && static_cast<double>(from) == m_Range.first && std::isnormal(scale))
        encode(from, scale);
    else
        encode(m_Range.first, m_ScaleOfOne);
}

VolumeSlices::Texels VolumeSlices::texelsOf(unsigned int axis, int first) const
{
    const Vector3i& size = getDrawnSize();
    const std::size_t u = axis == 0 ? 1 : 0;
    const std::size_t v = axis == 2 ? 1 : 2;
    return {axis, u, v, first, textureSize(size[u]), std::size_t{textureSize(size[u])} * textureSize(size[v])};
}

// Calls `use(place, texel)` in the order in which samples lie in memory.
template <typename Component, typename Use>
void VolumeSlices::forEachTexel(unsigned int axis, int first, int count, Component* texels, Use use) const
{
    const std::size_t numComponents = layout().numComponents;
    const Texels order = texelsOf(axis, first);
    Vector3i begin;
    Vector3i end = getDrawnSize();
    begin[axis] = first;
    end[axis] = first + count;
    Vector3i place;
    for (place[2] = begin[2]; place[2] < end[2]; ++place[2])
        for (place[1] = begin[1]; place[1] < end[1]; ++place[1]) {
            place[0] = begin[0];
            std::size_t texel = order.at(place);
            for (; place[0] < end[0]; ++place[0], texel += order.distance())
                use(place, texels + numComponents * texel);
        }
}

// The first of those that a place as drawn stands for.
std::size_t VolumeSlices::sampleAt(const Vector3i& place) const
{
    const auto at = [&](std::size_t i) { return static_cast<std::size_t>(place[i]) * m_Steps[i]; };
    const auto size = [&](std::size_t i) { return static_cast<std::size_t>(m_Grid.size[i]); };
    return (at(2) * size(1) + at(1)) * size(0) + at(0);
}

// The mean of the samples that are there; of colours, too.
template <typename Component, typename T>
void VolumeSlices::encodeMean(const T* numbers, const Vector3i& place, Component* texel) const
{
    const std::size_t width = m_Samples.width;
    const Mean mean = meanAt(numbers, place);
    if (width > 1) {
        for (std::size_t i = 0; i < width; ++i)
            texel[i] = toComponent<Component>(std::is_floating_point_v<T> ? mean.values[i] : mean.values[i] / 255);
        if (width == 3 && m_Survey.haveGaps)
            texel[3] = toComponent<Component>(mean.part);
        if (width == 4)
            texel[3] = toComponent<Component>(texel[3] * mean.part / std::numeric_limits<Component>::max());
        return;
    }
    const double span = m_Range.second - m_Range.first;
    texel[0] = toComponent<Component>(span > 0 ? (mean.values[0] - m_Range.first) / span * mean.part : 0);
    if (m_Survey.haveGaps)
        texel[1] = toComponent<Component>(mean.part);
}

template <typename T>
VolumeSlices::Mean VolumeSlices::meanAt(const T* numbers, const Vector3i& place) const
{
    const std::size_t width = m_Samples.width;
    Mean mean;
    int count = 0;
    int numAll = 0;
    forEachOf(place, [&](std::size_t i) {
        const T* const sample = numbers + width * i;
        ++numAll;
        if (!std::all_of(sample, sample + width, [](T value) { return isNumber(value); }))
            return;
        for (std::size_t channel = 0; channel < width; ++channel)
            mean.values[channel] += static_cast<double>(sample[channel]);
        ++count;
    });
    for (double& value : mean.values)
        value /= std::max(count, 1);
    mean.part = double(count) / numAll;
    return mean;
}

// Calls `use(i)` with each sample that a place as drawn stands for.
template <typename Use>
void VolumeSlices::forEachOf(const Vector3i& place, Use use) const
{
    const auto begin = [&](std::size_t i) { return static_cast<std::size_t>(place[i]) * m_Steps[i]; };
    const auto size = [&](std::size_t i) { return static_cast<std::size_t>(m_Grid.size[i]); };
    const auto end = [&](std::size_t i) {
        return m_AreCoarse ? begin(i) + 1 : std::min(begin(i) + m_Steps[i], size(i));
    };
    for (std::size_t z = begin(2); z < end(2); ++z)
        for (std::size_t y = begin(1); y < end(1); ++y)
            for (std::size_t x = begin(0); x < end(0); ++x)
                use((z * size(1) + y) * size(0) + x);
}

} // namespace tavo
