#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>
#include <array>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "vireo/show/plots/PixelMap.h"
#include "vireo/show/plots/PlotSight.h"
#include "vireo/show/plots/PlotUpdate.h"
#include "vireo/show/plots/ShownCurves.h"
#include "vireo/show/plots/divideAxis.h"
#include "vireo/show/window/View.h"

class QwtPlot;
class QToolButton;

namespace tavo {

class AxisNumbers;
class CurveLift;
class CurveStore;
class LinesAcross;
class PlotCurve;
class PlotGestures;
class PlotGrid;
class PlotLegend;
class PlotMeasure;
struct Extent;

// A plot: its curves over axes with numbers, and a legend where there are several.
class PlotView : public View
{
public:
    explicit PlotView(const std::string& name);
    ~PlotView() override;

    void makeRoom(const Replaced& replaced) override;
    void apply(ViewUpdate& update) override;
    void sayWhatWaits() override;
    QImage picture(QSize size) override;
    std::string savePicture(const QString& file, QSize size) override; // SVG and PDF, too
    QStringList pictureFormats() const override;
    std::string saveData(const QString& file) override;
    std::function<std::string(const QString&)> seenDataSaver() override;
    std::vector<Gesture> gestures() const override;

    // Which part is seen; a person who has changed it is shown that, here and in the plots with the same x.
    PlotSight& getSight() { return m_Sight; }
    void showChoice();

    // The cursors between which is measured. Whoever moves them has that shown.
    PlotMeasure& getMeasure() { return *m_Measure; }
    void showMeasure();
    void setMeasuring(bool isMeasuring);

    // What a person has chosen goes before what the program asks for.
    bool isLog(PlotSight::Axis axis) const { return m_Sight.isLog(axis); }
    void setLog(PlotSight::Axis axis, bool isLog);
    bool isTime(PlotSight::Axis axis) const { return m_Axes[axis].isTime.value_or(false); }
    bool isGridShown() const;
    void setGridShown(bool isShown);

    QwtPlot& getPlot() { return *m_Plot; }
    QWidget* axisWidget(PlotSight::Axis axis) const;

    // From the numbers of an axis to pixels of the canvas.
    PixelMap pixelMap(PlotSight::Axis axis) const;

    struct NamedSample
    {
        QPointF pixel;
        QColor colour;
        QString text;
    };

    // The sample of any curve that is nearest to a pixel of the canvas, no farther from it than a radius; of steps the
    // one that holds there. Its text names those of all other curves at that x, too, the nearest first.
    std::optional<NamedSample> sampleAt(const QPointF& pixel, double radius) const;

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void applyCurve(CurveUpdate& update);
    void applyAxis(PlotSight::Axis axis, AxisUpdate& update);

    // Of x, linked plots show what any of them was asked for last, and what a person has chosen in any of them.
    void shareX(const PlotUpdate& update);
    void shareScaleOfX(const PlotUpdate& update, const std::vector<PlotView*>& linked);
    void showScale(PlotSight::Axis axis);
    void showYAxes();
    void showNotes();
    void showLegend();
    PlotLegend* makeLegend();
    void showHidden();
    void lift(const PlotCurve* curve);
    void paint(QPaintDevice& device, QSize size);
    void showColours();
    void fit();
    void fitX();
    void fitY(PlotSight::Axis axis);
    void showSight();
    Extent xExtent() const;
    double xMargin() const;
    std::vector<const PlotCurve*> visibleCurves() const;
    QString othersAt(double x, const QPointF& pixel, double radius, const CurveStore& named) const;
    QString namesOf(bool (*isMeant)(const CurveStore& samples)) const;
    void sayWhatXHides();
    void measure();
    QString unitOf(PlotSight::Axis axis) const;
    QString textOf(PlotSight::Axis axis, double value) const;

    // Itself and those that share its x, whoever was linked to whom.
    std::vector<PlotView*> linkedViews();

    // Whether a plot of that size lies where it did when it was shown before, which is so for most of what is sent.
    bool isLaidOut(const QRectF& plot);

    // Has the axes of a plot of that size numbered.
    void divideAxes(const QRectF& plot);
    void showTitle(double pixels);
    void divideAxis(PlotSight::Axis axis, double pixels);
    void keepRoom(PlotSight::Axis axis, AxisNumbers& numbers);

    // What the place of an axis depends on: whether it is enabled, and keeps its room; what it goes over; its label and
    // unit, and whether it is logarithmic or time.
    using LayoutOfAxis = std::tuple<bool, bool, double, double, std::string, std::string, bool, bool>;

    // And those of the others: the size of the plot, font, title, all axes, and the height of the legend.
    using Layout = std::tuple<QRectF, QFont, std::string, std::array<LayoutOfAxis, PlotSight::NUM_AXES>, int>;

    std::string m_Name;
    std::string m_Title;
    std::set<std::string> m_Links;
    std::optional<double> m_Window;
    bool m_HasAppended = false;
    bool m_HasFollowed = false;                       // when y was fitted last
    std::vector<std::unique_ptr<PlotCurve>> m_Curves; // in the order in which they came
    ShownCurves m_Shown;
    std::size_t m_NumColours = 0;
    std::array<AxisUpdate, PlotSight::NUM_AXES> m_Axes;
    std::array<AxisDivider, PlotSight::NUM_AXES> m_Dividers;
    std::optional<Layout> m_Layout;
    int m_NumLaidOut = 0;                                             // times that it was the same
    std::array<std::optional<bool>, PlotSight::NUM_AXES> m_LogChosen; // by a person
    PlotSight m_Sight;
    QwtPlot* m_Plot;
    PlotGrid* m_Grid;
    LinesAcross* m_Lines;
    PlotMeasure* m_Measure;
    PlotLegend* m_Legend = nullptr; // where there are several curves
    CurveLift* m_Lift;
    QToolButton* m_FollowButton;
    std::unique_ptr<PlotGestures> m_Gestures;
};

} // namespace tavo
