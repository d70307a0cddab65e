#include "apps/vireo-view/TimeSlider.h"

#include <QHBoxLayout>
#include <algorithm>
#include <utility>

namespace vireo_view {

TimeSlider::TimeSlider(ShownVolume volume)
    : QWidget(nullptr, Qt::Tool) // which does not keep the program alive
    , m_Volume(std::move(volume))
    , m_Text(new QLabel)
{
    constexpr int WIDTH = 300;
    setWindowTitle(QString::fromStdString(m_Volume.getName()));
    auto* const slider = new QSlider(Qt::Horizontal);
    slider->setMaximum(static_cast<int>(m_Volume.getNumTimes()) - 1);
    slider->setPageStep(std::max(1, slider->maximum() / 10));
    slider->setMinimumWidth(WIDTH);
    auto* const layout = new QHBoxLayout(this);
    layout->addWidget(slider);
    layout->addWidget(m_Text);
    connect(slider, &QSlider::valueChanged, this, [this](int time) { showTime(time); });
    showTime(0);
}

void TimeSlider::showTime(int time)
{
    m_Volume.showTime(static_cast<std::size_t>(time));
    QString text = QString("%1 of %2").arg(time + 1).arg(m_Volume.getNumTimes());
    if (m_Volume.getSecondsPerTime() > 0)
        text += QString(", %1 s").arg(time * m_Volume.getSecondsPerTime());
    m_Text->setText(text);
}

} // namespace vireo_view
