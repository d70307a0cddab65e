#pragma once

#include "tavo/base/math/vectors.h"
#include "tavo/base/objects/Object.h"
#include "vireo/Export.h"

class QGLWidget;
class QWidget;

namespace tavo {

class Camera;
class GLEventConfiguration;

/// Something that a view of the debug window shows. It draws itself, knows its size, takes over the data of a newer
/// object of its class, and makes the panel that configures it.
///
///     class Triangle : public GLEventObject
///     {
///     public:
///         Box3f getBoundingBox() override { return {{0, 0, 0}, {1, 1, 0}}; }
///         void drawGL(QGLWidget*, Camera&) override
///         {
///             glBegin(GL_TRIANGLES);
///             glVertex2f(0, 0);
///             glVertex2f(1, 0);
///             glVertex2f(0, 1);
///             glEnd();
///         }
///         GLEventConfiguration* createConfigWindow(QWidget*) override { return nullptr; }
///         void updateData(GLEventObject*) override {}
///     };
///
///     void showTriangle()
///     {
///         sendGLEventObject("a triangle", new Triangle);
///     }
///
/// What an object throws is reported, and the view lives on. An object may make other contexts current; the view
/// restores what was current before. When the view frees an object that it has drawn, its context is current, so that
/// the object can free what it has there.
///
/// @owns The widget that shows an object owns it.
class VIREO_EXPORT GLEventObject : public Object
{
public:
    /// The class record, by which a view recognises a newer object of the same class. Classes override this with a
    /// record of their own (see ClassRecord.h). Those that do not are told apart by their C++ types; if the types
    /// differ, a line in the log says what is missing.
    const MetaClass* getInstanceClass() const override;

    GLEventObject();
    GLEventObject(const GLEventObject& other);
    GLEventObject& operator=(const GLEventObject& other);
    ~GLEventObject() override;

    /// The box of what drawGL draws, in the object's own coordinates. The view places its camera by it: the eye is
    /// twice the largest extent away from the point it looked at before, and what is 0.01 to 1000 away from the eye is
    /// shown. A new view looked at the origin, so it shows data from -150 to 150 along each axis, if they extend at
    /// least 0.01 along one. If a box is too near or reaches too far, a line in the log says by how much, once, and
    /// what shows curves of any range: tavo::plot (vireo/show/show.h).
    virtual Box3f getBoundingBox() = 0;

    /// Draws into the widget's context, which is current. The projection matrix is selected and holds the view's
    /// projection; you need not restore it. The modelview matrix holds the camera of the previous paint (see
    /// loadCamera).
    virtual void drawGL(QGLWidget* widget, Camera& camera) = 0;

    /// Makes a panel that configures this object, as a child of `parent`; null if there is nothing to configure.
    /// @owns The parent owns the panel.
    virtual GLEventConfiguration* createConfigWindow(QWidget* parent) = 0;

    /// Takes over the data of a newer object of the same class, and keeps this object's view settings. Leave what lives
    /// in GL to drawGL: the view's context is not current here, since drivers may lose the frame that the application
    /// is drawing when another context is made current.
    /// @owns The caller keeps the newer object, and frees it afterwards.
    virtual void updateData(GLEventObject* newer) = 0;

    /// The class record, which the first call makes. Do not call this after shutdown().
    static const MetaClass* getClass();
    static void initMetaClass();
    static void init(const MetaClass* parent);
    static void shutdown();

    static MetaClass* GLEventObjectMetaClass;
};

} // namespace tavo
