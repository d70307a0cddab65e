#include "vireo/show/plots/PlotView.h"

#include <QBuffer>
#include <QEvent>
#include <QFileInfo>
#include <QFontInfo>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <qwt_plot.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_renderer.h>
#include <qwt_scale_engine.h>
#include <qwt_scale_widget.h>
#include <qwt_text_label.h>
#include <qwt_transform.h>
#include <set>
#include <string_view>

#include "tavo/base/files/saveFile.h"
#include "tavo/base/text/printable.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/show/plots/AxisNumbers.h"
#include "vireo/show/plots/CurveLift.h"
#include "vireo/show/plots/LinesAcross.h"
#include "vireo/show/plots/PlotCanvas.h"
#include "vireo/show/plots/PlotCurve.h"
#include "vireo/show/plots/PlotGestures.h"
#include "vireo/show/plots/PlotGrid.h"
#include "vireo/show/plots/PlotLegend.h"
#include "vireo/show/plots/PlotMeasure.h"
#include "vireo/show/plots/calendarTicks.h"
#include "vireo/show/plots/curvesAsText.h"
#include "vireo/show/plots/divideAxis.h"
#include "vireo/show/plots/gesturesOfPlots.h"
#include "vireo/show/plots/nearestSample.h"
#include "vireo/show/plots/plainText.h"
#include "vireo/show/window/shownText.h"

namespace tavo {

namespace {

// Qwt's axes, in the order of ours.
constexpr std::array<int, PlotSight::NUM_AXES> QWT_AXES = {QwtPlot::xBottom, QwtPlot::yLeft, QwtPlot::yRight};

constexpr int MARGIN = 8;
constexpr double TITLE_SIZE = 1.1; // of the numbers' size
constexpr double MARGIN_OF_Y = 0.05;
constexpr double MARGIN_OF_MARKS = 0.02; // along x
constexpr std::size_t LONGEST_TEXT = 120;
constexpr int LONGEST_WAIT = 1000; // in milliseconds, of looks for their curve

QString shortText(const std::string& text)
{
    return shownText(text, LONGEST_TEXT);
}

// What is left of the label where that is too long.
QwtText axisTitle(const AxisUpdate& axis, const AxisDivision& division, double pixels, const QFontMetricsF& font)
{
    QString label;
    if (axis.name)
        label = shortText(axis.name->label);
    else if (axis.isTime.value_or(false))
        label = PlotView::tr("time");
    QStringList parts;
    if (!division.unit.isEmpty())
        parts += '[' + shortText(division.unit.toStdString()) + ']';
    parts += division.offset;
    const double room = pixels - font.horizontalAdvance(' ' + parts.join(' '));
    parts.prepend(font.elidedText(label, Qt::ElideRight, room));
    parts.removeAll(QString());
    return plainText(parts.join(' '));
}

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Base).lightness() < 128;
}

// A part of the way from one colour to another; some programs that read SVG know no opacity of lines.
QColor between(const QColor& from, const QColor& to, double part)
{
    const auto mix = [part](double a, double b) { return a + part * (b - a); };
    return QColor::fromRgbF(
        mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()), mix(from.blueF(), to.blueF()));
}

// What an axis goes over so that all of an extent is seen, with a margin that is a part of it. A constant, or what
// doubles hardly tell from one, is in the middle.
AxisUpdate::Range rangeOf(const Extent& extent, double margin)
{
    constexpr double LARGEST = PlotSight::LARGEST;
    if (extent.isEmpty())
        return {0, 1};
    const double from = std::max(extent.from, -LARGEST);
    const double to = std::min(extent.to, LARGEST);
    const double largest = std::max(std::abs(from), std::abs(to));
    const double length = to - from;
    const double least = largest > 0 ? std::max(largest * PlotSight::SMALLEST_PART, 1e-280) : 1;
    if (!(length > least))
        return {from - std::max(largest * 0.1, least), to + std::max(largest * 0.1, least)};
    return {std::max(from - margin * length, -LARGEST), std::min(to + margin * length, LARGEST)};
}

// The same along an axis that has positive numbers alone. Of more decades than it can have, it has the highest.
AxisUpdate::Range logRangeOf(const Extent& extent, double margin)
{
    if (extent.isEmpty() || extent.from <= 0)
        return {1, 10};
    if (extent.from == extent.to)
        return {extent.from / 10, extent.from * 10};
    const double factor = std::pow(10, margin * (std::log10(extent.to) - std::log10(extent.from)));
    const double to = std::min(extent.to, 1e307 / factor) * factor;
    return {std::max({extent.from / factor, to / PlotSight::LARGEST_RATIO, 1e-300}), to};
}

