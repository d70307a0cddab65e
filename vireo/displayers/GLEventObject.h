#pragma once

#include "tavo/base/math/vectors.h"
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
// What an object throws is reported, and the view lives on. When the view frees an object that it has drawn, its
// context is current, so that the object can free what it has there. Whatever an object makes current, what was current
// before the view was called is so again afterwards.
class VIREO_EXPORT GLEventObject : public Object
{
public:
    // The class record by which a view knows whether a newer object is of the shown one's class. Classes override it
    // with a record of their own (see ClassRecord.h). Those that do not are told apart by their C++ types, and where a
    // newer object is of another type, a line in the log says what is missing.
    const MetaClass* getInstanceClass() const override;

    GLEventObject();
    GLEventObject(const GLEventObject& other);
    GLEventObject& operator=(const GLEventObject& other);
    ~GLEventObject() override;

    // The box of what drawGL draws, in the object's own coordinates. The view places its camera by it, with the eye
    // twice the largest extent from the point that it looked at before, and shows what is from 0.01 to 1000 away from
    // the eye. A new view, which looked at the origin, shows data from -150 to 150 along each axis, if they extend
    // 0.01 or more along one of them; of an object whose box is too near or reaches too far, a line in the log says by
    // how much, once.
    virtual Box3f getBoundingBox() = 0;

    // Draws into the widget's context, which is current. The projection matrix is selected and holds the projection of
    // the view; what is changed of it need not be restored. The model-view matrix holds the camera as of the previous
    // paint; loadCamera replaces it by the one that is given.
    virtual void drawGL(QGLWidget* widget, Camera& camera) = 0;

    // A new panel that configures this object, as a child of parent, which owns it; null if there is nothing to
    // configure.
    virtual GLEventConfiguration* createConfigWindow(QWidget* parent) = 0;

    // Takes over the data of a newer object of the same class and keeps this object's own view settings. The newer
    // object stays the caller's, who frees it afterwards. The view's context is not current: the application may be in
    // the middle of a frame of its own, which drivers may lose when another context is made current. What lives in GL
    // is left to drawGL.
    virtual void updateData(GLEventObject* newer) = 0;

    // The class record, made by the first call; not to be asked for after shutdown.
    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* GLEventObjectMetaClass;
};

} // namespace tavo
