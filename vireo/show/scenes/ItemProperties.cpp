#include "vireo/show/scenes/ItemProperties.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <memory>

#include "vireo/show/scenes/NumberBox.h"
#include "vireo/show/scenes/RangeHistogram.h"
#include "vireo/show/scenes/ValueCounter.h"
#include "vireo/show/scenes/colourIcon.h"
#include "vireo/show/scenes/panelWidgets.h"
#include "vireo/show/scenes/valueCounts.h"
#include "vireo/show/volumes/OpacityEditor.h"
#include "vireo/show/volumes/TransferFunctionFiles.h"
#include "vireo/show/volumes/VolumePreset.h"
#include "vireo/show/window/shownText.h"

namespace tavo {

namespace {

constexpr double SMALLEST_SIZE = 0.5; // in pixels
constexpr double LARGEST_SIZE = 64;
constexpr int DIGITS_OF_RADIUS = 4;
constexpr std::size_t LONGEST_NAME = 200;
constexpr int SPACING = 6; // in pixels
constexpr int MARGIN = 8;

void checkQuietly(QCheckBox* box, bool isChecked)
{
    const QSignalBlocker quiet(box);
    box->setChecked(isChecked);
}

} // namespace

ItemProperties::ItemProperties(QWidget* parent)
    : QWidget(parent)
    , m_Counter(new ValueCounter(this))
    , m_Grid(new QGridLayout(this))
    , m_Name(new QLabel)
    , m_Field(makeComboBox("field", tr("Coloured by"), tr("What the colours show (Tab in the scene: the next one)")))
    , m_Scale(makeComboBox("scale", tr("Shown as"), tr("Numbers on a scale, or categories that differ")))
    , m_Colour(made(new QPushButton, "colour", tr("Colour"), tr("The colour of all of it")))
    , m_ColourMap(makeComboBox("colourMap", tr("Colour map"), tr("The colours from the least number to the greatest")))
    , m_Range(makeRange())
    , m_Size(made(new QDoubleSpinBox, "size", tr("Size"), tr("Alt and the wheel, or + and -, in the scene")))
    , m_OpacityRow(makeOpacity())
    , m_Shading(makeComboBox("shading", tr("Shading"), tr("Whether light falls on each face, or as if it were curved")))
    , m_Faces(makeFaces())
    , m_Reset(made(new QPushButton(tr("As the program says")), "reset", tr("As the program says"),
          tr("Forgets what you have chosen here")))
{
    m_Name->setObjectName("name");
    m_Name->setTextFormat(Qt::PlainText);
    QFont bold = m_Name->font();
    bold.setBold(true);
    m_Name->setFont(bold);
    m_Name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    makeVolume();
    addColourMaps(*m_ColourMap);
    m_Size->setSuffix(tr(" px"));
    m_Scale->addItems({tr("Numbers"), tr("Categories")});
    m_Shading->addItems({tr("Flat"), tr("Smooth")});
    makeRows();
    connectAll();
    connectVolume();
    for (QWidget* input : std::initializer_list<QWidget*>{
             m_Field, m_Scale, m_ColourMap, m_Preset, m_From, m_To, m_Size, m_OpacitySlider, m_Opacity, m_Shading}) {
        input->setFocusPolicy(Qt::StrongFocus);
        input->installEventFilter(this);
    }
    showNothing();
}

void ItemProperties::makeRows()
{
    m_Grid->setContentsMargins(MARGIN, MARGIN, MARGIN, MARGIN);
    m_Grid->setHorizontalSpacing(MARGIN);
    m_Grid->setVerticalSpacing(SPACING);
    m_Grid->setColumnStretch(1, 1);
    addRow(m_Name);
    addRow(m_Field, tr("Colour by"));
    addRow(m_Scale, tr("Shown as"));
    addRow(m_Colour, tr("Colour"));
    addRow(m_ColourMap, tr("Colour map"));
    addRow(m_Range);
    addRow(m_Preset, tr("Preset"));
    addRow(m_Opacities);
    addRow(m_FunctionFiles);
    addRow(m_Maximum);
    addRow(m_Light);
    addRow(m_Size, tr("Point size"));
    addRow(m_OpacityRow, tr("Opacity"));
    addRow(m_Shading, tr("Shading"));
    addRow(m_Faces, tr("Faces"));
    addRow(m_Reset);
    m_LargestSize = m_Grid->sizeHint();
    int labelWidth = 0; // of all of them, whichever are there
    for (const QLabel* label : findChildren<QLabel*>())
        labelWidth = std::max(labelWidth, label == m_Name ? 0 : label->sizeHint().width());
    m_Grid->setColumnMinimumWidth(0, labelWidth);
    m_Grid->setRowStretch(m_Grid->rowCount(), 1);
}

// Without a label it takes the whole width.
void ItemProperties::addRow(QWidget* field, const QString& label)
{
    const int row = m_Grid->rowCount();
    if (label.isEmpty())
        return m_Grid->addWidget(field, row, 0, 1, 2);
    m_Grid->addWidget(new QLabel(label), row, 0);
    m_Grid->addWidget(field, row, 1);
}

QLabel* ItemProperties::labelOf(QWidget* field) const
{
    int row = 0, column = 0, numRows = 0, numColumns = 0;
    m_Grid->getItemPosition(m_Grid->indexOf(field), &row, &column, &numRows, &numColumns);
    return column == 1 ? static_cast<QLabel*>(m_Grid->itemAtPosition(row, 0)->widget()) : nullptr;
}

QWidget* ItemProperties::makeRange()
{
    auto* const range = new QWidget;
    auto* const grid = new QGridLayout(range);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(SPACING);
    m_Histogram = new RangeHistogram;
    m_Histogram->setObjectName("histogram");
    m_From = made(new NumberBox, "from", tr("From"), tr("The number that has the first colour"));
    m_To = made(new NumberBox, "to", tr("To"), tr("The number that has the last colour"));
    m_Whole = made(new QPushButton(tr("All")), "wholeRange", tr("Range of all values"),
        tr("From the least value to the greatest, as they come"));
    m_Middle = made(new QPushButton(tr("2 to 98 %")), "middleRange", tr("Range of most values"),
        tr("From the value that 2 % are below to the one that 98 % are below"));
    grid->addWidget(m_Histogram, 0, 0, 1, 2);
    grid->addWidget(m_From, 1, 0);
    grid->addWidget(m_To, 1, 1);
    grid->addWidget(m_Whole, 2, 0);
    grid->addWidget(m_Middle, 2, 1);
    for (QPushButton* button : {m_Whole, m_Middle}) {
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        button->setMinimumWidth(1);
    }
    return range;
}

QWidget* ItemProperties::makeOpacity()
{
    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(SPACING);
    const QString toolTip = tr("How little can be seen through it");
    m_OpacitySlider = made(new QSlider(Qt::Horizontal), "opacitySlider", tr("Opacity"), toolTip);
    m_OpacitySlider->setRange(0, 100);
    m_OpacitySlider->setMinimumWidth(30);
    m_Opacity = made(new QSpinBox, "opacity", tr("Opacity"), toolTip);
    m_Opacity->setRange(0, 100);
    m_Opacity->setSuffix(tr(" %"));
    layout->addWidget(m_OpacitySlider, 1);
    layout->addWidget(m_Opacity);
    return row;
}

QWidget* ItemProperties::makeFaces()
{
    auto* const boxes = new QWidget;
    auto* const layout = new QVBoxLayout(boxes);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(SPACING);
    m_Edges = made(new QCheckBox(tr("Edges")), "edges", tr("Edges"), tr("Whether the edges of faces are seen"));
    m_BackFaces =
        made(new QCheckBox(tr("Backs")), "backFaces", tr("Backs of faces"), tr("Whether faces are seen from behind"));
    layout->addWidget(m_Edges);
    layout->addWidget(m_BackFaces);
    return boxes;
}

void ItemProperties::makeVolume()
{
    m_Preset = makeComboBox("preset", tr("Preset"), tr("Colours and opacities that suit a kind of volume"));
    m_Preset->addItem(tr("Choose ..."));
    for (const VolumePreset& preset : volumePresets())
        m_Preset->addItem(QString::fromUtf8(preset.name.data(), int(preset.name.size())));
    m_Opacities = new OpacityEditor;
    m_Opacities->setObjectName("opacities");
    m_FunctionFiles = new TransferFunctionFiles;
    m_Maximum = made(new QCheckBox(tr("Greatest values only")), "maximum", tr("Greatest values only"),
        tr("Whether only the greatest value along each line of sight is seen"));
    m_Light = made(new QCheckBox(tr("Light")), "light", tr("Light"),
        tr("Whether light falls on it, by how steeply its values rise"));
}

void ItemProperties::connectVolume()
{
    connect(m_Preset, QOverload<int>::of(&QComboBox::activated), this, [this](int i) {
        if (i == 0)
            return;
        emit choiceMade([&preset = volumePresets().at(std::size_t(i) - 1)](auto& choice, const auto& state) {
            ItemChoice::OfField& ofField = choice.fields[state.shown];
            if (!preset.colourMap.empty())
                ofField.colourMap = std::string(preset.colourMap);
            ofField.opacities = preset.opacities;
            ofField.areLabels = preset.areCategories;
            if (preset.range)
                ofField.range = preset.range;
        });
    });
    connect(m_Opacities, &OpacityEditor::curveChosen, this, [this](const OpacityCurve& curve) {
        emit choiceMade([curve](auto& choice, const auto& state) { choice.fields[state.shown].opacities = curve; });
    });
    connect(m_FunctionFiles, &TransferFunctionFiles::functionLoaded, this, [this](const TransferFunction& function) {
        emit choiceMade([function](auto& choice, const auto& state) {
            ItemChoice::OfField& ofField = choice.fields[state.shown];
            ofField.colourMap = function.colourMap;
            ofField.range = function.range;
            ofField.opacities = function.opacities;
            ofField.areLabels = function.areCategories;
        });
    });
    connect(m_Maximum, &QCheckBox::toggled, this,
        [this](bool isOn) { emit choiceMade([isOn](auto& choice, const auto&) { choice.isMaximum = isOn; }); });
    connect(m_Light, &QCheckBox::toggled, this,
        [this](bool isOn) { emit choiceMade([isOn](auto& choice, const auto&) { choice.isLit = isOn; }); });
}

void ItemProperties::connectAll()
{
    const auto chosen = QOverload<int>::of(&QComboBox::currentIndexChanged);
    const auto changed = QOverload<double>::of(&QDoubleSpinBox::valueChanged);
    using Range = RangeHistogram::Range;
    connect(m_Field, chosen, this, [this](int i) {
        emit choiceMade([name = m_ShownNames.at(std::size_t(i))](auto& choice, const auto&) { choice.shown = name; });
    });
    connect(m_Scale, chosen, this, [this](int i) {
        emit choiceMade([i](auto& choice, const auto& state) { choice.fields[state.shown].areLabels = i != 0; });
    });
    connect(m_ColourMap, chosen, this, [this](int i) {
        emit choiceMade([name = namesOfColourMaps().at(std::size_t(i))](
                            auto& choice, const auto& state) { choice.fields[state.shown].colourMap = name; });
    });
    connect(m_Counter, &ValueCounter::counted, this, &ItemProperties::showCounts);
    connect(m_Colour, &QPushButton::clicked, this, &ItemProperties::chooseColour);
    connect(m_Histogram, &RangeHistogram::rangeDragged, this,
        [this](double from, double to) { chooseRange([from, to](const auto&) { return Range(from, to); }); });
    connect(m_From, changed, this,
        [this](double from) { chooseRange([from](const auto& state) { return Range(from, state.range.second); }); });
    connect(m_To, changed, this,
        [this](double to) { chooseRange([to](const auto& state) { return Range(state.range.first, to); }); });
    connect(m_Whole, &QPushButton::clicked, this, [this] {
        emit choiceMade([](auto& choice, const auto& state) {
            choice.fields[state.shown].range.reset();
            choice.fields[state.shown].isWhole = true;
        });
    });
    connect(m_Middle, &QPushButton::clicked, this,
        [this] { chooseRange([](const auto& state) { return quantiles(state.numbers, 0.02, 0.98); }); });
    connect(m_Size, changed, this,
        [this](double size) { emit choiceMade([size](auto& choice, const auto&) { choice.size = size; }); });
    connect(m_OpacitySlider, &QSlider::valueChanged, this, &ItemProperties::chooseOpacity);
    connect(m_Opacity, QOverload<int>::of(&QSpinBox::valueChanged), this, &ItemProperties::chooseOpacity);
    connect(m_Shading, chosen, this,
        [this](int i) { emit choiceMade([i](auto& choice, const auto&) { choice.isSmooth = i != 0; }); });
    connect(m_Edges, &QCheckBox::toggled, this,
        [this](bool isOn) { emit choiceMade([isOn](auto& choice, const auto&) { choice.areEdgesSeen = isOn; }); });
    connect(m_BackFaces, &QCheckBox::toggled, this,
        [this](bool isOn) { emit choiceMade([isOn](auto& choice, const auto&) { choice.areBackFacesSeen = isOn; }); });
    connect(m_Reset, &QPushButton::clicked, this, &ItemProperties::resetWanted);
}

// The wheel scrolls, unless what it is over has been chosen: it shall change nothing by the way.
bool ItemProperties::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() != QEvent::Wheel || static_cast<QWidget*>(object)->hasFocus())
        return QWidget::eventFilter(object, event);
    event->ignore();
    return true;
}