// The same along a clock: a moment has some seconds around it, not some years.
AxisUpdate::Range timeRangeOf(const Extent& extent, double margin)
{
    constexpr double SECONDS = 2;
    const double largest = std::max(std::abs(extent.from), std::abs(extent.to));
    if (extent.isEmpty() || extent.to / 2 - extent.from / 2 > largest * PlotSight::SMALLEST_PART)
        return rangeOf(extent, margin);
    const double around = SECONDS * ticksPerSecond(largest);
    return {extent.from - around, extent.to + around};
}

// Bars stand on the axis where nothing goes below zero, or hang from it where nothing goes above.
AxisUpdate::Range onGround(AxisUpdate::Range range, const Extent& extent, bool hasBars)
{
    if (hasBars && extent.from == 0 && extent.to > 0)
        range.from = 0;
    if (hasBars && extent.to == 0 && extent.from < 0)
        range.to = 0;
    return range;
}

AxisUpdate::Range rangeOf(const Extent& extent, double margin, bool isLog)
{
    return isLog ? logRangeOf(extent, margin) : rangeOf(extent, margin);
}

// Of all numbers above zero; Qwt's own ends at 1e150.
class LogTransform : public QwtTransform
{
public:
    double transform(double value) const override { return std::log(value); }
    double invTransform(double value) const override { return std::exp(value); }
    QwtTransform* copy() const override { return new LogTransform; }
};

QwtScaleEngine* makeLogEngine()
{
    auto* const engine = new QwtLogScaleEngine;
    engine->setTransformation(new LogTransform);
    return engine;
}

QwtPlot* makePlot(QWidget* parent)
{
    auto* plot = new QwtPlot(parent);
    plot->setCanvas(new PlotCanvas);
    plot->setAutoReplot(false);
    plot->plotLayout()->setAlignCanvasToScales(true);
    for (const int axis : QWT_AXES) {
        plot->setAxisScaleDraw(axis, new AxisNumbers);
        plot->setAxisFont(axis, plot->font());
    }
    return plot;
}

QToolButton* makeFollowButton(QWidget* canvas)
{
    auto* button = new QToolButton(canvas);
    button->setObjectName("follow");
    button->setText(PlotView::tr("follow") + QStringLiteral(" ▸"));
    button->setToolTip(PlotView::tr("Show the newest data again (Space)"));
    button->setCursor(Qt::ArrowCursor);
    button->hide();
    return button;
}

// In the window's thread, in which all of them live.
std::vector<PlotView*>& allViews()
{
    static std::vector<PlotView*> views;
    return views;
}

QFont titleFont(QFont font)
{
    font.setPointSizeF(QFontInfo(font).pointSizeF() * TITLE_SIZE);
    font.setBold(true);
    return font;
}

// Axes end where their layout has put them. Qwt would ask them anew where that is, and they would answer for the
// widget.
class PictureRenderer : public QwtPlotRenderer
{
    void renderScale(
        const QwtPlot* plot, QPainter* painter, int axis, int, int, int base, const QRectF& place) const override
    {
        if (const QwtScaleWidget* const scale = plot->axisWidget(axis))
            QwtPlotRenderer::renderScale(
                plot, painter, axis, scale->startBorderDist(), scale->endBorderDist(), base, place);
    }
};

PlotSight::Axis yAxisOf(const PlotCurve& curve)
{
    return curve.isOnY2() ? PlotSight::Y2 : PlotSight::Y;
}

QString nameOf(const PlotCurve::Edge& edge)
{
    return shortText(edge.name);
}

// Among dense steps, whose jumps are all that is seen, as of any other curve.
std::optional<NearestSample> nearestSampleOf(const PlotCurve& curve, const CurveStore& samples, const PixelMap& xMap,
    const PixelMap& yMap, const QPointF& place, double radius)
{
    if (curve.isSteps())
        if (const std::optional<NearestSample> held = holdingSample(samples, xMap, yMap, place, radius))
            return held;
    return nearestSample(samples, xMap, yMap, place, radius);
}

} // namespace

