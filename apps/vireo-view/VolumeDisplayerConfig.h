#pragma once

#include <memory>

#include "vireo/displayers/GLEventConfiguration.h"

class QShowEvent;

namespace Ui {
class VolumeDisplayerConfig;
}

namespace vireo_view {

class VolumeDisplayer;
class TransferFunction;

// The configuration panel of a VolumeDisplayer: the histogram of its volume with the transfer function in it, sliders
// for window, level and opacity, with their values, and the choice of a colour map. What is changed shows at once.
class VolumeDisplayerConfig : public tavo::GLEventConfiguration
{
    Q_OBJECT

public:
    VolumeDisplayerConfig(QWidget* parent, VolumeDisplayer* displayer);
    ~VolumeDisplayerConfig() override;

    // Shows what the displayer has now, without changing it.
    void showAll();

protected:
    // Shows the volume and the transfer function as they are by now.
    void showEvent(QShowEvent* event) override;

private slots:
    void on_slWindow_valueChanged(int value);
    void on_slLevel_valueChanged(int value);
    void on_slOpacity_valueChanged(int value);
    void on_cbColourMap_currentIndexChanged(int index);

private:
    template <typename Edit>
    void edit(Edit change);
    void showValues();

    VolumeDisplayer& m_Displayer;
    std::unique_ptr<Ui::VolumeDisplayerConfig> m_Ui;
    bool m_IsShowing = false; // the sliders move to show what is, not to change it
};

} // namespace vireo_view
