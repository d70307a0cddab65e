#include "vireo/show/slices/drawSlice.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "vireo/show/colours/colourOfLabel.h"
#include "vireo/show/slices/sampleLine.h"

namespace tavo {

namespace {

// Pixels in a row or a column, and the samples that their middles show.
struct Span
{
    int first = 0;
    int count = 0;
    double index = 0; // of the first pixel
    double step = 0;
};

// The pixels whose middles are in the volume; at least one, however flat it is. `middle` is where `centre` is shown, in
// pixels of `length`.
Span spanOf(int numSamples, double spacing, double centre, double scale, double sign, int length)
{
    const double middle = length / 2.0;
    const auto pixelOf = [&](double index) { return middle + sign * (index * spacing - centre) * scale; };
    const double from = std::min(pixelOf(-0.5), pixelOf(numSamples - 0.5));
    const double to = std::max(pixelOf(-0.5), pixelOf(numSamples - 0.5));
    Span span;
    span.first = static_cast<int>(std::clamp(std::ceil(from - 0.5), 0.0, double(length)));
    span.count = static_cast<int>(std::clamp(std::ceil(to - 0.5), 0.0, double(length))) - span.first;
    if (const double between = (from + to) / 2; span.count <= 0 && between >= 0 && between < length)
        span = {static_cast<int>(between), 1, 0, 0};
    span.step = sign / (scale * spacing);
    span.index = (centre + sign * (span.first + 0.5 - middle) / scale) / spacing;
    span.index = std::clamp(span.index, -0.5, numSamples - 0.5);
    return span;
}

// Rows of samples as colours, one after the other, in memory of their own.
class SliceRows
{
public:
    SliceRows(const SlicesModel& model, const SliceSight& sight, const SlicePlane& plane, const QSize& size)
        : m_Model(model)
        , m_Plane(plane)
        , m_Across(spanAlong(sight, plane.across, plane.signAcross(), size.width()))
        , m_Up(spanAlong(sight, plane.up, -plane.signUp(), size.height()))
        , m_RowsAbove(outlineWidth(model, sight))
    {}

    const Span& across() const { return m_Across; }
    const Span& up() const { return m_Up; }

    // Draws the i-th row of the span, after those above it.
    void draw(int i, QRgb* colours)
    {
        const SampleLine line = lineOf(i);
        takeColours(m_Model.volume(), line, colours);
        if (!m_Model.overlay().isEmpty())
            lay(m_Model.overlay(), lineIn(m_Model.overlay(), line), colours);
        if (!m_Model.labels().isEmpty())
            layLabels(line, colours);
    }

    // The labels of the i-th row.
    const std::vector<std::int64_t>& labels(int i)
    {
        takeLabels(lineOf(i));
        return m_RowOfLabels;
    }

private:
    static constexpr int OPAQUE = 256;

    SampleLine lineOf(int i) const
    {
        Vector3d first;
        first[m_Plane.through] = m_Model.voxel()[m_Plane.through];
        first[m_Plane.across] = m_Across.index;
        first[m_Plane.up] = m_Up.index + i * m_Up.step;
        Vector3d step;
        step[m_Plane.across] = m_Across.step;
        return {first, step, m_Across.count};
    }

    Span spanAlong(const SliceSight& sight, std::size_t axis, double sign, int length) const
    {
        const VolumeGrid& grid = m_Model.grid();
        return spanOf(grid.size[axis], grid.spacing[axis], sight.centre[axis], sight.scale, sign, length);
    }

    // The same places in another grid.
    SampleLine lineIn(const ShownLayer& layer, const SampleLine& line) const
    {
        const auto moved = [&](const Vector3d& index) { return layer.layer().grid.indexAt(m_Model.grid().at(index)); };
        const Vector3d first = moved(line.first);
        return {first, moved(line.first + line.step) - first, line.count};
    }

    void sample(const ShownLayer& layer, const SampleLine& line, bool isInterpolated)
    {
        m_Numbers.resize(static_cast<std::size_t>(line.count) * layer.layer().samples.width);
        sampleLine(layer.layer(), line, isInterpolated, m_Numbers.data());
    }

