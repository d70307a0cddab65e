#pragma once

#include "tavo/base/gui/PopupWindow.h"
#include "vireo/Export.h"

namespace tavo {

class GLEventObject;

// Base of the panels that configure a GLEventObject: a popup window that says when the object looks different. A panel
// belongs to its Qt parent and only points to its object.
class VIREO_EXPORT GLEventConfiguration : public PopupWindow
{
    Q_OBJECT

public:
    GLEventConfiguration(QWidget* parent, GLEventObject* object);
    ~GLEventConfiguration() override;

signals:
    // The object was changed and is to be drawn anew.
    void changed();

protected:
    GLEventObject* m_EventObject;
};

} // namespace tavo