PlotView::PlotView(const std::string& name)
    : m_Name(name)
    , m_Title(name)
    , m_Plot(makePlot(this))
    , m_Grid(new PlotGrid)
    , m_Lines(new LinesAcross)
    , m_Measure(new PlotMeasure)
    , m_Lift(new CurveLift(m_Plot->canvas()))
    , m_FollowButton(makeFollowButton(m_Plot->canvas()))
    , m_Gestures(std::make_unique<PlotGestures>(*this))
{
    allViews().push_back(this);
    connect(m_FollowButton, &QToolButton::clicked, this, [this] {
        m_Sight.setFrozen(false);
        showChoice();
    });
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(MARGIN, MARGIN, MARGIN, MARGIN);
    layout->addWidget(m_Plot);
    m_Plot->titleLabel()->setFont(titleFont(font()));
    setFocusProxy(m_Plot->canvas());
    m_Grid->attach(m_Plot);
    m_Lines->attach(m_Plot);
    m_Measure->attach(m_Plot);
    showColours();
    fit();
}

// The curves leave the plot before it goes.
PlotView::~PlotView()
{
    std::vector<PlotView*>& all = allViews();
    all.erase(std::find(all.begin(), all.end(), this));
}

void PlotView::makeRoom(const Replaced& replaced)
{
    const std::set<std::string_view> names(replaced.names.begin(), replaced.names.end());
    for (const auto& curve : m_Curves)
        if (replaced.isAll || names.count(curve->getName()))
            curve->dropSamples();
}

void PlotView::apply(ViewUpdate& update)
{
    auto& plot = static_cast<PlotUpdate&>(update);
    if (plot.isCleared)
        m_Curves.clear();
    m_Lines->apply(plot);
    for (CurveUpdate& curve : plot.curves)
        applyCurve(curve);
    if (plot.title)
        m_Title = *plot.title;
    applyAxis(PlotSight::X, plot.x);
    applyAxis(PlotSight::Y, plot.y);
    applyAxis(PlotSight::Y2, plot.y2);
    if (plot.window)
        m_Window = plot.window;
    m_Links.insert(plot.links.begin(), plot.links.end());
    m_HasAppended = std::any_of(
        m_Curves.begin(), m_Curves.end(), [](const auto& curve) { return curve->getSamples().isAppended(); });
    shareX(plot);
    showYAxes();
    showNotes();
    measure();
    sayWhatXHides();
    if (std::any_of(m_Curves.begin(), m_Curves.end(), [](const auto& curve) { return curve->isMissing(); }))
        QTimer::singleShot(LONGEST_WAIT, this, [this] { sayWhatWaits(); });
    showChoice();
}

void PlotView::shareX(const PlotUpdate& update)
{
    const std::vector<PlotView*> linked = linkedViews();
    shareScaleOfX(update, linked);
    std::optional<AxisUpdate::Range>& range = m_Axes[PlotSight::X].range;
    bool isLive = false;
    for (const PlotView* view : linked) {
        isLive = isLive || view->m_Window || view->m_HasAppended;
        if (view == this)
            continue;
        if (!update.x.range && view->m_Axes[PlotSight::X].range)
            range = view->m_Axes[PlotSight::X].range;
        if (!update.window && view->m_Window)
            m_Window = view->m_Window;
        if (view->m_Sight.isXChosen())
            m_Sight.takeX(view->m_Sight);
    }
    for (PlotView* view : linked) {
        view->m_Axes[PlotSight::X].range = range;
        view->m_Window = m_Window;
        view->m_Sight.setWanted(PlotSight::X, range);
        view->m_Sight.setLive(isLive);
    }
}

void PlotView::shareScaleOfX(const PlotUpdate& update, const std::vector<PlotView*>& linked)
{
    std::optional<bool>& isLog = m_Axes[PlotSight::X].isLog;
    std::optional<bool>& isTime = m_Axes[PlotSight::X].isTime;
    std::optional<bool>& chosen = m_LogChosen[PlotSight::X];
    for (const PlotView* view : linked) {
        if (!update.x.isLog && view->m_Axes[PlotSight::X].isLog)
            isLog = view->m_Axes[PlotSight::X].isLog;
        if (!update.x.isTime && view->m_Axes[PlotSight::X].isTime)
            isTime = view->m_Axes[PlotSight::X].isTime;
        if (view->m_LogChosen[PlotSight::X])
            chosen = view->m_LogChosen[PlotSight::X];
    }
    for (PlotView* view : linked) {
        view->m_Axes[PlotSight::X].isLog = isLog;
        view->m_Axes[PlotSight::X].isTime = isTime;
        view->m_LogChosen[PlotSight::X] = chosen;
        view->showScale(PlotSight::X);
        if (view != this)
            view->showNotes();
    }
}

