#pragma once

#include <QPointF>
#include <QRectF>
#include <QString>
#include <QWidget>

namespace tavo {

// Lies over the canvas of a plot, and marks and names the sample that the pointer is on.
class PlotReadout : public QWidget
{
public:
    explicit PlotReadout(QWidget* canvas);

    void show(const QPointF& sample, const QColor& colour, const QString& text);
    void clear();

    // Empty if none is named.
    const QString& text() const { return m_Text; }

    // Beside the sample, and on the canvas.
    const QRectF& placeOfText() const { return m_Box; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPointF m_Sample;
    QColor m_Colour;
    QString m_Text;
    QRectF m_Box;
};

} // namespace tavo