void ItemProperties::chooseRange(const std::function<RangeHistogram::Range(const ItemState& state)>& rangeOf)
{
    emit choiceMade([rangeOf](auto& choice, const auto& state) {
        ItemChoice::OfField& ofField = choice.fields[state.shown];
        ofField.range = rangeOf(state);
        ofField.isWhole = false;
    });
}

void ItemProperties::chooseOpacity(int percent)
{
    emit choiceMade([percent](auto& choice, const auto&) { choice.opacity = percent / 100.0; });
}

void ItemProperties::showNothing()
{
    forgetCounts();
    m_Name->setText(tr("Nothing is selected"));
    m_Name->setEnabled(false);
    m_Name->setToolTip({});
    for (QWidget* row : std::initializer_list<QWidget*>{m_Field, m_Scale, m_Colour, m_ColourMap, m_Range, m_Preset,
             m_Opacities, m_FunctionFiles, m_Maximum, m_Light, m_Size, m_OpacityRow, m_Shading, m_Faces, m_Reset})
        setRowVisible(row, false);
}

void ItemProperties::show(const std::string& path, const SceneItem* item, bool areAnyChosen)
{
    const bool isItem = item && item->shape();
    if (!isItem)
        showNothing();
    const QString name = shownText(path.substr(path.rfind('/') + 1), LONGEST_NAME);
    m_Name->setText(name.isEmpty() ? tr("(no name)") : name);
    m_Name->setToolTip(shownText(path, LONGEST_NAME));
    m_Name->setEnabled(true);
    m_Path = path;
    if (isItem)
        showItem(*item);
    setRowVisible(m_Reset, true);
    m_Reset->setEnabled(areAnyChosen);
}

