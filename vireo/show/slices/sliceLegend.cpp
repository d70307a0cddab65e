#include "vireo/show/slices/sliceLegend.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "vireo/show/scenes/colourBar.h"
#include "vireo/show/scenes/labelLegend.h"

namespace tavo {

namespace {

constexpr double MARGINS = 2; // in lines, on both sides of what stands there

struct Bar
{
    QRectF place;
    double from;
    double to;
};

// Of the overlay, if it has one number a sample and a range that is one.
std::optional<Bar> barOf(const SlicesModel& model, const QRect& legend, bool hasLabels, double line)
{
    constexpr double WIDTH = 14;
    constexpr double LONGEST = 200;
    if (model.overlay().isEmpty() || model.overlay().look().isColour())
        return {};
    const ImageLook& look = model.overlay().look();
    const double top = legend.top() + 2.5 * line;
    const double rest = hasLabels ? legend.height() / 2.0 : 2 * line;
    const Bar bar{{legend.left() + line / 2, top, WIDTH, std::min(LONGEST, legend.bottom() - rest - top)},
        static_cast<double>(look.from), static_cast<double>(look.to)};
    return std::isfinite(bar.to - bar.from) ? std::optional(bar) : std::nullopt;
}

std::vector<LegendRow> rowsOf(const SlicesModel& model, const std::set<std::int64_t>& labels)
{
    std::vector<LegendRow> rows;
    for (const std::int64_t label : labels) {
        const RGBA8 colour = model.colourOfLabel(label);
        const QString name = model.nameOfLabel(static_cast<double>(label));
        rows.push_back({QColor(colour[0], colour[1], colour[2]), name.isEmpty() ? QString::number(label) : name});
    }
    return rows;
}

QString translated(const char* text)
{
    return QCoreApplication::translate("tavo::SlicesView", text);
}

} // namespace

// As wide as what stands in it; names are shortened, numbers are not.
int widthOfSliceLegend(const SlicesModel& model, const QSize& picture, const QFontMetrics& font)
{
    constexpr int FEWEST = 10; // letters
    constexpr int MOST = 26;
    constexpr int LEAST_PART = 3;   // of the picture, at most
    constexpr int LEAST_LINES = 14; // in height
    const bool hasLabels = !model.labels().isEmpty();
    const std::optional<Bar> bar = barOf(model, QRect(QPoint(), picture), hasLabels, font.height());
    if (!bar && !hasLabels)
        return 0;
    const int letter = font.averageCharWidth();
    double text = FEWEST * letter;
    for (const auto& [label, name] : model.labelNames())
        text = std::max(text, widthOf({Qt::black, QString::fromStdString(name)}, QFontMetricsF(font)));
    int width = std::min(static_cast<int>(std::ceil(text + MARGINS * font.height())), MOST * letter);
    if (bar) {
        const double numbers =
            widthOfColourBar(bar->place, bar->from, bar->to, translated("overlay"), QFontMetricsF(font));
        width = std::max(width, static_cast<int>(std::ceil(numbers + font.height())));
    }
    const bool hasRoom = picture.width() >= LEAST_PART * width && picture.height() >= LEAST_LINES * font.height();
    return hasRoom ? width : 0;
}

void drawSliceLegend(
    QPainter& painter, const SlicesModel& model, const std::set<std::int64_t>& labels, const QRect& place)
{
    const QFontMetricsF font(painter.font());
    const double line = font.height();
    const double left = place.left() + line / 2;
    double top = place.top() + 2.5 * line;
    if (const std::optional<Bar> bar = barOf(model, place, !labels.empty(), line)) {
        drawColourBar(painter, bar->place, model.overlay().colours().map(), bar->from, bar->to, translated("overlay"));
        top = bar->place.bottom() + 3.5 * line;
    }
    if (!labels.empty())
        drawLegend(painter, {left, top},
            fittedRows(rowsOf(model, labels), place.bottom() - line / 2 - top,
                place.right() - left - (MARGINS - 0.5) * line, font),
            translated("labels"));
}

} // namespace tavo
