#pragma once

#include <QStringList>
#include <qwt_plot_item.h>
#include <string>

#include "vireo/show/plots/marks.h"
#include "vireo/show/plots/polyline.h"

namespace tavo {

PixelMap pixelMapOf(const QwtScaleMap& map);

// A curve as an item of a Qwt plot.
class PlotCurve : public QwtPlotItem
{
public:
    // The `number` chooses its colour, unless it is sent one.
    PlotCurve(const std::string& name, std::size_t number);

    // While it is still a curve, which the legend may ask.
    ~PlotCurve() override { detach(); }

    const std::string& getName() const { return m_Name; }
    const CurveStore& getSamples() const { return m_Samples; }

    // What has numbers of its own: a band has two edges, and all others are one.
    struct Edge
    {
        std::string name;
        const CurveStore* samples;
    };
    std::vector<Edge> edges() const;

    const QColor& getColour() const { return m_Colour; }

    // What has to be seen of it; bars stand on zero. On a logarithmic axis that begins with the smallest positive
    // number.
    Extent xExtent() const;
    Extent yExtentWithin(double firstX, double lastX) const;

    // Which of its axes are logarithmic.
    void setLog(bool isXLog, bool isYLog);

    // Whether the legend says more of it than its name.
    bool hasNotes() const { return !notes().isEmpty(); }

    // Whether samples were ever sent to it, if only none; before that the legend does not have it.
    bool hasCome() const { return m_HasCome; }

    // Whether its looks were sent, and nothing that has them.
    bool isMissing() const { return !m_HasCome && m_HasLooks; }

    // Whether each sample holds until the next one.
    bool isSteps() const { return m_Kind == CurveKind::Steps; }

    // Whether something stands at an end of it along x that a plot ending there would cut: a mark, or a last step.
    bool needsMargin() const;

    // Whether what is drawn of it has zero for its ground.
    bool hasBars() const { return m_Kind == CurveKind::Bars || m_Kind == CurveKind::Histogram; }

    // Whether it is counted by the second axis of y.
    bool isOnY2() const { return m_IsOnY2; }

    void apply(CurveUpdate& update);

    // Frees the samples. How many appended ones are kept stays.
    void dropSamples();

    // Takes a colour for a light or a dark ground.
    void showGround(bool isDark);

    // A curve that is hidden is faint in the legend.
    void setHidden(bool isHidden);

    // Thicker than it is.
    void drawLifted(QPainter& painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap) const;

    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap, const QRectF& canvas) const override;
    QwtGraphic legendIcon(int index, const QSizeF& size) const override;

private:
    void showName();
    std::size_t numInfinite() const;
    QStringList notes() const;
    void countNotPositive();
    bool isGap(std::size_t sample) const;
    void applySamples(CurveSamples& samples);
    void applyStyle(const std::string& style);
    double barWidth() const;
    void drawAs(QPainter& painter, const PixelMap& xMap, const PixelMap& yMap, bool isLifted) const;
    void drawLines(QPainter& painter, const PixelMap& xMap, const PixelMap& yMap, double liftedBy) const;
    void trace(const PixelMap& xMap, const PixelMap& yMap) const;

    std::string m_Name;
    CurveStore m_Samples;
    CurveStore m_Low; // of a band
    double m_Distance = 1;
    Qt::PenStyle m_PenStyle = Qt::SolidLine;
    double m_PenWidth = 1;
    bool m_HasMarks = false;
    bool m_HasCome = false;
    bool m_HasLooks = false;
    bool m_IsOnY2 = false;
    bool m_IsXLog = false;
    bool m_IsYLog = false;
    std::size_t m_NumNotPositive = 0; // of the samples that have no place on logarithmic axes
    std::size_t m_NumNotCounted = 0;  // of the values of a histogram: those that are infinite
    CurveKind m_Kind = CurveKind::Line;
    std::size_t m_Number;
    bool m_HasOwnColour = false;
    QColor m_Colour;

    // As they were drawn last: they stay while neither the data nor what is seen of them change.
    mutable std::optional<Polylines> m_Polylines;
    mutable Marks m_Marks;
    mutable PixelMap m_XMap;
    mutable PixelMap m_YMap;
};

} // namespace tavo
