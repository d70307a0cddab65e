#include "vireo/show/images/ImageLevels.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>
#include <vector>

#include "vireo/show/Numbers.h"

namespace tavo {

namespace {

constexpr int LARGEST_FACTOR = 4;

// A sum of a few integers of 64 bits, which may be larger than any: of their upper bits and of the last ones.
class WideSum
{
public:
    WideSum() = default;
    template <typename T>
    explicit WideSum(T number)
        : m_Upper(static_cast<std::int64_t>(number >> NUM_LAST))
        , m_Last(static_cast<std::int64_t>(number & MASK))
    {}

    WideSum& operator+=(const WideSum& other)
    {
        m_Upper += other.m_Upper;
        m_Last += other.m_Last;
        return *this;
    }

    // Divided by their number, and rounded; exactly.
    template <typename T>
    T mean(std::int64_t count) const
    {
        const std::int64_t rest = (m_Upper % count + count) % count;
        const std::int64_t last = ((rest << NUM_LAST) + m_Last + count / 2) / count;
        return static_cast<T>(
            (static_cast<std::uint64_t>((m_Upper - rest) / count) << NUM_LAST) + static_cast<std::uint64_t>(last));
    }

private:
    static constexpr int NUM_LAST = 8; // bits
    static constexpr int MASK = (1 << NUM_LAST) - 1;

    std::int64_t m_Upper = 0;
    std::int64_t m_Last = 0;
};

// What the means of numbers are summed up in.
template <typename T>
using SumOf = std::conditional_t<!std::is_integral_v<T>, double,
    std::conditional_t<sizeof(T) <= 2, std::int32_t, std::conditional_t<sizeof(T) <= 4, double, WideSum>>>;

// What numbers are multiplied by before they are summed up: as many of the greatest doubles would be infinite.
template <typename T>
constexpr std::conditional_t<std::is_floating_point_v<T>, double, int> WEIGHT = 1;
template <>
constexpr double WEIGHT<double> = 1.0 / (LARGEST_FACTOR * LARGEST_FACTOR);

template <typename T>
T meanOf(SumOf<T> sum, int count)
{
    if constexpr (std::is_floating_point_v<T>) {
        const double mean = sum / (count * WEIGHT<T>);
        constexpr double GREATEST = std::numeric_limits<T>::max();
        return static_cast<T>(std::isfinite(sum) ? std::clamp(mean, -GREATEST, GREATEST) : mean);
    } else if constexpr (sizeof(T) == 8)
        return sum.template mean<T>(count);
    else
        return static_cast<T>(std::floor(double(sum) / count + 0.5));
}

ImagePixels emptyLike(const ImagePixels& pixels, const QSize& size)
{
    ImagePixels made = pixels;
    made.isBottomUp = false;
    made.width = size.width();
    made.height = size.height();
    made.rowStride = static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(pixels.channels);
    return made;
}

// Means of squares of `factor` pixels, at most LARGEST_FACTOR, of a part of an image.
template <typename T>
class Reduction
{
public:
    Reduction(const T* numbers, const ImagePixels& pixels, const QRect& part, int factor)
        : m_Numbers(numbers)
        , m_Pixels(pixels)
        , m_Part(part)
        , m_Factor(factor)
        , m_Sums(static_cast<std::size_t>(part.width()) * static_cast<std::size_t>(pixels.channels))
    {}

    void writeRow(int row, int width, T* means)
    {
        const int top = m_Part.top() + row * m_Factor;
        const int numRows = std::min(m_Factor, m_Part.bottom() + 1 - top);
        std::fill(m_Sums.begin(), m_Sums.end(), SumOf<T>());
        for (int y = top; y < top + numRows; ++y)
            addRow(y);
        const int channels = m_Pixels.channels;
        for (int x = 0; x < width; ++x) {
            const int left = x * m_Factor;
            const int numColumns = std::min(m_Factor, m_Part.width() - left);
            for (int channel = 0; channel < channels; ++channel) {
                auto sum = SumOf<T>();
                for (int i = 0; i < numColumns; ++i)
                    sum += m_Sums[static_cast<std::size_t>((left + i) * channels + channel)];
                means[x * channels + channel] = meanOf<T>(sum, numColumns * numRows);
            }
        }
    }

private:
    static SumOf<T> weighted(T number)
    {
        if constexpr (std::is_floating_point_v<T>)
            return static_cast<SumOf<T>>(number) * WEIGHT<T>;
        else
            return static_cast<SumOf<T>>(number);
    }

    void addRow(int y)
    {
        const T* const row = m_Numbers + m_Pixels.indexOfRow(y) +
                             static_cast<std::size_t>(m_Part.left()) * static_cast<std::size_t>(m_Pixels.channels);
        for (std::size_t i = 0; i < m_Sums.size(); ++i)
            m_Sums[i] += weighted(row[i]);
    }

