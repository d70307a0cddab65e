#include "vireo/show/scenes/SceneView.h"

#include <QEvent>
#include <QPainter>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "vireo/show/scenes/SceneGestures.h"
#include "vireo/show/scenes/sceneData.h"

namespace tavo {

namespace {

constexpr int LONGEST_WAIT = 1000; // in milliseconds, of colours for their points

bool isWithin(const SceneBox& inner, const SceneBox& outer)
{
    SceneBox both = outer;
    both.extend(inner);
    return both.getMin() == outer.getMin() && both.getMax() == outer.getMax();
}

} // namespace

SceneView::SceneView(const std::string& name)
    : m_Context(SceneContext::get())
    , m_Model(name)
    , m_Renderer(m_Context, m_Model)
    , m_Picker(m_Context, m_Model)
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(40, 30);
    m_Gestures = std::make_unique<SceneGestures>(*this);
}

SceneView::~SceneView() = default;

void SceneView::makeRoom(const Replaced& replaced)
{
    m_Model.makeRoom(replaced);
}

void SceneView::apply(ViewUpdate& update)
{
    auto& scene = static_cast<SceneUpdate&>(update);
    if (m_Model.apply(scene))
        QTimer::singleShot(LONGEST_WAIT, this, [this] { m_Model.sayWhatWaits(); });
    if (scene.pickReceiver)
        m_PickReceiver = *scene.pickReceiver;
    m_Marks.follow(m_Model);
    m_Gestures->sceneChanged();
    if (scene.isOrthographic && !m_IsOrthographyChosen)
        m_Camera.setOrthographic(*scene.isOrthographic);
    if (scene.side && !m_IsChosen)
        m_Camera.look(*SceneCamera::sideOf(*scene.side));
    if (!m_IsChosen)
        scene.side || scene.isOrthographic ? fit() : fitToNews();
    changed();
}

// Where data change all the time the camera does not follow every change.
void SceneView::fitToNews()
{
    const SceneBox news = m_Model.box();
    if (!isWithin(news, m_FittedBox) || news.diagonal() < 0.5 * m_FittedBox.diagonal())
        fit();
}

void SceneView::fit()
{
    m_FittedBox = m_Model.box();
    m_Camera.fit(m_FittedBox, viewSize());
}

void SceneView::changed()
{
    m_Picture = {};
    update();
}

void SceneView::showChoice()
{
    m_IsChosen = true;
    changed();
}

void SceneView::showAll()
{
    m_IsChosen = false;
    fit();
    changed();
}

void SceneView::switchProjection()
{
    m_IsOrthographyChosen = true;
    m_Camera.setOrthographic(!m_Camera.isOrthographic());
    if (!m_IsChosen)
        fit();
    changed();
}

SceneCamera::Size SceneView::viewSize() const
{
    return {double(std::max(width(), 1)), double(std::max(height(), 1))};
}

SceneLook SceneView::look(double scale) const
{
    return {palette().color(QPalette::Base), palette().color(QPalette::Text), font(), scale};
}

SceneCamera SceneView::cameraFor(const SceneCamera::Size& size) const
{
    SceneCamera camera = m_Camera;
    if (!m_IsChosen)
        camera.fit(m_FittedBox, size);
    return camera;
}

QImage SceneView::picture(QSize size)
{
    QImage picture = draw(size, 1);
    if (!picture.isNull()) {
        QPainter painter(&picture);
        painter.setFont(font());
        m_Marks.paintPins(painter, cameraFor({double(size.width()), double(size.height())}), size, look(1));
    }
    return picture;
}

std::string SceneView::saveData(const QString& file)
{
    return saveScene(file, m_Model.items());
}

QImage SceneView::draw(const QSize& pixels, double scale)
{
    return m_Renderer.draw(cameraFor({double(pixels.width()), double(pixels.height())}), pixels, look(scale));
}

std::optional<Vector3d> SceneView::hitAt(const QPointF& pixel)
{
    return m_Picker.placeAt(m_Camera, size(), pixel.toPoint());
}

void SceneView::hover(const std::optional<QPoint>& pixel)
{
    if (!pixel && !m_Marks.hovered())
        return;
    std::optional<ScenePick> pick;
    if (pixel)
        runGuarded([&] { pick = m_Picker.pick(m_Camera, size(), *pixel); });
    m_Marks.hover(std::move(pick));
    update();
}

void SceneView::click(const QPoint& pixel)
{
    std::optional<ScenePick> pick;
    runGuarded([&] { pick = m_Picker.pick(m_Camera, size(), pixel); });
    m_HasPinned = pick.has_value();
    if (!pick)
        return;
    m_Marks.pin(*pick);
    update();
    // Not from here: the program may do anything, such as remove this view.
    QTimer::singleShot(0, this, [receiver = std::weak_ptr(m_PickReceiver), picked = std::move(pick->picked)] {
        PickReceiver::tell(receiver, picked);
    });
}

void SceneView::takeBackClick()
{
    if (std::exchange(m_HasPinned, false))
        m_Marks.takeBackPin();
    update();
}

bool SceneView::clearPins()
{
    update();
    return m_Marks.clear();
}

void SceneView::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        changed();
    View::changeEvent(event);
}

void SceneView::resizeEvent(QResizeEvent* event)
{
    if (!m_IsChosen)
        m_Camera.fit(m_FittedBox, viewSize());
    changed();
    View::resizeEvent(event);
}

void SceneView::paintEvent(QPaintEvent*)
{
    const double scale = devicePixelRatioF();
    if (m_Picture.isNull()) {
        runGuarded([&] { m_Picture = draw((QSizeF(size()) * scale).toSize(), scale); });
        m_Picture.setDevicePixelRatio(scale);
    }
    QPainter painter(this);
    if (m_Picture.isNull()) {
        painter.fillRect(rect(), palette().color(QPalette::Base));
        painter.drawText(rect(), Qt::AlignCenter, tr("There is no OpenGL here that can draw this."));
    } else {
        painter.drawImage(QPoint(0, 0), m_Picture);
        m_Marks.paint(painter, m_Camera, size(), look(1));
    }
}

} // namespace tavo
