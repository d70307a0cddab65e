#include "vireo/show/scenes/SceneRenderer.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

#include "vireo/context/GLExtensions.h"
#include "vireo/displayers/joinTiles.h"
#include "vireo/show/scenes/ClipPlanes.h"
#include "vireo/show/scenes/CutOut.h"
#include "vireo/show/scenes/Stopwatch.h"
#include "vireo/show/scenes/drawSections.h"
#include "vireo/show/scenes/pictureProjection.h"
#include "vireo/show/scenes/sceneOverlays.h"
#include "vireo/show/scenes/sceneTexts.h"

namespace tavo {

namespace {

constexpr std::size_t FEWEST_REFINED = 4096;   // points at a time
constexpr std::size_t FEWEST_MEASURED = 20000; // points: the time of fewer is not worth waiting for

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
    const float behind[] = {0, 0, -1, 0};
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glLightfv(GL_LIGHT0, GL_POSITION, ahead);
    glLightfv(GL_LIGHT0, GL_AMBIENT, ambient);
    glLightfv(GL_LIGHT0, GL_DIFFUSE, diffuse);
    glLightfv(GL_LIGHT0, GL_SPECULAR, none);
    glLightModelfv(GL_LIGHT_MODEL_AMBIENT, none);
    glLightfv(GL_LIGHT1, GL_POSITION, behind); // on where normals may point either way
    glLightfv(GL_LIGHT1, GL_AMBIENT, none);
    glLightfv(GL_LIGHT1, GL_DIFFUSE, diffuse);
    glLightfv(GL_LIGHT1, GL_SPECULAR, none);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, GL_TRUE);
    glColorMaterial(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE);
    for (const GLenum capability : {GL_LIGHT0, GL_COLOR_MATERIAL, GL_NORMALIZE})
        glEnable(capability);
}

void clear(const QColor& ground)
{
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glClearColor(
        static_cast<float>(ground.redF()), static_cast<float>(ground.greenF()), static_cast<float>(ground.blueF()), 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

void setDrawing()
{
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_FALSE); // the picture is opaque
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
}

// Few are larger, for those that they stand for.
double enlargementOf(std::size_t numPhases)
{
    constexpr double MOST = 3;
    return std::min(std::sqrt(double(PointPhases::ALL) / double(numPhases)), MOST);
}

bool isLitByDepths(const SceneItem& item)
{
    return item.isUnlitCloud() && item.isOpaque();
}

// In which it can be drawn, one after the other.
std::size_t numStepsOf(const SceneItem& item)
{
    return std::max<std::size_t>(item.numPoints(), 1);
}

// Draws pictures into another target, as long as it lives.
class DrawnInto
{
public:
    DrawnInto(SceneContext& context, std::unique_ptr<GLRenderTargetFBO>& target, const QSize& pixels)
        : m_Context(context)
        , m_Target(target)
    {
        m_Context.swapTarget(m_Target);
        m_Context.beginPicture(pixels);
    }
    ~DrawnInto()
    {
        m_Context.endPicture();
        m_Context.swapTarget(m_Target);
    }
    DrawnInto(const DrawnInto&) = delete;
    DrawnInto& operator=(const DrawnInto&) = delete;

private:
    SceneContext& m_Context;
    std::unique_ptr<GLRenderTargetFBO>& m_Target;
};

bool isTranslucentSurface(const SceneModel::Placed& placed)
{
    return placed.item->isMesh() && !placed.item->isOpaque();
}

} // namespace

// Null if it cannot be drawn.
QImage SceneRenderer::draw(const SceneCamera& camera, const QSize& pixels, const SceneLook& look, std::size_t numPhases)
{
    return draw(camera, pixels, look, numPhases, false);
}

QImage SceneRenderer::draw(
    const SceneCamera& camera, const QSize& pixels, const SceneLook& look, std::size_t numPhases, bool isRefined)
{
    m_IsRefined = isRefined;
    QImage picture;
    if (m_Context) {
        const SceneContext::Scope scope(*m_Context);
        constexpr int MARGIN = 128; // for large points
        const auto drawTile = [&](const QRect& tile) {
            m_Part = tile;
            return drawPart(camera, pixels, look, numPhases);
        };
        if (scope.isCurrent())
            picture = joinTiles(pixels, drawTile, {m_Context->largestPicture(), MARGIN, QImage::Format_RGB32});
    }
    if (!picture.isNull())
        drawTexts(picture, camera, look);
    return picture;
}