// An axis that counts nothing is left out, but for one of the two.
void PlotView::showYAxes()
{
    const auto isOnY2 = [](const auto& curve) { return curve->isOnY2(); };
    const bool isLeftWanted = m_Axes[PlotSight::Y].name || m_Axes[PlotSight::Y].range;
    const bool hasAcross = !m_Lines->yExtent(false).isEmpty();
    const bool hasLeft =
        isLeftWanted || hasAcross || m_Curves.empty() || !std::all_of(m_Curves.begin(), m_Curves.end(), isOnY2);
    m_Plot->enableAxis(QwtPlot::yLeft, hasLeft);
    m_Plot->enableAxis(QwtPlot::yRight, std::any_of(m_Curves.begin(), m_Curves.end(), isOnY2));
    m_Grid->setYAxis(hasLeft ? QwtPlot::yLeft : QwtPlot::yRight);
}

void PlotView::applyCurve(CurveUpdate& update)
{
    auto found = std::find_if(
        m_Curves.begin(), m_Curves.end(), [&update](const auto& curve) { return curve->getName() == update.name; });
    if (update.isGoing()) {
        if (found != m_Curves.end())
            m_Curves.erase(found);
        return;
    }
    if (found == m_Curves.end()) {
        found = m_Curves.insert(found, std::make_unique<PlotCurve>(update.name, m_NumColours++));
        (*found)->showGround(isDark(palette()));
        (*found)->setHidden(m_Shown.isHidden(update.name));
        (*found)->attach(m_Plot);
    }
    (*found)->apply(update);
}

QString PlotView::namesOf(bool (*isMeant)(const CurveStore& samples)) const
{
    constexpr int MOST = 5;
    QStringList names;
    for (const auto& curve : m_Curves)
        if (isMeant(curve->getSamples()))
            names += shortText(curve->getName());
    return names.mid(0, MOST).join(", ") + (names.size() > MOST ? ", ..." : "");
}

void PlotView::sayWhatXHides()
{
    QStringList lines;
    const QString unsorted = namesOf([](const CurveStore& samples) { return !samples.isSorted(); });
    if (!unsorted.isEmpty())
        lines +=
            tr("Along x go to and fro: %1. Each of their samples is drawn, which takes longer. Where they cover the "
               "plot many times over, those are drawn that stick out.")
                .arg(unsorted);
    const QString shortened = namesOf([](const CurveStore& samples) { return samples.hasDropped(); });
    if (!shortened.isEmpty())
        lines += tr("The newest samples alone are kept, and older ones have gone: %1.").arg(shortened);
    axisWidget(PlotSight::X)->setToolTip(lines.join('\n'));
}

void PlotView::sayWhatWaits()
{
    for (const auto& curve : m_Curves)
        if (curve->isMissing())
            sayOnce("plot(\"" + printable(m_Name, LONGEST_TEXT) + "\"): there is no curve \"" +
                    printable(curve->getName(), LONGEST_TEXT) + "\", whose colour or style was sent");
}

void PlotView::applyAxis(PlotSight::Axis axis, AxisUpdate& update)
{
    AxisUpdate& kept = m_Axes[axis];
    kept.merge(update);
    m_Sight.setWanted(axis, kept.range);
    showScale(axis);
}

void PlotView::setLog(PlotSight::Axis axis, bool isLog)
{
    for (PlotView* view : axis == PlotSight::X ? linkedViews() : std::vector<PlotView*>{this}) {
        view->m_LogChosen[axis] = isLog;
        view->showScale(axis);
        view->showNotes();
    }
    showChoice();
}

void PlotView::showScale(PlotSight::Axis axis)
{
    if (m_LogChosen[axis])
        m_Axes[axis].isLog = m_LogChosen[axis];
    const bool isLog = m_Axes[axis].isLog.value_or(false);
    if (isLog == m_Sight.isLog(axis))
        return;
    m_Sight.setLog(axis, isLog);
    if (isLog)
        m_Plot->setAxisScaleEngine(QWT_AXES[axis], makeLogEngine());
    else
        m_Plot->setAxisScaleEngine(QWT_AXES[axis], new QwtLinearScaleEngine);
}

void PlotView::showNotes()
{
    for (const auto& curve : m_Curves)
        curve->setLog(isLog(PlotSight::X), isLog(yAxisOf(*curve)));
    showLegend();
}

