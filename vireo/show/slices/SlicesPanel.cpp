#include "vireo/show/slices/SlicesPanel.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "vireo/show/scenes/NumberBox.h"
#include "vireo/show/scenes/RangeHistogram.h"
#include "vireo/show/scenes/ValueCounter.h"
#include "vireo/show/scenes/panelWidgets.h"
#include "vireo/show/slices/SlicesView.h"

namespace tavo {

namespace {

constexpr int MARGIN = 8; // in pixels
constexpr int SPACING = 6;
constexpr int FRAME = 100;      // in milliseconds, from one histogram to the next
constexpr int LEAST_ROOM = 120; // in pixels, of the slices beside it

template <typename Change>
void choose(ShownLayer& layer, Change change)
{
    SliceSettings choice = layer.getChoice();
    change(choice);
    layer.choose(choice);
}

void addRow(QGridLayout& grid, const QString& label, QWidget* field)
{
    const int row = grid.rowCount();
    grid.addWidget(new QLabel(label), row, 0);
    grid.addWidget(field, row, 1);
}

void setUpOpacity(QDoubleSpinBox& box)
{
    box.setRange(0, 1);
    box.setSingleStep(0.1);
}

void setChecked(QCheckBox* box, bool isChecked)
{
    const QSignalBlocker quiet(box);
    box->setChecked(isChecked);
}

} // namespace

SlicesPanel::SlicesPanel(SlicesView& view)
    : QWidget(&view)
    , m_View(view)
    , m_FollowSoon(new QTimer(this))
    , m_Counter(new ValueCounter(this))
    , m_Histogram(new RangeHistogram)
    , m_From(made(new NumberBox, "from", tr("From"), tr("The number that is darkest, or has the first colour")))
    , m_To(made(new NumberBox, "to", tr("To"), tr("The number that is brightest, or has the last colour")))
    , m_Automatic(made(new QPushButton(tr("Automatic")), "automatic", tr("Automatic window"),
          tr("Of nearly all numbers (r in the slices)")))
    , m_ColourMap(makeComboBox("colourMap", tr("Colour map"), tr("The colours of the volume")))
    , m_Interpolated(made(new QCheckBox(tr("Interpolate")), "interpolated", tr("Interpolate"),
          tr("Whether numbers go straight from sample to sample (i in the slices)")))
    , m_RightOnTheLeft(made(new QCheckBox(tr("Right on the left")), "rightOnTheLeft", tr("Right on the left"),
          tr("As radiologists see patients (n in the slices)")))
    , m_FrontOnTheLeft(made(new QCheckBox(tr("Front on the left")), "frontOnTheLeft", tr("Front on the left"),
          tr("In sagittal slices (f in the slices)")))
    , m_OverlayOpacity(
          made(new QDoubleSpinBox, "overlayOpacity", tr("Overlay"), tr("How much the overlay hides of the volume")))
    , m_LabelOpacity(
          made(new QDoubleSpinBox, "labelOpacity", tr("Labels"), tr("How much labels hide of what is below")))
    , m_Reset(made(new QPushButton(tr("As the program says")), "reset", tr("As the program says"),
          tr("Forgets what you have chosen of numbers and colours")))
{
    setObjectName("slicesPanel");
    setAttribute(Qt::WA_NoMousePropagation); // what is done here is not done to the slices
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    m_Histogram->setObjectName("histogram");
    m_ColourMap->addItem(tr("none"));
    addColourMaps(*m_ColourMap);
    setUpOpacity(*m_OverlayOpacity);
    setUpOpacity(*m_LabelOpacity);
    m_FollowSoon->setSingleShot(true);
    m_FollowSoon->setInterval(FRAME);
    layOut();
    connectAll();
    for (QWidget* input :
        std::initializer_list<QWidget*>{m_From, m_To, m_ColourMap, m_OverlayOpacity, m_LabelOpacity}) {
        input->setFocusPolicy(Qt::StrongFocus);
        input->installEventFilter(this);
    }
}

void SlicesPanel::layOut()
{
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(MARGIN, MARGIN, MARGIN, MARGIN);
    grid->setSpacing(SPACING);
    grid->addWidget(m_Histogram, 0, 0, 1, 2);
    addRow(*grid, tr("From"), m_From);
    addRow(*grid, tr("To"), m_To);
    grid->addWidget(m_Automatic, grid->rowCount(), 0, 1, 2);
    addRow(*grid, tr("Colour map"), m_ColourMap);
    addRow(*grid, tr("Overlay"), m_OverlayOpacity);
    addRow(*grid, tr("Labels"), m_LabelOpacity);
    for (QWidget* whole : std::initializer_list<QWidget*>{m_Interpolated, m_RightOnTheLeft, m_FrontOnTheLeft, m_Reset})
        grid->addWidget(whole, grid->rowCount(), 0, 1, 2);
    grid->setRowStretch(grid->rowCount(), 1);
}

void SlicesPanel::connectAll()
{
    const auto changed = QOverload<double>::of(&QDoubleSpinBox::valueChanged);
    const auto turn = [this](QCheckBox* box, bool SliceSides::*side) {
        connect(box, &QCheckBox::toggled, this, [this, side](bool isOn) {
            m_View.change([=](SlicesModel& model) {
                SliceSides sides = model.getSides();
                sides.*side = isOn;
                model.setSides(sides);
            });
        });
    };
    connect(m_FollowSoon, &QTimer::timeout, this, &SlicesPanel::follow);
    connect(m_Counter, &ValueCounter::counted, m_Histogram, &RangeHistogram::setCounts);
    connect(m_Histogram, &RangeHistogram::rangeDragged, this, &SlicesPanel::chooseWindow);
    connect(m_From, changed, this, [this](double from) { chooseWindow(from, m_View.getModel().volume().look().to); });
    connect(m_To, changed, this, [this](double to) { chooseWindow(m_View.getModel().volume().look().from, to); });
    connect(m_Automatic, &QPushButton::clicked, this,
        [this] { m_View.change([](SlicesModel& model) { model.refreshWindows(); }); });
    connect(m_ColourMap, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this](int i) {
        m_View.change([i](SlicesModel& model) {
            choose(model.volume(), [i](SliceSettings& choice) {
                choice.colourMap = i == 0 ? std::string() : std::string(namesOfColourMaps().at(std::size_t(i) - 1));
            });
        });
    });
    connect(m_Interpolated, &QCheckBox::toggled, this,
        [this](bool isOn) { m_View.change([isOn](SlicesModel& model) { model.setInterpolated(isOn); }); });
    turn(m_RightOnTheLeft, &SliceSides::isRightOnTheLeft);
    turn(m_FrontOnTheLeft, &SliceSides::isFrontOnTheLeft);
    connectOpacity(m_OverlayOpacity, &SlicesModel::overlay);
    connectOpacity(m_LabelOpacity, &SlicesModel::labels);
    connect(m_Reset, &QPushButton::clicked, this, &SlicesPanel::reset);
}

