#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <vector>

#include "vireo/Export.h"

namespace Ui {
class GLEventDisplayerWidget;
}

namespace tavo {

class GLEventConfiguration;
class GLEventObject;

/// The widget of a GLEventDisplayer: a view of one GLEventObject, which mouse and keys turn and move (see
/// ExaminerCameraController), a button for the object's configuration panel, and two buttons that step the view's
/// height through 16, 22, 32, 45, 64, 90, 128, 181, 256, 362, 512, 724 and 1024 pixels. It can be part of any Qt
/// window:
///
///     GLEventDisplayerWidget* const view = new GLEventDisplayerWidget(parent, Qt::Widget);
///     view->setSizeIndex(9); // 362 pixels
///     view->setGLEventObject(new GLPointCloudDisplayer, false);
///
/// What an object throws is reported in the debug output, and so, on Windows, are faults of its code (see
/// translateFaults); the widget lives on. Each view costs a GL context of its own. Where GL does not draw to its
/// window, as on Wayland, the view shows the pictures of a context without a window; without that, why there are none.
class VIREO_EXPORT GLEventDisplayerWidget : public QWidget
{
    Q_OBJECT

public:
    GLEventDisplayerWidget(QWidget* parent, Qt::WindowFlags flags);
    ~GLEventDisplayerWidget() override;

    /// The place in the list of heights, counted from 0. It starts at 5: 90 pixels.
    static constexpr unsigned int NUM_SIZES = 13;
    unsigned int getSizeIndex() const { return m_SizeIndex; }

    /// Sets the view's height. An index beyond the list is ignored.
    void setSizeIndex(unsigned int index);

private slots:
    void on_pbIncreaseSize_clicked();
    void on_pbDecreaseSize_clicked();
    void on_pbConfigure_clicked();

    // Repaints the view.
    virtual void changed();

public:
    /// Shows an object. With updateExisting, a shown object of the same class takes over its data, keeps its panel, and
    /// keeps its camera unless the box has changed; the new object is freed. Otherwise the new object replaces the
    /// shown one and its panel. Null only repaints. If the shown object calls this while it draws or is updated, it
    /// takes effect afterwards.
    /// @owns The widget owns the object from now on.
    virtual void setGLEventObject(GLEventObject* object, bool updateExisting);

    /// The shown object; null if there is none.
    /// @owns The widget owns it, until another replaces it.
    GLEventObject* getGLEventObject() const;

private:
    class MyGLWidget;

    // An object that waits to be shown.
    struct SentObject
    {
        std::unique_ptr<GLEventObject> object;
        bool updateExisting;
    };

    void stepSize(int step);
    void take(SentObject& sent);
    void takeWaiting();
    // Both empty the pointer.
    void updateObject(std::unique_ptr<GLEventObject>& newer);
    void replaceObject(std::unique_ptr<GLEventObject>& object);
    void replaceConfigWindow(GLEventObject* object);

    std::unique_ptr<Ui::GLEventDisplayerWidget> m_Ui;
    MyGLWidget* m_GlWidget;
    unsigned int m_SizeIndex;
    QPointer<GLEventConfiguration> m_ConfigWindow;
    std::vector<SentObject> m_WaitingObjects;
};

} // namespace tavo
