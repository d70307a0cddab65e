#include "vireo/show/images/drawReduced.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace tavo {

namespace {

constexpr int WHOLE = 256; // the weights of two neighbours together

QRgb* lineOf(QImage& picture, int y)
{
    return reinterpret_cast<QRgb*>(picture.scanLine(y));
}

// The level of which a pixel is a little more than one of the screen, or just one.
int levelOf(double scale)
{
    constexpr double ROUNDING = 1e-9;
    return std::max(static_cast<int>(std::floor(std::log2(1 / scale) + ROUNDING)), 0);
}

// Where a pixel of the screen is among those of a level: between two neighbours.
struct Place
{
    int first;
    int second;
    int weight; // of the second
};

// Of so many pixels of the screen, which are counted from the edge of the image.
std::vector<Place> placesIn(int sizeOfLevel, double scale, int from, int count)
{
    std::vector<Place> places;
    places.reserve(static_cast<std::size_t>(count));
    for (int i = from; i < from + count; ++i) {
        const double place = (i + 0.5) / scale - 0.5;
        const int first = static_cast<int>(std::floor(place));
        const auto clamped = [=](int index) { return std::clamp(index, 0, sizeOfLevel - 1); };
        places.push_back({clamped(first), clamped(first + 1), static_cast<int>(std::lround((place - first) * WHOLE))});
    }
    return places;
}

// Between two rows of colours, byte by byte, of which the processor takes many at once.
void mixRows(const QRgb* first, const QRgb* second, int weight, std::size_t count, QRgb* mixed)
{
    const auto* const a = reinterpret_cast<const std::uint8_t*>(first);
    const auto* const b = reinterpret_cast<const std::uint8_t*>(second);
    auto* const bytes = reinterpret_cast<std::uint8_t*>(mixed);
    const auto weightOfB = static_cast<std::uint16_t>(weight);
    const auto weightOfA = static_cast<std::uint16_t>(WHOLE - weight);
    for (std::size_t i = 0; i < count * sizeof(QRgb); ++i) {
        const auto sum = static_cast<std::uint16_t>(a[i] * weightOfA + b[i] * weightOfB + WHOLE / 2);
        bytes[i] = static_cast<std::uint8_t>(sum / WHOLE);
    }
}

// Between two colours, of which every other byte is taken at once.
QRgb mix(QRgb first, QRgb second, int weight)
{
    constexpr QRgb EVEN = 0x00ff00ff;
    constexpr QRgb HALVES = 0x00800080;
    const auto weightOfSecond = static_cast<QRgb>(weight);
    const auto weightOfFirst = static_cast<QRgb>(WHOLE - weight);
    const auto sum = [=](QRgb a, QRgb b) { return (a & EVEN) * weightOfFirst + (b & EVEN) * weightOfSecond + HALVES; };
    return (sum(first, second) >> 8 & EVEN) | (sum(first >> 8, second >> 8) & ~EVEN);
}

bool canBeMarked(const ImagePixels& pixels)
{
    return pixels.numbers.visit(
        [](const auto* numbers, std::size_t) { return std::is_floating_point_v<std::decay_t<decltype(*numbers)>>; });
}

class ReducedDrawing
{
public:
    ReducedDrawing(QImage& picture, ImageLevels& levels, const PixelColours& colours, const ImageSight& sight)
        : m_Picture(picture)
        , m_Levels(levels)
        , m_Colours(colours)
        , m_Level(levelOf(sight.scale))
        , m_Scale(std::ldexp(sight.scale, m_Level))
        , m_Origin(sight.origin(picture.size()).toPoint())
    {}

