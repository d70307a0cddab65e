#include "apps/vireo-view/VolumeDisplayerConfig.h"

#include <QScopedValueRollback>
#include <algorithm>
#include <cmath>

#include "apps/vireo-view/VolumeDisplayer.h"
#include "tavo/base/debug/displayException.h"
#include "ui_VolumeDisplayerConfig.h"

namespace vireo_view {

namespace {

// The sliders' steps from one end to the other.
constexpr double NUM_STEPS = 1000;

int toSteps(double part)
{
    return static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * NUM_STEPS));
}

QString shortNumber(double value)
{
    constexpr int DIGITS = 4;
    return QString::number(value, 'g', DIGITS);
}

} // namespace

VolumeDisplayerConfig::VolumeDisplayerConfig(QWidget* parent, VolumeDisplayer* displayer)
    : GLEventConfiguration(parent, displayer)
    , m_Displayer(*displayer)
    , m_Ui(std::make_unique<Ui::VolumeDisplayerConfig>())
{
    const QScopedValueRollback showing(m_IsShowing, true);
    m_Ui->setupUi(this);
    for (const ColourMap& map : colourMaps())
        m_Ui->cbColourMap->addItem(QString::fromLatin1(map.getName().data(), static_cast<int>(map.getName().size())));
    showAll();
}

VolumeDisplayerConfig::~VolumeDisplayerConfig() = default;

void VolumeDisplayerConfig::showEvent(QShowEvent* event)
{
    tavo::runGuarded([this] { showAll(); });
    GLEventConfiguration::showEvent(event);
}

void VolumeDisplayerConfig::showAll()
{
    const QScopedValueRollback showing(m_IsShowing, true);
    const TransferFunction& function = m_Displayer.getTransferFunction();
    const Span& span = m_Displayer.getHistogram().getSpan();
    const double halfExtent = span.getHalfExtent();
    m_Ui->slWindow->setValue(halfExtent > 0 ? toSteps(function.getWindow() / 2 / halfExtent) : 0);
    m_Ui->slLevel->setValue(toSteps(span.isEmpty() ? 0 : span.partAt(function.getLevel())));
    m_Ui->slOpacity->setValue(toSteps(function.getOpacity()));
    m_Ui->cbColourMap->setCurrentIndex(static_cast<int>(function.getColourMap()));
    m_Ui->histogram->setHistogram(m_Displayer.getHistogram());
    showValues();
}

void VolumeDisplayerConfig::showValues()
{
    const TransferFunction& function = m_Displayer.getTransferFunction();
    m_Ui->lWindowValue->setText(shortNumber(function.getWindow()));
    m_Ui->lLevelValue->setText(shortNumber(function.getLevel()));
    m_Ui->lOpacityValue->setText(shortNumber(function.getOpacity() * 100) + " %");
    m_Ui->histogram->setTransferFunction(function);
}

// Changes a copy of the displayer's transfer function, and has it shown.
template <typename Edit>
void VolumeDisplayerConfig::edit(Edit change)
{
    if (m_IsShowing)
        return;
    tavo::runGuarded([&] {
        TransferFunction function = m_Displayer.getTransferFunction();
        change(function);
        m_Displayer.setTransferFunction(function);
        showValues();
        emit changed();
    });
}

void VolumeDisplayerConfig::on_slWindow_valueChanged(int value)
{
    edit([&](TransferFunction& function) {
        const double halfExtent = m_Displayer.getHistogram().getSpan().getHalfExtent();
        function.setWindow(value / NUM_STEPS * 2 * halfExtent);
    });
}

void VolumeDisplayerConfig::on_slLevel_valueChanged(int value)
{
    edit([&](TransferFunction& function) {
        const Span& span = m_Displayer.getHistogram().getSpan();
        if (!span.isEmpty())
            function.setLevel(span.valueAt(value / NUM_STEPS));
    });
}

void VolumeDisplayerConfig::on_slOpacity_valueChanged(int value)
{
    edit([&](TransferFunction& function) { function.setOpacity(value / NUM_STEPS); });
}

void VolumeDisplayerConfig::on_cbColourMap_currentIndexChanged(int index)
{
    edit([&](TransferFunction& function) { function.setColourMap(static_cast<std::size_t>(index)); });
}

} // namespace vireo_view
