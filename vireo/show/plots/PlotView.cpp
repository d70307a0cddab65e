#include "vireo/show/plots/PlotView.h"

#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <qwt_legend.h>
#include <qwt_plot.h>
#include <qwt_plot_canvas.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_layout.h>
#include <qwt_plot_renderer.h>

#include "tavo/base/files/saveFile.h"
#include "tavo/base/text/printable.h"
#include "vireo/show/plots/AxisNumbers.h"
#include "vireo/show/plots/PlotCurve.h"
#include "vireo/show/plots/curvesAsText.h"

namespace tavo {

namespace {

// Okabe and Ito's colours, which colour-blind people can tell apart; yellow last, since it is faint on white.
constexpr QRgb PALETTE[] = {
    0xFF0072B2, 0xFFD55E00, 0xFF009E73, 0xFFCC79A7, 0xFF56B4E9, 0xFFE69F00, 0xFF555555, 0xFFF0E442};

constexpr double MARGIN_OF_Y = 0.05;
constexpr std::size_t LONGEST_TEXT = 120;

QwtText plainText(const std::string& text)
{
    return {QString::fromStdString(printable(text, LONGEST_TEXT)), QwtText::PlainText};
}

QwtText axisTitle(const AxisUpdate& axis)
{
    QwtText title = plainText(axis.name ? axis.name->label : "");
    if (axis.name && !axis.name->unit.empty())
        title.setText(title.text() + (title.isEmpty() ? "[" : " [") + plainText(axis.name->unit).text() + "]",
            QwtText::PlainText);
    return title;
}

// What an axis goes over so that all of an extent is seen, with a margin that is a part of it.
AxisUpdate::Range rangeOf(const Extent& extent, double margin)
{
    if (extent.isEmpty())
        return {0, 1};
    const double largest = std::max(std::abs(extent.from), std::abs(extent.to));
    const double length = extent.to - extent.from;
    // A constant, or what doubles hardly tell from one, is in the middle.
    const double least = largest > 0 ? largest * 1e-12 : 1;
    if (!(length > least))
        return {extent.from - std::max(largest * 0.1, least), extent.to + std::max(largest * 0.1, least)};
    if (!std::isfinite(length))
        return {extent.from, extent.to};
    return {extent.from - margin * length, extent.to + margin * length};
}

QwtPlot* makePlot(QWidget* parent)
{
    auto* plot = new QwtPlot(parent);
    auto* canvas = new QwtPlotCanvas;
    canvas->setFrameStyle(QFrame::NoFrame);
    plot->setCanvas(canvas);
    plot->setAutoReplot(false);
    plot->plotLayout()->setAlignCanvasToScales(true);
    for (const int axis : {QwtPlot::xBottom, QwtPlot::yLeft})
        plot->setAxisScaleDraw(axis, new AxisNumbers);
    plot->setCanvasBackground(plot->palette().base());

    auto* grid = new QwtPlotGrid;
    QColor faint = plot->palette().color(QPalette::Text);
    faint.setAlphaF(0.15);
    grid->setPen(faint, 0);
    grid->attach(plot);
    return plot;
}

} // namespace

PlotView::PlotView(const std::string& name)
    : m_Plot(makePlot(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_Plot);
    m_Plot->setTitle(plainText(name));
    fit();
}

// The curves leave the plot before it goes.
PlotView::~PlotView() = default;

void PlotView::apply(ViewUpdate& update)
{
    auto& plot = static_cast<PlotUpdate&>(update);
    if (plot.isCleared)
        m_Curves.clear();
    for (CurveUpdate& curve : plot.curves)
        applyCurve(curve);
    if (plot.title)
        m_Plot->setTitle(plainText(*plot.title));
    m_X.merge(plot.x);
    m_Y.merge(plot.y);
    showAxis(QwtPlot::xBottom, m_X);
    showAxis(QwtPlot::yLeft, m_Y);
    showLegend();
    fit();
    m_Plot->replot();
}

void PlotView::applyCurve(CurveUpdate& update)
{
    auto found = std::find_if(
        m_Curves.begin(), m_Curves.end(), [&update](const auto& curve) { return curve->getName() == update.name; });
    if (!update.samples && update.appended.empty() && update.isRemoved) {
        if (found != m_Curves.end())
            m_Curves.erase(found);
        return;
    }
    if (found == m_Curves.end()) {
        const QRgb colour = PALETTE[m_NumColours++ % std::size(PALETTE)];
        found = m_Curves.insert(found, std::make_unique<PlotCurve>(update.name, colour));
        (*found)->attach(m_Plot);
    }
    (*found)->apply(update);
    (*found)->legendChanged();
}

void PlotView::showAxis(int axis, const AxisUpdate& update)
{
    m_Plot->setAxisTitle(axis, axisTitle(update));
}

void PlotView::showLegend()
{
    const bool isNeeded = m_Curves.size() > 1;
    if (isNeeded == (m_Plot->legend() != nullptr))
        return;
    m_Plot->insertLegend(isNeeded ? new QwtLegend : nullptr, QwtPlot::TopLegend);
    m_Plot->updateLegend();
}

void PlotView::fit()
{
    Extent x;
    Extent y;
    for (const auto& curve : m_Curves) {
        x.include(curve->getSamples().xExtent());
        y.include(curve->getSamples().yExtent());
    }
    const AxisUpdate::Range xRange = m_X.range.value_or(rangeOf(x, 0));
    const AxisUpdate::Range yRange = m_Y.range.value_or(rangeOf(y, MARGIN_OF_Y));
    m_Plot->setAxisScale(QwtPlot::xBottom, xRange.from, xRange.to);
    m_Plot->setAxisScale(QwtPlot::yLeft, yRange.from, yRange.to);
}

QImage PlotView::picture(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull())
        return image;
    const double dotsPerMetre = m_Plot->logicalDpiX() / 0.0254;
    image.setDotsPerMeterX(qRound(dotsPerMetre));
    image.setDotsPerMeterY(qRound(dotsPerMetre));
    image.fill(palette().color(QPalette::Window));
    QPainter painter(&image);
    QwtPlotRenderer renderer;
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardBackground);
    renderer.render(m_Plot, &painter, QRectF(QPointF(0, 0), size));
    return image;
}

std::string PlotView::saveData(const QString& file)
{
    std::vector<const PlotCurve*> curves;
    for (const auto& curve : m_Curves)
        curves.push_back(curve.get());
    return saveFile(file, curvesAsText(curves));
}

} // namespace tavo