bool PlotView::isGridShown() const
{
    return m_Grid->isVisible();
}

void PlotView::setGridShown(bool isShown)
{
    m_Grid->setVisible(isShown);
    m_Plot->replot();
}

void PlotView::showLegend()
{
    const bool hasNotes = std::any_of(
        m_Curves.begin(), m_Curves.end(), [](const auto& curve) { return curve->hasNotes() || !curve->isVisible(); });
    const auto numCurves =
        std::count_if(m_Curves.begin(), m_Curves.end(), [](const auto& curve) { return curve->hasCome(); });
    const bool isNeeded = numCurves > 1 || hasNotes;
    if (isNeeded == (m_Legend != nullptr))
        return;
    m_Legend = isNeeded ? makeLegend() : nullptr;
    m_Plot->insertLegend(m_Legend, QwtPlot::BottomLegend);
    m_Plot->updateLegend();
}

PlotLegend* PlotView::makeLegend()
{
    auto* const legend = new PlotLegend(*m_Plot);
    connect(legend, &PlotLegend::toggleWanted, this, [this](const PlotCurve* curve) {
        m_Shown.toggle(curve->getName());
        showHidden();
    });
    connect(legend, &PlotLegend::isolateWanted, this, [this](const PlotCurve* curve) {
        m_Shown.isolate(curve->getName());
        showHidden();
    });
    connect(legend, &PlotLegend::hovered, this, &PlotView::lift);
    return legend;
}

void PlotView::showHidden()
{
    for (const auto& curve : m_Curves)
        curve->setHidden(m_Shown.isHidden(curve->getName()));
    measure();
    showChoice();
}

void PlotView::setMeasuring(bool isMeasuring)
{
    const PixelMap x = pixelMap(PlotSight::X);
    const double third = (x.lastPixel - x.firstPixel) / 3;
    if (isMeasuring)
        m_Measure->turnOn(x.toValue(x.firstPixel + third), x.toValue(x.lastPixel - third));
    else
        m_Measure->turnOff();
    showMeasure();
}

void PlotView::showMeasure()
{
    measure();
    m_Plot->replot();
}

void PlotView::measure()
{
    const std::vector<const PlotCurve*> curves = visibleCurves();
    const AxisUpdate::Range x = m_Sight.range(PlotSight::X);
    if (isTime(PlotSight::X))
        m_Measure->measure(curves, {"s", ticksPerSecond(std::max(std::abs(x.from), std::abs(x.to)))});
    else
        m_Measure->measure(curves, {unitOf(PlotSight::X), 1});
}

void PlotView::lift(const PlotCurve* curve)
{
    m_Lift->hide();
    if (!curve)
        return;
    m_Lift->show([this, name = curve->getName()](QPainter& painter) {
        for (const auto& curve : m_Curves)
            if (curve->getName() == name && curve->isVisible())
                curve->drawLifted(painter, m_Plot->canvasMap(QwtPlot::xBottom), m_Plot->canvasMap(curve->yAxis()));
    });
}

void PlotView::showColours()
{
    const QPalette colours = palette();
    m_Plot->setCanvasBackground(colours.base());
    m_Grid->setPen(between(colours.color(QPalette::Base), colours.color(QPalette::Text), 0.15), 0);
    for (const auto& curve : m_Curves)
        curve->showGround(isDark(colours));
}

void PlotView::changeEvent(QEvent* event)
{
    View::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        showColours();
        m_Plot->replot();
    } else if (event->type() == QEvent::FontChange) {
        m_Plot->titleLabel()->setFont(titleFont(font()));
        showSight();
    }
}

void PlotView::resizeEvent(QResizeEvent* event)
{
    View::resizeEvent(event);
    showSight();
}

Extent PlotView::xExtent() const
{
    Extent extent;
    for (const auto& curve : m_Curves)
        if (curve->isVisible())
            extent.include(curve->xExtent());
    return extent;
}

double PlotView::xMargin() const
{
    const std::vector<const PlotCurve*> curves = visibleCurves();
    const auto needsMargin = [](const PlotCurve* curve) { return curve->needsMargin(); };
    return std::any_of(curves.begin(), curves.end(), needsMargin) ? MARGIN_OF_MARKS : 0;
}

void PlotView::fit()
{
    fitX();
    m_HasFollowed = m_HasFollowed && m_Sight.isFollowing();
    fitY(PlotSight::Y);
    fitY(PlotSight::Y2);
    m_HasFollowed = m_Sight.isFollowing() && !m_Curves.empty();
}

