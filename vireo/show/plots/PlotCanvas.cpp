#include "vireo/show/plots/PlotCanvas.h"

#include <QPaintEvent>
#include <QPainter>
#include <qwt_plot.h>

namespace tavo {

PlotCanvas::PlotCanvas()
{
    setPaintAttribute(BackingStore, false);
    setFrameStyle(NoFrame);
}

void PlotCanvas::replot()
{
    m_IsNew = true;
    QwtPlotCanvas::replot();
}

void PlotCanvas::paintEvent(QPaintEvent*)
{
    const QSize size = this->size() * devicePixelRatioF();
    if (m_IsNew || size.isEmpty()) {
        m_IsNew = false;
        m_Kept = QPixmap();
        return drawInto(*this);
    }
    if (m_Kept.size() != size) {
        m_Kept = QPixmap(size);
        m_Kept.setDevicePixelRatio(devicePixelRatioF());
        drawInto(m_Kept);
    }
    QPainter(this).drawPixmap(0, 0, m_Kept);
}

void PlotCanvas::drawInto(QPaintDevice& device)
{
    QPainter painter(&device);
    painter.fillRect(rect(), palette().brush(QPalette::Window));
    painter.setClipRect(rect());
    plot()->drawCanvas(&painter);
}

} // namespace tavo
