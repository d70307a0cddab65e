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

// The widget of a GLEventDisplayer: a view of one GLEventObject that mouse and keys turn and move (see
// ExaminerCameraController), a button for the object's configuration panel, and two buttons that step the view's height
// through 16, 22, 32, 45, 64, 90, 128, 181, 256, 362, 512, 724 and 1024 pixels.
//
// What an object throws is reported in the debug output, and so, on Windows, is a fault of its code (see
// translateFaults); the widget lives on. The view has a GL context of its own.
class VIREO_EXPORT GLEventDisplayerWidget : public QWidget
{
    Q_OBJECT

public:
    GLEventDisplayerWidget(QWidget* parent, Qt::WindowFlags flags);
    ~GLEventDisplayerWidget() override;

    // The place in the list of heights: 5, 90 pixels, at first.
    static constexpr unsigned int NUM_SIZES = 13;
    unsigned int getSizeIndex() const { return m_SizeIndex; }

    // Sets the view's height; an index beyond the list is ignored.
    void setSizeIndex(unsigned int index);

private slots:
    void on_pbIncreaseSize_clicked();
    void on_pbDecreaseSize_clicked();
    void on_pbConfigure_clicked();

    // Repaints the view.
    virtual void changed();

public:
    // Shows an object, which belongs to the widget from now on. With updateExisting, an object of the same class that
    // is already shown takes over the data of the new one, which is freed, and keeps its panel, and its camera unless
    // its box is another one. Else the new object replaces the old one and its panel. Null is ignored; the object that
    // is already shown is only repainted. Called by the shown object itself, while it draws or is updated, this takes
    // effect after that.
    virtual void setGLEventObject(GLEventObject* object, bool updateExisting);

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