QImage SceneRenderer::drawPart(
    const SceneCamera& camera, const QSize& pixels, const SceneLook& look, std::size_t numPhases)
{
    if (!m_Context->beginPicture(m_Part.size()))
        return {};
    drawItems(camera, pixels, look, numPhases);
    QImage part = m_Context->readPicture(m_Part.size());
    m_Context->endPicture();
    return part;
}

void SceneRenderer::setProjection(const SceneCamera& camera, const QSize& pixels) const
{
    const SceneCamera::Size size = sizeOf(pixels);
    const PicturePart part{
        double(m_Part.left()), double(m_Part.top()), double(m_Part.width()), double(m_Part.height())};
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(
        croppedTo(pictureProjection(camera, m_Model.box(), size).numbers, {size.width, size.height}, part).data());
    glFrontFace(GL_CW); // since pictures stand on their heads
}

void SceneRenderer::drawItems(
    const SceneCamera& camera, const QSize& pixels, const SceneLook& look, std::size_t numPhases)
{
    m_PointTime = {};
    for (const Placed& placed : m_Model.visibleItems())
        m_PointTime.isTypical = !placed.item->prepare(m_Context->getGL(), numPhases) && m_PointTime.isTypical;
    begin(camera, pixels, look);
    PointShare share = shareOf(camera, pixels, numPhases);
    share.sliceStep = look.sliceStep;
    share.mayBeCoarse = look.mayBeCoarse;
    drawClouds(camera, pixels, look, share);
    drawRest(camera, look, share);
    drawSections(camera, look);
    m_Model.sayWhatIsReduced();
}

void SceneRenderer::drawSections(const SceneCamera& camera, const SceneLook& look)
{
    if (const std::optional<SceneBox> clip = m_Model.drawnClipBox())
        tavo::drawSections(m_Model.visibleItems(), *clip, camera, look.isGroundDark());
}

// What is not lit by its own depths; what can be seen through comes last, the farthest first.
std::vector<SceneModel::Placed> SceneRenderer::restInOrder(const SceneCamera& camera)
{
    std::vector<Placed> items = m_Model.visibleItems();
    std::erase_if(items, [](const Placed& placed) { return isLitByDepths(*placed.item); });
    const auto depth = [&camera](const Placed& placed) {
        return camera.modelView(placed.matrix, placed.item->origin()).at(2, 3);
    };
    std::stable_sort(items.begin(), items.end(), [&depth](const Placed& a, const Placed& b) {
        if (a.item->isOpaque() || b.item->isOpaque())
            return a.item->isOpaque() && !b.item->isOpaque();
        return depth(a) < depth(b);
    });
    return items;
}

// The share is counted through the points of clouds, and all other items.
void SceneRenderer::drawRest(const SceneCamera& camera, const SceneLook& look, const PointShare& share)
{
    const std::vector<Placed> items = restInOrder(camera);
    const ClipPlanes planes(camera, m_Model.drawnClipBox());
    std::size_t numBefore = 0;
    for (auto next = items.begin(); next != items.end();) {
        const auto end = std::find_if_not(next, items.end(), isTranslucentSurface);
        if (next != end) {
            if (share.beginPoint <= numBefore && numBefore < share.endPoint)
                drawSurfaces({next, end}, camera, look, share);
            numBefore += static_cast<std::size_t>(end - next);
            next = end;
        } else {
            const std::size_t numAfter = numBefore + numStepsOf(*next->item);
            if (share.beginPoint < numAfter && numBefore < share.endPoint)
                drawItem(*next, camera, look, share.behind(numBefore));
            numBefore = numAfter;
            ++next;
        }
    }
}

// Together, by their depths, where the driver can.
void SceneRenderer::drawSurfaces(
    const std::vector<Placed>& surfaces, const SceneCamera& camera, const SceneLook& look, const PointShare& share)
{
    glFinish(); // what was drawn before counts not
    const Stopwatch watch;
    const auto drawAll = [&] {
        for (const Placed& placed : surfaces)
            draw(placed, camera, look, share);
    };
    if (!m_Context->blendLayers(m_Part.size(), look.numLayers, drawAll)) {
        glDepthMask(GL_FALSE);
        drawAll();
        glDepthMask(GL_TRUE);
    }
    glFinish();
    m_PointTime.secondsOfLayers += watch.seconds() * SceneLook::MOST_LAYERS / look.numLayers;
}

