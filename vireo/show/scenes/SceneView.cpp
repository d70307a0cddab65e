#include "vireo/show/scenes/SceneView.h"

#include <QEvent>
#include <QPainter>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/show/scenes/SceneGestures.h"

namespace tavo {

namespace {

constexpr std::size_t SHOWN_CHARACTERS = 80;
constexpr int LONGEST_WAIT = 1000; // in milliseconds, of colours for their points
constexpr double TEXT_OFFSET = 5;  // in pixels, beside its position
constexpr int CATCH_RADIUS = 4;    // in pixels

bool isWithin(const SceneBox& inner, const SceneBox& outer)
{
    SceneBox both = outer;
    both.extend(inner);
    return both.getMin() == outer.getMin() && both.getMax() == outer.getMax();
}

// A light at the eye. Both sides of a surface are lit.
void setHeadlight()
{
    const float ahead[] = {0, 0, 1, 0};
    const float ambient[] = {0.25F, 0.25F, 0.25F, 1};
    const float diffuse[] = {0.75F, 0.75F, 0.75F, 1};
    const float none[] = {0, 0, 0, 1};
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glLightfv(GL_LIGHT0, GL_POSITION, ahead);
    glLightfv(GL_LIGHT0, GL_AMBIENT, ambient);
    glLightfv(GL_LIGHT0, GL_DIFFUSE, diffuse);
    glLightfv(GL_LIGHT0, GL_SPECULAR, none);
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, none);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
    for (const GLenum capability : {GL_LIGHT0, GL_COLOR_MATERIAL, GL_NORMALIZE})
        glEnable(capability);
}

// Rows of pictures are counted from the top, GL's from the bottom: what is drawn stands on its head, so that it need
// not be turned when it is read.
void setProjection(const SceneCamera& camera, const SceneBox& box, const SceneCamera::Size& size)
{
    Matrix4 projection = camera.projection(box, size);
    for (std::size_t column = 0; column < 4; ++column)
        projection.at(1, column) = -projection.at(1, column);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(projection.numbers.data());
    glFrontFace(GL_CW);
}

void clear(const QColor& ground)
{
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glClearColor(
        static_cast<float>(ground.redF()), static_cast<float>(ground.greenF()), static_cast<float>(ground.blueF()), 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE); // the picture is opaque
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

bool isLitByDepths(const SceneItem& item)
{
    return item.isUnlitCloud() && item.isOpaque();
}

} // namespace

SceneView::SceneView(const std::string& name)
    : m_Name(name)
    , m_Context(SceneContext::get())
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(40, 30);
    m_Gestures = std::make_unique<SceneGestures>(*this);
}

SceneView::~SceneView() = default;

void SceneView::makeRoom(const Replaced& replaced)
{
    if (replaced.isAll)
        for (auto& [path, item] : m_Items)
            item.dropShape();
    for (const std::string& path : replaced.names)
        if (const auto found = m_Items.find(path); found != m_Items.end())
            found->second.dropShape();
}

void SceneView::apply(ViewUpdate& update)
{
    auto& scene = static_cast<SceneUpdate&>(update);
    if (scene.isCleared) {
        m_Items.clear();
        m_Transforms.clear();
    }
    for (const std::string& branch : scene.removed)
        remove(branch);
    for (const auto& [path, matrix] : scene.transforms)
        m_Transforms[path] = matrix;
    bool doesWait = false;
    for (auto& [path, itemUpdate] : scene.items) {
        const auto found = m_Items.find(path);
        SceneItem& item = found != m_Items.end() ? found->second : m_Items.emplace(path, m_NumColours++).first->second;
        runGuarded([&item = item, &itemUpdate = itemUpdate] { item.apply(itemUpdate); });
        doesWait = doesWait || !item.waiting().empty();
    }
    if (doesWait)
        QTimer::singleShot(LONGEST_WAIT, this, [this] { sayWhatWaits(); });
    if (scene.isOrthographic && !m_IsOrthographyChosen)
        m_Camera.setOrthographic(*scene.isOrthographic);
    if (scene.side && !m_IsChosen)
        m_Camera.look(*SceneCamera::sideOf(*scene.side));
    if (!m_IsChosen)
        scene.side || scene.isOrthographic ? fit() : fitToNews();
    changed();
}

