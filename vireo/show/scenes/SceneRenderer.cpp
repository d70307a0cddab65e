#include "vireo/show/scenes/SceneRenderer.h"

#include <QPainter>
#include <algorithm>

#include "tavo/base/text/printable.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/show/scenes/pictureProjection.h"

namespace tavo {

namespace {

constexpr double TEXT_OFFSET = 5; // in pixels, beside its position

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

void setProjection(const SceneCamera& camera, const SceneBox& box, const SceneCamera::Size& size)
{
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(pictureProjection(camera, box, size).numbers.data());
    glFrontFace(GL_CW); // since pictures stand on their heads
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

} // namespace tavo