    const T* m_Numbers;
    const ImagePixels& m_Pixels;
    QRect m_Part;
    int m_Factor;
    std::vector<SumOf<T>> m_Sums; // of columns
};

// A part of an image at a size that a factor makes smaller, into a place of what has that size.
void reduce(
    const ImagePixels& pixels, const QRect& part, int factor, const QPoint& place, const ImagePixels& into, void* means)
{
    const int width = (part.width() + factor - 1) / factor;
    const int height = (part.height() + factor - 1) / factor;
    pixels.numbers.visit([&](const auto* numbers, std::size_t) {
        using T = std::remove_const_t<std::remove_pointer_t<decltype(numbers)>>;
        Reduction<T> reduction(numbers, pixels, part, factor);
        for (int row = 0; row < height; ++row)
            reduction.writeRow(row, width,
                static_cast<T*>(means) + into.indexOfRow(place.y() + row) +
                    static_cast<std::size_t>(place.x()) * static_cast<std::size_t>(pixels.channels));
    });
}

} // namespace

void ImageLevels::setPixels(const ImagePixels& pixels)
{
    m_Pixels = pixels;
    m_Tiles.clear();
    m_NumBytes = 0;
}

QSize ImageLevels::sizeOf(int level) const
{
    const auto reduced = [level](int size) {
        return static_cast<int>((static_cast<std::int64_t>(size) + (std::int64_t(1) << level) - 1) >> level);
    };
    return {reduced(m_Pixels.width), reduced(m_Pixels.height)};
}

void ImageLevels::visit(
    int level, const QRect& region, const std::function<void(const ImagePixels& piece, const QPoint& place)>& use)
{
    if (m_Pixels.isEmpty() || region.isEmpty())
        return;
    if (level == 0)
        return use(m_Pixels, {0, 0});
    const Look look(*this);
    for (int row = region.top() / TILE; row <= region.bottom() / TILE; ++row)
        for (int column = region.left() / TILE; column <= region.right() / TILE; ++column)
            use(tile({level, column, row}), {column * TILE, row * TILE});
}

ImageLevels::Look::Look(ImageLevels& levels)
    : m_Levels(levels)
{
    if (m_Levels.m_NumLooks++ == 0)
        ++m_Levels.m_Use;
}

ImageLevels::Look::~Look()
{
    if (--m_Levels.m_NumLooks == 0)
        m_Levels.forgetOld();
}

const ImagePixels& ImageLevels::tile(const Key& key)
{
    auto found = m_Tiles.find(key);
    if (found == m_Tiles.end()) {
        Tile made;
        made.pixels = make(key);
        made.numBytes =
            made.pixels.numbers.visit([](const auto* number, std::size_t size) { return size * sizeof(*number); });
        m_NumBytes += made.numBytes;
        found = m_Tiles.emplace(key, std::move(made)).first;
    }
    found->second.lastUse = m_Use;
    return found->second.pixels;
}

// The first two levels are made of the image, which spares the memory of the first one where only the others are seen.
ImagePixels ImageLevels::make(const Key& key)
{
    const auto [level, column, row] = key;
    const QRect place = QRect(column * TILE, row * TILE, TILE, TILE) & QRect(QPoint(), sizeOf(level));
    ImagePixels made = emptyLike(m_Pixels, place.size());
    m_Pixels.numbers.visit([&, level = level, column = column, row = row](const auto* numbers, std::size_t) {
        using T = std::remove_const_t<std::remove_pointer_t<decltype(numbers)>>;
        const auto means = std::make_shared<std::vector<T>>(made.rowStride * static_cast<std::size_t>(made.height));
        if (level <= 2) {
            const int factor = 1 << level;
            const QRect part =
                QRect(place.topLeft() * factor, place.size() * factor) & QRect(0, 0, m_Pixels.width, m_Pixels.height);
            reduce(m_Pixels, part, factor, {0, 0}, made, means->data());
        } else {
            for (int i = 0; i < 4; ++i) {
                const Key below(level - 1, 2 * column + i % 2, 2 * row + i / 2);
                const QPoint corner(i % 2 * TILE / 2, i / 2 * TILE / 2);
                if (corner.x() < made.width && corner.y() < made.height) {
                    const ImagePixels& finer = tile(below);
                    reduce(finer, QRect(0, 0, finer.width, finer.height), 2, corner, made, means->data());
                }
            }
        }
        made.numbers = NumberArray(means, means->data(), means->size(), numberTypeOf<T>());
    });
    return made;
}

void ImageLevels::forgetOld()
{
    while (m_NumBytes > m_MostBytes) {
        const auto oldest = std::min_element(m_Tiles.begin(), m_Tiles.end(),
            [](const auto& a, const auto& b) { return a.second.lastUse < b.second.lastUse; });
        if (oldest == m_Tiles.end() || oldest->second.lastUse == m_Use)
            return;
        m_NumBytes -= oldest->second.numBytes;
        m_Tiles.erase(oldest);
    }
}

} // namespace tavo