void SceneView::remove(const std::string& branch)
{
    const auto isRemoved = [&branch](const auto& entry) { return isInBranch(entry.first, branch); };
    std::erase_if(m_Items, isRemoved);
    std::erase_if(m_Transforms, isRemoved);
}

void SceneView::sayWhatWaits() const
{
    for (const auto& [path, item] : m_Items) {
        const std::string waiting = item.waiting();
        if (!waiting.empty())
            sayOnce("scene(\"" + printable(m_Name, SHOWN_CHARACTERS) + "\"), \"" + printable(path, SHOWN_CHARACTERS) +
                    "\": " + waiting + "; they are not shown");
    }
}

// Where data change all the time the camera does not follow every change.
void SceneView::fitToNews()
{
    const SceneBox news = box();
    if (!isWithin(news, m_FittedBox) || news.diagonal() < 0.5 * m_FittedBox.diagonal())
        fit();
}

void SceneView::fit()
{
    m_FittedBox = box();
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

Matrix4 SceneView::matrixOf(const std::string& path) const
{
    Matrix4 matrix;
    for (std::size_t end = 0; end != std::string::npos && !m_Transforms.empty();) {
        end = path.find('/', end + 1);
        const auto found = m_Transforms.find(path.substr(0, end));
        if (found != m_Transforms.end())
            matrix = matrix * found->second;
    }
    return matrix;
}

std::vector<SceneView::Placed> SceneView::visibleItems() const
{
    std::vector<Placed> items;
    for (const auto& [path, item] : m_Items)
        if (item.isVisible())
            items.push_back({const_cast<SceneItem*>(&item), matrixOf(path)});
    return items;
}

SceneBox SceneView::box() const
{
    SceneBox box;
    for (const auto& [item, matrix] : visibleItems())
        box.extend(item->box().moved(matrix));
    return box;
}

bool SceneView::isGroundDark() const
{
    return palette().color(QPalette::Base).lightness() < 128;
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
    return draw(size, 1);
}

std::string SceneView::saveData(const QString&)
{
    return SceneUpdate::NOT_SAVED;
}

// Null if it cannot be drawn.
QImage SceneView::draw(const QSize& pixels, double scale)
{
    QImage picture;
    if (m_Context) {
        const SceneContext::Scope scope(*m_Context);
        if (scope.isCurrent() && m_Context->beginPicture(pixels)) {
            drawItems(cameraFor({double(pixels.width()), double(pixels.height())}), pixels, scale);
            picture = m_Context->readPicture(pixels);
            m_Context->endPicture();
        }
    }
    if (!picture.isNull())
        drawTexts(picture, cameraFor({double(pixels.width()), double(pixels.height())}), scale);
    return picture;
}

void SceneView::drawItems(const SceneCamera& camera, const QSize& pixels, double scale)
{
    clear(palette().color(QPalette::Base));
    setProjection(camera, box(), {double(pixels.width()), double(pixels.height())});
    setHeadlight();
    drawClouds(camera, pixels, scale);
    std::vector<Placed> items = visibleItems();
    std::erase_if(items, [](const Placed& placed) { return isLitByDepths(*placed.item); });
    const auto depth = [&camera](const Placed& placed) {
        return camera.modelView(placed.matrix, placed.item->origin()).at(2, 3);
    };
    // What can be seen through comes last, the farthest first.
    std::stable_sort(items.begin(), items.end(), [&depth](const Placed& a, const Placed& b) {
        if (a.item->isOpaque() || b.item->isOpaque())
            return a.item->isOpaque() && !b.item->isOpaque();
        return depth(a) < depth(b);
    });
    for (const Placed& placed : items)
        drawItem(placed, camera, scale);
}

void SceneView::drawItem(const Placed& placed, const SceneCamera& camera, double scale)
{
    glDepthMask(placed.item->isOpaque() ? GL_TRUE : GL_FALSE);
    placed.item->draw(
        m_Context->getGL(), camera.modelView(placed.matrix, placed.item->origin()), isGroundDark(), scale);
    glDepthMask(GL_TRUE);
}

// First the clouds that are lit by their own depths, alone.
void SceneView::drawClouds(const SceneCamera& camera, const QSize& pixels, double scale)
{
    bool areAny = false;
    for (const Placed& placed : visibleItems()) {
        if (!isLitByDepths(*placed.item))
            continue;
        drawItem(placed, camera, scale);
        areAny = true;
    }
    if (!areAny)
        return;
    const SceneCamera::Depths depths = camera.depthsOf(box());
    m_Context->light(pixels, {camera.isOrthographic(), depths.nearest, depths.farthest, camera.heightSeen()}, scale);
}

void SceneView::drawTexts(QImage& picture, const SceneCamera& camera, double scale)
{
    QPainter painter(&picture);
    QFont textFont = font();
    textFont.setPointSizeF(textFont.pointSizeF() * scale);
    painter.setFont(textFont);
    for (const auto& [item, matrix] : visibleItems()) {
        const std::string* const text = item->text();
        if (!text)
            continue;
        const SceneCamera::Pixel place =
            camera.project(matrix * item->origin(), {double(picture.width()), double(picture.height())});
        if (!camera.isOrthographic() && place.depth <= 0)
            continue;
        const RGBA8 colour = item->colour(palette().color(QPalette::Text));
        painter.setPen(QColor(colour[0], colour[1], colour[2], colour[3]));
        const QFontMetricsF metrics(textFont, &picture);
        painter.drawText(QPointF(place.x + TEXT_OFFSET * scale, place.y + 0.5 * (metrics.ascent() - metrics.descent())),
            QString::fromStdString(printable(*text, 1000)));
    }
}

std::optional<Vector3d> SceneView::hitAt(const QPointF& pixel)
{
    if (!m_Context)
        return {};
    const SceneContext::Scope scope(*m_Context);
    if (!scope.isCurrent() || !m_Context->beginPicture(size()))
        return {};
    constexpr int SIZE = 2 * CATCH_RADIUS + 1;
    const QPoint corner = pixel.toPoint() - QPoint(CATCH_RADIUS, CATCH_RADIUS);
    std::array<float, std::size_t(SIZE) * SIZE> depths;
    depths.fill(1);
    {
        const SavedAttributes scissor(GL_SCISSOR_BIT);
        glEnable(GL_SCISSOR_TEST);
        glScissor(corner.x(), corner.y(), SIZE, SIZE);
        drawItems(m_Camera, size(), 1);
        glReadPixels(corner.x(), corner.y(), SIZE, SIZE, GL_DEPTH_COMPONENT, GL_FLOAT, depths.data());
    }
    m_Context->endPicture();
    std::optional<Vector3d> hit;
    double nearest = 2 * SIZE;
    for (int i = 0; i < SIZE * SIZE; ++i) {
        const QPoint offset(i % SIZE - CATCH_RADIUS, i / SIZE - CATCH_RADIUS);
        const double distance = std::hypot(offset.x(), offset.y());
        const QPointF place = QPointF(pixel.toPoint() + offset) + QPointF(0.5, 0.5);
        if (!(depths[std::size_t(i)] < 1) || distance >= nearest || !QRectF(rect()).contains(place))
            continue;
        nearest = distance;
        hit = m_Camera.unproject({place.x(), place.y(), m_Camera.depthAt(depths[std::size_t(i)], box())}, viewSize());
    }
    return hit;
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
    }
}

} // namespace tavo
