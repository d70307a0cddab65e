#include "vireo/show/slices/SlicesView.h"

#include <QEvent>
#include <QPainter>
#include <algorithm>
#include <type_traits>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/show/slices/SliceVolume.h"
#include "vireo/show/slices/SlicesGestures.h"
#include "vireo/show/slices/SlicesPanel.h"
#include "vireo/show/slices/drawSlice.h"
#include "vireo/show/slices/gesturesOfSlices.h"
#include "vireo/show/slices/sampleLine.h"
#include "vireo/show/slices/sliceLegend.h"
#include "vireo/show/slices/slicesData.h"
#include "vireo/show/window/windowMemory.h"

namespace tavo {

namespace {

constexpr std::size_t LONGEST_NAME = 80;
constexpr int MARGIN = 4;       // in pixels, of the text below the slices
constexpr int LARGE_VIEW = 900; // in pixels, from which on the panel is there unless a person has hidden it

QString textOf(double number)
{
    constexpr int DIGITS = 7;
    return QString::number(number, 'g', DIGITS);
}

bool isInside(const VolumeGrid& grid, const Vector3d& index)
{
    for (std::size_t i = 0; i < 3; ++i)
        if (!(index[i] >= -0.5 && index[i] < grid.size[i] - 0.5))
            return false;
    return true;
}

bool reaches(const ShownLayer& layer, const Vector3d& place)
{
    return !layer.isEmpty() && isInside(layer.layer().grid, layer.layer().grid.indexAt(place));
}

bool areSame(const VolumeGrid& one, const VolumeGrid& other)
{
    return one.size == other.size && one.spacing == other.spacing && one.origin == other.origin &&
           one.axes == other.axes;
}

// With all the digits that integers have.
QString exactTextOf(const SliceLayer& layer, const Vector3i& voxel)
{
    const std::size_t first = ((std::size_t(voxel[2]) * std::size_t(layer.grid.size[1]) + std::size_t(voxel[1])) *
                                      std::size_t(layer.grid.size[0]) +
                                  std::size_t(voxel[0])) *
                              layer.samples.width;
    return layer.samples.numbers.visit([&](const auto* numbers, std::size_t) {
        QStringList texts;
        for (std::size_t i = 0; i < layer.samples.width; ++i)
            if constexpr (std::is_integral_v<std::remove_cvref_t<decltype(*numbers)>>)
                texts += QString::number(+numbers[first + i]);
            else
                texts += textOf(double(numbers[first + i]));
        return texts.join(' ');
    });
}

// Of what lies elsewhere than the samples of the volume, or between them.
QString sampledTextOf(const SliceLayer& layer, const Vector3d& index, bool isInterpolated)
{
    std::array<double, 4> numbers{};
    sampleLine(layer, {index, {}, 1}, isInterpolated, numbers.data());
    QStringList texts;
    for (std::size_t i = 0; i < layer.samples.width; ++i)
        texts += textOf(numbers[i]);
    return texts.join(' ');
}

} // namespace

SlicesView::SlicesView(const std::string& name)
    : m_Name(name)
    , m_Panel(new SlicesPanel(*this))
{
    m_Panel->hide();
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(40, 30);
    m_Gestures = std::make_unique<SlicesGestures>(*this);
}

SlicesView::~SlicesView() = default;

void SlicesView::makeRoom(const Replaced& replaced)
{
    if (!replaced.isAll)
        return;
    m_Model.makeRoom();
    if (m_Volume)
        m_Volume->makeRoom();
}

void SlicesView::apply(ViewUpdate& update)
{
    const auto& slices = static_cast<SlicesUpdate&>(update);
    const VolumeGrid before = m_Model.grid();
    m_Model.apply(slices);
    if (!areSame(before, m_Model.grid()))
        m_Distance.reset(); // which is counted in its samples
    sayWhatIsWrong();
    changed();
    if (slices.volume)
        settleVolume();
}

// Where it is shown at all.
void SlicesView::settleVolume()
{
    if (!m_IsVolumeShown)
        return m_Volume.reset();
    if (m_Model.isEmpty())
        return;
    if (!m_Volume)
        m_Volume = std::make_unique<SliceVolume>(*this, m_Model, m_Name);
    m_Volume->showVolume();
    placeVolume();
    m_Volume->scene().show();
}

// In its cell.
void SlicesView::placeVolume()
{
    if (!m_Volume)
        return;
    const QRect cell = cells().volume;
    const double ratio = devicePixelRatioF();
    m_Volume->scene().setGeometry(QRectF(QPointF(cell.topLeft()) / ratio, QSizeF(cell.size()) / ratio).toRect());
}

void SlicesView::switchVolume()
{
    m_IsVolumeShown = !m_IsVolumeShown;
    settleVolume();
    changed();
}

std::string SlicesView::nameInLog() const
{
    return "slices(\"" + printable(m_Name, LONGEST_NAME) + "\")";
}

void SlicesView::sayWhatIsWrong()
{
    if (!m_Model.whyNoLabels().empty())
        sayOnce(nameInLog() + ".labels: " + m_Model.whyNoLabels() +
                (m_Model.labels().isEmpty() ? "; they are not shown" : "; what was shown stays"));
}

void SlicesView::change(const std::function<void(SlicesModel& model)>& change)
{
    change(m_Model);
    changed();
}

void SlicesView::changed()
{
    m_Pictures = {};
    if (!m_Model.isEmpty())
        m_Sight = sightFor(cells());
    if (m_Volume)
        m_Volume->followSoon();
    m_Panel->noteChange();
    update();
}

// The other two planes show what they showed.
void SlicesView::moveTo(const Vector3i& voxel)
{
    if (m_Model.isEmpty() || voxel == m_Model.voxel())
        return;
    const Vector3i before = m_Model.voxel();
    m_Model.setVoxel(voxel);
    for (std::size_t i = 0; i < 3; ++i)
        if (const std::size_t axis = m_Model.planes()[i].through; m_Model.voxel()[axis] != before[axis])
            m_Pictures[i] = {};
    if (m_Volume)
        m_Volume->followSoon();
    update();
}

int SlicesView::barHeight() const
{
    return fontMetrics().height() + MARGIN;
}

QSize SlicesView::slicesSize() const
{
    const QSizeF size(slicesWidth(), std::max(height() - barHeight(), 1));
    return (size * devicePixelRatioF()).toSize();
}

// Of the widget without the panel.
int SlicesView::slicesWidth() const
{
    return std::max(width() - (isPanelShown() ? m_Panel->width() : 0), 1);
}

bool SlicesView::isPanelShown() const
{
    return !m_Panel->isHidden();
}

void SlicesView::switchPanel()
{
    m_IsPanelWanted = !isPanelShown();
    if (m_Panel->isAncestorOf(focusWidget()))
        setFocus();
    settlePanel();
    windowMemory::remember(windowMemory::Thing::SlicesPanel, isPanelShown() ? "shown" : "hidden");
}

std::function<void()> SlicesView::configuration()
{
    return [this] { switchPanel(); };
}

void SlicesView::settlePanel()
{
    const int panelWidth = m_Panel->widthIn(width());
    m_Panel->setGeometry(width() - panelWidth, 0, panelWidth, height());
    m_Panel->setVisible(m_IsPanelWanted.value_or(width() >= LARGE_VIEW));
    placeVolume();
    changed();
}

SliceCells SlicesView::cells() const
{
    return SliceCells::of(slicesSize(), m_IsVolumeShown);
}

SliceSight SlicesView::fitting(const SliceCells& cells) const
{
    return SliceSight::fitting(m_Model.grid(), m_Model.planes(), cells);
}

SliceSight SlicesView::sightFor(const SliceCells& cells) const
{
    if (!m_IsChosen)
        return fitting(cells);
    SliceSight sight = m_Sight;
    sight.keepInView(m_Model.grid());
    return sight;
}

void SlicesView::setSight(const SliceSight& sight)
{
    m_Sight = sight;
    m_IsChosen = true;
    changed();
}

void SlicesView::zoom(double factor, std::size_t plane, const QPointF& place)
{
    if (m_Model.isEmpty())
        return;
    const SliceCells cells = this->cells();
    SliceSight sight = m_Sight;
    sight.zoom(factor, fitting(cells).scale, m_Model.grid(), m_Model.planes()[plane], cells.planes[plane], place);
    setSight(sight);
}

void SlicesView::showAll()
{
    m_IsChosen = false;
    changed();
}

std::optional<std::size_t> SlicesView::planeAt(const QPointF& place) const
{
    const SliceCells cells = this->cells();
    for (std::size_t i = 0; i < 3; ++i)
        if (QRectF(cells.planes[i]).contains(onScreen(place)))
            return i;
    return {};
}

Vector3d SlicesView::indexAt(std::size_t plane, const QPointF& place) const
{
    return m_Sight.indexAt(
        m_Model.grid(), m_Model.planes()[plane], cells().planes[plane], onScreen(place), m_Model.voxel());
}

void SlicesView::hover(const std::optional<Vector3d>& index)
{
    m_Hovered = index && !m_Model.isEmpty() && isInside(m_Model.grid(), *index) ? index : std::nullopt;
    update();
}

void SlicesView::setMeasuring(bool isMeasuring)
{
    m_IsMeasuring = isMeasuring;
    m_Distance.reset();
    update();
}

// In another plane, a line begins anew.
void SlicesView::clickDistance(std::size_t plane, const QPointF& place)
{
    if (m_Model.isEmpty())
        return;
    const int slice = m_Model.voxel()[m_Model.planes()[plane].through];
    if (m_Distance && !m_Distance->isDone && m_Distance->plane == plane && m_Distance->slice == slice) {
        moveDistance(plane, place);
        m_Distance->isDone = true;
    } else {
        const Vector3d index = indexAt(plane, place);
        m_Distance = SliceDistance{plane, slice, index, index, false};
    }
    update();
}

void SlicesView::moveDistance(std::size_t plane, const QPointF& place)
{
    if (!m_Distance || m_Distance->isDone || m_Distance->plane != plane || m_Model.isEmpty())
        return;
    m_Distance->to = indexAt(plane, place);
    m_Distance->to[m_Model.planes()[plane].through] = m_Distance->slice;
    update();
}

void SlicesView::paintMarks(
    QPainter& painter, std::size_t plane, const SliceSight& sight, const QRect& cell, double ratio) const
{
    drawSliceMarks(painter, m_Model, m_Model.planes()[plane], sight, cell, ratio);
    if (m_Distance && m_Distance->plane == plane)
        drawSliceDistance(painter, m_Model, m_Model.planes()[plane], sight, cell, *m_Distance, ratio);
}

QImage SlicesView::drawPlane(std::size_t plane, const SliceSight& sight, const QSize& size) const
{
    return drawSlice(m_Model, m_Model.planes()[plane], sight, size);
}

// A part that a person has chosen is as large in it as in the view.
QImage SlicesView::picture(QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(palette().color(QPalette::Mid));
    if (m_Model.isEmpty())
        return picture;
    const int legendWidth = widthOfSliceLegend(m_Model, size, fontMetrics());
    const SliceCells cells = SliceCells::of({size.width() - legendWidth, size.height()}, m_IsVolumeShown);
    QPainter painter(&picture);
    painter.setFont(font());
    SliceSight sight = sightFor(cells);
    if (m_IsChosen)
        sight.scale *= fitting(cells).scale / fitting(this->cells()).scale;
    for (std::size_t i = 0; i < 3; ++i) {
        painter.drawImage(cells.planes[i].topLeft(), drawPlane(i, sight, cells.planes[i].size()));
        paintMarks(painter, i, sight, cells.planes[i], 1);
    }
    if (m_Volume) {
        m_Volume->follow();
        painter.drawImage(cells.volume.topLeft(), m_Volume->scene().picture(cells.volume.size()));
    }
    if (legendWidth > 0)
        paintLegend(painter, sight, cells, {size.width() - legendWidth, 0, legendWidth, size.height()});
    return picture;
}

// Of the labels in the slices that are shown.
void SlicesView::paintLegend(
    QPainter& painter, const SliceSight& sight, const SliceCells& cells, const QRect& place) const
{
    std::set<std::int64_t> labels;
    for (std::size_t i = 0; i < 3; ++i)
        labels.merge(labelsInSlice(m_Model, m_Model.planes()[i], sight, cells.planes[i].size()));
    painter.fillRect(place, palette().color(QPalette::Window));
    painter.setPen(palette().color(QPalette::WindowText));
    drawSliceLegend(painter, m_Model, labels, place);
}

std::vector<Gesture> SlicesView::gestures() const
{
    return gesturesOfSlices();
}

std::string SlicesView::saveData(const QString& file)
{
    return saveSlices(file, m_Model.volume().layer());
}

QString SlicesView::textOfPlace() const
{
    if (m_Model.isEmpty())
        return {};
    const Vector3i& crosshair = m_Model.voxel();
    const Vector3d index = m_Hovered.value_or(Vector3d(crosshair[0], crosshair[1], crosshair[2]));
    const Vector3i voxel = m_Model.voxelAt(index);
    const Vector3d place = m_Model.grid().at(index);
    const SliceLayer& volume = m_Model.volume().layer();
    QString text = m_Model.isInterpolated() ? sampledTextOf(volume, index, true) : exactTextOf(volume, voxel);
    text += tr("  voxel %1, %2, %3").arg(voxel[0]).arg(voxel[1]).arg(voxel[2]);
    text += tr("  at %1, %2, %3").arg(place[0], 0, 'g', 5).arg(place[1], 0, 'g', 5).arg(place[2], 0, 'g', 5);
    if (const ShownLayer& overlay = m_Model.overlay(); reaches(overlay, place))
        text += tr("  overlay %1")
                    .arg(sampledTextOf(overlay.layer(), overlay.layer().grid.indexAt(place), m_Model.isInterpolated()));
    if (const ShownLayer& labels = m_Model.labels(); reaches(labels, place)) {
        double label = 0;
        sampleLine(labels.layer(), {labels.layer().grid.indexAt(place), {}, 1}, false, &label);
        const QString name = m_Model.nameOfLabel(label);
        if (!name.isEmpty() || label != 0)
            text += "  " + (name.isEmpty() ? tr("label %1").arg(textOf(label)) : name);
    }
    return text;
}

QString SlicesView::textOfVolume() const
{
    if (m_Model.isEmpty())
        return {};
    const Vector3i& size = m_Model.grid().size;
    QString text = QString("%1 x %2 x %3").arg(size[0]).arg(size[1]).arg(size[2]);
    if (m_Model.isOriented())
        text += m_Model.getSides().isRightOnTheLeft ? tr(", right is left") : tr(", right is right");
    if (m_Model.numNotFinite() > 0)
        text += tr(", %1 not finite").arg(m_Model.numNotFinite());
    const ImageLook& look = m_Model.volume().look();
    return text + tr(", window %1 to %2").arg(textOf(look.from), textOf(look.to));
}

void SlicesView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        changed();
    View::changeEvent(event);
}

