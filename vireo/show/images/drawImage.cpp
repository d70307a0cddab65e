#include "vireo/show/images/drawImage.h"

#include <QPainter>
#include <QRegion>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>
#include <type_traits>
#include <vector>

#include "vireo/show/images/drawReduced.h"

namespace tavo {

namespace {

// The pixels of the image that are seen in a part of the view.
QRect seenPixels(const QSize& image, const ImageSight& sight, const QSize& view, const QRect& part)
{
    const QPointF first = sight.toImage(part.topLeft(), view);
    const QPointF last = sight.toImage(part.bottomRight() + QPoint(1, 1), view);
    const QPoint topLeft(static_cast<int>(std::floor(first.x())), static_cast<int>(std::floor(first.y())));
    const QPoint bottomRight(static_cast<int>(std::ceil(last.x())) - 1, static_cast<int>(std::ceil(last.y())) - 1);
    return QRect(topLeft, bottomRight) & QRect(QPoint(), image);
}

QRect seenPixels(const QSize& image, const ImageSight& sight, const QSize& view)
{
    return seenPixels(image, sight, view, QRect(QPoint(), view));
}

// Every colour becomes a square. `left` is where the first one begins, which may be before the row.
void repeat(const std::vector<QRgb>& colours, int side, int left, QRgb* row, int width)
{
    for (std::size_t i = 0; i < colours.size(); ++i) {
        const int from = std::max(left + static_cast<int>(i) * side, 0);
        const int to = std::min(left + (static_cast<int>(i) + 1) * side, width);
        if (from < to)
            std::fill(row + from, row + to, colours[i]);
    }
}

QRgb* lineOf(QImage& picture, int y)
{
    return reinterpret_cast<QRgb*>(picture.scanLine(y));
}

// The pixels as squares, in the lines of the view from `firstLine` on. Returns which part of the lines they cover. The
// places in the view of those that are seen fit into an `int`; those of others may not.
QRect drawSquares(QImage& lines, int firstLine, const QSize& view, const ImagePixels& pixels,
    const PixelColours& colours, const ImageSight& sight)
{
    const QRect part(QPoint(0, firstLine), lines.size());
    const QRect seen = seenPixels({pixels.width, pixels.height}, sight, view, part);
    if (seen.isEmpty())
        return {};
    const QPointF origin = sight.origin(view) - QPointF(0, firstLine);
    const int side = static_cast<int>(sight.scale);
    const auto place = [side](double from, int pixel) { return static_cast<int>(from + double(pixel) * side); };
    const int left = place(origin.x(), seen.left());
    const QRect all(left, place(origin.y(), seen.top()), seen.width() * side, seen.height() * side);
    const QRect covered = all & lines.rect();
    std::vector<QRgb> row(static_cast<std::size_t>(seen.width()));
    for (int y = seen.top(); y <= seen.bottom(); ++y) {
        const int top = std::max(place(origin.y(), y), 0);
        const int bottom = std::min(place(origin.y(), y) + side, lines.height());
        QRgb* const first = lineOf(lines, top);
        if (side == 1) {
            colours.convert(pixels, seen.left(), y, seen.width(), first + left);
            continue;
        }
        colours.convert(pixels, seen.left(), y, seen.width(), row.data());
        repeat(row, side, left, first, lines.width());
        for (int line = top + 1; line < bottom; ++line)
            std::memcpy(lineOf(lines, line) + covered.left(), first + covered.left(),
                sizeof(QRgb) * static_cast<std::size_t>(covered.width()));
    }
    return covered;
}

// What of the view the whole image covers, of which may be more than an int holds.
QRectF placeOf(const ImagePixels& pixels, const ImageSight& sight, const QSize& view)
{
    constexpr int BEYOND = 4; // the edge is out of view there
    return QRectF(sight.origin(view), QSizeF(pixels.width, pixels.height) * sight.scale) &
           QRectF(QPointF(), view).adjusted(-BEYOND, -BEYOND, BEYOND, BEYOND);
}

void fillAround(QPainter& painter, const QRectF& image, const QSize& view, const QColor& ground)
{
    for (const QRect& rect : QRegion(QRect(QPoint(), view)).subtracted(image.toAlignedRect().adjusted(1, 1, -1, -1)))
        painter.fillRect(rect, ground);
}

// The pixels of the screen that an image has: one at least.
QRect pixelsOf(const QRectF& image)
{
    const QRect pixels = image.toRect();
    return {pixels.topLeft(), pixels.size().expandedTo({1, 1})};
}

// One pixel wide, around the image.
void drawEdge(QPainter& painter, const QRectF& image, const QColor& edge)
{
    const QRect inside = pixelsOf(image);
    const QRect outside = inside.adjusted(-1, -1, 1, 1);
    for (const QRect& side : QRegion(outside).subtracted(inside))
        painter.fillRect(side, edge);
}

// At 1:1, which Qt does fastest.
void paintAsTheyAre(QPainter& painter, const QSize& view, const ImagePixels& pixels, const ImageSight& sight)
{
    const QRect seen = seenPixels({pixels.width, pixels.height}, sight, view);
    const uchar* const bytes =
        pixels.numbers.visit([](const auto* numbers, std::size_t) { return reinterpret_cast<const uchar*>(numbers); });
    const QImage part(bytes + pixels.indexOfRow(seen.top()) + static_cast<std::size_t>(seen.left()) * 3, seen.width(),
        seen.height(), static_cast<int>(pixels.rowStride), QImage::Format_RGB888);
    painter.drawImage(sight.toView(seen.topLeft(), view), part);
}

void paintSquares(QPainter& painter, const QSize& view, const ImagePixels& pixels, const PixelColours& colours,
    const ImageSight& sight)
{
    constexpr int LINES = 32; // stay in the cache of the processor until they are painted
    QImage lines(view.width(), LINES, QImage::Format_RGB32);
    for (int top = 0; top < view.height(); top += LINES) {
        const QRect inView(0, 0, view.width(), std::min(LINES, view.height() - top));
        const QRect covered = drawSquares(lines, top, view, pixels, colours, sight) & inView;
        if (covered.isEmpty())
            continue; // Qt takes an empty part for the whole picture
        painter.drawImage(covered.topLeft() + QPoint(0, top), lines, covered);
    }
}

int numLines(const ImagePixels& pixels, const ImageLook& look)
{
    return look.isColour() ? pixels.channels : 1;
}

QString textOfPixel(const ImagePixels& pixels, const ImageLook& look, int x, int y, int digits)
{
    QStringList lines;
    for (int i = 0; i < numLines(pixels, look); ++i)
        lines += textOfNumber(pixels, x, y, look.isColour() ? i : std::min(look.channel, pixels.channels - 1), digits);
    return lines.join('\n');
}

// The largest with which each of the texts fits into a square: a number that is cut off would be another one. It stays
// the same while short numbers pass by.
QFont fontFor(QFont font, double side, int lines, const std::vector<QString>& texts)
{
    constexpr double LARGEST = 14;
    const auto widthOf = [&font](const QString& text) { return QFontMetricsF(font).size(0, text).width(); };
    font.setPixelSize(static_cast<int>(LARGEST));
    QString widest = "000000";
    for (double width = widthOf(widest); const QString& text : texts)
        if (const double other = widthOf(text); other > width) {
            widest = text;
            width = other;
        }
    int size = std::max(static_cast<int>(std::min(LARGEST, side / (1.2 * lines + 0.2))), 1);
    for (font.setPixelSize(size); size > 1 && widthOf(widest) > side - 4; font.setPixelSize(size))
        --size; // widths do not shrink as sizes do
    return font;
}

void drawGrid(QPainter& painter, const QRect& seen, const ImageSight& sight, const QSize& view)
{
    painter.setPen(QColor(128, 128, 128, 110));
    const QRectF all(sight.toView(seen.topLeft(), view), QSizeF(seen.size()) * sight.scale);
    for (int x = seen.left(); x <= seen.right() + 1; ++x) {
        const double place = sight.toView(QPointF(x, 0), view).x() + 0.5;
        painter.drawLine(QPointF(place, all.top()), QPointF(place, all.bottom()));
    }
    for (int y = seen.top(); y <= seen.bottom() + 1; ++y) {
        const double place = sight.toView(QPointF(0, y), view).y() + 0.5;
        painter.drawLine(QPointF(all.left(), place), QPointF(all.right(), place));
    }
}

// In every pixel, with as many digits as tell them apart, if there is room for more than a few.
std::vector<QString> textsOf(const ImagePixels& pixels, const ImageLook& look, const QRect& seen, double scale)
{
    constexpr int FEWEST = 4;
    constexpr int MOST = 17;     // which no double needs more than
    constexpr double LETTER = 7; // pixels
    constexpr int BESIDE = 7;    // letters that are no digits of theirs
    const auto textsWith = [&](int digits) {
        std::vector<QString> texts;
        for (int y = seen.top(); y <= seen.bottom(); ++y)
            for (int x = seen.left(); x <= seen.right(); ++x)
                texts.push_back(textOfPixel(pixels, look, x, y, digits));
        return texts;
    };
    const auto numDifferent = [](const std::vector<QString>& texts) {
        return std::set<QString>(texts.begin(), texts.end()).size();
    };
    const int most = std::min(static_cast<int>(scale / LETTER) - BESIDE, MOST);
    std::vector<QString> texts = textsWith(FEWEST);
    if (most <= FEWEST)
        return texts;
    const std::size_t numAll = numDifferent(textsWith(most));
    for (int digits = FEWEST + 1; digits <= most && numDifferent(texts) < numAll; ++digits)
        texts = textsWith(digits);
    return texts;
}

// A grid, and in every pixel its numbers.
void drawValues(
    QImage& picture, const ImagePixels& pixels, const PixelColours& colours, const ImageSight& sight, const QFont& font)
{
    const QRect seen = seenPixels({pixels.width, pixels.height}, sight, picture.size());
    const ImageLook& look = colours.look();
    QPainter painter(&picture);
    drawGrid(painter, seen, sight, picture.size());
    const std::vector<QString> texts = textsOf(pixels, look, seen, sight.scale);
    painter.setFont(fontFor(font, sight.scale, numLines(pixels, look), texts));
    auto text = texts.begin();
    for (int y = seen.top(); y <= seen.bottom(); ++y)
        for (int x = seen.left(); x <= seen.right(); ++x) {
            QRgb colour = 0;
            colours.convert(pixels, x, y, 1, &colour);
            painter.setPen(qGray(colour) > 128 ? Qt::black : Qt::white);
            const QRectF square(sight.toView(QPointF(x, y), picture.size()), QSizeF(sight.scale, sight.scale));
            painter.drawText(square, Qt::AlignCenter, *text++);
        }
}

// To another place in the same picture; what comes into view has the pixels of what was there.
void movePixels(QImage& picture, const QPoint& shift)
{
    const int fromX = std::max(-shift.x(), 0);
    const int toX = std::max(shift.x(), 0);
    const std::size_t numBytes = sizeof(QRgb) * static_cast<std::size_t>(picture.width() - std::abs(shift.x()));
    const int numRows = picture.height() - std::abs(shift.y());
    for (int i = 0; i < numRows; ++i) {
        const int to = shift.y() > 0 ? picture.height() - 1 - i : i; // none is overwritten that is still to be moved
        std::memmove(lineOf(picture, to) + toX, lineOf(picture, to - shift.y()) + fromX, numBytes);
    }
}

bool isReduced(const ImageSight& sight)
{
    return sight.scale < 1;
}

// A part of what is seen of an image that is seen smaller than it is.
void drawPart(QImage& picture, const QRect& part, ImageLevels& levels, const PixelColours& colours,
    const ImageSight& sight, const ImageInk& ink)
{
    const ImagePixels& pixels = levels.pixels();
    const QRectF all = placeOf(pixels, sight, picture.size());
    QPainter painter(&picture);
    painter.setClipRect(part);
    fillAround(painter, all, picture.size(), ink.ground);
    if (pixels.isEmpty() || all.isEmpty())
        return;
    painter.end();
    drawReduced(picture, pixelsOf(all) & part, levels, colours, sight);
    painter.begin(&picture);
    painter.setClipRect(part);
    drawEdge(painter, all, ink.edge);
}

} // namespace

QImage drawImage(
    ImageLevels& levels, const PixelColours& colours, const ImageSight& sight, const QSize& size, const ImageInk& ink)
{
    QImage picture(size, QImage::Format_RGB32);
    drawImage(picture, levels, colours, sight, ink);
    return picture;
}

bool isPaintedAtOnce(const ImageSight& sight)
{
    return sight.scale >= 1 && sight.scale < SCALE_OF_VALUES;
}

void paintImage(QPainter& painter, const QSize& view, const ImagePixels& pixels, const PixelColours& colours,
    const ImageSight& sight, const ImageInk& ink)
{
    const QRectF all = placeOf(pixels, sight, view);
    fillAround(painter, all, view, ink.ground);
    if (pixels.isEmpty() || all.isEmpty())
        return;
    if (sight.scale == 1 && colours.areShownAsTheyAre(pixels))
        paintAsTheyAre(painter, view, pixels, sight);
    else
        paintSquares(painter, view, pixels, colours, sight);
    drawEdge(painter, all, ink.edge);
}

void drawImage(
    QImage& picture, ImageLevels& levels, const PixelColours& colours, const ImageSight& sight, const ImageInk& ink)
{
    const ImagePixels& pixels = levels.pixels();
    if (isReduced(sight))
        return drawPart(picture, picture.rect(), levels, colours, sight, ink);
    if (isPaintedAtOnce(sight)) {
        QPainter painter(&picture);
        return paintImage(painter, picture.size(), pixels, colours, sight, ink);
    }
    const QRectF all = placeOf(pixels, sight, picture.size());
    {
        QPainter painter(&picture);
        fillAround(painter, all, picture.size(), ink.ground);
    }
    if (pixels.isEmpty() || all.isEmpty())
        return;
    drawSquares(picture, 0, picture.size(), pixels, colours, sight);
    drawValues(picture, pixels, colours, sight, ink.font);
    QPainter painter(&picture);
    drawEdge(painter, all, ink.edge);
}

void moveImage(QImage& picture, const ImageSight& before, ImageLevels& levels, const PixelColours& colours,
    const ImageSight& sight, const ImageInk& ink)
{
    const QPointF shift = sight.origin(picture.size()) - before.origin(picture.size());
    const bool isFar = std::abs(shift.x()) >= picture.width() || std::abs(shift.y()) >= picture.height();
    if (before.scale != sight.scale || !isReduced(sight) || isFar)
        return drawImage(picture, levels, colours, sight, ink);
    movePixels(picture, shift.toPoint());
    const QRect still = picture.rect() & picture.rect().translated(shift.toPoint());
    for (const QRect& part : QRegion(picture.rect()).subtracted(still))
        drawPart(picture, part, levels, colours, sight, ink);
}

QString textOfNumber(const ImagePixels& pixels, int x, int y, int channel, int digits)
{
    const std::size_t index = pixels.indexOfRow(y) +
                              static_cast<std::size_t>(x) * static_cast<std::size_t>(pixels.channels) +
                              static_cast<std::size_t>(pixels.placeOfChannel(channel));
    return pixels.numbers.visit([=](const auto* numbers, std::size_t) {
        using T = std::remove_const_t<std::remove_pointer_t<decltype(numbers)>>;
        if constexpr (std::is_integral_v<T>)
            return QString::number(+numbers[index]);
        else if (std::isnan(numbers[index]))
            return QString("NaN");
        else
            return QString::number(double(numbers[index]), 'g', digits);
    });
}

} // namespace tavo
