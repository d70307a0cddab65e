#pragma once

#include "tavo/base/math/BoundingBox.h"
#include "tavo/base/objects/Object.h"
#include "vireo/Export.h"

class QGLWidget;
class QWidget;

namespace tavo {

class Camera;
class GLEventConfiguration;

// Something that can be shown in a view of the debug window: it draws itself, knows how large it is, takes over the
// data of a newer object of its class, and makes the panel that configures it. Sent in a
// GLEventDisplayer::SetNewGLEventObject, it belongs to the widget that shows it.
//
// What an object throws is reported, and the view lives on.
class VIREO_EXPORT GLEventObject : public Object
{
public:
    const MetaClass* getInstanceClass() const override;

    GLEventObject();
    GLEventObject(const GLEventObject& other);
    GLEventObject& operator=(const GLEventObject& other);
    ~GLEventObject() override;

    // The box of what drawGL draws, in the object's own coordinates. The view places its camera by it.
    virtual BoundingBox<float, 3> getBoundingBox() = 0;

    // Draws into the widget's context, which is current. The projection matrix is selected and holds the projection of
    // the view; what is changed of it need not be restored. The model-view matrix holds the camera as of the previous
    // paint.
    virtual void drawGL(QGLWidget* widget, Camera& camera) = 0;

    // A new panel that configures this object, as a child of parent, which owns it; null if there is nothing to
    // configure.
    virtual GLEventConfiguration* createConfigWindow(QWidget* parent) = 0;

    // Takes over the data of a newer object of the same class and keeps this object's own view settings. The newer
    // object stays the caller's, who frees it afterwards.
    virtual void updateData(GLEventObject* newer) = 0;

    // The class record, made by the first call; not to be asked for after shutdown.
    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* GLEventObjectMetaClass;
};

} // namespace tavo
