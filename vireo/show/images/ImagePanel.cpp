#include "vireo/show/images/ImagePanel.h"

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

#include "vireo/show/images/ImageView.h"
#include "vireo/show/scenes/NumberBox.h"
#include "vireo/show/scenes/RangeHistogram.h"
#include "vireo/show/scenes/panelWidgets.h"

namespace tavo {

namespace {

constexpr int MARGIN = 8; // in pixels
constexpr int SPACING = 6;
constexpr int FRAME = 100; // in milliseconds, from one histogram to the next
constexpr double LOW = 1;  // in per cent, which the button means
constexpr double HIGH = 99;
constexpr int LEAST_ROOM = 40; // in pixels, of the image beside it

QStringList namesOfChannels(const ImagePixels& pixels)
{
    if (pixels.hasColours()) {
        QStringList names{
            ImagePanel::tr("All"), ImagePanel::tr("Red"), ImagePanel::tr("Green"), ImagePanel::tr("Blue")};
        if (pixels.channels > 3)
            names += ImagePanel::tr("Opacity");
        return names;
    }
    QStringList names;
    for (int i = 0; i < pixels.channels; ++i)
        names += QString::number(i);
    return names;
}

} // namespace

ImagePanel::ImagePanel(ImageView& view)
    : QWidget(&view)
    , m_View(view)
    , m_FollowSoon(new QTimer(this))
    , m_Histogram(new RangeHistogram)
    , m_From(made(new NumberBox, "from", tr("From"), tr("The number that is darkest, or has the first colour")))
    , m_To(made(new NumberBox, "to", tr("To"), tr("The number that is brightest, or has the last colour")))
    , m_Automatic(made(new QPushButton(tr("Automatic")), "automatic", tr("Automatic range"),
          tr("What the type calls for, or from the least number to the greatest (r in the image: afresh)")))
    , m_Percentiles(made(new QPushButton(tr("1 to 99 %")), "percentiles", tr("Range of most numbers"),
          tr("From the number that 1 % are below to the one that 99 % are below")))
    , m_Channel(makeComboBox("channel", tr("Channel"), tr("What is shown (c in the image: the next one)")))
    , m_ColourMap(makeComboBox("colourMap", tr("Colour map"), tr("The colours of one channel")))
    , m_Gamma(made(new QDoubleSpinBox, "gamma", tr("Gamma"), tr("Above 1 what is dark gets brighter")))
    , m_Reset(made(new QPushButton(tr("As the program says")), "reset", tr("As the program says"),
          tr("Forgets what you have chosen here")))
{
    setObjectName("imagePanel");
    setAttribute(Qt::WA_NoMousePropagation); // what is done here is not done to the image
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    m_Histogram->setObjectName("histogram");
    m_ColourMap->addItem(tr("none"));
    addColourMaps(*m_ColourMap);
    m_Gamma->setRange(0.1, 10);
    m_Gamma->setSingleStep(0.1);
    m_FollowSoon->setSingleShot(true);
    m_FollowSoon->setInterval(FRAME);
    layOut();
    connectAll();
    for (QWidget* input : std::initializer_list<QWidget*>{m_From, m_To, m_Channel, m_ColourMap, m_Gamma}) {
        input->setFocusPolicy(Qt::StrongFocus);
        input->installEventFilter(this);
    }
}

void ImagePanel::layOut()
{
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(MARGIN, MARGIN, MARGIN, MARGIN);
    grid->setSpacing(SPACING);
    auto* const range = new QGridLayout;
    range->setSpacing(SPACING);
    range->addWidget(m_Histogram, 0, 0, 1, 2);
    range->addWidget(m_From, 1, 0);
    range->addWidget(m_To, 1, 1);
    range->addWidget(m_Automatic, 2, 0);
    range->addWidget(m_Percentiles, 2, 1);
    range->setColumnStretch(0, 1);
    range->setColumnStretch(1, 1);
    grid->addLayout(range, 0, 0, 1, 2);
    addRow(*grid, tr("Channel"), m_Channel);
    addRow(*grid, tr("Colour map"), m_ColourMap);
    addRow(*grid, tr("Gamma"), m_Gamma);
    grid->addWidget(m_Reset, grid->rowCount(), 0, 1, 2);
    grid->setRowStretch(grid->rowCount(), 1);
    for (QPushButton* button : {m_Automatic, m_Percentiles}) {
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setMinimumWidth(1);
    }
}

void ImagePanel::addRow(QGridLayout& grid, const QString& label, QWidget* field)
{
    const int row = grid.rowCount();
    grid.addWidget(new QLabel(label), row, 0);
    grid.addWidget(field, row, 1);
}

void ImagePanel::connectAll()
{
    const auto chosen = QOverload<int>::of(&QComboBox::currentIndexChanged);
    const auto changed = QOverload<double>::of(&QDoubleSpinBox::valueChanged);
    const auto choose = [this](auto change) {
        return
            [this, change](auto... value) { m_View.choose([&](ImageSettings& choice) { change(choice, value...); }); };
    };
    connect(m_FollowSoon, &QTimer::timeout, this, &ImagePanel::follow);
    connect(m_Histogram, &RangeHistogram::rangeDragged, this, &ImagePanel::chooseFixed);
    connect(m_From, changed, this,
        [this](double from) { chooseFixed(from, static_cast<double>(m_View.getModel().look().to)); });
    connect(m_To, changed, this,
        [this](double to) { chooseFixed(static_cast<double>(m_View.getModel().look().from), to); });
    connect(m_Automatic, &QPushButton::clicked, this, [this] {
        m_View.choose([](ImageSettings& choice) { choice.range = ImageRange(); });
        m_View.refreshRange();
    });
    connect(m_Percentiles, &QPushButton::clicked, this, [this] {
        m_View.choose([](ImageSettings& choice) { choice.range = {ImageRange::Kind::Percentiles, LOW, HIGH}; });
        m_View.refreshRange();
    });
    connect(m_Channel, chosen, this, choose([this](ImageSettings& choice, int i) {
        choice.channel = m_View.getModel().shownPixels().hasColours() ? i - 1 : i;
    }));
    connect(m_ColourMap, chosen, this, choose([](ImageSettings& choice, int i) {
        choice.colourMap = i == 0 ? std::string() : std::string(namesOfColourMaps().at(std::size_t(i) - 1));
    }));
    connect(m_Gamma, changed, this, choose([](ImageSettings& choice, double gamma) { choice.gamma = gamma; }));
    connect(
        m_Reset, &QPushButton::clicked, this, [this] { m_View.choose([](ImageSettings& choice) { choice = {}; }); });
}

void ImagePanel::chooseFixed(double from, double to)
{
    if (from != to)
        m_View.choose([=](ImageSettings& choice) { choice.range = ImageRange{ImageRange::Kind::Fixed, from, to}; });
}

// The wheel scrolls, unless what it is over has been chosen: it shall change nothing by the way.
bool ImagePanel::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() != QEvent::Wheel || static_cast<QWidget*>(object)->hasFocus())
        return QWidget::eventFilter(object, event);
    event->ignore();
    return true;
}