    void takeColours(const ShownLayer& layer, const SampleLine& line, QRgb* colours)
    {
        sample(layer, line, m_Model.isInterpolated());
        ImagePixels row;
        row.numbers = NumberArray({}, m_Numbers.data(), m_Numbers.size(), NumberType::Float64);
        row.width = line.count;
        row.height = 1;
        row.channels = static_cast<int>(layer.layer().samples.width);
        row.rowStride = m_Numbers.size();
        layer.colours().convert(row, 0, 0, line.count, colours);
    }

    static QRgb mixed(QRgb below, QRgb above, int opacity)
    {
        const auto mix = [opacity](
                             int a, int b) { return (a * (OPAQUE - opacity) + b * opacity + OPAQUE / 2) / OPAQUE; };
        return qRgb(mix(qRed(below), qRed(above)), mix(qGreen(below), qGreen(above)), mix(qBlue(below), qBlue(above)));
    }

    static int opacityOf(const ShownLayer& layer) { return static_cast<int>(std::lround(layer.opacity() * OPAQUE)); }

    // What is no number, or not above the window's beginning, lets the volume be seen.
    void lay(const ShownLayer& layer, const SampleLine& line, QRgb* colours)
    {
        m_Colours.resize(static_cast<std::size_t>(line.count));
        takeColours(layer, line, m_Colours.data());
        const std::size_t width = layer.layer().samples.width;
        const int opacity = opacityOf(layer);
        const auto from = static_cast<double>(layer.look().from);
        for (std::size_t i = 0; i < m_Colours.size(); ++i) {
            const double number = m_Numbers[i * width];
            if (width > 1 ? !std::isnan(number) : number > from)
                colours[i] = mixed(colours[i], m_Colours[i], opacity);
        }
    }

    // Of labels there are none between others. 0 is none.
    void takeLabels(const SampleLine& line)
    {
        sample(m_Model.labels(), lineIn(m_Model.labels(), line), false);
        m_RowOfLabels.resize(m_Numbers.size());
        for (std::size_t i = 0; i < m_Numbers.size(); ++i) // neighbours are often of one sample
            m_RowOfLabels[i] = i > 0 && m_Numbers[i] == m_Numbers[i - 1] ? m_RowOfLabels[i - 1] : labelOf(m_Numbers[i]);
    }

    static std::int64_t labelOf(double number) { return std::abs(number) < LARGEST_LABEL ? std::llround(number) : 0; }

    // Half a sample, but no more than one sees well.
    static std::size_t outlineWidth(const SlicesModel& model, const SliceSight& sight)
    {
        constexpr double WIDEST = 4; // in pixels
        const double sample = model.labels().isEmpty() ? 0 : model.labels().layer().grid.smallestSpacing();
        return static_cast<std::size_t>(std::lround(std::clamp(0.5 * sight.scale * sample, 1.0, WIDEST)));
    }

    // The first label on the left or above, as near as an outline is wide, for which something holds; null if there is
    // none.
    template <typename Holds>
    const std::int64_t* neighbourOf(std::size_t i, Holds holds) const
    {
        for (std::size_t distance = 1; distance <= m_RowsAbove.size(); ++distance) {
            const std::vector<std::int64_t>& above = m_RowsAbove[distance - 1];
            if (i >= distance && holds(m_RowOfLabels[i - distance]))
                return &m_RowOfLabels[i - distance];
            if (i < above.size() && holds(above[i]))
                return &above[i];
        }
        return nullptr;
    }

    // Where another label is on the left or above, or is no longer.
    bool isEdge(std::size_t i) const
    {
        const auto isOther = [label = m_RowOfLabels[i]](std::int64_t other) { return other != label; };
        return neighbourOf(i, isOther) != nullptr;
    }