void SlicesView::resizeEvent(QResizeEvent* event)
{
    settlePanel();
    View::resizeEvent(event);
}

void SlicesView::showEvent(QShowEvent* event)
{
    View::showEvent(event);
    const QByteArray remembered = windowMemory::recall(windowMemory::Thing::SlicesPanel);
    if (!m_IsPanelWanted && !remembered.isEmpty())
        m_IsPanelWanted = remembered == "shown";
    settlePanel();
}

void SlicesView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Mid));
    paintBar(painter);
    if (m_Model.isEmpty())
        return;
    const SliceCells cells = this->cells();
    QFont screenFont = font();
    screenFont.setPixelSize(static_cast<int>(fontInfo().pixelSize() * devicePixelRatioF()));
    painter.setFont(screenFont);
    painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
    for (std::size_t i = 0; i < 3; ++i) {
        if (m_Pictures[i].isNull())
            runGuarded([&] { m_Pictures[i] = drawPlane(i, m_Sight, cells.planes[i].size()); });
        painter.drawImage(cells.planes[i].topLeft(), m_Pictures[i]);
        paintMarks(painter, i, m_Sight, cells.planes[i], devicePixelRatioF());
    }
}

void SlicesView::paintBar(QPainter& painter) const
{
    const QRect bar(0, height() - barHeight(), slicesWidth(), barHeight());
    painter.fillRect(bar, palette().color(QPalette::Window));
    painter.setPen(palette().color(QPalette::WindowText));
    const QRect inside = bar.adjusted(MARGIN, 0, -MARGIN, 0);
    const QString place = textOfPlace();
    painter.drawText(inside, Qt::AlignLeft | Qt::AlignVCenter, place);
    const QString about = textOfVolume();
    if (fontMetrics().horizontalAdvance(place) + fontMetrics().horizontalAdvance(about) + 4 * MARGIN < inside.width())
        painter.drawText(inside, Qt::AlignRight | Qt::AlignVCenter, about);
}

} // namespace tavo
