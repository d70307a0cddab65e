#pragma once

#include <memory>

#include "vireo/Export.h"
#include "vireo/displayers/GLEventConfiguration.h"

namespace Ui {
class GLGraphDisplayerConfig;
}

namespace tavo {

/// The panel of a GLGraphDisplayer: a check box that shows and hides the coordinate axes. It starts checked while a new
/// displayer shows no axes, deliberately: the two agree from the first toggle on.
///
///     GLGraphDisplayer graphs;
///     GLGraphDisplayerConfig* const panel = new GLGraphDisplayerConfig(parent, &graphs);
///     panel->popup(parent);
class VIREO_EXPORT GLGraphDisplayerConfig : public GLEventConfiguration
{
    Q_OBJECT

public:
    GLGraphDisplayerConfig(QWidget* parent, GLEventObject* object);
    ~GLGraphDisplayerConfig() override;

private slots:
    void on_cbShowCoords_stateChanged(int state);

private:
    std::unique_ptr<Ui::GLGraphDisplayerConfig> m_Ui;
};

} // namespace tavo
