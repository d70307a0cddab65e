#include "vireo/show/scenes/SceneMarks.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace tavo {

namespace {

constexpr std::size_t MOST_PINS = 2;
constexpr double MARK_RADIUS = 4;
constexpr double DISTANCE = 10; // from a mark to its label
constexpr double PADDING = 5;
constexpr double MARGIN = 4;      // between labels and the edges of the view
constexpr double MOST_WIDTH = 45; // of a label, in letters
constexpr int DIGITS = 9;

// Paints marks and labels of one picture.
class MarkPainter
{
public:
    MarkPainter(QPainter& painter, const SceneCamera& camera, const QSize& size, const SceneLook& look)
        : m_Painter(painter)
        , m_Camera(camera)
        , m_Size{double(size.width()), double(size.height())}
        , m_View(QPointF(), QSizeF(size))
        , m_Look(look)
    {
        m_Painter.setRenderHint(QPainter::Antialiasing);
    }

    // Where a place is seen, if it is.
    std::optional<QPointF> pixelOf(const Vector3d& place) const
    {
        const SceneCamera::Pixel pixel = m_Camera.project(place, m_Size);
        const QPointF point(pixel.x, pixel.y);
        if ((!m_Camera.isOrthographic() && pixel.depth <= 0) || !m_View.contains(point))
            return {};
        return point;
    }

    void mark(const QPointF& pixel)
    {
        m_Painter.setBrush(Qt::NoBrush);
        for (const auto& [colour, width] : {std::pair(m_Look.ground, 4.0), std::pair(m_Look.ink, 1.5)}) {
            m_Painter.setPen(QPen(colour, width));
            m_Painter.drawEllipse(pixel, MARK_RADIUS, MARK_RADIUS);
        }
    }

    void join(const QPointF& one, const QPointF& other)
    {
        for (const auto& [colour, width] : {std::pair(m_Look.ground, 4.0), std::pair(m_Look.ink, 1.5)}) {
            m_Painter.setPen(QPen(colour, width));
            m_Painter.drawLine(one, other);
        }
    }

    void label(const QPointF& beside, const std::vector<std::string>& lines)
    {
        const QFontMetricsF metrics(m_Painter.font(), m_Painter.device());
        const double frame = 2 * (PADDING + MARGIN);
        const QSizeF room(
            std::min(m_View.width() - frame, MOST_WIDTH * metrics.averageCharWidth()), m_View.height() - frame);
        const QStringList fitted = fittedLines(lines, metrics, room);
        double width = 0;
        for (const QString& line : fitted)
            width = std::max(width, metrics.horizontalAdvance(line));
        const QSizeF size(width + 2 * PADDING, fitted.size() * metrics.lineSpacing() + 2 * PADDING);
        const QRectF box = placeOfLabel(size, beside, m_View, m_Labels);
        if (fitted.isEmpty() || !m_View.contains(box))
            return;
        m_Labels.push_back(box);
        m_Painter.setPen(QPen(m_Look.ink, 1));
        m_Painter.setBrush(m_Look.ground);
        m_Painter.drawRoundedRect(box, PADDING, PADDING);
        for (int i = 0; i < fitted.size(); ++i)
            m_Painter.drawText(
                box.topLeft() + QPointF(PADDING, PADDING + i * metrics.lineSpacing() + metrics.ascent()), fitted[i]);
    }

private:
    QPainter& m_Painter;
    const SceneCamera& m_Camera;
    SceneCamera::Size m_Size;
    QRectF m_View;
    const SceneLook& m_Look;
    std::vector<QRectF> m_Labels;
};

void paintMarks(MarkPainter& painter, const std::vector<ScenePick>& marks)
{
    std::vector<std::optional<QPointF>> pixels;
    for (const ScenePick& mark : marks)
        pixels.push_back(painter.pixelOf(mark.picked.place));
    const bool isDistanceSeen = marks.size() == MOST_PINS && pixels[0] && pixels[1];
    if (isDistanceSeen)
        painter.join(*pixels[0], *pixels[1]);
    for (const std::optional<QPointF>& pixel : pixels)
        if (pixel)
            painter.mark(*pixel);
    for (std::size_t i = 0; i < marks.size(); ++i)
        if (pixels[i])
            painter.label(*pixels[i], marks[i].lines);
    if (isDistanceSeen)
        painter.label(0.5 * (*pixels[0] + *pixels[1]), distanceLines(marks[0].picked.place, marks[1].picked.place,
                                                           std::max(marks[0].uncertainty, marks[1].uncertainty)));
}

// Of the digits in front of that of the uncertainty, the first ones.
std::string rounded(double number, double uncertainty)
{
    const double lastDigit = uncertainty > 0 ? std::ceil(std::log10(uncertainty)) : -HUGE_VAL;
    const double digits = 1 + std::floor(std::log10(std::abs(number))) - lastDigit;
    if (!(digits >= 1)) // nothing is left of it
        return "0";
    return QString::number(number, 'g', static_cast<int>(std::min<double>(digits, DIGITS))).toStdString();
}

} // namespace

