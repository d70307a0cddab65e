#include "vireo/displayers/GLEventDisplayerWidget.h"

#include <QCursor>
#include <QGLWidget>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/debug/translateFaults.h"
#include "tavo/base/gui/Camera.h"
#include "tavo/base/gui/ExaminerCameraController.h"
#include "tavo/base/gui/WidgetPicture.h"
#include "tavo/base/text/printable.h"
#include "tavo/platform/wgl.h"
#include "ui_GLEventDisplayerWidget.h"
#include "vireo/context/CurrentContextGuard.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/tidyUpGl.h"
#include "vireo/displayers/GLEventConfiguration.h"
#include "vireo/displayers/GLEventObject.h"
#include "vireo/displayers/ViewContext.h"
#include "vireo/displayers/ViewPicture.h"
#include "vireo/displayers/canTakeOver.h"
#include "vireo/displayers/outOfView.h"

#include <GL/glu.h>

namespace tavo {

// Defined here as well as in the class: a DLL exports only what is defined in one of its sources.
constexpr unsigned int GLEventDisplayerWidget::NUM_SIZES;

namespace {

constexpr int VIEW_HEIGHTS[] = {16, 22, 32, 45, 64, 90, 128, 181, 256, 362, 512, 724, 1024};
static_assert(std::size(VIEW_HEIGHTS) == GLEventDisplayerWidget::NUM_SIZES);
constexpr unsigned int START_SIZE = 5;

// Where the camera goes to show a box.
struct Refit
{
    Vector3f eye;
    Vector3f lookAt;
};

Vector3f viewingDirection(const Camera& camera)
{
    const Vector3f d = camera.getLookAtPoint() - camera.getEyePoint();
    const float squared = dot(d, d);
    return squared > 0.0f ? d * (1.0f / std::sqrt(squared)) : Vector3f(0.0f, 0.0f, 1.0f);
}

Refit refitTo(const Box3f& box, const Camera& camera)
{
    const Vector3f extent = box.getExtent();
    const float largest = std::max({extent[0], extent[1], extent[2]});
    // The eye starts from the old look-at point and goes on along the old direction: deliberate.
    return {
        camera.getLookAtPoint() + viewingDirection(camera) * (2.0f * largest), (box.getMin() + box.getMax()) * 0.5f};
}

unsigned int buttonNumber(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton: return ExaminerCameraController::LEFT_BUTTON;
    case Qt::RightButton: return ExaminerCameraController::RIGHT_BUTTON;
    case Qt::MiddleButton: return ExaminerCameraController::MIDDLE_BUTTON;
    default: return 0;
    }
}

// The name of a view's section, for the beginning of a line in the log; empty if it has none.
std::string nameOf(const QWidget& view)
{
    constexpr std::size_t LONGEST_NAME = 100;
    const QWidget* widget = view.parentWidget();
    while (widget && !qobject_cast<const GLEventDisplayerWidget*>(widget))
        widget = widget->parentWidget();
    if (!widget || widget->accessibleName().isEmpty())
        return {};
    return '"' + printable(widget->accessibleName().toStdString(), LONGEST_NAME) + "\": ";
}

// Says, while it lives, that code of a shown object is running.
class InUse
{
public:
    explicit InUse(int& numUses)
        : m_NumUses(numUses)
    {
        ++m_NumUses;
    }
    ~InUse() { --m_NumUses; }
    InUse(const InUse&) = delete;
    InUse& operator=(const InUse&) = delete;

private:
    int& m_NumUses;
};

} // namespace

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

    // How often code of the shown object is running; until there is none, the object must stay.
    int& numUses() { return m_NumUses; }

    // Moves the camera to where it sees the whole shown object.
    void refit();

    QImage getPicture();

protected:
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
    bool makeContext();
    std::string withoutContext() const;
    void reportMissingContext();
    // Makes the context current that the shown object was drawn in, if it was: it may free names of it.
    void makeDrawnCurrent();
    void paint();
    void drawObject();
    void warnIfOutOfView(const Box3f& box);

    Camera m_Camera;
    ViewContext& m_ViewContext; // of the base, which owns it
    GLContext* m_Context;
    GLEventObject* m_Object;
    ExaminerCameraController m_Controller;
    // The camera that the model-view matrix holds, if it holds one.
    std::optional<Camera> m_LoadedCamera;
    int m_NumUses = 0;
    // Whether it was said of the shown object that it is out of view.
    bool m_HasWarned = false;
    // Whether it was said that the view has no GL context.
    bool m_IsReported = false;
};

