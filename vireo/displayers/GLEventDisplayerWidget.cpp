#include "vireo/displayers/GLEventDisplayerWidget.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <iterator>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/debug/translateFaults.h"
#include "ui_GLEventDisplayerWidget.h"
#include "vireo/context/CurrentContextGuard.h"
#include "vireo/displayers/GLEventConfiguration.h"
#include "vireo/displayers/GLEventDisplayerView.h"
#include "vireo/displayers/GLEventObject.h"
#include "vireo/displayers/canTakeOver.h"

namespace tavo {

// Defined here as well as in the class: a DLL exports only what is defined in one of its sources.
constexpr unsigned int GLEventDisplayerWidget::NUM_SIZES;

namespace {

constexpr int VIEW_HEIGHTS[] = {16, 22, 32, 45, 64, 90, 128, 181, 256, 362, 512, 724, 1024};
static_assert(std::size(VIEW_HEIGHTS) == GLEventDisplayerWidget::NUM_SIZES);
constexpr unsigned int START_SIZE = 5;

} // namespace

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
        if (!m_GlWidget->isInUse()) {
            take(sent);
            return;
        }
        m_WaitingObjects.push_back(std::move(sent));
        QMetaObject::invokeMethod(
            this, [this] { takeWaiting(); }, Qt::QueuedConnection);
    });
}

GLEventObject* GLEventDisplayerWidget::getGLEventObject() const
{
    return m_GlWidget->getObject();
}

void GLEventDisplayerWidget::takeWaiting()
{
    for (SentObject& sent : std::exchange(m_WaitingObjects, {}))
        setGLEventObject(sent.object.release(), sent.updateExisting);
}

void GLEventDisplayerWidget::take(SentObject& sent)
{
    // Out of reach of a fault in an object's code, which passes over destructors.
    const MyGLWidget::InUse inUse(*m_GlWidget);
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