void SlicesPanel::connectOpacity(QDoubleSpinBox* box, ShownLayer& (SlicesModel::*layer)())
{
    connect(box, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, [this, layer](double opacity) {
        m_View.change([=](SlicesModel& model) {
            choose((model.*layer)(), [opacity](SliceSettings& choice) { choice.opacity = opacity; });
        });
    });
}

void SlicesPanel::chooseWindow(double from, double to)
{
    if (from != to)
        m_View.change([=](SlicesModel& model) {
            choose(model.volume(), [=](SliceSettings& choice) { choice.window = std::pair(from, to); });
        });
}

void SlicesPanel::reset()
{
    m_View.change([](SlicesModel& model) {
        for (ShownLayer* layer : {&model.volume(), &model.overlay(), &model.labels()})
            layer->choose({});
    });
}

// The wheel scrolls, unless what it is over has been chosen: it shall change nothing by the way.
bool SlicesPanel::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() != QEvent::Wheel || static_cast<QWidget*>(object)->hasFocus())
        return QWidget::eventFilter(object, event);
    event->ignore();
    return true;
}

void SlicesPanel::noteChange()
{
    if (!isVisible())
        return;
    followSettings();
    if (!m_FollowSoon->isActive())
        m_FollowSoon->start();
}

void SlicesPanel::follow()
{
    const SlicesModel& model = m_View.getModel();
    if (!model.isEmpty() && !model.volume().layer().areColours())
        m_Counter->count(model.volume().layer().samples.numbers);
    followSettings();
}

void SlicesPanel::followSettings()
{
    const SlicesModel& model = m_View.getModel();
    const ImageLook& look = model.volume().look();
    const auto& names = namesOfColourMaps();
    const auto map = std::find(names.begin(), names.end(), look.colourMap);
    m_Histogram->setColours(
        findColourMap(look.colourMap.empty() ? "grey" : look.colourMap).value(), {look.from, look.to});
    const QSignalBlocker quietFrom(m_From);
    const QSignalBlocker quietTo(m_To);
    m_From->showValue(look.from, std::abs(look.to - look.from));
    m_To->showValue(look.to, std::abs(look.to - look.from));
    chooseQuietly(m_ColourMap, map == names.end() ? 0 : static_cast<int>(map - names.begin()) + 1);
    m_ColourMap->setEnabled(!look.isColour());
    setQuietly(m_OverlayOpacity, model.overlay().opacity());
    m_OverlayOpacity->setEnabled(!model.overlay().isEmpty());
    setQuietly(m_LabelOpacity, model.labels().opacity());
    m_LabelOpacity->setEnabled(!model.labels().isEmpty());
    setChecked(m_Interpolated, model.isInterpolated());
    setChecked(m_RightOnTheLeft, model.getSides().isRightOnTheLeft);
    setChecked(m_FrontOnTheLeft, model.getSides().isFrontOnTheLeft);
    m_RightOnTheLeft->setEnabled(model.isOriented());
    m_FrontOnTheLeft->setEnabled(model.isOriented());
}

int SlicesPanel::widthIn(int widthOfView) const
{
    const int wanted = std::max(fontMetrics().averageCharWidth() * 32, minimumSizeHint().width());
    return std::clamp(wanted, 1, std::max(widthOfView - LEAST_ROOM, 1));
}

void SlicesPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    follow();
}

void SlicesPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(0, 0, 1, height(), palette().color(QPalette::Mid));
}

} // namespace tavo
