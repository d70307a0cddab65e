#pragma once

#include <QPointer>
#include <string>

#include "tavo/base/debug/EventDisplayer.h"
#include "vireo/Export.h"

namespace tavo {

class GLEventDisplayerWidget;
class GLEventObject;

/// Shows a GLEventObject in the debug window. An application registers the class once, and sends objects made on the
/// heap:
///
///     GLEventDisplayer::init(EventDisplayer::getClass());
///
///     sendGLEventObject("curves", new GLGraphDisplayer);
///
/// sendGLEventObject is a short form of a SetNewGLEventObject that `debugOutput` displays; it also frees what could not
/// be delivered.
class VIREO_EXPORT GLEventDisplayer : public EventDisplayer
{
public:
    /// Carries an object to the displayer's widget.
    ///
    ///     GLGraphDisplayer* const curves = new GLGraphDisplayer;
    ///     const GLEventDisplayer::SetNewGLEventObject event(curves, true);
    ///     if (!debugOutput.displayEvent(GLEventDisplayer::getClass(), "curves", &event))
    ///         delete curves;
    ///
    /// @owns The widget owns the object once the event is delivered. The event never frees it.
    class VIREO_EXPORT SetNewGLEventObject : public EventDisplayerEvent
    {
    public:
        SetNewGLEventObject(GLEventObject* object, bool updateExisting);
        ~SetNewGLEventObject() override;

        GLEventObject* object;

        /// Whether a shown object of the same class takes over the data, keeping its camera and settings. Otherwise it
        /// is replaced.
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
    /// Hands a SetNewGLEventObject to the widget. Ignores other events, and events before there is a widget; what they
    /// carry stays the sender's.
    void displayEvent(const EventDisplayerEvent* event, const char* name) override;

    /// The class record, which the first call makes. Do not call this after shutdown().
    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* GLEventDisplayerMetaClass;

private:
    static Object* newInstance();

    QPointer<GLEventDisplayerWidget> m_Widget;
};

/// Sends an object to the debug output under that name. It updates the one that is shown there if that is of the same
/// class, or else replaces it.
/// @owns The widget owns the object, or this frees it if no displayer gets it (see DebugOutput::displayEvent).
VIREO_EXPORT void sendGLEventObject(std::string name, GLEventObject* object);

} // namespace tavo
