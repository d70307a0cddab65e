#pragma once

#include <QGLWidget>
#include <memory>
#include <optional>
#include <string>

#include "tavo/base/gui/Camera.h"
#include "tavo/base/gui/ExaminerCameraController.h"
#include "tavo/base/math/vectors.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"

namespace tavo {

class GLContext;
class ViewContext;

// The view. It owns the object it shows, and a context for it. Whatever Qt calls it for, and whatever the widget around
// it does, leaves current what was current before.
class Q_DECL_HIDDEN GLEventDisplayerWidget::MyGLWidget : public QGLWidget
{
public:
    explicit MyGLWidget(QWidget* parent);
    ~MyGLWidget() override;

    GLEventObject* getObject() { return m_Object; }

    // Takes the object over; the old one is freed.
    void setObject(std::unique_ptr<GLEventObject> object);

    // Says, while it lives, that code of the shown object is running.
    class InUse
    {
    public:
        explicit InUse(MyGLWidget& view)
            : m_NumUses(view.m_NumUses)
        {
            ++m_NumUses;
        }
        ~InUse() { --m_NumUses; }
        InUse(const InUse&) = delete;
        InUse& operator=(const InUse&) = delete;

    private:
        int& m_NumUses;
    };

    // As long as it is, the shown object must stay.
    bool isInUse() const { return m_NumUses > 0; }

    // Moves the camera to where it sees the whole shown object.
    void refit();

    QImage getPicture(const QSize& size);

protected:
    void paintEvent(QPaintEvent* event) override;
    void glDraw() override;
    void paintGL() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    MyGLWidget(ViewContext* context, QWidget* parent);

    template <typename Code>
    void handle(Code code);
    void showPicture();
    bool makeContext();
    std::string withoutContext() const;
    void reportMissingContext();
    // Makes the context current that the shown object was drawn in, if it was: it may free names of it.
    void makeDrawnCurrent();
    void paint();
    void drawObject();
    void selectPart() const;
    QImage takeTile(const QSize& whole, const QRect& tile);
    void warnIfOutOfView(const Box3f& box);

    Camera m_Camera;
    ViewContext& m_ViewContext; // of the base, which owns it
    GLContext* m_Context;
    GLEventObject* m_Object;
    ExaminerCameraController m_Controller;
    // The camera that the model-view matrix holds, if it holds one.
    std::optional<Camera> m_LoadedCamera;
    int m_NumUses = 0;
    // What is drawn of how large a view, while it is not all of this one.
    QSize m_WholeSize;
    QRect m_Part;
    // Whether it was said of the shown object that it is out of view.
    bool m_HasWarned = false;
    // Whether it was said that the view has no GL context.
    bool m_IsReported = false;
};

} // namespace tavo
