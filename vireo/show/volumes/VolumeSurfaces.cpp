#include "vireo/show/volumes/VolumeSurfaces.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <sstream>
#include <utility>

#include "tavo/base/text/printable.h"
#include "vireo/show/scenes/valueCounts.h"
#include "vireo/show/volumes/volumeItem.h"

namespace tavo {

namespace {

constexpr std::size_t FEW_SAMPLES = 4 << 20; // of which a surface is there in much less than half a second

template <typename T>
NumberTuples triples(std::vector<T> numbers, NumberType type)
{
    const auto kept = std::make_shared<const std::vector<T>>(std::move(numbers));
    return {NumberArray(kept, kept->data(), kept->size(), type), 3};
}

std::string written(double number)
{
    std::ostringstream text;
    text.precision(10);
    text << number;
    return text.str();
}

// Its own numbers; null if its samples are colours.
std::optional<NumberArray> samplesOf(const SceneItem& volume)
{
    const std::vector<SceneField> fields = volume.fields();
    const auto found = std::find_if(
        fields.begin(), fields.end(), [](const SceneField& field) { return field.name == VOLUME_SAMPLES; });
    return found != fields.end() ? std::optional(found->values.numbers) : std::nullopt;
}

const SceneItem* volumeOf(const SceneItem& surface, const VolumeSurfaces::Items& items)
{
    const auto found = items.find(surface.isosurface()->volume);
    return found != items.end() && found->second.isVolume() ? &found->second : nullptr;
}

void show(SceneItem& item, Isosurface surface)
{
    ItemUpdate update;
    update.isosurface = *item.isosurface();
    update.shape.emplace();
    update.shape->kind = ItemKind::Mesh;
    update.shape->points = triples(std::move(surface.points), NumberType::Float64);
    update.shape->faces = triples(std::move(surface.triangles), NumberType::UInt32);
    update.normals = triples(std::move(surface.normals), NumberType::Float32);
    item.apply(update);
}

std::string whyNoSurface(const SceneItem& item, const SceneItem& volume)
{
    const auto [least, greatest] = finiteRangeOf(*samplesOf(volume));
    return "there is no surface at " + written(item.isosurface()->value) + ": the samples of \"" +
           printable(item.isosurface()->volume, 80) + "\" are from " + written(least) + " to " + written(greatest);
}

} // namespace

VolumeSurfaces::~VolumeSurfaces()
{
    for (const auto& [path, work] : m_Works)
        work.talk->isUnwanted = true; // each future waits for its thread
}

bool VolumeSurfaces::Source::operator==(const Source& other) const
{
    const auto areSame = [](const auto& one, const auto& another) {
        return !one.owner_before(another) && !another.owner_before(one);
    };
    return areSame(owner, other.owner) && samples == other.samples && value == other.value &&
           std::equal(std::begin(places), std::end(places), std::begin(other.places));
}

VolumeSurfaces::Source VolumeSurfaces::sourceOf(const VolumeGrid& grid, const NumberArray& samples, double value)
{
    const Vector3d last(grid.size[0] - 1, grid.size[1] - 1, grid.size[2] - 1);
    return {samples.getOwner(), samples.getData(),
        {grid.origin, grid.at({last[0], 0, 0}), grid.at({0, last[1], 0}), grid.at({0, 0, last[2]})}, value};
}

void VolumeSurfaces::giveUp(const std::string& path)
{
    const auto found = m_Works.find(path);
    if (found == m_Works.end())
        return;
    found->second.talk->isUnwanted = true;
    m_Works.erase(found);
}

void VolumeSurfaces::follow(Items& items, const Say& say)
{
    const auto isGone = [&items](const auto& entry) {
        const auto found = items.find(entry.first);
        return found == items.end() || !found->second.isosurface();
    };
    std::erase_if(m_Made, isGone);
    for (const auto& [path, work] : m_Works)
        if (isGone(std::pair(path, 0)))
            work.talk->isUnwanted = true;
    std::erase_if(m_Works, isGone);
    for (auto& [path, item] : items)
        if (const SceneItem* const volume = item.isosurface() ? volumeOf(item, items) : nullptr)
            begin(item, path, *volume, say);
    take(items, say);
}

void VolumeSurfaces::begin(SceneItem& item, const std::string& path, const SceneItem& volume, const Say& say)
{
    const std::optional<NumberArray> samples = samplesOf(volume);
    if (!samples) {
        giveUp(path);
        if (m_Made.erase(path) > 0)
            show(item, {});
        return say(path, "the samples of \"" + printable(item.isosurface()->volume, 80) +
                             "\" are colours, which have no isosurface");
    }
    const double value = item.isosurface()->value;
    Source source = sourceOf(*volume.shape()->grid, *samples, value);
    const auto made = m_Made.find(path);
    const auto work = m_Works.find(path);
    if (work != m_Works.end() ? work->second.source == source : made != m_Made.end() && made->second == source)
        return;
    giveUp(path);
    const auto talk = std::make_shared<Talk>();
    const auto policy = samples->size() <= FEW_SAMPLES ? std::launch::deferred : std::launch::async;
    std::future<Isosurface> surface =
        std::async(policy, [grid = *volume.shape()->grid, numbers = *samples, value, talk] {
            return isosurfaceOf(grid, numbers, value, talk->isUnwanted, &talk->part);
        });
    m_Works.emplace(path, Work{std::move(source), talk, std::move(surface)});
}

bool VolumeSurfaces::take(Items& items, const Say& say)
{
    bool isAnyNew = false;
    for (auto work = m_Works.begin(); work != m_Works.end();) {
        if (work->second.surface.wait_for(std::chrono::seconds(0)) == std::future_status::timeout) {
            ++work;
            continue;
        }
        Work done = std::move(work->second);
        const std::string path = work->first;
        work = m_Works.erase(work);
        m_Made[path] = done.source;
        isAnyNew = true;
        SceneItem& item = items.at(path);
        try {
            Isosurface surface = done.surface.get();
            const SceneItem* const volume = volumeOf(item, items);
            if (surface.triangles.empty() && volume && samplesOf(*volume))
                say(path, whyNoSurface(item, *volume));
            show(item, std::move(surface));
        } catch (const std::exception&) {
            say(path, "there is no memory for its surface");
        }
    }
    return isAnyNew;
}

double VolumeSurfaces::progress() const
{
    double least = 1;
    for (const auto& [path, work] : m_Works)
        least = std::min(least, work.talk->part.load());
    return least;
}

void VolumeSurfaces::giveUp()
{
    for (auto& [path, work] : m_Works) {
        work.talk->isUnwanted = true;
        m_Made[path] = work.source;
    }
    m_Works.clear(); // each future waits for its thread
}

void VolumeSurfaces::finish(Items& items, const Say& say)
{
    for (const auto& [path, work] : m_Works)
        work.surface.wait();
    take(items, say);
}

} // namespace tavo