void PlotView::fitX()
{
    Extent extent;
    double margin = 0;
    for (const PlotView* view : linkedViews()) {
        extent.include(view->xExtent());
        margin = std::max(margin, view->xMargin());
    }
    if (extent.isEmpty() && !m_Shown.areAllShown())
        return; // where they were before they were hidden
    const bool isClock = isTime(PlotSight::X) && !isLog(PlotSight::X);
    AxisUpdate::Range range = isClock ? timeRangeOf(extent, margin) : rangeOf(extent, margin, isLog(PlotSight::X));
    // What a person has chosen stays as long as it is; a window begins with the data that there are.
    const bool isWindowFull = m_Window && extent.to - extent.from > *m_Window;
    const std::optional<double> length =
        m_Sight.followedLength() || !isWindowFull ? m_Sight.followedLength() : m_Window;
    if (length && *length > 0 && !extent.isEmpty())
        range = {extent.to - *length, extent.to};
    m_Sight.setFitted(PlotSight::X, range);
}

void PlotView::fitY(PlotSight::Axis axis)
{
    const AxisUpdate::Range x = m_Sight.range(PlotSight::X);
    Extent extent;
    bool hasBars = false;
    for (const auto& curve : m_Curves)
        if (curve->isVisible() && curve->isOnY2() == (axis == PlotSight::Y2)) {
            extent.include(curve->yExtentWithin(x.from, x.to));
            hasBars = hasBars || curve->hasBars();
        }
    if (extent.isEmpty() && !m_Shown.areAllShown())
        return;
    if (axis == PlotSight::Y)
        extent.include(m_Lines->yExtent(m_Sight.isLog(axis)));
    const AxisUpdate::Range range = onGround(rangeOf(extent, MARGIN_OF_Y, m_Sight.isLog(axis)), extent, hasBars);
    // What follows the newest data grows at once, and shrinks only to half, or it would never be at rest.
    const AxisUpdate::Range before = m_Sight.fitted(axis);
    const bool isWithin = range.from >= before.from && range.to <= before.to;
    if (m_HasFollowed && isWithin && range.to - range.from > (before.to - before.from) / 2)
        return;
    m_Sight.setFitted(axis, range);
}

std::vector<PlotView*> PlotView::linkedViews()
{
    const auto isLinked = [](const PlotView* a, const PlotView* b) { return a->m_Links.count(b->m_Name) > 0; };
    std::vector<PlotView*> linked{this};
    for (std::size_t i = 0; i < linked.size(); ++i)
        for (PlotView* view : allViews())
            if ((isLinked(linked[i], view) || isLinked(view, linked[i])) &&
                std::find(linked.begin(), linked.end(), view) == linked.end())
                linked.push_back(view);
    return linked;
}

void PlotView::showChoice()
{
    for (PlotView* view : linkedViews()) {
        view->m_Sight.takeX(m_Sight);
        view->fit();
        view->showSight();
    }
}

void PlotView::showSight()
{
    const QRectF plot = contentsRect().marginsRemoved(QMargins(MARGIN, MARGIN, MARGIN, MARGIN));
    if (isLaidOut(plot)) {
        static_cast<PlotCanvas*>(m_Plot->canvas())->replot();
    } else {
        divideAxes(plot);
        m_Plot->updateLayout();
        m_Plot->replot();
    }
    m_FollowButton->setVisible(m_Sight.isBehind());
    m_FollowButton->move(m_Plot->canvas()->width() - m_FollowButton->sizeHint().width() - MARGIN, MARGIN);
    m_Gestures->pointAgain();
}

QWidget* PlotView::axisWidget(PlotSight::Axis axis) const
{
    return m_Plot->axisWidget(QWT_AXES[axis]);
}

PixelMap PlotView::pixelMap(PlotSight::Axis axis) const
{
    return pixelMapOf(m_Plot->canvasMap(QWT_AXES[axis]));
}

QString PlotView::unitOf(PlotSight::Axis axis) const
{
    const AxisUpdate& shown = m_Axes[axis];
    return shown.name ? shortText(shown.name->unit) : QString();
}

QString PlotView::textOf(PlotSight::Axis axis, double value) const
{
    if (isTime(axis))
        return momentText(value, QTimeZone::systemTimeZone());
    const QString unit = unitOf(axis);
    return QString::number(value, 'g', 12) + (unit.isEmpty() ? "" : " ") + unit;
}