void ItemProperties::showItem(const SceneItem& item)
{
    const ItemState state = item.state();
    showFields(state);
    showColour(item, state);
    const bool areNumbers = !state.numbers.isEmpty();
    setRowVisible(m_ColourMap, areNumbers);
    setRowVisible(m_Range, areNumbers);
    if (areNumbers)
        showNumbers(state, item.getDataRevision());
    else
        forgetCounts();
    showVolume(state);
    setRowVisible(m_Size, state.hasSize());
    showSize(state);
    setRowVisible(m_OpacityRow, true);
    const int percent = static_cast<int>(std::lround(100 * state.opacity));
    setQuietly(m_OpacitySlider, percent);
    setQuietly(m_Opacity, percent);
    setRowVisible(m_Shading, state.kind == ItemKind::Mesh && !state.hasNormals);
    chooseQuietly(m_Shading, state.isSmooth ? 1 : 0);
    setRowVisible(m_Faces, state.kind == ItemKind::Mesh);
    checkQuietly(m_Edges, state.areEdgesSeen);
    checkQuietly(m_BackFaces, state.areBackFacesSeen);
}

void ItemProperties::showVolume(const ItemState& state)
{
    const bool isVolume = state.kind == ItemKind::Volume;
    for (QWidget* row : std::initializer_list<QWidget*>{m_Preset, m_Opacities, m_FunctionFiles, m_Maximum, m_Light})
        setRowVisible(row, isVolume);
    if (!isVolume)
        return;
    const std::vector<VolumePreset>& presets = volumePresets();
    const auto preset = std::find_if(presets.begin(), presets.end(), [&state](const VolumePreset& preset) {
        const bool isMapShown = preset.colourMap.empty() || preset.colourMap == state.colourMap;
        return preset.areCategories == state.areLabels && isMapShown && preset.opacities == state.opacities &&
               preset.range.value_or(state.range) == state.range;
    });
    chooseQuietly(m_Preset, preset != presets.end() ? static_cast<int>(preset - presets.begin()) + 1 : 0);
    m_FunctionFiles->setFunction({state.colourMap, state.range, state.opacities, state.areLabels});
    checkQuietly(m_Maximum, state.isMaximum);
    checkQuietly(m_Light, state.isLit);
    m_Maximum->setEnabled(!state.areLabels);
    m_Light->setEnabled(!state.isMaximum || state.areLabels);
    m_Opacities->setCurve(state.opacities, findColourMap(state.colourMap).value(), state.range);
}

