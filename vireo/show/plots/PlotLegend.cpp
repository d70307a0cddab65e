#include "vireo/show/plots/PlotLegend.h"

#include <QBoxLayout>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <qwt_legend_label.h>
#include <qwt_plot.h>

#include "vireo/show/plots/PlotCurve.h"

namespace tavo {

namespace {

bool isLeftClick(const QEvent& event)
{
    return static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton;
}

QString moreText(int number)
{
    return PlotLegend::tr("and %1 more").arg(number);
}

} // namespace

PlotLegend::PlotLegend(const QwtPlot& plot)
    : m_Plot(plot)
    , m_Filter(new QLineEdit)
{
    m_Filter->setObjectName("filter");
    m_Filter->setPlaceholderText(tr("Filter"));
    m_Filter->setToolTip(tr("Shows the names in the legend that contain this"));
    m_Filter->hide();
    static_cast<QBoxLayout*>(layout())->insertWidget(0, m_Filter);
    connect(m_Filter, &QLineEdit::textChanged, this, &PlotLegend::filter);
}

QWidget* PlotLegend::createWidget(const QwtLegendData& data) const
{
    QWidget* const entry = QwtLegend::createWidget(data);
    entry->installEventFilter(const_cast<PlotLegend*>(this));
    entry->setCursor(Qt::PointingHandCursor);
    return entry;
}

PlotCurve* PlotLegend::curveOf(const QWidget* entry) const
{
    return static_cast<PlotCurve*>(m_Plot.infoToItem(itemInfo(entry)));
}

bool PlotLegend::eventFilter(QObject* object, QEvent* event)
{
    if (qobject_cast<QwtLegendLabel*>(object) && handle(static_cast<QWidget*>(object), *event))
        return true;
    return QwtLegend::eventFilter(object, event);
}

// The first click of a double click has done its work when the second one comes: that undoes it.
bool PlotLegend::handle(QWidget* entry, const QEvent& event)
{
    PlotCurve* const curve = m_Entries.contains(entry) ? curveOf(entry) : nullptr;
    if (!curve)
        return false;
    switch (event.type()) {
    case QEvent::Enter: emit hovered(curve); return false;
    case QEvent::Leave: emit hovered(nullptr); return false;
    case QEvent::MouseButtonPress:
        if (!isLeftClick(event))
            return false;
        if (static_cast<const QMouseEvent&>(event).modifiers() & Qt::AltModifier)
            emit isolateWanted(curve);
        else
            emit toggleWanted(curve);
        return true;
    case QEvent::MouseButtonDblClick:
        if (!isLeftClick(event))
            return false;
        emit toggleWanted(curve);
        emit isolateWanted(curve);
        return true;
    default: return false;
    }
}

void PlotLegend::updateLegend(const QVariant& itemInfo, const QList<QwtLegendData>& data)
{
    const QList<QWidget*> before = legendWidgets(itemInfo);
    QwtLegend::updateLegend(itemInfo, data);
    const QList<QWidget*> after = legendWidgets(itemInfo);
    if (before == after)
        return;
    for (QWidget* entry : before)
        m_Entries.removeOne(entry);
    m_Entries += after;
    showFilter();
}

void PlotLegend::showFilter()
{
    const bool areMany = m_Entries.size() >= MANY_ENTRIES;
    m_Filter->setVisible(areMany);
    if (!areMany)
        m_Filter->clear();
    if (!m_Filter->text().isEmpty())
        filter();
}

void PlotLegend::filter()
{
    QLayout* const entries = contentsWidget()->layout();
    while (QLayoutItem* item = entries->takeAt(0))
        delete item;
    for (QWidget* entry : m_Entries) {
        const QString name = static_cast<QwtLegendLabel*>(entry)->text().text();
        const bool isWanted = name.contains(m_Filter->text(), Qt::CaseInsensitive);
        if (isWanted)
            entries->addWidget(entry);
        entry->setVisible(isWanted);
    }
}

PlotLegend::Grid PlotLegend::gridFor(int width) const
{
    QSize cell(1, 1);
    for (const QWidget* entry : m_Entries)
        cell = cell.expandedTo(entry->sizeHint());
    return {std::clamp(width / cell.width(), 1, std::max<int>(m_Entries.size(), 1)), cell};
}

QSize PlotLegend::sizeHint() const
{
    if (isInGrid()) {
        const QSize cell = gridFor(0).cell;
        return {cell.width() * m_Entries.size(), cell.height()};
    }
    return QwtLegend::sizeHint() + QSize(0, filterHeight());
}

int PlotLegend::heightForWidth(int width) const
{
    if (isInGrid()) {
        const Grid grid = gridFor(width);
        return (m_Entries.size() + grid.numColumns - 1) / grid.numColumns * grid.cell.height();
    }
    return QwtLegend::heightForWidth(width) + filterHeight();
}

// A picture has the entries that the filter has taken away from Qwt's layout, too.
bool PlotLegend::isInGrid() const
{
    return m_IsInPicture && !m_Filter->text().isEmpty();
}

int PlotLegend::filterHeight() const
{
    return m_IsInPicture || m_Filter->isHidden() ? 0 : m_Filter->sizeHint().height();
}

void PlotLegend::renderLegend(QPainter* painter, const QRectF& room, bool fillBackground) const
{
    if (!isInGrid() && heightForWidth(static_cast<int>(room.width())) <= room.height())
        QwtLegend::renderLegend(painter, room, fillBackground);
    else
        renderGrid(*painter, room);
}

void PlotLegend::renderGrid(QPainter& painter, const QRectF& room) const
{
    const Grid grid = gridFor(static_cast<int>(room.width()));
    const int numRows = std::max(1, static_cast<int>(room.height()) / grid.cell.height());
    const int numCells = grid.numColumns * numRows;
    const int noteWidth = fontMetrics().horizontalAdvance(moreText(m_Entries.size()));
    const int numCellsOfNote = noteWidth / grid.cell.width() + 1;
    const int numShown = m_Entries.size() <= numCells ? m_Entries.size() : std::max(0, numCells - numCellsOfNote);
    const double left = room.left() + (room.width() - grid.numColumns * grid.cell.width()) / 2;
    const auto cellOf = [&](int i) {
        return QRectF(QPointF(left + i % grid.numColumns * grid.cell.width(),
                          room.top() + i / grid.numColumns * grid.cell.height()),
            grid.cell);
    };
    for (int i = 0; i < numShown; ++i)
        renderItem(&painter, m_Entries[i], cellOf(i), false);
    if (numShown == m_Entries.size())
        return;
    painter.setFont(font());
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(
        cellOf(numShown), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, moreText(m_Entries.size() - numShown));
}

} // namespace tavo
