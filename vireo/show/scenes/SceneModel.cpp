#include "vireo/show/scenes/SceneModel.h"

#include "tavo/base/debug/displayException.h"
#include "tavo/base/text/printable.h"
#include "vireo/show/delivery/sayOnce.h"

namespace tavo {

namespace {

constexpr std::size_t SHOWN_CHARACTERS = 80;

} // namespace

void SceneModel::makeRoom(const Replaced& replaced)
{
    if (replaced.isAll)
        for (auto& [path, item] : m_Items)
            item.dropShape();
    for (const std::string& path : replaced.names)
        if (const auto found = m_Items.find(path); found != m_Items.end())
            found->second.dropShape();
}

bool SceneModel::apply(SceneUpdate& update)
{
    if (update.isCleared) {
        m_Items.clear();
        m_Transforms.clear();
    }
    for (const std::string& branch : update.removed)
        remove(branch);
    for (const auto& [path, matrix] : update.transforms)
        m_Transforms[path] = matrix;
    if (update.clipBox)
        m_ClipBox.send(*update.clipBox, update.isCutOut.value_or(false));
    bool doesWait = false;
    for (auto& [path, itemUpdate] : update.items) {
        const auto found = m_Items.find(path);
        SceneItem& item = found != m_Items.end() ? found->second : add(path);
        runGuarded([&item = item, &itemUpdate = itemUpdate] { item.apply(itemUpdate); });
        doesWait = doesWait || !item.waiting().empty() || lacksVolume(item);
    }
    runGuarded([this] { m_Surfaces.follow(m_Items, say()); });
    return doesWait;
}

bool SceneModel::takeSurfaces()
{
    return m_Surfaces.take(m_Items, say());
}

void SceneModel::finishSurfaces()
{
    m_Surfaces.finish(m_Items, say());
}

SceneItem& SceneModel::add(const std::string& path)
{
    SceneItem& item = m_Items.emplace(path, m_NumColours++).first->second;
    item.choose(m_Choices.of(path));
    return item;
}

void SceneModel::remove(const std::string& branch)
{
    const auto isRemoved = [&branch](const auto& entry) { return isInBranch(entry.first, branch); };
    std::erase_if(m_Items, isRemoved);
    std::erase_if(m_Transforms, isRemoved);
}

// As lines in the log call an item.
std::string SceneModel::nameOf(const std::string& path) const
{
    return "scene(\"" + printable(m_Name, SHOWN_CHARACTERS) + "\"), \"" + printable(path, SHOWN_CHARACTERS) + '"';
}

bool SceneModel::lacksVolume(const SceneItem& item) const
{
    if (!item.isosurface())
        return false;
    const auto volume = m_Items.find(item.isosurface()->volume);
    return volume == m_Items.end() || !volume->second.isVolume();
}

VolumeSurfaces::Say SceneModel::say() const
{
    return [this](const std::string& path, const std::string& sentence) { sayOnce(nameOf(path) + ": " + sentence); };
}

void SceneModel::sayWhatWaits() const
{
    for (const auto& [path, item] : m_Items) {
        for (const std::string& sentence : item.waiting())
            sayOnce(nameOf(path) + ": " + sentence);
        if (lacksVolume(item))
            sayOnce(nameOf(path) + ": there is no volume \"" + printable(item.isosurface()->volume, SHOWN_CHARACTERS) +
                    '"');
    }
}

void SceneModel::sayWhatIsReduced() const
{
    const auto written = [](const Vector3i& size) {
        return std::to_string(size[0]) + " x " + std::to_string(size[1]) + " x " + std::to_string(size[2]);
    };
    for (const auto& [path, item] : m_Items) {
        if (item.isVolumeOfNothing())
            sayOnce(nameOf(path) + ": none of its " + written(item.shape()->grid->size) +
                    " samples is a number: there is nothing to see");
        if (item.isLightMissing())
            sayOnce(nameOf(path) + ": the driver has no programs for the light on it; it is drawn without");
        const Vector3i* const drawn = item.drawnSize();
        if (drawn && *drawn != item.shape()->grid->size)
            sayOnce(nameOf(path) + ": " + written(item.shape()->grid->size) +
                    " samples are more than textures hold; they are drawn as " + written(*drawn));
    }
}

Matrix4 SceneModel::matrixOf(const std::string& path) const
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

bool SceneModel::hasWhiteVolume() const
{
    return std::any_of(m_Items.begin(), m_Items.end(),
        [](const auto& entry) { return entry.second.isVisible() && entry.second.isWhiteVolume(); });
}

std::vector<SceneModel::Placed> SceneModel::visibleItems()
{
    std::vector<Placed> items;
    for (auto& [path, item] : m_Items)
        if (item.isVisible())
            items.push_back({&path, &item, matrixOf(path)});
    return items;
}

SceneBox SceneModel::box()
{
    SceneBox box;
    for (const Placed& placed : visibleItems())
        box.extend(placed.item->box().moved(placed.matrix));
    return box;
}

} // namespace tavo
