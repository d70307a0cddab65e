#include "vireo/displayers/GLEventConfiguration.h"

namespace tavo {

GLEventConfiguration::GLEventConfiguration(QWidget* parent, GLEventObject* object)
    : PopupWindow(parent)
    , m_EventObject(object)
{}

GLEventConfiguration::~GLEventConfiguration() = default;

} // namespace tavo