// Whatever was sent. Points that have radii in the scene have no size in pixels; the least number stands for them.
void ItemProperties::showSize(const ItemState& state)
{
    labelOf(m_Size)->setText(state.kind == ItemKind::Cloud ? tr("Point size") : tr("Line width"));
    const auto written = [](double number) { return QString::number(number, 'g', DIGITS_OF_RADIUS); };
    QString radii;
    if (state.radii) {
        const auto [least, largest] = *state.radii;
        radii = tr("radius %1")
                    .arg(least == largest ? written(least) : written(least) + QStringLiteral(" … ") + written(largest));
    }
    const double value = state.radii ? 0 : state.size;
    if (m_Size->specialValueText() == radii && m_Size->value() == value)
        return; // somebody may be typing there
    const QSignalBlocker quiet(m_Size);
    m_Size->setSpecialValueText(radii);
    m_Size->setDecimals(std::round(10 * value) == 10 * value ? 1 : 3);
    m_Size->setRange(state.radii ? 0 : std::min(SMALLEST_SIZE, value), std::max(LARGEST_SIZE, value));
    m_Size->setValue(value);
}

// Frames have one for each axis.
void ItemProperties::showColour(const SceneItem& item, const ItemState& state)
{
    const bool isOne = state.shown.empty() && state.kind != ItemKind::Frame;
    setRowVisible(m_Colour, isOne);
    if (!isOne)
        return;
    const std::vector<RGBA8> colours = item.swatch(palette().color(QPalette::Base).lightness() < 128);
    m_ShownColour = palette().color(QPalette::Text); // of texts
    if (!colours.empty())
        m_ShownColour = toQColor(colours.front());
    m_Colour->setIcon(colourIcon(colours));
    m_Colour->setText(m_ShownColour.name());
}

