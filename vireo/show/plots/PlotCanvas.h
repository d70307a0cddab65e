#pragma once

#include <QPixmap>
#include <qwt_plot_canvas.h>

namespace tavo {

// Where the curves of a plot are drawn. What is new is drawn at once into the window, since data that stream in may
// never be painted twice. What is painted again, because something above it has changed, is kept as a picture from then
// on.
class PlotCanvas : public QwtPlotCanvas
{
    Q_OBJECT

public:
    PlotCanvas();

    // Has what is new drawn; Qwt calls it by its name.
    Q_INVOKABLE void replot();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void drawInto(QPaintDevice& device);

    bool m_IsNew = true;
    QPixmap m_Kept;
};

} // namespace tavo
