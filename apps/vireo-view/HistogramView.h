#pragma once

#include <QWidget>

#include "apps/vireo-view/Histogram.h"
#include "apps/vireo-view/TransferFunction.h"

namespace vireo_view {

// A picture of a transfer function over a histogram: the columns of the bins, each in the colour that its densities
// get, and above them the line of the opacity.
class HistogramView : public QWidget
{
    Q_OBJECT

public:
    explicit HistogramView(QWidget* parent);

    // Both are copied.
    void setHistogram(const Histogram& histogram);
    void setTransferFunction(const TransferFunction& transferFunction);

    QSize sizeHint() const override { return {280, 120}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void drawColumns(QPainter& painter) const;
    void drawOpacity(QPainter& painter) const;

    Histogram m_Histogram;
    TransferFunction m_TransferFunction;
};

} // namespace vireo_view