    void layLabels(const SampleLine& line, QRgb* colours)
    {
        std::rotate(m_RowsAbove.begin(), m_RowsAbove.end() - 1, m_RowsAbove.end());
        m_RowsAbove.front().swap(m_RowOfLabels);
        takeLabels(line);
        const int opacity = opacityOf(m_Model.labels());
        for (std::size_t i = 0; i < m_RowOfLabels.size(); ++i) {
            if (m_Model.areLabelsOutlined() && !isEdge(i))
                continue;
            const std::int64_t label = labelShownAt(i);
            if (label != 0)
                colours[i] = mixed(colours[i], colourOf(label), opacity);
        }
    }

    // At an edge that of either side, so that a label is seen to end beside none.
    std::int64_t labelShownAt(std::size_t i) const
    {
        const std::int64_t label = m_RowOfLabels[i];
        if (label != 0 || !m_Model.areLabelsOutlined())
            return label;
        const std::int64_t* const neighbour = neighbourOf(i, [](std::int64_t other) { return other != 0; });
        return neighbour ? *neighbour : 0;
    }

    // Neighbours are often of one label.
    QRgb colourOf(std::int64_t label)
    {
        if (label != m_LastLabel) {
            const RGBA8 colour = m_Model.colourOfLabel(label);
            m_LastLabel = label;
            m_ColourOfLast = qRgb(colour[0], colour[1], colour[2]);
        }
        return m_ColourOfLast;
    }

    const SlicesModel& m_Model;
    const SlicePlane& m_Plane;
    Span m_Across;
    Span m_Up;
    std::vector<double> m_Numbers;
    std::vector<QRgb> m_Colours;
    std::vector<std::int64_t> m_RowOfLabels;
    std::vector<std::vector<std::int64_t>> m_RowsAbove; // the nearest first, as many as an outline has; else empty
    std::int64_t m_LastLabel = 0;
    QRgb m_ColourOfLast = 0;
};

// On any ground.
void drawLines(QPainter& painter, const QVector<QLineF>& lines, const QColor& colour, double width)
{
    for (const QPen& pen : {QPen(QColor(0, 0, 0, 140), 3 * width), QPen(colour, width)}) {
        painter.setPen(pen);
        painter.drawLines(lines);
    }
}

void drawText(QPainter& painter, const QRect& rect, int flags, const QString& text)
{
    painter.setPen(QColor(0, 0, 0, 200));
    for (const QPoint& shift : {QPoint(1, 1), QPoint(-1, 1), QPoint(1, -1), QPoint(-1, -1)})
        painter.drawText(rect.translated(shift), flags, text);
    painter.setPen(Qt::white);
    painter.drawText(rect, flags, text);
}

void drawCrosshair(QPainter& painter, const QRect& cell, const QPointF& place, double gap, double pixelRatio)
{
    const double x = place.x(), y = place.y();
    const QVector<QLineF> lines{QLineF(cell.left(), y, x - gap, y), QLineF(x + gap, y, cell.right() + 1, y),
        QLineF(x, cell.top(), x, y - gap), QLineF(x, y + gap, x, cell.bottom() + 1)};
    QVector<QLineF> seen;
    for (const QLineF& line : lines)
        if (line.x2() > line.x1() || line.y2() > line.y1())
            seen.push_back(line);
    drawLines(painter, seen, QColor(90, 200, 255), pixelRatio);
}

void drawSides(QPainter& painter, const VolumeGrid& grid, const SlicePlane& plane, const QRect& rect)
{
    drawText(painter, rect, Qt::AlignLeft | Qt::AlignVCenter, sideOf(grid, plane.across, !plane.isAcrossReversed));
    drawText(painter, rect, Qt::AlignRight | Qt::AlignVCenter, sideOf(grid, plane.across, plane.isAcrossReversed));
    drawText(painter, rect, Qt::AlignHCenter | Qt::AlignTop, sideOf(grid, plane.up, plane.isUpReversed));
    drawText(painter, rect, Qt::AlignHCenter | Qt::AlignBottom, sideOf(grid, plane.up, !plane.isUpReversed));
}

// Beside the letter in the middle: the number is left out where it has no room, and the name, too.
QString titleOf(const QString& name, const QString& number, int width, const QFontMetrics& font)
{
    const int room = width / 2 - font.maxWidth() / 2;
    for (const QString& title : {name + number, name})
        if (font.horizontalAdvance(title) < room)
            return title;
    return {};
}

} // namespace

QImage drawSlice(const SlicesModel& model, const SlicePlane& plane, const SliceSight& sight, const QSize& size)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(Qt::black);
    if (model.isEmpty())
        return picture;
    SliceRows rows(model, sight, plane, size);
    if (rows.across().count <= 0)
        return picture;
    for (int i = 0; i < rows.up().count; ++i)
        rows.draw(i, reinterpret_cast<QRgb*>(picture.scanLine(rows.up().first + i)) + rows.across().first);
    return picture;
}