GLEventDisplayerWidget::MyGLWidget::MyGLWidget(QWidget* parent)
    : MyGLWidget(new ViewContext, parent)
{}

GLEventDisplayerWidget::MyGLWidget::MyGLWidget(ViewContext* context, QWidget* parent)
    : QGLWidget(context, parent)
    , m_ViewContext(*context)
    , m_Context(nullptr)
    , m_Object(nullptr)
{
    m_Controller.setCamera(&m_Camera);
    m_Controller.setSize(width(), height());
    setFocusPolicy(Qt::StrongFocus);
    setPictureSource(this, [this] { return getPicture(); });
    if (!isValid())
        reportMissingContext();
}

GLEventDisplayerWidget::MyGLWidget::~MyGLWidget()
{
    makeDrawnCurrent();
    runGuarded([this] { delete m_Object; });
    runGuarded([this] { delete m_Context; });
}

// Every paint passes here: those that Qt asks for, and those at once.
void GLEventDisplayerWidget::MyGLWidget::glDraw()
{
    const CurrentContextGuard guard;
    QGLWidget::glDraw();
}

void GLEventDisplayerWidget::MyGLWidget::makeDrawnCurrent()
{
    if (m_Context)
        makeCurrent();
}

void GLEventDisplayerWidget::MyGLWidget::setObject(std::unique_ptr<GLEventObject> object)
{
    m_HasWarned = false;
    if (m_Object)
        makeDrawnCurrent();
    const GLEventObject* const old = std::exchange(m_Object, object.release());
    runGuarded([old] { delete old; });
}

void GLEventDisplayerWidget::MyGLWidget::refit()
{
    const Box3f box = m_Object->getBoundingBox();
    const Refit refit = refitTo(box, m_Camera);
    const Vector3f sum = refit.eye + refit.lookAt;
    if (!std::isfinite(sum[0] + sum[1] + sum[2]))
        warning("GLEventDisplayerWidget::setGLEventObject() - the object's box is not finite, so the camera stays.");
    m_Controller.place(refit.eye, refit.lookAt, m_Camera.getUpVector());
    warnIfOutOfView(box);
}

void GLEventDisplayerWidget::MyGLWidget::warnIfOutOfView(const Box3f& box)
{
    const std::string text = m_HasWarned ? std::string() : describeOutOfView(box, m_Camera);
    if (text.empty())
        return;
    m_HasWarned = true;
    warning("GLEventDisplayerWidget::setGLEventObject() - " + nameOf(*this) + text);
}

void GLEventDisplayerWidget::MyGLWidget::paintGL()
{
    const InUse inUse(m_NumUses);
    if (!runGuarded([this] { paint(); })) {
        runGuarded([this] {
            makeCurrent();
            tidyUpGl();
        });
        m_LoadedCamera.reset();
    }
}

// The first time, makes the view current, and wraps what it is current with. False if there is nothing.
bool GLEventDisplayerWidget::MyGLWidget::makeContext()
{
    if (m_Context)
        return true;
    makeCurrent();
    if (QGLContext::currentContext() != context() || !wglGetCurrentContext())
        return false;
    m_Context = new GLContext(wglGetCurrentDC(), wglGetCurrentContext(), nullptr, nullptr);
    return true;
}

std::string GLEventDisplayerWidget::MyGLWidget::withoutContext() const
{
    return "GLEventDisplayerWidget::paintGL() - the view has no GL context: " + m_ViewContext.getFailure();
}

// In the log, once: a view that can never be painted stays black.
void GLEventDisplayerWidget::MyGLWidget::reportMissingContext()
{
    if (!std::exchange(m_IsReported, true))
        displayPException(PException(withoutContext()));
}

void GLEventDisplayerWidget::MyGLWidget::paint()
{
    if (!makeContext()) {
        reportMissingContext();
        return;
    }
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (width() >= 1 && height() >= 1 && m_Object)
        drawObject();
}

