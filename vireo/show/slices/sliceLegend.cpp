#include "vireo/show/slices/sliceLegend.h"

#include <QCoreApplication>
#include <algorithm>
#include <cmath>
#include <vector>

#include "vireo/show/scenes/colourBar.h"
#include "vireo/show/scenes/labelLegend.h"

namespace tavo {

namespace {

constexpr double MARGINS = 2; // in lines, on both sides of what stands there

bool hasBar(const SlicesModel& model)
{
    return !model.overlay().isEmpty() && !model.overlay().look().isColour();
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

// As wide as what stands in it, within limits.
int widthOfSliceLegend(const SlicesModel& model, const QSize& picture, const QFontMetrics& font)
{
    constexpr int FEWEST = 10; // letters
    constexpr int MOST = 26;
    constexpr int LEAST_PART = 3;   // of the picture, at most
    constexpr int LEAST_LINES = 14; // in height
    if (!hasBar(model) && model.labels().isEmpty())
        return 0;
    const int letter = font.averageCharWidth();
    double text = FEWEST * letter;
    for (const auto& [label, name] : model.labelNames())
        text = std::max(text, widthOf({Qt::black, QString::fromStdString(name)}, QFontMetricsF(font)));
    const int width = std::min(static_cast<int>(std::ceil(text + MARGINS * font.height())), MOST * letter);
    const bool hasRoom = picture.width() >= LEAST_PART * width && picture.height() >= LEAST_LINES * font.height();
    return hasRoom ? width : 0;
}

void drawSliceLegend(
    QPainter& painter, const SlicesModel& model, const std::set<std::int64_t>& labels, const QRect& place)
{
    constexpr double WIDTH = 14; // of the bar
    constexpr double LONGEST = 200;
    const QFontMetricsF font(painter.font());
    const double line = font.height();
    const double left = place.left() + line / 2;
    double top = place.top() + 2.5 * line;
    if (hasBar(model)) {
        const ShownLayer& overlay = model.overlay();
        const double rest = labels.empty() ? 2 * line : place.height() / 2.0;
        const QRectF bar(left, top, WIDTH, std::min(LONGEST, place.bottom() - rest - top));
        drawColourBar(painter, bar, overlay.colours().map(), static_cast<double>(overlay.look().from),
            static_cast<double>(overlay.look().to), translated("overlay"));
        top = bar.bottom() + 3.5 * line;
    }
    if (!labels.empty())
        drawLegend(painter, {left, top},
            fittedRows(rowsOf(model, labels), place.bottom() - line / 2 - top,
                place.right() - left - (MARGINS - 0.5) * line, font),
            translated("labels"));
}

} // namespace tavo
