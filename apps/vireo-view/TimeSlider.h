#pragma once

#include <QLabel>
#include <QSlider>
#include <QWidget>

#include "apps/vireo-view/showVolume.h"

namespace vireo_view {

// A small window of its own with a slider through the times of a volume.
class TimeSlider : public QWidget
{
public:
    explicit TimeSlider(ShownVolume volume);

private:
    void showTime(int time);

    ShownVolume m_Volume;
    QLabel* m_Text;
};

} // namespace vireo_view
