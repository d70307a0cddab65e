#include "vireo/show/plots/CurveLift.h"

#include <QPainter>

namespace tavo {

CurveLift::CurveLift(QWidget* canvas)
    : QWidget(canvas)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setObjectName("lift");
    hide();
}

void CurveLift::show(const std::function<void(QPainter&)>& draw)
{
    m_Draw = draw;
    setGeometry(parentWidget()->rect());
    QWidget::show();
    lower(); // the readout and the buttons are above
    update();
}

void CurveLift::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    m_Draw(painter);
}

} // namespace tavo