std::vector<std::string> distanceLines(const Vector3d& from, const Vector3d& to, double uncertainty)
{
    const Vector3d away = to - from;
    const auto line = [both = 2 * uncertainty](
                          const char* name, double number) { return name + (' ' + rounded(number, both)); };
    return {line("distance", std::hypot(away[0], away[1], away[2])), line("dx", away[0]), line("dy", away[1]),
        line("dz", away[2])};
}

QStringList fittedLines(const std::vector<std::string>& lines, const QFontMetricsF& metrics, const QSizeF& room)
{
    const auto elided = [&](const QString& line) { return metrics.elidedText(line, Qt::ElideRight, room.width()); };
    const auto most = static_cast<std::size_t>(std::max(std::floor(room.height() / metrics.lineSpacing()), 0.0));
    const std::size_t number = lines.size() <= most ? lines.size() : std::max<std::size_t>(most, 1) - 1;
    QStringList fitted;
    for (std::size_t i = 0; i < number; ++i)
        fitted += elided(QString::fromStdString(lines[i]));
    if (number < lines.size() && most > 0)
        fitted += elided(QStringLiteral("… and %1 more").arg(lines.size() - number));
    return fitted;
}

QRectF placeOfLabel(const QSizeF& size, const QPointF& beside, const QRectF& view, const std::vector<QRectF>& others)
{
    const QRectF room = view.adjusted(MARGIN, MARGIN, -MARGIN, -MARGIN);
    const auto within = [&room](QRectF box) {
        box.moveLeft(std::max(std::min(box.left(), room.right() - box.width()), room.left()));
        box.moveTop(std::max(std::min(box.top(), room.bottom() - box.height()), room.top()));
        return box;
    };
    const double rights[] = {beside.x() + DISTANCE, beside.x() - DISTANCE - size.width()};
    const double downs[] = {beside.y() + DISTANCE, beside.y() - DISTANCE - size.height()};
    std::optional<QRectF> best;
    for (const double top : downs)
        for (const double left : rights) {
            const QRectF box(QPointF(left, top), size);
            const bool isFree = std::none_of(
                others.begin(), others.end(), [&box](const QRectF& other) { return other.intersects(box); });
            if (room.contains(box) && isFree)
                return box;
            if (room.contains(box) && !best)
                best = box;
        }
    return best ? *best : within(QRectF(beside + QPointF(DISTANCE, DISTANCE), size));
}

void SceneMarks::hover(std::optional<ScenePick> pick)
{
    m_Hovered = std::move(pick);
}

void SceneMarks::pin(ScenePick pick)
{
    m_PinsBefore = m_Pins;
    m_Pins.push_back(std::move(pick));
    if (m_Pins.size() > MOST_PINS)
        m_Pins.erase(m_Pins.begin());
}

void SceneMarks::takeBackPin()
{
    m_Pins = m_PinsBefore;
}

bool SceneMarks::clear()
{
    const bool wereAny = !m_Pins.empty();
    m_Pins.clear();
    m_PinsBefore.clear();
    return wereAny;
}

void SceneMarks::follow(SceneModel& model)
{
    if (!m_Hovered && m_Pins.empty() && m_PinsBefore.empty())
        return;
    const std::vector<SceneModel::Placed> items = model.visibleItems();
    const auto isGone = [&items](ScenePick& mark) {
        const auto found = std::find_if(items.begin(), items.end(),
            [&mark](const SceneModel::Placed& placed) { return *placed.path == mark.picked.path; });
        if (found != items.end())
            mark.picked.place = found->matrix * mark.local;
        return found == items.end();
    };
    if (m_Hovered && isGone(*m_Hovered))
        m_Hovered.reset();
    std::erase_if(m_Pins, isGone);
    std::erase_if(m_PinsBefore, isGone);
}

void SceneMarks::paint(QPainter& painter, const SceneCamera& camera, const QSize& size, const SceneLook& look) const
{
    MarkPainter marks(painter, camera, size, look);
    paintMarks(marks, m_Pins);
    const bool isPinned = m_Hovered && std::any_of(m_Pins.begin(), m_Pins.end(), [this](const ScenePick& pin) {
        return pin.picked.path == m_Hovered->picked.path && pin.lines == m_Hovered->lines;
    });
    if (m_Hovered && !isPinned)
        paintMarks(marks, {*m_Hovered});
}

void SceneMarks::paintPins(QPainter& painter, const SceneCamera& camera, const QSize& size, const SceneLook& look) const
{
    MarkPainter marks(painter, camera, size, look);
    paintMarks(marks, m_Pins);
}

} // namespace tavo