std::optional<PlotView::NamedSample> PlotView::sampleAt(const QPointF& pixel, double radius) const
{
    const double catchRadius = radius;
    const PixelMap xMap = pixelMap(PlotSight::X);
    std::optional<NamedSample> named;
    const CurveStore* samples = nullptr;
    double x = 0;
    for (const PlotCurve* curve : visibleCurves())
        for (const PlotCurve::Edge& edge : curve->edges()) {
            const PlotSight::Axis yAxis = yAxisOf(*curve);
            const std::optional<NearestSample> nearest =
                nearestSampleOf(*curve, *edge.samples, xMap, pixelMap(yAxis), pixel, radius);
            if (!nearest)
                continue;
            radius = nearest->distance;
            samples = edge.samples;
            x = curve->isSteps() ? xMap.toValue(nearest->pixel.x()) : samples->x(nearest->number);
            named = NamedSample{nearest->pixel, curve->getColour(),
                nameOf(edge) + '\n' + textOf(PlotSight::X, samples->x(nearest->number)) + '\n' +
                    textOf(yAxis, samples->y(nearest->number))};
        }
    if (named)
        named->text += othersAt(x, pixel, catchRadius, *samples);
    return named;
}

QString PlotView::othersAt(double x, const QPointF& pixel, double radius, const CurveStore& named) const
{
    constexpr std::size_t MOST = 10;
    std::vector<std::pair<double, QString>> others; // by their distance
    for (const PlotCurve* curve : visibleCurves())
        for (const PlotCurve::Edge& edge : curve->edges()) {
            const std::optional<std::size_t> i =
                sampleAtX(*edge.samples, curve->isSteps(), pixelMap(PlotSight::X), x, radius);
            if (edge.samples == &named || !i || !std::isfinite(edge.samples->y(*i)))
                continue;
            const PlotSight::Axis yAxis = yAxisOf(*curve);
            const double y = edge.samples->y(*i);
            others.emplace_back(
                std::abs(pixelMap(yAxis).toPixel(y) - pixel.y()), nameOf(edge) + ": " + textOf(yAxis, y));
        }
    std::sort(others.begin(), others.end());
    QString text;
    for (std::size_t i = 0; i < std::min(others.size(), MOST); ++i)
        text += '\n' + others[i].second;
    if (others.size() > MOST)
        text += '\n' + tr("and %1 more").arg(others.size() - MOST);
    return text;
}

bool PlotView::isLaidOut(const QRectF& plot)
{
    std::array<LayoutOfAxis, PlotSight::NUM_AXES> axes;
    for (const PlotSight::Axis axis : {PlotSight::X, PlotSight::Y, PlotSight::Y2}) {
        const AxisUpdate& shown = m_Axes[axis];
        const AxisUpdate::Range range = m_Sight.range(axis);
        const AxisUpdate::Name name = shown.name.value_or(AxisUpdate::Name());
        axes[axis] = {m_Plot->axisEnabled(QWT_AXES[axis]), m_Sight.isChosen(axis) || m_Sight.isFollowing(), range.from,
            range.to, name.label, name.unit, shown.isLog.value_or(false), shown.isTime.value_or(false)};
    }
    const int legend = m_Legend ? m_Legend->heightForWidth(static_cast<int>(plot.width())) : 0;
    Layout layout(plot, m_Plot->font(), m_Title, axes, legend);
    const bool isSame = m_Layout == layout;
    m_NumLaidOut = isSame ? m_NumLaidOut + 1 : 1;
    m_Layout = std::move(layout);
    // What is laid out once has begun with what was there before.
    return m_NumLaidOut > 2;
}

void PlotView::divideAxes(const QRectF& plot)
{
    // The height of the title is part of the layout, the width of the labels at y says what is left for x.
    showTitle(plot.width());
    m_Plot->plotLayout()->activate(m_Plot, plot);
    for (const PlotSight::Axis axis : {PlotSight::Y, PlotSight::Y2})
        divideAxis(axis, m_Plot->plotLayout()->canvasRect().height());
    m_Plot->updateAxes();
    m_Plot->plotLayout()->activate(m_Plot, plot);
    divideAxis(PlotSight::X, m_Plot->plotLayout()->canvasRect().width());
    showTitle(m_Plot->plotLayout()->titleRect().width());
    m_Plot->updateAxes();
}

void PlotView::showTitle(double pixels)
{
    const QFontMetricsF font(m_Plot->titleLabel()->font());
    m_Plot->setTitle(plainText(font.elidedText(shortText(m_Title), Qt::ElideRight, pixels)));
}

