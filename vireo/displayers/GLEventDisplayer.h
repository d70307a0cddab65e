#pragma once

#include <QPointer>
#include <string>

#include "tavo/base/debug/EventDisplayer.h"
#include "vireo/Export.h"

namespace tavo {

class GLEventDisplayerWidget;
class GLEventObject;

// Shows a GLEventObject in the debug window. To show one, create it on the heap and send it:
//
//     GLEventDisplayer::SetNewGLEventObject event(object, true);
//     debugOutput.displayEvent(GLEventDisplayer::getClass(), "name", &event);
//
// or call sendGLEventObject, which also frees what could not be delivered. The application registers the class once, by
// init(EventDisplayer::getClass()).
class VIREO_EXPORT GLEventDisplayer : public EventDisplayer
{
public:
    // Carries an object to the displayer's widget, which owns it once the event was delivered; the event never frees
    // it.
    class VIREO_EXPORT SetNewGLEventObject : public EventDisplayerEvent
    {
    public:
        SetNewGLEventObject(GLEventObject* object, bool updateExisting);
        ~SetNewGLEventObject() override;

        GLEventObject* object;

        // Whether an object of the same class that is already shown takes over the data, keeping its camera and
        // settings, instead of being replaced.
        bool updateExisting;
    };

    const MetaClass* getInstanceClass() const override;

    GLEventDisplayer();
    GLEventDisplayer(const GLEventDisplayer& other);
    GLEventDisplayer& operator=(const GLEventDisplayer& other);
    ~GLEventDisplayer() override;

protected:
    QWidget* createSpecialWidget(QWidget* parent) override;

public:
    // Hands a SetNewGLEventObject to the widget. Other events, and events before there is a widget, are ignored; what
    // they carry stays the sender's.
    void displayEvent(const EventDisplayerEvent* event, const char* name) override;

    // The class record, made by the first call; not to be asked for after shutdown.
    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* GLEventDisplayerMetaClass;

private:
    static Object* newInstance();

    QPointer<GLEventDisplayerWidget> m_Widget;
};

// Sends an object to the debug output under that name, to update the one that is shown there if it is of the same
// class. Takes the object over, and frees it if no displayer gets it (see DebugOutput::displayEvent).
VIREO_EXPORT void sendGLEventObject(std::string name, GLEventObject* object);

} // namespace tavo