// The ground, with the far edges of the box, and what everything is drawn with.
void SceneRenderer::begin(const SceneCamera& camera, const QSize& pixels, const SceneLook& look)
{
    clear(look.ground);
    setDrawing();
    drawBoxBehind(camera, pixels, look);
    setProjection(camera, pixels);
    setHeadlight();
}

// The points in view.
PointShare SceneRenderer::shareOf(const SceneCamera& camera, const QSize& pixels, std::size_t numPhases)
{
    PointShare share;
    share.numPhases = numPhases;
    share.enlargement = enlargementOf(numPhases);
    share.projection = camera.projection(m_Model.box(), sizeOf(pixels));
    share.width = pixels.width();
    share.height = pixels.height();
    return share;
}

std::size_t SceneRenderer::numPointsInView(const SceneCamera& camera, const QSize& pixels)
{
    const PointShare all = shareOf(camera, pixels, PointPhases::ALL);
    std::size_t number = 0;
    for (const Placed& placed : m_Model.visibleItems())
        number += placed.item->numPointsOf(all, camera.modelView(placed.matrix, placed.item->origin()));
    return number;
}

// Behind everything: no depths are written.
void SceneRenderer::drawBoxBehind(const SceneCamera& camera, const QSize& pixels, const SceneLook& look)
{
    const SceneBox box = m_Model.box();
    if (!look.hasBearings || box.isEmpty())
        return;
    constexpr float OPACITY = 0.3F;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(m_Part.left(), m_Part.left() + m_Part.width(), m_Part.top(), m_Part.top() + m_Part.height(), -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    for (const GLenum capability : {GL_DEPTH_TEST, GL_LIGHTING})
        glDisable(capability);
    glLineWidth(static_cast<float>(look.scale));
    glColor4f(static_cast<float>(look.ink.redF()), static_cast<float>(look.ink.greenF()),
        static_cast<float>(look.ink.blueF()), OPACITY);
    const std::vector<QLineF> edges = edgesBehind(Box3d(box.getMin(), box.getMax()), toPicture(camera, sizeOf(pixels)));
    {
        const Primitive lines(GL_LINES);
        for (const QLineF& edge : edges) {
            glVertex2d(edge.x1(), edge.y1());
            glVertex2d(edge.x2(), edge.y2());
        }
    }
    glEnable(GL_DEPTH_TEST);
}

// Volumes put their parts together themselves.
std::size_t SceneRenderer::draw(
    const Placed& placed, const SceneCamera& camera, const SceneLook& look, PointShare share) const
{
    std::size_t numPoints = 0;
    const std::optional<SceneBox> box = m_Model.drawnCutOut();
    const std::optional<CutOut> cutOut = box ? std::optional<CutOut>(std::in_place, camera, *box) : std::nullopt;
    share.cutOut = cutOut ? &*cutOut : nullptr;
    const auto drawIt = [&] {
        numPoints = placed.item->draw(
            camera.modelView(placed.matrix, placed.item->origin()), look.isGroundDark(), look.scale, share);
    };
    cutOut && !placed.item->isVolume() ? cutOut->draw(drawIt) : drawIt();
    return numPoints;
}

void SceneRenderer::drawItem(
    const Placed& placed, const SceneCamera& camera, const SceneLook& look, const PointShare& share)
{
    glDepthMask(placed.item->isOpaque() ? GL_TRUE : GL_FALSE);
    if (placed.item->isVolume())
        glFinish(); // what was drawn before counts not
    const Stopwatch watch;
    const std::size_t numPoints = draw(placed, camera, look, share);
    glDepthMask(GL_TRUE);
    if (placed.item->isVolume()) {
        glFinish();
        m_PointTime.secondsOfVolumes += share.sliceStep * watch.seconds();
    }
    if (numPoints < FEWEST_MEASURED || share.isSlice())
        return;
    glFinish();
    m_PointTime.numPoints += numPoints;
    m_PointTime.seconds += watch.seconds();
}

// First the clouds that are lit by their own depths, alone.
void SceneRenderer::drawClouds(
    const SceneCamera& camera, const QSize& pixels, const SceneLook& look, const PointShare& share)
{
    const std::vector<Placed> items = m_Model.visibleItems();
    if (std::none_of(items.begin(), items.end(), [](const Placed& placed) { return isLitByDepths(*placed.item); }))
        return;
    m_IsRefined ? drawRefinedClouds(share) : drawUnlitClouds(camera, look, share);
    light(camera, pixels, look);
}

void SceneRenderer::light(const SceneCamera& camera, const QSize& pixels, const SceneLook& look)
{
    if (!look.hasDepthLight)
        return;
    const SceneCamera::Depths depths = camera.depthsOf(m_Model.box());
    const double heightSeen = camera.heightSeen() * m_Part.height() / pixels.height();
    m_Context->light(m_Part.size(), {camera.isOrthographic(), depths.nearest, depths.farthest, heightSeen}, look.scale);
}

// The points of the share are counted through all of them.
void SceneRenderer::drawUnlitClouds(const SceneCamera& camera, const SceneLook& look, const PointShare& share)
{
    const ClipPlanes planes(camera, m_Model.drawnClipBox());
    std::size_t numBefore = 0;
    for (const Placed& placed : m_Model.visibleItems()) {
        if (!isLitByDepths(*placed.item))
            continue;
        drawItem(placed, camera, look, share.behind(numBefore));
        numBefore += placed.item->numPoints();
    }
}

// The few that stand for those that are still missing are a little farther away.
void SceneRenderer::drawRefinedClouds(PointShare behind)
{
    constexpr double FARTHER = 2e-5;
    m_Context->copyFrom(*m_Refinement.target, m_Refinement.pixels);
    if (m_Refinement.areCloudsWhole())
        return;
    behind.beginPoint = m_Refinement.numDrawn;
    glDepthRange(FARTHER, 1);
    drawUnlitClouds(m_Refinement.camera, m_Refinement.look, behind);
    glDepthRange(0, 1);
}

SceneRenderer::~SceneRenderer()
{
    if (!m_Refinement.target)
        return;
    const SceneContext::Scope scope(*m_Context);
    m_Refinement = {};
}

void SceneRenderer::beginRefinement(const SceneCamera& camera, const QSize& pixels, const SceneLook& look)
{
    if (!m_Context)
        return;
    const SceneContext::Scope scope(*m_Context);
    std::unique_ptr<GLRenderTargetFBO> target = std::move(m_Refinement.target);
    if (!target || target->getWidth() < static_cast<unsigned int>(pixels.width()) ||
        target->getHeight() < static_cast<unsigned int>(pixels.height()))
        target = std::max(pixels.width(), pixels.height()) <= m_Context->largestPicture()
                     ? m_Context->makeTarget(pixels)
                     : nullptr;
    m_Refinement = {camera, pixels, look, std::move(target), {}, nullptr};
    for (const Placed& placed : m_Model.visibleItems()) {
        const bool isLit = isLitByDepths(*placed.item);
        m_Refinement.numPoints += isLit ? placed.item->numPoints() : 0;
        m_Refinement.numSteps += isLit ? placed.item->numPoints() : numStepsOf(*placed.item);
    }
}

bool SceneRenderer::refine(double seconds, const PointBudget& budget)
{
    const Stopwatch watch;
    Refinement& refined = m_Refinement;
    if (isRefined())
        return true;
    const SceneContext::Scope scope(*m_Context);
    m_Part = QRect(QPoint(0, 0), refined.pixels);
    const DrawnInto into(*m_Context, refined.target, refined.pixels);
    if (!std::exchange(refined.isBegun, true)) {
        begin(refined.camera, refined.pixels, refined.look);
        refined.budget = budget;
    }
    setDrawing();
    setProjection(refined.camera, refined.pixels);
    setHeadlight();
    do
        refineInTime(seconds - watch.seconds());
    while (!refined.isWhole() && watch.seconds() < 0.5 * seconds);
    return refined.isWhole();
}

// Drivers have one slice to draw while they are told of the next one, and no more, so that nobody waits for them.
void SceneRenderer::refineInTime(double seconds)
{
    const Stopwatch watch;
    const std::size_t number = std::max(m_Refinement.budget.numPointsIn(seconds), FEWEST_REFINED);
    refineBy(number);
    const std::unique_ptr<DrawingFence> before =
        std::exchange(m_Refinement.lastSlice, std::make_unique<DrawingFence>());
    if (!before)
        return; // to be told of points takes less time than to draw them
    before->wait();
    m_Refinement.budget.measure(number, watch.seconds(), 0);
}

bool SceneRenderer::finishSlice()
{
    if (!m_Refinement.lastSlice)
        return false;
    const SceneContext::Scope scope(*m_Context);
    m_Refinement.lastSlice->wait();
    m_Refinement.lastSlice.reset();
    return true;
}

void SceneRenderer::refineBy(std::size_t number)
{
    Refinement& refined = m_Refinement;
    PointShare share = shareOf(refined.camera, refined.pixels, PointPhases::ALL);
    share.mayBeCoarse = refined.look.mayBeCoarse;
    share.beginPoint = refined.numDrawn;
    const bool areClouds = refined.numDrawn < refined.numPoints;
    refined.numDrawn = std::min(refined.numDrawn + number, areClouds ? refined.numPoints : refined.numSteps);
    share.endPoint = refined.numDrawn;
    if (areClouds)
        drawUnlitClouds(refined.camera, refined.look, share);
    else
        drawRest(refined.camera, refined.look, share.behind(refined.numPoints));
    if (areClouds && refined.areCloudsWhole())
        light(refined.camera, refined.pixels, refined.look);
    if (!refined.isWhole())
        return;
    drawSections(refined.camera, refined.look);
    for (const Placed& placed : m_Model.visibleItems())
        placed.item->prepare(m_Context->getGL(), PointPhases::ALL); // a few are of no use now
}

bool SceneRenderer::areVolumesCoarse() const
{
    const std::vector<Placed> items = m_Model.visibleItems();
    return std::any_of(items.begin(), items.end(), [](const Placed& placed) { return placed.item->isCoarse(); });
}

bool SceneRenderer::refineVolumes(double seconds)
{
    const Stopwatch watch;
    const SceneContext::Scope scope(*m_Context);
    bool areWhole = true;
    for (const Placed& placed : m_Model.visibleItems())
        if (placed.item->isCoarse())
            areWhole = placed.item->refineVolume(std::max(seconds - watch.seconds(), 0.0)) && areWhole;
    return areWhole;
}

double SceneRenderer::progressOfVolumes() const
{
    double least = 1;
    for (const Placed& placed : m_Model.visibleItems())
        if (placed.item->isCoarse())
            least = std::min(least, placed.item->progressOfVolume());
    return least;
}

void SceneRenderer::giveUpVolumes()
{
    for (const Placed& placed : m_Model.visibleItems())
        if (placed.item->isCoarse())
            placed.item->giveUpVolume();
}

QImage SceneRenderer::drawRefined(std::size_t numPhasesBehind)
{
    if (m_Refinement.target && m_Refinement.isWhole())
        return readRefined();
    const bool isRefined = m_Refinement.target != nullptr;
    const std::size_t numPhases = isRefined ? numPhasesBehind : PointPhases::ALL;
    return draw(m_Refinement.camera, m_Refinement.pixels, m_Refinement.look, numPhases, isRefined);
}

QImage SceneRenderer::readRefined()
{
    QImage picture;
    {
        const SceneContext::Scope scope(*m_Context);
        const DrawnInto into(*m_Context, m_Refinement.target, m_Refinement.pixels);
        picture = m_Context->readPicture(m_Refinement.pixels);
    }
    drawTexts(picture, m_Refinement.camera, m_Refinement.look);
    return picture;
}

void SceneRenderer::drawTexts(QImage& picture, const SceneCamera& camera, const SceneLook& look)
{
    QPainter painter(&picture);
    QFont textFont = look.font;
    textFont.setPointSizeF(textFont.pointSizeF() * look.scale);
    painter.setFont(textFont);
    for (const SceneText& text : textsOf(m_Model, camera, sizeOf(picture.size()), textFont, look.scale, &picture)) {
        const RGBA8 colour = text.placed.item->colour(look.ink);
        painter.setPen(QColor(colour[0], colour[1], colour[2], colour[3]));
        painter.drawText(text.baseline, text.text);
    }
}

} // namespace tavo
