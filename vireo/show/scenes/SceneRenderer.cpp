#include "vireo/show/scenes/SceneRenderer.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

#include "tavo/base/text/printable.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/context/SavedState.h"

namespace tavo {

namespace {

constexpr double TEXT_OFFSET = 5; // in pixels, beside its position
constexpr int CATCH_RADIUS = 4;   // in pixels

SceneCamera::Size sizeOf(const QSize& pixels)
{
    return {double(pixels.width()), double(pixels.height())};
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

// Null if it cannot be drawn.
QImage SceneRenderer::draw(const SceneCamera& camera, const QSize& pixels, const SceneLook& look)
{
    QImage picture;
    if (m_Context) {
        const SceneContext::Scope scope(*m_Context);
        if (scope.isCurrent() && m_Context->beginPicture(pixels)) {
            drawItems(camera, pixels, look);
            picture = m_Context->readPicture(pixels);
            m_Context->endPicture();
        }
    }
    if (!picture.isNull())
        drawTexts(picture, camera, look);
    return picture;
}

void SceneRenderer::drawItems(const SceneCamera& camera, const QSize& pixels, const SceneLook& look)
{
    clear(look.ground);
    setProjection(camera, m_Model.box(), sizeOf(pixels));
    setHeadlight();
    drawClouds(camera, pixels, look);
    std::vector<Placed> items = m_Model.visibleItems();
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
        drawItem(placed, camera, look);
}

void SceneRenderer::drawItem(const Placed& placed, const SceneCamera& camera, const SceneLook& look)
{
    glDepthMask(placed.item->isOpaque() ? GL_TRUE : GL_FALSE);
    placed.item->draw(
        m_Context->getGL(), camera.modelView(placed.matrix, placed.item->origin()), look.isGroundDark(), look.scale);
    glDepthMask(GL_TRUE);
}

// First the clouds that are lit by their own depths, alone.
void SceneRenderer::drawClouds(const SceneCamera& camera, const QSize& pixels, const SceneLook& look)
{
    bool areAny = false;
    for (const Placed& placed : m_Model.visibleItems()) {
        if (!isLitByDepths(*placed.item))
            continue;
        drawItem(placed, camera, look);
        areAny = true;
    }
    if (!areAny)
        return;
    const SceneCamera::Depths depths = camera.depthsOf(m_Model.box());
    m_Context->light(
        pixels, {camera.isOrthographic(), depths.nearest, depths.farthest, camera.heightSeen()}, look.scale);
}

void SceneRenderer::drawTexts(QImage& picture, const SceneCamera& camera, const SceneLook& look)
{
    QPainter painter(&picture);
    QFont textFont = look.font;
    textFont.setPointSizeF(textFont.pointSizeF() * look.scale);
    painter.setFont(textFont);
    for (const auto& [path, item, matrix] : m_Model.visibleItems()) {
        const std::string* const text = item->text();
        if (!text)
            continue;
        const SceneCamera::Pixel place = camera.project(matrix * item->origin(), sizeOf(picture.size()));
        if (!camera.isOrthographic() && place.depth <= 0)
            continue;
        const RGBA8 colour = item->colour(look.ink);
        painter.setPen(QColor(colour[0], colour[1], colour[2], colour[3]));
        const QFontMetricsF metrics(textFont, &picture);
        painter.drawText(
            QPointF(place.x + TEXT_OFFSET * look.scale, place.y + 0.5 * (metrics.ascent() - metrics.descent())),
            QString::fromStdString(printable(*text, 1000)));
    }
}

std::optional<Vector3d> SceneRenderer::hitAt(
    const SceneCamera& camera, const QSize& pixels, const SceneLook& look, const QPoint& pixel)
{
    if (!m_Context)
        return {};
    const SceneContext::Scope scope(*m_Context);
    if (!scope.isCurrent() || !m_Context->beginPicture(pixels))
        return {};
    constexpr int SIZE = 2 * CATCH_RADIUS + 1;
    const QPoint corner = pixel - QPoint(CATCH_RADIUS, CATCH_RADIUS);
    std::array<float, std::size_t(SIZE) * SIZE> depths;
    depths.fill(1);
    {
        const SavedAttributes scissor(GL_SCISSOR_BIT);
        glEnable(GL_SCISSOR_TEST);
        glScissor(corner.x(), corner.y(), SIZE, SIZE);
        drawItems(camera, pixels, look);
        glReadPixels(corner.x(), corner.y(), SIZE, SIZE, GL_DEPTH_COMPONENT, GL_FLOAT, depths.data());
    }
    m_Context->endPicture();
    std::optional<Vector3d> hit;
    double nearest = 2 * SIZE;
    for (int i = 0; i < SIZE * SIZE; ++i) {
        const QPoint offset(i % SIZE - CATCH_RADIUS, i / SIZE - CATCH_RADIUS);
        const double distance = std::hypot(offset.x(), offset.y());
        const QPointF place = QPointF(pixel + offset) + QPointF(0.5, 0.5);
        if (!(depths[std::size_t(i)] < 1) || distance >= nearest || !QRectF(QPointF(), pixels).contains(place))
            continue;
        nearest = distance;
        hit = camera.unproject(
            {place.x(), place.y(), camera.depthAt(depths[std::size_t(i)], m_Model.box())}, sizeOf(pixels));
    }
    return hit;
}

} // namespace tavo
