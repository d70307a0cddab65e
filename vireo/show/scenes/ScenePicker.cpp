#include "vireo/show/scenes/ScenePicker.h"

#include <QRect>
#include <algorithm>
#include <cmath>
#include <iterator>

#include "tavo/base/debug/displayException.h"
#include "vireo/context/GLExtensions.h"
#include "vireo/show/scenes/ClipPlanes.h"
#include "vireo/show/scenes/CutOut.h"
#include "vireo/show/scenes/clipSpace.h"
#include "vireo/show/scenes/pickSection.h"
#include "vireo/show/scenes/pictureProjection.h"

namespace tavo {

namespace {

constexpr int MIDDLE = PICK_SIDE / 2;
constexpr double MOST_SIZE = 256; // in pixels, of points that are found by their edges

SceneCamera::Size sizeOf(const QSize& pixels)
{
    return {double(pixels.width()), double(pixels.height())};
}

// Points and lines reach into the pixels that are looked at from so far outside.
int marginOf(const std::vector<SceneModel::Placed>& items)
{
    double largest = 0;
    for (const SceneModel::Placed& placed : items)
        largest = std::max(largest, placed.item->largestSize());
    return static_cast<int>(std::ceil(0.5 * std::min(largest, MOST_SIZE)));
}

bool isOutside(const SceneItem& item, const Matrix4& toClipSpace)
{
    const SceneBox& box = item.box();
    return box.isEmpty() ||
           isOutside(Box3d(box.getMin() - item.origin(), box.getMax() - item.origin()), toClipSpace.numbers);
}

// But for rounding, and half a sample.
bool isIn(const SceneBox& box, const Vector3d& place)
{
    const double margin = 0.01 * box.diagonal();
    for (std::size_t i = 0; i < 3; ++i)
        if (place[i] < box.getMin()[i] - margin || place[i] > box.getMax()[i] + margin)
            return false;
    return true;
}

// Calls use(i, offset) for each pixel that is one of the picture.
template <typename Use>
void forEachPixel(const QSize& size, const QPoint& pixel, Use use)
{
    for (int i = 0; i < PICK_SIDE * PICK_SIDE; ++i) {
        const QPoint offset(i % PICK_SIDE - MIDDLE, i / PICK_SIDE - MIDDLE);
        if (QRect(QPoint(), size).contains(pixel + offset))
            use(static_cast<std::size_t>(i), offset);
    }
}

} // namespace

std::optional<PickTarget::Pixels> ScenePicker::draw(const SceneCamera& camera, const QSize& size, const QPoint& pixel)
{
    m_Drawn.clear();
    std::vector<SceneModel::Placed> items = m_Model.visibleItems();
    const int side = PICK_SIDE + 2 * marginOf(items);
    const Matrix4 projection{croppedTo(pictureProjection(camera, m_Model.box(), sizeOf(size)).numbers,
        {double(size.width()), double(size.height())}, pixel.x(), pixel.y(), side)};
    std::copy_if(items.begin(), items.end(), std::back_inserter(m_Drawn), [&](const SceneModel::Placed& placed) {
        return !isOutside(*placed.item, projection * camera.modelView(placed.matrix, placed.item->origin()));
    });
    if (!m_Context || m_Drawn.empty())
        return {};
    const SceneContext::Scope scope(*m_Context);
    if (!scope.isCurrent() || !m_Context->getPickTarget().begin(side))
        return {};
    PointShare share;
    share.projection = projection;
    share.width = share.height = side;
    drawItems(m_Context->getPickTarget(), camera, share);
    return m_Context->getPickTarget().end();
}

void ScenePicker::drawItems(PickTarget& target, const SceneCamera& camera, const PointShare& share)
{
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixd(share.projection.numbers.data());
    const ClipPlanes planes(camera, m_Model.drawnClipBox());
    glMatrixMode(GL_MODELVIEW);
    const auto drawAll = [&] {
        for (std::size_t i = 0; i < m_Drawn.size(); ++i)
            runGuarded([&] {
                const auto& [path, item, matrix] = m_Drawn[i];
                item->drawIds(m_Context->getGL(), target, i, camera.modelView(matrix, item->origin()), share);
            });
    };
    const std::optional<SceneBox> cutOut = m_Model.drawnCutOut();
    cutOut ? CutOut(camera, *cutOut).draw(drawAll) : drawAll();
}

// Nothing is nearer than what fills a surface where it is cut.
std::optional<ScenePick> ScenePicker::sectionAt(const SceneCamera& camera, const QSize& size, const QPoint& pixel)
{
    const std::optional<SceneBox> clip = m_Model.drawnClipBox();
    if (!clip || !m_Context)
        return {};
    // Not quite in the middle of the pixel, where rays through middles of things would meet their edges.
    const Vector2d place(pixel.x() + 0.5137, pixel.y() + 0.5231);
    return pickSection(
        m_Model.visibleItems(), *clip, rayThrough(camera, sizeOf(size), place), !camera.isOrthographic());
}

std::optional<ScenePick> ScenePicker::pick(const SceneCamera& camera, const QSize& size, const QPoint& pixel)
{
    if (std::optional<ScenePick> section = sectionAt(camera, size, pixel))
        return section;
    const std::optional<PickTarget::Pixels> pixels = draw(camera, size, pixel);
    if (!pixels)
        return {};
    std::array<RGBA8, std::size_t(PICK_SIDE) * PICK_SIDE> ids{};
    forEachPixel(size, pixel, [&](std::size_t i, const QPoint&) { ids[i] = pixels->ids[i]; });
    const std::optional<SceneBox> clip = m_Model.drawnClipBox();
    const auto rayAt = [&](double x, double y) {
        const Ray ray = rayThrough(camera, sizeOf(size), {pixel.x() + x + 0.5, pixel.y() + y + 0.5});
        return clip ? cutTo(*clip, ray) : ray;
    };
    std::optional<ScenePick> pick;
    if (const std::optional<PickedPixel> nearest = nearestPicked(ids)) {
        const auto [item, vertex] = m_Context->getPickTarget().vertexOf(nearest->id);
        pick = pickOf(m_Drawn[item], vertex, rayAt(nearest->x, nearest->y));
    }
    return volumeBefore(std::move(pick), rayAt(0, 0), camera);
}

// What is hit of the volumes, if that is nearer.
std::optional<ScenePick> ScenePicker::volumeBefore(
    std::optional<ScenePick> pick, const Ray& ray, const SceneCamera& camera)
{
    Ray seen = ray;
    seen.isCut = ray.isCut || !camera.isOrthographic();
    if (!camera.isOrthographic() && dot(seen.start - camera.eye(), seen.direction) < 0)
        seen.start = camera.eye();
    const auto depthOf = [&seen](const ScenePick& hit) { return dot(hit.picked.place - seen.start, seen.direction); };
    const std::optional<SceneBox> clip = m_Model.drawnClipBox();
    for (const SceneModel::Placed& placed : m_Drawn) {
        if (!placed.item->isVolume())
            continue;
        VolumeRay along(*placed.item->shape()->grid, placed.matrix, seen.start, seen.direction, seen.isCut);
        if (const std::optional<SceneBox> cutOut = m_Model.drawnCutOut())
            along.leaveOut(*cutOut);
        const std::optional<std::size_t> sample = placed.item->sampleAlong(along);
        if (!sample)
            continue;
        ScenePick hit = pickOf(placed, *sample, seen);
        if ((!clip || isIn(*clip, hit.picked.place)) && (!pick || depthOf(hit) < depthOf(*pick)))
            pick = std::move(hit);
    }
    return pick;
}

std::optional<Vector3d> ScenePicker::placeAt(const SceneCamera& camera, const QSize& size, const QPoint& pixel)
{
    if (const std::optional<ScenePick> section = sectionAt(camera, size, pixel))
        return section->picked.place;
    const std::optional<PickTarget::Pixels> pixels = draw(camera, size, pixel);
    std::optional<SceneCamera::Pixel> hit;
    int nearest = 2 * MIDDLE * MIDDLE + 1;
    if (pixels)
        forEachPixel(size, pixel, [&](std::size_t i, const QPoint& offset) {
            const int distance = QPoint::dotProduct(offset, offset);
            if (!(pixels->depths[i] < 1) || distance >= nearest)
                return;
            nearest = distance;
            hit = SceneCamera::Pixel{pixel.x() + offset.x() + 0.5, pixel.y() + offset.y() + 0.5,
                camera.depthAt(pixels->depths[i], m_Model.box())};
        });
    if (!hit)
        return {};
    return camera.unproject(*hit, sizeOf(size));
}

} // namespace tavo