void PlotView::divideAxis(PlotSight::Axis axis, double pixels)
{
    const int qwtAxis = QWT_AXES[axis];
    const Qt::Orientation orientation = axis == PlotSight::X ? Qt::Horizontal : Qt::Vertical;
    const AxisDivision& division =
        m_Dividers[axis].divide(m_Axes[axis], m_Sight.range(axis), pixels, orientation, m_Plot->axisFont(qwtAxis));
    m_Plot->setAxisScaleDiv(qwtAxis, division.ticks);
    auto* const numbers = static_cast<AxisNumbers*>(m_Plot->axisScaleDraw(qwtAxis));
    numbers->setLabels(division.labels);
    keepRoom(axis, *numbers);
    m_Plot->setAxisTitle(qwtAxis, axisTitle(m_Axes[axis], division, pixels, QFontMetricsF(axisWidget(axis)->font())));
}

// Room for labels at y only grows while what is seen changes, or the plot would jump to and fro.
void PlotView::keepRoom(PlotSight::Axis axis, AxisNumbers& numbers)
{
    if (axis == PlotSight::X)
        return;
    const double room = numbers.minimumExtent();
    numbers.setMinimumExtent(0);
    if (m_Sight.isChosen(axis) || m_Sight.isFollowing())
        numbers.setMinimumExtent(std::max(room, numbers.extent(m_Plot->axisFont(QWT_AXES[axis]))));
}

QImage PlotView::picture(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull())
        return image;
    const double dotsPerMetre = m_Plot->logicalDpiX() / 0.0254;
    image.setDotsPerMeterX(qRound(dotsPerMetre));
    image.setDotsPerMeterY(qRound(dotsPerMetre));
    paint(image, size);
    return image;
}

void PlotView::paint(QPaintDevice& device, QSize size)
{
    const QRectF plot = QRectF(QPointF(0, 0), size).marginsRemoved(QMarginsF(MARGIN, MARGIN, MARGIN, MARGIN));
    if (m_Legend)
        m_Legend->setInPicture(true);
    divideAxes(plot);
    m_Layout.reset(); // which is that of the picture
    QPainter painter(&device);
    painter.fillRect(QRect(QPoint(0, 0), size), palette().color(QPalette::Window));
    PictureRenderer renderer;
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardBackground);
    renderer.render(m_Plot, &painter, plot);
    painter.end();
    if (m_Legend)
        m_Legend->setInPicture(false);
    showSight();
}

QStringList PlotView::pictureFormats() const
{
    return {"PNG (*.png)", "SVG (*.svg)", "PDF (*.pdf)"};
}

std::string PlotView::savePicture(const QString& file, QSize size)
{
    const QString ending = QFileInfo(file).suffix().toLower();
    const int dotsPerInch = m_Plot->logicalDpiX();
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (ending == "svg") {
        QSvgGenerator svg;
        svg.setOutputDevice(&buffer);
        svg.setSize(size);
        svg.setViewBox(QRect(QPoint(0, 0), size));
        svg.setResolution(dotsPerInch);
        paint(svg, size);
    } else if (ending == "pdf") {
        QPdfWriter pdf(&buffer);
        pdf.setResolution(dotsPerInch);
        pdf.setPageSize(QPageSize(QSizeF(size) / dotsPerInch, QPageSize::Inch));
        pdf.setPageMargins({0, 0, 0, 0});
        paint(pdf, size);
    } else {
        return View::savePicture(file, size);
    }
    return saveFile(file, buffer.data());
}

std::string PlotView::saveData(const QString& file)
{
    std::vector<const PlotCurve*> curves;
    for (const auto& curve : m_Curves)
        if (curve->hasCome())
            curves.push_back(curve.get());
    return saveCurves(file, curves);
}

std::function<std::string(const QString&)> PlotView::seenDataSaver()
{
    return [this](const QString& file) { return saveCurves(file, visibleCurves(), m_Sight.range(PlotSight::X)); };
}

std::vector<Gesture> PlotView::gestures() const
{
    return gesturesOfPlots();
}

std::vector<const PlotCurve*> PlotView::visibleCurves() const
{
    std::vector<const PlotCurve*> curves;
    for (const auto& curve : m_Curves)
        if (curve->isVisible() && curve->hasCome())
            curves.push_back(curve.get());
    return curves;
}

} // namespace tavo