std::set<std::int64_t> labelsInSlice(
    const SlicesModel& model, const SlicePlane& plane, const SliceSight& sight, const QSize& size)
{
    std::set<std::int64_t> labels;
    if (model.isEmpty() || model.labels().isEmpty())
        return labels;
    SliceRows rows(model, sight, plane, size);
    for (int i = 0; rows.across().count > 0 && i < rows.up().count; ++i)
        for (const std::int64_t label : rows.labels(i))
            if (label != 0 && (labels.empty() || label != *labels.rbegin()))
                labels.insert(label);
    return labels;
}

QString numberOfSlice(const SlicesModel& model, const SlicePlane& plane)
{
    return QObject::tr("%1 of 0 to %2").arg(model.voxel()[plane.through]).arg(model.grid().size[plane.through] - 1);
}

void drawSliceMarks(QPainter& painter, const SlicesModel& model, const SlicePlane& plane, const SliceSight& sight,
    const QRect& cell, double pixelRatio)
{
    constexpr double LEAST_GAP = 6; // in pixels of a widget
    constexpr int MARGIN = 4;
    const Vector3i& voxel = model.voxel();
    painter.save();
    painter.setClipRect(cell);
    const QPointF place =
        sight.placeOf(model.grid(), plane, cell, {double(voxel[0]), double(voxel[1]), double(voxel[2])});
    const double sample = sight.scale * std::max(model.grid().spacing[plane.across], model.grid().spacing[plane.up]);
    drawCrosshair(painter, cell, place, std::max(LEAST_GAP * pixelRatio, 0.75 * sample), pixelRatio);
    const int margin = static_cast<int>(MARGIN * pixelRatio);
    const QRect inside = cell.adjusted(margin, margin, -margin, -margin);
    if (model.isOriented())
        drawSides(painter, model.grid(), plane, inside);
    drawText(painter, inside, Qt::AlignLeft | Qt::AlignTop,
        titleOf(plane.name, " " + numberOfSlice(model, plane), inside.width(), painter.fontMetrics()));
    painter.restore();
}

void drawSliceDistance(QPainter& painter, const SlicesModel& model, const SlicePlane& plane, const SliceSight& sight,
    const QRect& cell, const SliceDistance& distance, double pixelRatio)
{
    constexpr int DIGITS = 4;
    constexpr double ABOVE = 6; // in pixels of a widget, the text is
    if (distance.slice != model.voxel()[plane.through])
        return;
    painter.save();
    painter.setClipRect(cell);
    const QLineF line(
        sight.placeOf(model.grid(), plane, cell, distance.from), sight.placeOf(model.grid(), plane, cell, distance.to));
    drawLines(painter, {line}, QColor(255, 220, 80), pixelRatio);
    const QString text = QString::number(distance.lengthIn(model.grid()), 'g', DIGITS);
    QRect rect = painter.fontMetrics().boundingRect(text).adjusted(-1, -1, 2, 2);
    rect.moveCenter(line.center().toPoint());
    rect.moveBottom(static_cast<int>(line.center().y() - ABOVE * pixelRatio));
    drawText(painter, rect, Qt::AlignCenter, text);
    painter.restore();
}

} // namespace tavo
