#include "vireo/displayers/GLEventDisplayerView.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScopeGuard>
#include <QWheelEvent>
#include <QWindow>
#include <cmath>
#include <cstddef>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/gui/WidgetPicture.h"
#include "tavo/base/text/printable.h"
#include "tavo/platform/wgl.h"
#include "vireo/context/CurrentContextGuard.h"
#include "vireo/context/GLContext.h"
#include "vireo/context/classNeeds.h"
#include "vireo/context/hasFixedFunctions.h"
#include "vireo/context/tidyUpGl.h"
#include "vireo/displayers/GLEventObject.h"
#include "vireo/displayers/ViewContext.h"
#include "vireo/displayers/ViewPicture.h"
#include "vireo/displayers/cameraFit.h"
#include "vireo/displayers/joinTiles.h"
#include "vireo/displayers/loadCamera.h"
#include "vireo/displayers/outOfView.h"

#include <GL/glu.h>

namespace tavo {

namespace {

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

} // namespace

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
    setSizedPictureSource(this, [this](const QSize& size) { return getPicture(size); });
    if (!m_ViewContext.exists())
        reportMissingContext();
    if (isValid())
        return;
    // It paints as other widgets do, also where there is a window already that was to be GL's.
    setAttribute(Qt::WA_PaintOnScreen, false);
    setAttribute(Qt::WA_NativeWindow, false);
    if (windowHandle())
        windowHandle()->setSurfaceType(QSurface::RasterSurface);
}

GLEventDisplayerWidget::MyGLWidget::~MyGLWidget()
{
    makeDrawnCurrent();
    runGuarded([this] { delete m_Object; });
    runGuarded([this] { delete m_Context; });
}

void GLEventDisplayerWidget::MyGLWidget::paintEvent(QPaintEvent* event)
{
    if (isValid())
        QGLWidget::paintEvent(event);
    else
        runGuarded([this] { showPicture(); });
}

// Every paint by GL to the window passes here: those that Qt asks for, and those at once.
void GLEventDisplayerWidget::MyGLWidget::glDraw()
{
    if (!isValid())
        return update();
    const CurrentContextGuard guard;
    QGLWidget::glDraw();
}

// Where GL cannot draw to the window, it shows a picture, or why there is none.
void GLEventDisplayerWidget::MyGLWidget::showPicture()
{
    QImage picture;
    if (m_ViewContext.exists())
        runGuarded([&] { picture = getPicture(size()); });
    QPainter painter(this);
    painter.fillRect(rect(), Qt::black);
    painter.setPen(Qt::white);
    if (m_ViewContext.exists())
        painter.drawImage(rect(), picture);
    else
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, QString::fromStdString(withoutContext()));
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
    const CameraFit fit = fitCamera(m_Camera, box);
    const Vector3f sum = fit.eye + fit.lookAt;
    if (!std::isfinite(sum[0] + sum[1] + sum[2]))
        warning("GLEventDisplayerWidget::setGLEventObject() - the object's box is not finite, so the camera stays.");
    m_Controller.place(fit.eye, fit.lookAt, m_Camera.getUpVector());
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
    const InUse inUse(*this);
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
    if (!m_ViewContext.isCurrent())
        return false;
    m_Context = new GLContext(wglGetCurrentDC(), wglGetCurrentContext(), nullptr, nullptr);
    if (!hasFixedFunctions())
        reportRefusal("GLEventDisplayer", CORE_PROFILE_ONLY, GET_COMPATIBILITY);
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
    if (m_WholeSize.isEmpty()) {
        glViewport(0, 0, width(), height());
        gluPerspective(45.0, double(width()) / height(), NEAR_PLANE, FAR_PLANE);
    } else {
        selectPart();
    }

    // Drawn before this frame's camera is loaded, with the projection matrix selected: deliberate.
    m_Object->drawGL(this, m_Camera);

    m_Controller.setSize(width(), height());
    m_Controller.update();
    loadCamera(m_Camera);

    // The object was drawn with the camera of the paint before; where that was another one, one more paint shows it
    // right.
    if (m_LoadedCamera != m_Camera) {
        m_LoadedCamera = m_Camera;
        update();
    }
}

// Has a part of a picture fill the viewport.
void GLEventDisplayerWidget::MyGLWidget::selectPart() const
{
    const double width = m_WholeSize.width();
    const double height = m_WholeSize.height();
    const QPointF middle = QRectF(m_Part).center();
    glViewport(0, 0, m_Part.width(), m_Part.height());
    glScaled(width / m_Part.width(), height / m_Part.height(), 1);
    glTranslated(1 - 2 * middle.x() / width, 2 * middle.y() / height - 1, 0);
    gluPerspective(45.0, width / height, NEAR_PLANE, FAR_PLANE);
}

QImage GLEventDisplayerWidget::MyGLWidget::takeTile(const QSize& whole, const QRect& tile)
{
    m_WholeSize = whole;
    m_Part = tile;
    if (tile == rect() && whole == size())
        m_WholeSize = {};
    QImage picture = takePicture(*this, m_ViewContext, tile.size(), [this] { paintGL(); });
    if (picture.isNull())
        throw PException("GLEventDisplayerWidget - the driver makes no framebuffer for a picture of this size");
    return picture;
}

QImage GLEventDisplayerWidget::MyGLWidget::getPicture(const QSize& size)
{
    if (size.isEmpty())
        return QImage();
    const CurrentContextGuard guard;
    if (!makeContext())
        throw PException(withoutContext());
    if (m_ViewContext.drawsToPbuffer())
        throw PException("GLEventDisplayerWidget - the picture cannot be taken while another one is");
    const auto end = qScopeGuard([this] { m_WholeSize = {}; });
    return joinTiles(size, [&](const QRect& tile) { return takeTile(size, tile); });
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

} // namespace tavo
