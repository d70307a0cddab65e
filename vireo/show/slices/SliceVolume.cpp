#include "vireo/show/slices/SliceVolume.h"

#include <utility>
#include <vector>

#include "vireo/show/Numbers.h"
#include "vireo/show/volumes/volumeItem.h"

namespace tavo {

namespace {

constexpr int UNTIL_REST = 150; // in milliseconds
constexpr const char* VOLUME = "volume";
constexpr const char* CROSSHAIR = "crosshair";

// Through the sample, from end to end of the volume.
ItemUpdate crosshairItem(const VolumeGrid& grid, const Vector3i& voxel)
{
    std::vector<double> points;
    for (std::size_t axis = 0; axis < 3; ++axis)
        for (const double end : {-0.5, grid.size[axis] - 0.5}) {
            Vector3d index(voxel[0], voxel[1], voxel[2]);
            index[axis] = end;
            const Vector3d place = grid.at(index);
            points.insert(points.end(), {place[0], place[1], place[2]});
        }
    ItemUpdate item;
    item.shape.emplace();
    item.shape->kind = ItemKind::Segments;
    item.shape->points = {Numbers(std::move(points)), 3};
    item.colour = RGBA8(90, 200, 255, 255);
    return item;
}

} // namespace

SliceVolume::SliceVolume(QWidget& parent, const SlicesModel& model, const std::string& name)
    : m_Model(model)
    , m_Scene(new SceneView(name))
{
    m_Scene->setParent(&parent);
    SceneUpdate update;
    update.hasBearings = false;
    m_Scene->apply(update);
    m_FollowSoon.setSingleShot(true);
    m_FollowSoon.setInterval(UNTIL_REST);
    QObject::connect(&m_FollowSoon, &QTimer::timeout, m_Scene, [this] { follow(); });
}

void SliceVolume::showVolume()
{
    const SliceLayer& layer = m_Model.volume().layer();
    SceneUpdate update;
    update.items[VOLUME] = volumeItem(layer.grid, layer.samples);
    m_Scene->apply(update);
    follow();
}

void SliceVolume::follow()
{
    m_FollowSoon.stop();
    if (m_Model.isEmpty())
        return;
    const ImageLook& look = m_Model.volume().look();
    SceneUpdate update;
    update.items[VOLUME].range = std::pair(look.from, look.to);
    update.items[VOLUME].colourMap = look.colourMap.empty() ? "grey" : look.colourMap;
    update.items[CROSSHAIR] = crosshairItem(m_Model.grid(), m_Model.voxel());
    m_Scene->apply(update);
}

} // namespace tavo
