#pragma once

#include <memory>

#include "vireo/Export.h"
#include "vireo/displayers/GLEventConfiguration.h"

namespace Ui {
class GLPointCloudDisplayerConfig;
}

namespace tavo {

/// The panel of a GLPointCloudDisplayer: a check box that shows and hides the coordinate axes.
///
///     GLPointCloudDisplayer cloud;
///     GLPointCloudDisplayerConfig* const panel = new GLPointCloudDisplayerConfig(parent, &cloud);
///     panel->popup(parent);
class VIREO_EXPORT GLPointCloudDisplayerConfig : public GLEventConfiguration
{
    Q_OBJECT

public:
    GLPointCloudDisplayerConfig(QWidget* parent, GLEventObject* object);
    ~GLPointCloudDisplayerConfig() override;

private slots:
    void on_cbShowCoords_stateChanged(int state);

private:
    std::unique_ptr<Ui::GLPointCloudDisplayerConfig> m_Ui;
};

} // namespace tavo
