#include "vireo/displayers/GLPointCloudDisplayerConfig.h"

#include "tavo/base/debug/displayException.h"
#include "ui_GLPointCloudDisplayerConfig.h"
#include "vireo/displayers/GLPointCloudDisplayer.h"

namespace tavo {

GLPointCloudDisplayerConfig::GLPointCloudDisplayerConfig(QWidget* parent, GLEventObject* object)
    : GLEventConfiguration(parent, object)
    , m_Ui(std::make_unique<Ui::GLPointCloudDisplayerConfig>())
{
    m_Ui->setupUi(this);
}

GLPointCloudDisplayerConfig::~GLPointCloudDisplayerConfig() = default;

void GLPointCloudDisplayerConfig::on_cbShowCoords_stateChanged(int)
{
    runGuarded([this] {
        if (auto* displayer = dynamic_cast<GLPointCloudDisplayer*>(m_EventObject))
            displayer->setShowCoords(m_Ui->cbShowCoords->isChecked());
        emit changed();
    });
}

} // namespace tavo