void ImagePanel::noteChange()
{
    if (!isVisible())
        return;
    followRange();
    if (!m_FollowSoon->isActive())
        m_FollowSoon->start();
}

void ImagePanel::follow()
{
    ImageModel& model = m_View.getModel();
    if (model.shownPixels().isEmpty())
        return;
    m_Histogram->setCounts(model.counts());
    followChannels();
    followRange();
}

void ImagePanel::followRange()
{
    const ImageModel& model = m_View.getModel();
    const ImageLook& look = model.look();
    const auto from = static_cast<double>(look.from);
    const auto to = static_cast<double>(look.to);
    m_Histogram->setColours(model.colours().map(), {from, to});
    const QSignalBlocker quietFrom(m_From);
    const QSignalBlocker quietTo(m_To);
    m_From->showValue(from, std::abs(to - from));
    m_To->showValue(to, std::abs(to - from));
    setQuietly(m_Gamma, look.gamma);
    const auto& names = namesOfColourMaps();
    const auto map = std::find(names.begin(), names.end(), look.colourMap);
    chooseQuietly(m_ColourMap, map == names.end() ? 0 : static_cast<int>(map - names.begin()) + 1);
    m_ColourMap->setEnabled(!look.isColour());
    m_Reset->setEnabled(!(model.getChoice() == ImageSettings()));
}

void ImagePanel::followChannels()
{
    const ImagePixels& pixels = m_View.getModel().shownPixels();
    const QStringList names = namesOfChannels(pixels);
    const QSignalBlocker quiet(m_Channel);
    if (names.size() != m_Channel->count() || names.front() != m_Channel->itemText(0)) {
        m_Channel->clear();
        m_Channel->addItems(names);
    }
    m_Channel->setEnabled(names.size() > 1);
    m_Channel->setCurrentIndex(m_View.getModel().look().channel + (pixels.hasColours() ? 1 : 0));
}

int ImagePanel::widthIn(int widthOfView) const
{
    const int wanted = std::max(fontMetrics().averageCharWidth() * 32, minimumSizeHint().width());
    return std::clamp(wanted, 1, std::max(widthOfView - LEAST_ROOM, 1));
}

void ImagePanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    follow();
}

void ImagePanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(0, 0, 1, height(), palette().color(QPalette::Mid));
}

} // namespace tavo