    void draw(const QRect& part)
    {
        const ImageLevels::Look look(m_Levels);
        if (m_Scale == 1)
            return drawLevel(part);
        constexpr int LINES = 32; // whose pixels stay in the cache of the processor until they are drawn
        const QSize size = m_Levels.sizeOf(m_Level);
        m_Columns = placesIn(size.width(), m_Scale, part.left() - m_Origin.x(), part.width());
        for (int top = part.top(); top <= part.bottom(); top += LINES) {
            const QRect lines(part.left(), top, part.width(), std::min(LINES, part.bottom() + 1 - top));
            m_Rows = placesIn(size.height(), m_Scale, top - m_Origin.y(), lines.height());
            m_Read = QRect(QPoint(m_Columns.front().first, m_Rows.front().first),
                QPoint(m_Columns.back().second, m_Rows.back().second));
            read();
            drawLines(lines);
            if (canBeMarked(m_Levels.pixels()))
                drawMarks(lines);
        }
    }

private:
    // Pixels of the level are those of the screen.
    void drawLevel(const QRect& part)
    {
        const QRect seen = part.translated(-m_Origin) & QRect(QPoint(), m_Levels.sizeOf(m_Level));
        convert(seen, [&](int x, int y) { return lineOf(m_Picture, y + m_Origin.y()) + x + m_Origin.x(); });
    }

    // The colours of a part of the level, into the memory that `placeOf` says of a pixel.
    template <typename PlaceOf>
    void convert(const QRect& part, PlaceOf placeOf)
    {
        m_Levels.visit(m_Level, part, [&](const ImagePixels& piece, const QPoint& corner) {
            const QRect covered = QRect(corner, QSize(piece.width, piece.height)) & part;
            for (int y = covered.top(); y <= covered.bottom(); ++y)
                m_Colours.convert(
                    piece, covered.left() - corner.x(), y - corner.y(), covered.width(), placeOf(covered.left(), y));
        });
    }

    std::size_t width() const { return static_cast<std::size_t>(m_Read.width()); }

    // Of the pixels that were read.
    QRgb* row(int y) { return m_Pixels.data() + static_cast<std::size_t>(y - m_Read.top()) * width(); }

    void read()
    {
        m_Pixels.resize(width() * static_cast<std::size_t>(m_Read.height()));
        m_Mixed.resize(width());
        convert(m_Read, [this](int x, int y) { return row(y) + (x - m_Read.left()); });
    }

    void drawLines(const QRect& lines)
    {
        for (int i = 0; i < lines.height(); ++i) {
            const Place& place = m_Rows[static_cast<std::size_t>(i)];
            mixRows(row(place.first), row(place.second), place.weight, width(), m_Mixed.data());
            const QRgb* const mixed = m_Mixed.data() - m_Read.left();
            QRgb* to = lineOf(m_Picture, lines.top() + i) + lines.left();
            for (const Place& column : m_Columns)
                *to++ = mix(mixed[column.first], mixed[column.second], column.weight);
        }
    }

    // What is not finite, whose colours would be lost among those of its neighbours: each as a pixel of the screen.
    void drawMarks(const QRect& lines)
    {
        const auto onScreen = [this](int pixel) { return static_cast<int>(std::floor((pixel + 0.5) * m_Scale)); };
        for (int y = m_Read.top(); y <= m_Read.bottom(); ++y) {
            const QRgb* const colours = row(y);
            for (int i = 0; i < m_Read.width(); ++i) {
                if (colours[i] != COLOUR_OF_NAN && colours[i] != COLOUR_OF_INFINITY)
                    continue;
                const QPoint place = m_Origin + QPoint(onScreen(m_Read.left() + i), onScreen(y));
                if (lines.contains(place) && m_Picture.pixel(place) != COLOUR_OF_NAN)
                    m_Picture.setPixel(place, colours[i]);
            }
        }
    }

    QImage& m_Picture;
    ImageLevels& m_Levels;
    const PixelColours& m_Colours;
    int m_Level;
    double m_Scale; // of the level: more than a half, and 1 at most
    QPoint m_Origin;
    std::vector<Place> m_Columns;
    std::vector<Place> m_Rows;
    QRect m_Read; // of the level
    std::vector<QRgb> m_Pixels;
    std::vector<QRgb> m_Mixed;
};

} // namespace

void drawReduced(
    QImage& picture, const QRect& part, ImageLevels& levels, const PixelColours& colours, const ImageSight& sight)
{
    if (!part.isEmpty())
        ReducedDrawing(picture, levels, colours, sight).draw(part);
}

} // namespace tavo
