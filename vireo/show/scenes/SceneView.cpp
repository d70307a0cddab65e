#include "vireo/show/scenes/SceneView.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "vireo/show/scenes/ClipHandles.h"
#include "vireo/show/scenes/OrientationMark.h"
#include "vireo/show/scenes/SceneGestures.h"
#include "vireo/show/scenes/ScenePanel.h"
#include "vireo/show/scenes/SceneProgress.h"
#include "vireo/show/scenes/SceneWalk.h"
#include "vireo/show/scenes/gesturesOfScenes.h"
#include "vireo/show/scenes/sceneData.h"
#include "vireo/show/window/windowMemory.h"

namespace tavo {

namespace {

using windowMemory::Thing;

constexpr int LARGE_VIEW = 900;     // in pixels, from which on the panel is there unless a person has hidden it
constexpr double LARGEST_SIZE = 64; // in pixels, that keys make of points
constexpr int LONGEST_WAIT = 1000;  // in milliseconds, of colours for their points

constexpr int UNTIL_ASKED = 20; // in milliseconds, from one look whether surfaces are there to the next

constexpr int UNTIL_REST = 200; // in milliseconds, from when the view moved last

constexpr double SLICE = 0.010;     // in seconds, that events wait while points are drawn
constexpr double UNTIL_SHOWN = 0.2; // in seconds, from one picture with more points to the next, at least
constexpr double SHOWING = 0.1;     // of the time, at most, for these pictures

// Where something is white.
const QColor DARK_GROUND(34, 34, 38);
const QColor INK_ON_DARK(225, 225, 225);

// In larger pictures everything is larger, so that they show what a picture of this size shows.
constexpr QSizeF LARGEST(1600, 1200);

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
    , m_Progress(new SceneProgress(this, [this] { giveUp(); }))
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(40, 30);
    m_RestTimer.setSingleShot(true);
    m_RestTimer.setInterval(UNTIL_REST);
    connect(&m_RestTimer, &QTimer::timeout, this, [this] { rest(); });
    connect(&m_RefinementTimer, &QTimer::timeout, this, [this] { runGuarded([this] { refine(); }); });
    connect(&m_VolumeTimer, &QTimer::timeout, this, [this] { runGuarded([this] { refineVolumes(); }); });
    m_SurfaceTimer.setInterval(UNTIL_ASKED);
    connect(&m_SurfaceTimer, &QTimer::timeout, this, [this] { runGuarded([this] { takeSurfaces(); }); });
    m_Gestures = std::make_unique<SceneGestures>(*this);
    m_Mark = std::make_unique<OrientationMark>(*this);
    m_Walk = std::make_unique<SceneWalk>(*this);
    m_ClipHandles = std::make_unique<ClipHandles>(*this);
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
        QTimer::singleShot(LONGEST_WAIT, this, [this] { sayWhatWaits(); });
    if (m_Model.isBusy())
        m_SurfaceTimer.start();
    if (scene.pickReceiver)
        m_PickReceiver = *scene.pickReceiver;
    m_Marks.follow(m_Model);
    m_Gestures->sceneChanged();
    if (scene.isOrthographic && !m_IsOrthographyChosen)
        m_Camera.setOrthographic(*scene.isOrthographic);
    if (scene.hasBearings && !m_AreBearingsChosen)
        m_HasBearings = *scene.hasBearings;
    if (scene.side && !m_IsChosen)
        m_Camera.look(*SceneCamera::sideOf(*scene.side));
    if (!m_IsChosen)
        scene.side || scene.isOrthographic || scene.hasBearings ? fit() : fitToNews();
    changed();
}

void SceneView::takeSurfaces()
{
    if (m_Model.takeSurfaces()) {
        m_Marks.follow(m_Model);
        m_Gestures->sceneChanged();
        changed();
    }
    if (!m_Model.isBusy())
        m_SurfaceTimer.stop();
    showProgress();
}

// Where data change all the time the camera does not follow every change.
void SceneView::fitToNews()
{
    const SceneBox news = m_Model.box();
    if (!isWithin(news, m_FittedBox) || news.diagonal() < 0.5 * m_FittedBox.diagonal())
        m_FittedBox = news;
}

void SceneView::fit()
{
    m_FittedBox = m_Model.box();
    m_Camera = cameraFor(sceneSize());
}

void SceneView::changed()
{
    if (!m_IsChosen)
        m_Camera = cameraFor(sceneSize()); // numbers and bars may need other room
    m_Picture = {};
    m_RefinementTimer.stop();
    m_Panel->noteChange();
    update();
}

void SceneView::showChoice()
{
    m_IsChosen = true;
    move();
    changed();
}

// Until it rests, only so many points and slices are drawn as there is time for.
void SceneView::move()
{
    m_PointMotion.move(m_Renderer.numPointsInView(m_Camera, sceneSize()), m_PointBudget);
    m_SliceMotion.move();
    m_LayerMotion.move();
    m_RestTimer.start();
}

void SceneView::rest()
{
    const bool isWhole = m_PointMotion.numPhases() == PointPhases::ALL;
    const bool isGestureOver = QGuiApplication::mouseButtons() == Qt::NoButton;
    m_PointMotion.rest(isGestureOver);
    const bool wereFewSlices = m_SliceMotion.rest(isGestureOver);
    if (m_LayerMotion.rest(isGestureOver) || wereFewSlices)
        changed();
    if (!isWhole)
        beginRefinement();
}

void SceneView::beginRefinement()
{
    const double scale = devicePixelRatioF();
    SceneLook look = this->look(scale);
    look.mayBeCoarse = true;
    m_Renderer.beginRefinement(m_Camera, (QSizeF(sceneSize()) * scale).toSize(), look);
    m_SinceShown = {};
    m_RefinementTimer.start();
}

// Draws more points, in between events, or now and then shows what there is.
void SceneView::refine()
{
    const double untilShown = std::max(UNTIL_SHOWN, m_SecondsOfShowing / SHOWING);
    if (!m_Renderer.isAnythingNew() || (!m_Renderer.isRefined() && m_SinceShown.seconds() < untilShown)) {
        m_Renderer.refine(SLICE, m_PointBudget);
        return;
    }
    if (m_Renderer.finishSlice())
        return; // events come first
    if (m_Renderer.isRefined())
        m_RefinementTimer.stop();
    const Stopwatch watch;
    const std::size_t numInView = m_Renderer.numPointsInView(m_Camera, sceneSize());
    m_Picture = m_Renderer.drawRefined(m_PointBudget.phasesIn(SLICE, numInView));
    m_Picture.setDevicePixelRatio(devicePixelRatioF());
    if (m_RefinementTimer.isActive())
        m_SecondsOfShowing = watch.seconds();
    m_SinceShown = {};
    update();
}

// In between events.
void SceneView::refineVolumes()
{
    const bool areWhole = m_Renderer.refineVolumes(SLICE);
    if (areWhole)
        m_VolumeTimer.stop();
    showProgress();
    if (areWhole)
        changed();
}

void SceneView::showProgress()
{
    if (m_SurfaceTimer.isActive())
        m_Progress->show(tr("Isosurface"), m_Model.progressOfSurfaces());
    else if (m_VolumeTimer.isActive())
        m_Progress->show(tr("Volume"), m_Renderer.progressOfVolumes());
    else
        m_Progress->finish();
}

// What is shown stays: surfaces that are there, and coarse volumes.
void SceneView::giveUp()
{
    m_Model.giveUpSurfaces();
    m_Renderer.giveUpVolumes();
    m_SurfaceTimer.stop();
    m_VolumeTimer.stop();
    showProgress();
}

void SceneView::showAll()
{
    m_IsChosen = false;
    fit();
    changed();
}

void SceneView::lookFrom(SceneCamera::Side side)
{
    m_Camera.look(side);
    if (!m_IsChosen)
        showAll();
    showChoice();
}

void SceneView::switchBearings()
{
    m_AreBearingsChosen = true;
    m_HasBearings = !m_HasBearings;
    if (!m_IsChosen)
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

void SceneView::changeClipBox(const std::function<void(ClipBox& clip, const SceneBox& all)>& change)
{
    change(m_Model.getClipBox(), m_Model.box());
    move();
    changed();
}

void SceneView::switchClipBox()
{
    changeClipBox([](ClipBox& clip, const SceneBox& all) { clip.switchOn(!clip.shown(), all); });
}

void SceneView::switchSlab(std::size_t axis)
{
    changeClipBox([axis](ClipBox& clip, const SceneBox& all) { clip.switchSlab(axis, all); });
}

void SceneView::switchCutOut()
{
    const Matrix4 view = m_Camera.modelView();
    const Vector3d towardsEye(view.at(2, 0), view.at(2, 1), view.at(2, 2));
    changeClipBox([&](ClipBox& clip, const SceneBox& all) { clip.switchCutOut(all, towardsEye); });
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

std::vector<Gesture> SceneView::gestures() const
{
    return gesturesOfScenes();
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

void SceneView::changeWindow(double wider, double up)
{
    const std::string& selected = m_Panel->selected().value_or(std::string());
    const auto isShown = [](const auto& entry) { return entry.second.isVolume() && entry.second.isVisible(); };
    const std::map<std::string, SceneItem>& items = m_Model.items();
    auto found = items.find(selected);
    if (found == items.end() || !isShown(*found))
        found = std::find_if(items.begin(), items.end(), isShown);
    if (found == items.end())
        return;
    chooseOf(found->first, [=](ItemChoice& choice, const ItemState& state) {
        const auto [from, to] = state.range;
        const double half = (to / 2 - from / 2) * std::exp(wider);
        const double middle = from / 2 + to / 2 + up * (to - from);
        ItemChoice::OfField& ofField = choice.fields[state.shown];
        if (std::isfinite(middle - half) && std::isfinite(middle + half) && middle - half != middle + half) {
            ofField.range = std::pair(middle - half, middle + half);
            ofField.isWhole = false;
        }
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
    SceneLook look{palette().color(QPalette::Base), palette().color(QPalette::Text), font(), scale, m_HasBearings};
    if (!look.isGroundDark() && m_Model.hasWhiteVolume()) {
        look.ground = DARK_GROUND;
        look.ink = INK_ON_DARK;
    }
    return look;
}

OverlayRoom SceneView::room(const QSizeF& size) const
{
    return {size, QFontMetricsF(font()), m_HasBearings};
}

std::vector<SceneOverlays::ColourBar> SceneView::colourBars()
{
    return colourBarsOf(m_Model, m_Panel->selected().value_or(""));
}

SceneCamera SceneView::cameraFor(const QSizeF& size)
{
    SceneCamera camera = m_Camera;
    if (!m_IsChosen)
        fitWithOverlays(camera, room(size), m_FittedBox, colourBars());
    return camera;
}

QImage SceneView::picture(QSize size)
{
    m_Model.finishSurfaces();
    sayWhatWaits(); // the picture goes without it, whatever comes later
    const double scale = std::max({1.0, size.width() / LARGEST.width(), size.height() / LARGEST.height()});
    const QSizeF points = QSizeF(size) / scale;
    const SceneCamera camera = cameraFor(points);
    QImage picture = m_Renderer.draw(camera, size, look(scale));
    if (picture.isNull())
        return picture;
    QPainter painter(&picture);
    painter.scale(scale, scale);
    paintOverlays(painter, room(points), camera);
    m_Marks.paintPins(painter, camera, points.toSize(), look(1));
    return picture;
}

void SceneView::paintOverlays(
    QPainter& painter, const OverlayRoom& room, const SceneCamera& camera, std::optional<SceneCamera::Side> lit)
{
    const SceneLook look = this->look(1);
    painter.setFont(look.font);
    const SceneOverlays overlays = placeOverlays(room, camera, m_Model.box(), colourBars());
    drawOverlays(painter, overlays, look.ink, look.ground);
    if (overlays.mark)
        OrientationMark::draw(painter, *overlays.mark, camera, look.ground, lit);
}

std::string SceneView::saveData(const QString& file)
{
    m_Model.finishSurfaces();
    return saveScene(file, m_Model.items());
}

std::optional<Vector3d> SceneView::hitAt(const QPointF& pixel)
{
    if (const std::optional<SceneText> text = textAt(pixel))
        return text->placed.matrix * text->placed.item->origin();
    return m_Picker.placeAt(m_Camera, sceneSize(), pixel.toPoint());
}

// They are in front of everything.
std::optional<SceneText> SceneView::textAt(const QPointF& pixel)
{
    const std::vector<SceneText> texts = textsOf(m_Model, m_Camera, viewSize(), font(), 1, this);
    const auto found = std::find_if(
        texts.rbegin(), texts.rend(), [&pixel](const SceneText& text) { return text.box.contains(pixel); });
    return found != texts.rend() ? std::optional(*found) : std::nullopt;
}

std::optional<ScenePick> SceneView::pickAt(const QPoint& pixel)
{
    if (const std::optional<SceneText> text = textAt(pixel))
        return pickOf(text->placed, 0, {});
    return m_Picker.pick(m_Camera, sceneSize(), pixel);
}

void SceneView::hover(const std::optional<QPoint>& pixel)
{
    if (!pixel && !m_Marks.hovered())
        return;
    std::optional<ScenePick> pick;
    if (pixel)
        runGuarded([&] { pick = pickAt(*pixel); });
    m_Marks.hover(std::move(pick));
    update();
}

void SceneView::click(const QPoint& pixel)
{
    std::optional<ScenePick> pick;
    runGuarded([&] { pick = pickAt(pixel); });
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

void SceneView::drawPicture()
{
    const double scale = devicePixelRatioF();
    const QSize pixels = (QSizeF(sceneSize()) * scale).toSize();
    const bool isMoving = m_PointMotion.isMoving();
    const std::size_t numPhases =
        isMoving ? m_PointMotion.numPhases() : m_PointBudget.phasesOf(m_Renderer.numPointsInView(m_Camera, pixels));
    SceneLook look = this->look(scale);
    look.sliceStep = m_SliceMotion.step();
    look.numLayers = SceneLook::MOST_LAYERS / m_LayerMotion.step();
    look.mayBeCoarse = true;
    m_Picture = m_Renderer.draw(m_Camera, pixels, look, numPhases);
    m_Picture.setDevicePixelRatio(scale);
    m_Renderer.areVolumesCoarse() ? m_VolumeTimer.start() : m_VolumeTimer.stop();
    if (!isMoving && numPhases < PointPhases::ALL)
        beginRefinement();
}

void SceneView::measure(const SceneRenderer::PointTime& time, double seconds)
{
    m_PointBudget.measure(time.numPoints, time.seconds, seconds - time.seconds);
    m_SliceMotion.measure(time.secondsOfVolumes);
    m_LayerMotion.measure(time.secondsOfLayers);
}

void SceneView::paintEvent(QPaintEvent*)
{
    const Stopwatch watch;
    const bool isNew = m_Picture.isNull();
    if (isNew)
        runGuarded([this] { drawPicture(); });
    QPainter painter(this);
    if (m_Picture.isNull()) {
        painter.fillRect(rect(), palette().color(QPalette::Base));
        painter.drawText(rect(), Qt::AlignCenter, tr("There is no OpenGL here that can draw this."));
        return;
    }
    painter.drawImage(QPoint(0, 0), m_Picture);
    runGuarded([&] { paintOverlays(painter, room(sceneSize()), m_Camera, m_Mark->hovered()); });
    m_Walk->draw(painter, look(1));
    m_ClipHandles->draw(painter, look(1));
    m_Marks.paint(painter, m_Camera, sceneSize(), look(1));
    const SceneRenderer::PointTime time = m_Renderer.getPointTime();
    if (isNew && time.isTypical)
        measure(time, watch.seconds());
}

} // namespace tavo
