#include "vireo/show/scenes/sceneOverlays.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

#include "tavo/base/text/printable.h"
#include "vireo/show/scenes/colourBar.h"

namespace tavo {

namespace {

using ColourBar = SceneOverlays::ColourBar;

constexpr double EDGE = 10; // around everything
constexpr double GAP = 12;  // between bars
constexpr double MARK_SIDE = 72;
constexpr double BAR_WIDTH = 14;
constexpr double LONGEST_BAR = 240;
constexpr double WIDEST_TITLE = 140;
constexpr double WIDTH_STEP = 16; // so that bars do not shift everything when a number gets longer
constexpr double LONGEST_SCALE = 120;
constexpr double SCALE_TICK = 4;
constexpr std::size_t SHOWN_CHARACTERS = 80;

Box3d boxOf(const SceneBox& box)
{
    return {box.getMin(), box.getMax()};
}

bool isShowable(const std::pair<double, double>& range)
{
    return std::isfinite(range.second - range.first);
}

bool areAlike(const ColourBar& one, const ColourBar& other)
{
    return one.field == other.field && one.colourMap == other.colourMap && one.range == other.range &&
           one.categories == other.categories;
}

QString shown(const std::string& text)
{
    return QString::fromStdString(printable(text, SHOWN_CHARACTERS));
}

// Without its place; none where neither numbers nor categories are shown.
std::optional<ColourBar> colourBarOf(const SceneItem& item)
{
    if (const std::optional<SceneItem::ShownScalars> scalars = item.shownScalars();
        scalars && isShowable(scalars->range))
        return ColourBar{shown(scalars->field), QString::fromStdString(scalars->colourMap), scalars->range, {}, {}};
    const std::optional<SceneItem::ShownLabels> labels = item.shownLabels();
    if (!labels || labels->categories.empty())
        return {};
    ColourBar legend{shown(labels->field), {}, {}, {}, {}};
    for (const auto& [colour, name] : labels->categories)
        legend.categories.push_back({QColor(colour[0], colour[1], colour[2]), shown(name)});
    return legend;
}

// A field's name gets shorter until the title, which has the unit behind it, has room.
void shortenTitle(ColourBar& bar, double width, const QFontMetricsF& font)
{
    ColourBarNumbers numbers;
    if (bar.categories.empty())
        numbers = colourBarNumbers(bar.bar, bar.range.first, bar.range.second, {}, font);
    const double rest = numbers.title.isEmpty() ? 0 : font.horizontalAdvance("  " + numbers.title);
    bar.field = font.elidedText(bar.field, Qt::ElideMiddle, std::max(width - rest, 0.0));
}

// The width of the bar with its numbers and its title.
double widthOf(const ColourBar& bar, const QFontMetricsF& font)
{
    double width = font.horizontalAdvance(bar.field);
    for (const LegendRow& row : bar.categories)
        width = std::max(width, widthOf(row, font));
    if (bar.categories.empty())
        width = std::max(width, widthOfColourBar(bar.bar, bar.range.first, bar.range.second, bar.field, font));
    return WIDTH_STEP * std::ceil(width / WIDTH_STEP);
}

// A legend is as high as its rows.
void fitInto(ColourBar& bar, double top, double height, const QFontMetricsF& font)
{
    bar.categories = fittedRows(bar.categories, height, WIDEST_TITLE, font);
    if (!bar.categories.empty())
        height = static_cast<double>(bar.categories.size()) * font.height();
    bar.bar = QRectF(0, top, BAR_WIDTH, height);
    shortenTitle(bar, WIDEST_TITLE, font);
    bar.room = QRectF(0, top - 1.5 * font.height() - 3, widthOf(bar, font), 0);
    bar.room.setBottom(top + height + 0.5 * font.height());
}

// One beside the other at the right edge, below the mark.
void placeColourBars(std::vector<ColourBar>& bars, const OverlayRoom& room)
{
    const double lineHeight = room.font.height();
    const double top = EDGE + (room.mark() ? MARK_SIDE + EDGE : 0) + 1.5 * lineHeight;
    const double bottom = room.size.height() - EDGE - 0.5 * lineHeight;
    const double height = std::min(bottom - top, LONGEST_BAR);
    if (height < 4 * lineHeight)
        bars.clear();
    double width = 0;
    std::size_t numPlaced = 0;
    for (ColourBar& bar : bars) {
        fitInto(bar, top, height, room.font);
        width += bar.room.width() + GAP;
        if (width > 0.4 * room.size.width())
            break;
        ++numPlaced;
    }
    bars.resize(numPlaced);
    double right = room.size.width() - EDGE;
    for (auto bar = bars.rbegin(); bar != bars.rend(); ++bar) {
        right -= bar->room.width();
        bar->bar.translate(right, 0);
        bar->room.translate(right, 0);
        right -= GAP;
    }
}

std::optional<SceneOverlays::LengthBar> placeScaleBar(const OverlayRoom& room, const SceneCamera& camera)
{
    const double most = std::min(LONGEST_SCALE, 0.3 * room.size.width());
    if (!room.hasBearings || !camera.isOrthographic() || !room.hasRoomForNumbers())
        return {};
    const ScaleBar bar = scaleBarOf(camera.unitsPerPixel(1, room.cameraSize()), most);
    if (!(bar.length > 0))
        return {};
    const double width = std::max(bar.pixels, room.font.horizontalAdvance(bar.label));
    const double height = room.font.height() + 2 * SCALE_TICK;
    const QRectF place(EDGE, room.size.height() - EDGE - height, width, height);
    const QPointF leftEnd(EDGE + 0.5 * (width - bar.pixels), place.bottom() - SCALE_TICK);
    return SceneOverlays::LengthBar{bar, leftEnd, place};
}

std::vector<Bearing> bearingsIn(const OverlayRoom& room, const SceneCamera& camera, const SceneBox& box)
{
    if (!room.hasBearings || !room.hasRoomForNumbers() || box.isEmpty())
        return {};
    return bearingsOf(boxOf(box), toPicture(camera, room.cameraSize()), room.font);
}

std::vector<QRectF> roomsOf(const SceneOverlays& overlays)
{
    std::vector<QRectF> rooms;
    for (const ColourBar& bar : overlays.colourBars)
        rooms.push_back(bar.room);
    if (overlays.scaleBar)
        rooms.push_back(overlays.scaleBar->room);
    if (overlays.mark)
        rooms.push_back(*overlays.mark);
    return rooms;
}

// The part of a line that is in the picture, as places from 0 to 1 along it; none if it passes by.
std::optional<std::pair<double, double>> partIn(const QRectF& picture, const QLineF& line)
{
    double first = 0;
    double last = 1;
    const auto cut = [&first, &last](double start, double along, double least, double most) {
        const double one = (least - start) / along;
        const double other = (most - start) / along;
        if (along == 0 && (start < least || start > most))
            last = -1;
        else if (along != 0) {
            first = std::max(first, std::min(one, other));
            last = std::min(last, std::max(one, other));
        }
    };
    cut(line.x1(), line.dx(), picture.left(), picture.right());
    cut(line.y1(), line.dy(), picture.top(), picture.bottom());
    return first <= last ? std::optional(std::pair(first, last)) : std::nullopt;
}

// The places that are taken, by texts that are whole in the picture and touch no other.
class FreePlaces
{
public:
    FreePlaces(const QSizeF& size, std::vector<QRectF> taken)
        : m_Picture(QPointF(), size)
        , m_Taken(std::move(taken))
    {}