// It is seen at once, and taken back by whoever cancels.
void ItemProperties::chooseColour()
{
    auto* const dialog = new QColorDialog(m_ShownColour, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOption(QColorDialog::DontUseNativeDialog);
    const auto before = std::make_shared<std::optional<RGBA8>>();
    emit choiceMade([before](auto& choice, const auto&) { *before = choice.colour; });
    connect(dialog, &QColorDialog::currentColorChanged, this, [this](const QColor& colour) {
        emit choiceMade([colour](auto& choice, const auto&) {
            choice.colour = RGBA8(colour.red(), colour.green(), colour.blue(), 255);
        });
    });
    connect(dialog, &QDialog::rejected, this,
        [this, before] { emit choiceMade([before](auto& choice, const auto&) { choice.colour = *before; }); });
    dialog->open();
}

void ItemProperties::showFields(const ItemState& state)
{
    const std::vector<std::string> names = state.waysToColour();
    QStringList texts{tr("One colour")};
    if (state.hasColours)
        texts += tr("Colours");
    for (const ItemState::Field& field : state.fields)
        texts += field.areLabels && field.name == "labels" ? tr("Labels") : shownText(field.name, LONGEST_NAME);
    if (names != m_ShownNames) {
        const QSignalBlocker quiet(m_Field);
        m_Field->clear();
        m_Field->addItems(texts);
        m_ShownNames = names;
    }
    const auto found = std::find(names.begin(), names.end(), state.shown);
    chooseQuietly(m_Field, static_cast<int>(found - names.begin()));
    setRowVisible(m_Field, names.size() > 1);
    setRowVisible(m_Scale, state.areLabels || !state.numbers.isEmpty());
    chooseQuietly(m_Scale, state.areLabels ? 1 : 0);
}

void ItemProperties::showNumbers(const ItemState& state, std::size_t revision)
{
    if (m_CountedField != m_Path + '/' + state.shown)
        forgetCounts();
    if (m_CountedRevision != revision) {
        m_CountedRevision = revision;
        m_CountedField = m_Path + '/' + state.shown;
        m_Counter->count(state.numbers);
    }
    const std::vector<std::string_view>& maps = namesOfColourMaps();
    chooseQuietly(m_ColourMap, static_cast<int>(std::find(maps.begin(), maps.end(), state.colourMap) - maps.begin()));
    m_Histogram->setColours(findColourMap(state.colourMap).value(), state.range);
    const double span = std::abs(state.range.second - state.range.first);
    for (NumberBox* box : {m_From, m_To}) {
        const QSignalBlocker quiet(box);
        box->showValue(box == m_From ? state.range.first : state.range.second, span);
    }
}

void ItemProperties::showCounts(const ValueCounts& counts)
{
    m_Histogram->setCounts(counts);
    m_Opacities->setCounts(counts);
}

void ItemProperties::forgetCounts()
{
    m_CountedRevision = 0;
    m_CountedField.clear();
    m_Counter->forget();
    showCounts({});
}

void ItemProperties::setRowVisible(QWidget* field, bool isVisible)
{
    field->setVisible(isVisible);
    if (QLabel* const label = labelOf(field))
        label->setVisible(isVisible);
}

} // namespace tavo