void GLEventDisplayerWidget::MyGLWidget::drawObject()
{
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glViewport(0, 0, width(), height());
    gluPerspective(45.0, double(width()) / height(), NEAR_PLANE, FAR_PLANE);

    // Drawn before this frame's camera is loaded, with the projection matrix selected: deliberate.
    m_Object->drawGL(this, m_Camera);

    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    m_Controller.setSize(width(), height());
    m_Controller.update();
    const Vector3f& eye = m_Camera.getEyePoint();
    const Vector3f& lookAt = m_Camera.getLookAtPoint();
    const Vector3f& up = m_Camera.getUpVector();
    gluLookAt(eye[0], eye[1], eye[2], lookAt[0], lookAt[1], lookAt[2], up[0], up[1], up[2]);

    // The object was drawn with the camera of the paint before; where that was another one, one more paint shows it
    // right.
    if (m_LoadedCamera != m_Camera) {
        m_LoadedCamera = m_Camera;
        update();
    }
}

QImage GLEventDisplayerWidget::MyGLWidget::getPicture()
{
    if (size().isEmpty())
        return QImage();
    const CurrentContextGuard guard;
    if (!makeContext())
        throw PException(withoutContext());
    if (m_ViewContext.drawsToPbuffer())
        throw PException("GLEventDisplayerWidget - the picture cannot be taken while another one is");
    return takePicture(*this, m_ViewContext, [this] { paintGL(); });
}

// What every event handler does besides its own work.
template <typename Code>
void GLEventDisplayerWidget::MyGLWidget::handle(Code code)
{
    runGuarded([&] {
        code();
        repaint();
    });
}

void GLEventDisplayerWidget::MyGLWidget::mousePressEvent(QMouseEvent* event)
{
    handle([&] {
        m_Controller.mousePress(event->x(), event->y(), buttonNumber(event->button()), Modifiers(event->modifiers()));
    });
}

void GLEventDisplayerWidget::MyGLWidget::mouseReleaseEvent(QMouseEvent* event)
{
    handle([&] {
        m_Controller.mouseRelease(event->x(), event->y(), buttonNumber(event->button()), Modifiers(event->modifiers()));
    });
}

void GLEventDisplayerWidget::MyGLWidget::mouseMoveEvent(QMouseEvent* event)
{
    handle([&] { m_Controller.mouseMove(event->x(), event->y()); });
}

void GLEventDisplayerWidget::MyGLWidget::wheelEvent(QWheelEvent* event)
{
    constexpr double UNITS_PER_NOTCH = 120.0;
    handle([&] { m_Controller.mouseWheel(event->angleDelta().y() / UNITS_PER_NOTCH); });
}

void GLEventDisplayerWidget::MyGLWidget::keyPressEvent(QKeyEvent* event)
{
    handle([&] { m_Controller.keyPress(GeneralKey(event->key(), Modifiers(event->modifiers()))); });
}

void GLEventDisplayerWidget::MyGLWidget::keyReleaseEvent(QKeyEvent* event)
{
    handle([&] { m_Controller.keyRelease(GeneralKey(event->key(), Modifiers(event->modifiers()))); });
}

// The base is deliberately not called: each paint sets the viewport itself.
void GLEventDisplayerWidget::MyGLWidget::resizeEvent(QResizeEvent* event)
{
    runGuarded([&] { m_Controller.setSize(event->size().width(), event->size().height()); });
}

GLEventDisplayerWidget::GLEventDisplayerWidget(QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags)
    , m_Ui(std::make_unique<Ui::GLEventDisplayerWidget>())
    , m_SizeIndex(START_SIZE)
    , m_ConfigWindow(nullptr)
{
    const CurrentContextGuard guard;
    m_Ui->setupUi(this);
    m_GlWidget = new MyGLWidget(m_Ui->mainFrame);
    setSizeIndex(START_SIZE);
    m_Ui->mainFrame->layout()->addWidget(m_GlWidget);
    m_Ui->mainFrame->layout()->setSizeConstraint(QLayout::SetMinAndMaxSize);
}

// Frees here what may call GL, so that the guard stands around it.
GLEventDisplayerWidget::~GLEventDisplayerWidget()
{
    const CurrentContextGuard guard;
    m_WaitingObjects.clear();
    delete m_GlWidget;
    delete m_ConfigWindow;
}

