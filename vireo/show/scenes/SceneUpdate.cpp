#include "vireo/show/scenes/SceneUpdate.h"

#include <algorithm>
#include <utility>

#include "tavo/base/text/printable.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/show/scenes/SceneItem.h"
#include "vireo/show/scenes/sceneData.h"
#include "vireo/show/volumes/VolumeSurfaces.h"

namespace tavo {

namespace {

// What it displaces is left in the newer one.
template <typename T>
void replace(std::optional<T>& older, std::optional<T>& newer)
{
    if (newer)
        older.swap(newer);
}

} // namespace

std::size_t ItemShape::numParts() const
{
    switch (kind) {
    case ItemKind::Mesh: return numCorners ? numCorners->size() : faces.size();
    case ItemKind::Lines: return points.size() > 0 ? points.size() - 1 : 0;
    case ItemKind::Segments: return points.size() / 2;
    default: return 0;
    }
}

std::size_t ItemShape::faceOf(std::size_t i) const
{
    if (!numCorners)
        return i / faces.width;
    std::size_t face = 0;
    for (double end = (*numCorners)[0]; end <= static_cast<double>(i); end += (*numCorners)[face])
        ++face;
    return face;
}

void ItemUpdate::merge(ItemUpdate& newer)
{
    if (newer.shape || newer.isosurface) {
        shape.swap(newer.shape);
        isosurface.swap(newer.isosurface);
    }
    replace(colours, newer.colours);
    replace(normals, newer.normals);
    for (SceneField& field : newer.fields)
        addField(field);
    replace(labelNames, newer.labelNames);
    onFaces.merge(newer.onFaces);
    replace(shown, newer.shown);
    replace(range, newer.range);
    replace(colourMap, newer.colourMap);
    replace(colour, newer.colour);
    if (newer.size || newer.radii) {
        size.swap(newer.size);
        radii.swap(newer.radii);
    }
    replace(opacity, newer.opacity);
    replace(isVisible, newer.isVisible);
    replace(isSmooth, newer.isSmooth);
    replace(areEdgesSeen, newer.areEdgesSeen);
    replace(areBackFacesSeen, newer.areBackFacesSeen);
    replace(opacities, newer.opacities);
    replace(areCategories, newer.areCategories);
    replace(isMaximum, newer.isMaximum);
    replace(isLit, newer.isLit);
}

void ItemUpdate::addField(SceneField& field)
{
    const auto found = std::find_if(
        fields.begin(), fields.end(), [&field](const SceneField& older) { return older.name == field.name; });
    if (found != fields.end())
        std::swap(*found, field);
    else
        fields.push_back(std::move(field));
}

bool isInBranch(const std::string& path, const std::string& branch)
{
    return path.starts_with(branch) && (path.size() == branch.size() || path[branch.size()] == '/');
}

void SceneUpdate::merge(ViewUpdate& newer)
{
    auto& newerScene = static_cast<SceneUpdate&>(newer);
    if (newerScene.isCleared)
        clear();
    for (const std::string& branch : newerScene.removed)
        remove(branch);
    for (auto& [path, item] : newerScene.items)
        items[path].merge(item);
    for (const auto& [path, matrix] : newerScene.transforms)
        transforms[path] = matrix;
    replace(side, newerScene.side);
    replace(isOrthographic, newerScene.isOrthographic);
    replace(hasBearings, newerScene.hasBearings);
    replace(clipBox, newerScene.clipBox);
    replace(isCutOut, newerScene.isCutOut);
    replace(pickReceiver, newerScene.pickReceiver);
}

std::unique_ptr<ViewUpdate> SceneUpdate::copy() const
{
    return std::make_unique<SceneUpdate>(*this);
}

std::string SceneUpdate::saveData(const QString& file)
{
    std::map<std::string, SceneItem> shown;
    for (auto& [path, update] : items)
        shown.try_emplace(path, shown.size()).first->second.apply(update);
    VolumeSurfaces surfaces;
    const auto saySo = [](const std::string& path, const std::string& sentence) {
        sayOnce("\"" + printable(path, 80) + "\": " + sentence);
    };
    surfaces.follow(shown, saySo);
    surfaces.finish(shown, saySo);
    return saveScene(file, shown);
}

Replaced SceneUpdate::replaced() const
{
    Replaced replaced{isCleared, {}};
    for (const auto& [path, item] : items)
        if (!isCleared && item.shape)
            replaced.names.push_back(path);
    return replaced;
}

void SceneUpdate::clear()
{
    isCleared = true;
    removed.clear();
    items.clear();
    transforms.clear();
}

void SceneUpdate::remove(const std::string& branch)
{
    const auto isRemoved = [&branch](const auto& entry) { return isInBranch(entry.first, branch); };
    std::erase_if(items, isRemoved);
    std::erase_if(transforms, isRemoved);
    if (std::find(removed.begin(), removed.end(), branch) == removed.end())
        removed.push_back(branch);
}

} // namespace tavo