    const QRectF& picture() const { return m_Picture; }

    bool take(const QRectF& box)
    {
        const auto touches = [&box](const QRectF& other) { return other.intersects(box); };
        if (!m_Picture.contains(box) || std::any_of(m_Taken.begin(), m_Taken.end(), touches))
            return false;
        m_Taken.push_back(box);
        return true;
    }

private:
    QRectF m_Picture;
    std::vector<QRectF> m_Taken;
};

// In the middle of what is seen of the edge, or else somewhere along it.
bool placeTitle(Bearing& bearing, FreePlaces& places)
{
    const auto part = partIn(places.picture(), bearing.edge);
    if (!part)
        return false;
    for (const double along : {0.5, 0.35, 0.65, 0.2, 0.8, 0.05, 0.95}) {
        const QPointF place = bearing.edge.pointAt(part->first + along * (part->second - part->first));
        const QRectF box = bearing.titleBox.translated(place - bearing.edge.center());
        if (!places.take(box))
            continue;
        bearing.titleBox = box;
        return true;
    }
    return false;
}

// Takes away the texts that are cut by the edge of the picture, or that touch what stands there. Titles go before
// numbers: without theirs, which may say in what they count, numbers mean nothing.
void leaveOutWhatTouches(std::vector<Bearing>& bearings, FreePlaces places)
{
    for (Bearing& bearing : bearings)
        if (!placeTitle(bearing, places))
            bearing.title.clear();
    for (Bearing& bearing : bearings)
        for (Bearing::Tick& tick : bearing.ticks)
            if (!tick.label.isEmpty() && (bearing.title.isEmpty() || !places.take(tick.labelBox)))
                tick.label.clear();
}

QRectF boundsOf(const std::vector<Bearing>& bearings)
{
    QRectF bounds;
    for (const Bearing& bearing : bearings) {
        bounds |= bearing.titleBox;
        for (const Bearing::Tick& tick : bearing.ticks)
            if (!tick.label.isEmpty())
                bounds |= tick.labelBox;
    }
    return bounds;
}

// Adds what the numbers lack. False if they lack nothing.
bool widen(SceneCamera::Margins& margins, const QRectF& bounds, const QRectF& free)
{
    constexpr double LEAST = 0.5;
    const double left = std::max(free.left() - bounds.left(), 0.0);
    const double top = std::max(free.top() - bounds.top(), 0.0);
    const double right = std::max(bounds.right() - free.right(), 0.0);
    const double bottom = std::max(bounds.bottom() - free.bottom(), 0.0);
    margins = {margins.left + left, margins.top + top, margins.right + right, margins.bottom + bottom};
    return left + top + right + bottom > LEAST;
}

void drawBacking(QPainter& painter, const QRectF& room, QColor ground)
{
    constexpr double OPACITY = 0.7;
    ground.setAlphaF(OPACITY);
    painter.fillRect(room.adjusted(-4, -2, 4, 2), ground);
}

} // namespace

std::optional<QRectF> OverlayRoom::mark() const
{
    constexpr double SMALLEST = 200; // picture that has one
    if (size.width() < SMALLEST || size.height() < SMALLEST)
        return {};
    return QRectF(size.width() - EDGE - MARK_SIDE, EDGE, MARK_SIDE, MARK_SIDE);
}

bool OverlayRoom::hasRoomForNumbers() const
{
    return size.width() >= 8 * font.height() && size.height() >= 6 * font.height();
}

ToPicture toPicture(const SceneCamera& camera, const SceneCamera::Size& size)
{
    return [camera, size](const Vector3d& point) -> std::optional<QPointF> {
        const SceneCamera::Pixel pixel = camera.project(point, size);
        if (!camera.isOrthographic() && pixel.depth <= 0)
            return {};
        return QPointF(pixel.x, pixel.y);
    };
}

std::vector<ColourBar> colourBarsOf(SceneModel& model, const std::string& selected)
{
    std::vector<ColourBar> bars;
    std::vector<QString> paths;
    for (const SceneModel::Placed& placed : model.visibleItems()) {
        const std::optional<ColourBar> bar = colourBarOf(*placed.item);
        if (!bar)
            continue;
        if (*placed.path == selected)
            return {*bar};
        if (std::any_of(bars.begin(), bars.end(), [&bar](const ColourBar& other) { return areAlike(*bar, other); }))
            continue;
        bars.push_back(*bar);
        paths.push_back(shown(*placed.path));
    }
    bars.resize(std::min<std::size_t>(bars.size(), 2));
    for (std::size_t i = 0; bars.size() > 1 && i < bars.size(); ++i)
        bars[i].field = paths[i] + ": " + bars[i].field;
    return bars;
}

SceneOverlays placeOverlays(
    const OverlayRoom& room, const SceneCamera& camera, const SceneBox& box, std::vector<ColourBar> colourBars)
{
    SceneOverlays overlays;
    overlays.mark = room.mark();
    overlays.colourBars = std::move(colourBars);
    placeColourBars(overlays.colourBars, room);
    overlays.scaleBar = placeScaleBar(room, camera);
    overlays.bearings = bearingsIn(room, camera, box);
    leaveOutWhatTouches(overlays.bearings, FreePlaces(room.size, roomsOf(overlays)));
    return overlays;
}

void fitWithOverlays(
    SceneCamera& camera, const OverlayRoom& room, const SceneBox& box, std::vector<ColourBar> colourBars)
{
    constexpr int MOST_STEPS = 6;
    constexpr double MOST_ROOM = 0.75;
    constexpr double LEAST_GAP = 3; // between the numbers and the edge
    placeColourBars(colourBars, room);
    QRectF free(QPointF(), room.size);
    if (!colourBars.empty())
        free.setRight(colourBars.front().room.left() - EDGE);
    if (camera.isOrthographic() && room.hasRoomForNumbers() && room.hasBearings)
        free.setBottom(free.bottom() - 2 * EDGE - room.font.height());
    SceneCamera::Margins margins{0, 0, room.size.width() - free.right(), room.size.height() - free.bottom()};
    const SceneCamera::Margins ofBars = margins;
    free.adjust(LEAST_GAP, LEAST_GAP, -LEAST_GAP, -LEAST_GAP);
    camera.fit(box, room.cameraSize(), margins);
    for (int step = 0; step < MOST_STEPS; ++step) {
        const std::vector<Bearing> bearings = bearingsIn(room, camera, box);
        if (bearings.empty() || !widen(margins, boundsOf(bearings), free))
            return;
        if (margins.left + margins.right > MOST_ROOM * room.size.width() ||
            margins.top + margins.bottom > MOST_ROOM * room.size.height())
            return camera.fit(box, room.cameraSize(), ofBars);
        camera.fit(box, room.cameraSize(), margins);
    }
}

void drawOverlays(QPainter& painter, const SceneOverlays& overlays, const QColor& ink, const QColor& ground)
{
    painter.save();
    painter.setPen(ink);
    painter.setBrush(Qt::NoBrush);
    painter.setRenderHint(QPainter::Antialiasing);
    drawBearings(painter, overlays.bearings);
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (const ColourBar& bar : overlays.colourBars) {
        drawBacking(painter, bar.room, ground);
        if (!bar.categories.empty())
            drawLegend(painter, bar.bar.topLeft(), bar.categories, bar.field);
        else
            drawColourBar(painter, bar.bar, findColourMap(bar.colourMap.toStdString()).value(), bar.range.first,
                bar.range.second, bar.field);
    }
    if (overlays.scaleBar) {
        drawBacking(painter, overlays.scaleBar->room, ground);
        drawScaleBar(painter, overlays.scaleBar->bar, overlays.scaleBar->leftEnd);
    }
    painter.restore();
}

} // namespace tavo