void GLEventDisplayerWidget::setSizeIndex(unsigned int index)
{
    if (index >= NUM_SIZES)
        return;
    m_SizeIndex = index;
    m_GlWidget->setMinimumHeight(VIEW_HEIGHTS[index]);
    m_GlWidget->setMaximumHeight(VIEW_HEIGHTS[index]);
    m_GlWidget->resize(m_GlWidget->width(), VIEW_HEIGHTS[index]);
}

// Steps the height, and moves the cursor as the button moves below it, as far as the screen reaches.
void GLEventDisplayerWidget::stepSize(int step)
{
    const int oldHeight = VIEW_HEIGHTS[m_SizeIndex];
    setSizeIndex(m_SizeIndex + step);

    const QPoint cursor = QCursor::pos();
    const int y = cursor.y() + VIEW_HEIGHTS[m_SizeIndex] - oldHeight;
    const QScreen* screen = QGuiApplication::screenAt(cursor);
    if (step > 0 ? screen && y < screen->geometry().height() : y >= 0)
        QCursor::setPos(cursor.x(), y);
}

void GLEventDisplayerWidget::on_pbIncreaseSize_clicked()
{
    runGuarded([this] {
        if (m_SizeIndex + 1 < NUM_SIZES)
            stepSize(+1);
    });
}

void GLEventDisplayerWidget::on_pbDecreaseSize_clicked()
{
    runGuarded([this] {
        if (m_SizeIndex > 0)
            stepSize(-1);
    });
}

void GLEventDisplayerWidget::on_pbConfigure_clicked()
{
    runGuarded([this] {
        if (m_ConfigWindow)
            m_ConfigWindow->popup(m_Ui->pbConfigure);
    });
}

void GLEventDisplayerWidget::changed()
{
    runGuarded([this] { m_GlWidget->update(); });
}

void GLEventDisplayerWidget::setGLEventObject(GLEventObject* object, bool updateExisting)
{
    if (!object)
        return;
    if (object == m_GlWidget->getObject()) {
        changed();
        return;
    }
    const CurrentContextGuard guard;
    runGuarded([&] {
        SentObject sent{std::unique_ptr<GLEventObject>(object), updateExisting};
        if (m_GlWidget->numUses() == 0) {
            take(sent);
            return;
        }
        m_WaitingObjects.push_back(std::move(sent));
        QMetaObject::invokeMethod(
            this, [this] { takeWaiting(); }, Qt::QueuedConnection);
    });
}

void GLEventDisplayerWidget::takeWaiting()
{
    for (SentObject& sent : std::exchange(m_WaitingObjects, {}))
        setGLEventObject(sent.object.release(), sent.updateExisting);
}

void GLEventDisplayerWidget::take(SentObject& sent)
{
    // Out of reach of a fault in an object's code, which passes over destructors.
    const InUse inUse(m_GlWidget->numUses());
    translateFaults([&] {
        const GLEventObject* const current = m_GlWidget->getObject();
        if (current && sent.updateExisting && canTakeOver(*current, *sent.object))
            updateObject(sent.object);
        else
            replaceObject(sent.object);
    });
}

void GLEventDisplayerWidget::updateObject(std::unique_ptr<GLEventObject>& newer)
{
    GLEventObject* const current = m_GlWidget->getObject();
    const bool sameBox = newer->getBoundingBox() == current->getBoundingBox();
    current->updateData(newer.get());
    newer.reset();
    if (!sameBox)
        m_GlWidget->refit();
    changed();
}

void GLEventDisplayerWidget::replaceObject(std::unique_ptr<GLEventObject>& object)
{
    m_GlWidget->setObject(std::move(object));
    replaceConfigWindow(m_GlWidget->getObject());
    // An object whose box cannot be had is shown all the same.
    runGuarded([this] { m_GlWidget->refit(); });
    changed();
}

void GLEventDisplayerWidget::replaceConfigWindow(GLEventObject* object)
{
    // Nobody's before it dies: what is left of one that fails in doing so is not to be met again.
    if (GLEventConfiguration* const old = std::exchange(m_ConfigWindow, nullptr)) {
        old->setParent(nullptr);
        runGuarded([old] { delete old; });
    }
    runGuarded([&] { m_ConfigWindow = object->createConfigWindow(this); });
    m_Ui->pbConfigure->setEnabled(m_ConfigWindow != nullptr);
    if (m_ConfigWindow)
        connect(m_ConfigWindow, SIGNAL(changed()), this, SLOT(changed()));
}

} // namespace tavo
