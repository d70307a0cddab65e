#include "vireo/displayers/GLGraphDisplayerConfig.h"

#include "tavo/base/debug/displayException.h"
#include "ui_GLGraphDisplayerConfig.h"
#include "vireo/displayers/GLGraphDisplayer.h"

namespace tavo {

GLGraphDisplayerConfig::GLGraphDisplayerConfig(QWidget* parent, GLEventObject* object)
    : GLEventConfiguration(parent, object)
    , m_Ui(std::make_unique<Ui::GLGraphDisplayerConfig>())
{
    m_Ui->setupUi(this);
}

GLGraphDisplayerConfig::~GLGraphDisplayerConfig() = default;

void GLGraphDisplayerConfig::on_cbShowCoords_stateChanged(int)
{
    runGuarded([this] {
        if (auto* displayer = dynamic_cast<GLGraphDisplayer*>(m_EventObject))
            displayer->setShowCoords(m_Ui->cbShowCoords->isChecked());
        emit changed();
    });
}

} // namespace tavo
