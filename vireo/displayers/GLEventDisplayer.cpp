#include "vireo/displayers/GLEventDisplayer.h"

#include <memory>
#include <new>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/objects/ClassRecord.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"
#include "vireo/displayers/GLEventObject.h"

namespace tavo {

TAVO_CLASS_RECORD(GLEventDisplayer)

GLEventDisplayer::SetNewGLEventObject::SetNewGLEventObject(GLEventObject* object, bool updateExisting)
    : object(object)
    , updateExisting(updateExisting)
{}

GLEventDisplayer::SetNewGLEventObject::~SetNewGLEventObject() = default;

GLEventDisplayer::GLEventDisplayer() = default;
GLEventDisplayer::GLEventDisplayer(const GLEventDisplayer& other) = default;
GLEventDisplayer& GLEventDisplayer::operator=(const GLEventDisplayer& other) = default;
GLEventDisplayer::~GLEventDisplayer() = default;

QWidget* GLEventDisplayer::createSpecialWidget(QWidget* parent)
{
    m_Widget = new (std::nothrow) GLEventDisplayerWidget(parent, Qt::WindowFlags());
    return m_Widget;
}

void GLEventDisplayer::displayEvent(const EventDisplayerEvent* event, const char* name)
{
    if (!m_Widget)
        return;
    if (name)
        m_Widget->setAccessibleName(QString::fromUtf8(name)); // by which the log names the view
    if (const auto* newObject = dynamic_cast<const SetNewGLEventObject*>(event))
        m_Widget->setGLEventObject(newObject->object, newObject->updateExisting);
}

void sendGLEventObject(std::string name, GLEventObject* object)
{
    std::unique_ptr<GLEventObject> unsent(object);
    const GLEventDisplayer::SetNewGLEventObject event(object, true);
    if (debugOutput.displayEvent(GLEventDisplayer::getClass(), name, &event))
        static_cast<void>(unsent.release());
}

} // namespace tavo
