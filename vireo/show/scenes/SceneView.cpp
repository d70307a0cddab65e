#include "vireo/show/scenes/SceneView.h"

#include <QEvent>
#include <QPainter>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "vireo/show/scenes/SceneGestures.h"
#include "vireo/show/scenes/ScenePanel.h"
#include "vireo/show/scenes/sceneData.h"
#include "vireo/show/window/windowMemory.h"

namespace tavo {

namespace {

using windowMemory::Thing;

constexpr int LARGE_VIEW = 900;     // in pixels, from which on the panel is there unless a person has hidden it
constexpr double LARGEST_SIZE = 64; // in pixels, that keys make of points
constexpr int LONGEST_WAIT = 1000;  // in milliseconds, of colours for their points

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
    , m_Panel(new ScenePanel(*this))
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(40, 30);
    m_Gestures = std::make_unique<SceneGestures>(*this);
    m_Panel->hide();
    connect(m_Panel, &ScenePanel::widthWanted, this, [this] {
        settlePanel();
        rememberPanel();
    });
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
    m_Panel->noteChange();
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

void SceneView::choose(const std::function<void(SceneChoices&)>& choose)
{
    m_Model.choose(choose);
    m_Marks.follow(m_Model);
    changed();
}

void SceneView::chooseOf(
    const std::string& path, const std::function<void(ItemChoice& choice, const ItemState& state)>& change)
{
    const auto found = m_Model.items().find(path);
    if (found == m_Model.items().end() || !found->second.shape())
        return;
    ItemChoice choice = m_Model.getChoices().of(path);
    change(choice, found->second.state());
    choose([&](SceneChoices& choices) { choices.set(path, choice); });
}

bool SceneView::isPanelShown() const
{
    return !m_Panel->isHidden();
}

void SceneView::switchPanel()
{
    m_IsPanelWanted = !isPanelShown();
    if (m_Panel->isAncestorOf(focusWidget()))
        setFocus();
    settlePanel();
    rememberPanel();
}

std::function<void()> SceneView::configuration()
{
    return [this] { switchPanel(); };
}

void SceneView::select(const std::string& path)
{
    m_Panel->select(path);
}

bool SceneView::showNextField()
{
    for (const auto& [path, item] : m_Model.items()) {
        if (!item.shape() || path != m_Panel->selected().value_or(path))
            continue;
        const ItemState state = item.state();
        const std::vector<std::string> names = state.waysToColour();
        if (names.size() < 2)
            continue;
        const auto shown = std::find(names.begin(), names.end(), state.shown);
        chooseOf(path, [&](ItemChoice& choice, const ItemState&) {
            choice.shown = shown == names.end() || shown + 1 == names.end() ? names.front() : *(shown + 1);
        });
        return true;
    }
    return false;
}

void SceneView::changeSizes(double pixels)
{
    const auto& selected = m_Panel->selected();
    const bool isOne = selected && m_Model.items().count(*selected) != 0;
    for (const auto& [path, item] : m_Model.items())
        if (!isOne || path == *selected)
            chooseOf(path, [pixels](ItemChoice& choice, const ItemState& state) {
                if (state.hasSize())
                    choice.size = std::clamp(state.size + pixels, 1.0, LARGEST_SIZE);
            });
}

// Of the widget without the panel.
QSize SceneView::sceneSize() const
{
    return {std::max(width() - (isPanelShown() ? m_Panel->width() : 0), 1), std::max(height(), 1)};
}

SceneCamera::Size SceneView::viewSize() const
{
    return {double(sceneSize().width()), double(sceneSize().height())};
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
    return m_Picker.placeAt(m_Camera, sceneSize(), pixel.toPoint());
}

void SceneView::hover(const std::optional<QPoint>& pixel)
{
    if (!pixel && !m_Marks.hovered())
        return;
    std::optional<ScenePick> pick;
    if (pixel)
        runGuarded([&] { pick = m_Picker.pick(m_Camera, sceneSize(), *pixel); });
    m_Marks.hover(std::move(pick));
    update();
}

void SceneView::click(const QPoint& pixel)
{
    std::optional<ScenePick> pick;
    runGuarded([&] { pick = m_Picker.pick(m_Camera, sceneSize(), pixel); });
    m_HasPinned = pick.has_value();
    if (!pick)
        return;
    m_Marks.pin(*pick);
    select(pick->picked.path);
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

// The scene has what room the panel leaves.
void SceneView::settlePanel()
{
    const bool isShown = m_IsPanelWanted.value_or(width() >= LARGE_VIEW);
    const int panelWidth = m_Panel->widthIn(width());
    m_Panel->setGeometry(width() - panelWidth, 0, panelWidth, height());
    m_Panel->setVisible(isShown);
    if (!m_IsChosen)
        m_Camera.fit(m_FittedBox, viewSize());
    changed();
}

void SceneView::recallPanel()
{
    const QList<QByteArray> remembered = windowMemory::recall(Thing::ScenePanel).split(' ');
    if (remembered.size() != 2)
        return;
    if (!m_IsPanelWanted)
        m_IsPanelWanted = remembered.front() == "shown";
    m_Panel->setWantedWidth(remembered.back().toInt());
    settlePanel();
}

void SceneView::rememberPanel() const
{
    windowMemory::remember(Thing::ScenePanel,
        QByteArray(isPanelShown() ? "shown " : "hidden ") + QByteArray::number(m_Panel->getWantedWidth()));
}

void SceneView::showEvent(QShowEvent* event)
{
    View::showEvent(event);
    if (!std::exchange(m_WasShown, true))
        recallPanel();
}

void SceneView::resizeEvent(QResizeEvent* event)
{
    settlePanel();
    View::resizeEvent(event);
}

// Tab is for the fields of items, where there are any.
bool SceneView::focusNextPrevChild(bool next)
{
    return (next && focusWidget() == this && showNextField()) || View::focusNextPrevChild(next);
}

void SceneView::paintEvent(QPaintEvent*)
{
    const double scale = devicePixelRatioF();
    if (m_Picture.isNull()) {
        runGuarded([&] { m_Picture = draw((QSizeF(sceneSize()) * scale).toSize(), scale); });
        m_Picture.setDevicePixelRatio(scale);
    }
    QPainter painter(this);
    if (m_Picture.isNull()) {
        painter.fillRect(rect(), palette().color(QPalette::Base));
        painter.drawText(rect(), Qt::AlignCenter, tr("There is no OpenGL here that can draw this."));
    } else {
        painter.drawImage(QPoint(0, 0), m_Picture);
        m_Marks.paint(painter, m_Camera, sceneSize(), look(1));
    }
}

} // namespace tavo
