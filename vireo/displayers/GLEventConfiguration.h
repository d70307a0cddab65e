#pragma once

#include "tavo/base/gui/PopupWindow.h"
#include "vireo/Export.h"

namespace tavo {

class GLEventObject;

/// The base of the panels that configure a GLEventObject: a popup window that tells the view when the object looks
/// different. It belongs to its Qt parent, and only points to its object.
///
///     class Switch : public GLEventConfiguration
///     {
///     public:
///         Switch(QWidget* parent, GLEventObject* object)
///             : GLEventConfiguration(parent, object)
///         {}
///         void flip() { emit changed(); } // after a change to m_EventObject
///     };
class VIREO_EXPORT GLEventConfiguration : public PopupWindow
{
    Q_OBJECT

public:
    GLEventConfiguration(QWidget* parent, GLEventObject* object);
    ~GLEventConfiguration() override;

signals:
    /// The object was changed and must be drawn again.
    void changed();

protected:
    GLEventObject* m_EventObject;
};

} // namespace tavo
