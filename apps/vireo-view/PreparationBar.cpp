#include "apps/vireo-view/PreparationBar.h"

namespace vireo_view {

namespace {

constexpr int HEIGHT = 6;

// Where the bar lies, in the widget's coordinates.
QRect placeBelow(const QWidget& view, const QWidget& widget)
{
    return {view.mapTo(&widget, QPoint(0, view.height())), QSize(view.width(), HEIGHT)};
}

// The innermost widget around the view that reaches far enough below it; null if there is none.
QWidget* findWidgetAround(const QWidget& view)
{
    QWidget* widget = view.parentWidget();
    while (widget && !widget->rect().contains(placeBelow(view, *widget)))
        widget = widget->isWindow() ? nullptr : widget->parentWidget();
    return widget;
}

} // namespace

PreparationBar::PreparationBar(QWidget& view, int delay)
    : m_View(view)
    , m_Delay(delay)
{
    m_SinceStart.start();
}

void PreparationBar::update(unsigned int numDone, unsigned int numAll)
{
    if (!m_Bar && m_SinceStart.elapsed() >= m_Delay && m_View.isVisible())
        show();
    if (!m_Bar || numAll == 0)
        return;
    // Paints itself where the value is another one.
    m_Bar->setMaximum(static_cast<int>(numAll));
    m_Bar->setValue(static_cast<int>(numDone));
}

void PreparationBar::show()
{
    QWidget* const parent = findWidgetAround(m_View);
    if (!parent)
        return;
    m_Bar = std::make_unique<QProgressBar>(parent);
    m_Bar->setTextVisible(false);
    m_Bar->setGeometry(placeBelow(m_View, *parent));
    m_Bar->show();
    m_Bar->repaint();
}

} // namespace vireo_view
