#include "vireo/show/slices/SlicesModel.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

#include "vireo/show/colours/colourOfLabel.h"

namespace tavo {

namespace {

std::size_t countNotFinite(const NumberArray& numbers)
{
    return numbers.visit([](const auto* number, std::size_t size) {
        std::size_t count = 0;
        if constexpr (std::is_floating_point_v<std::remove_cvref_t<decltype(*number)>>)
            for (std::size_t i = 0; i < size; ++i)
                count += number[i] - number[i] == 0 ? 0 : 1;
        return count;
    });
}

} // namespace

void SlicesModel::apply(const SlicesUpdate& update)
{
    m_Volume.say(update.settings);
    m_Overlay.say(update.overlaySettings);
    m_Labels.say(update.labelSettings);
    if (update.volume) {
        m_Volume.send(*update.volume);
        m_NumNotFinite = countNotFinite(update.volume->samples.numbers);
        setSides(m_Sides);
    }
    if (update.overlay)
        m_Overlay.send(*update.overlay);
    for (const SentLabels& labels : update.labels)
        addLabels(m_SentLabels, labels);
    if (update.labelColours)
        m_LabelColours = *update.labelColours;
    m_AreLabelsOutlined = update.areLabelsOutlined.value_or(m_AreLabelsOutlined);
    if (update.crosshair)
        m_Crosshair = update.crosshair;
    if (isEmpty())
        return;
    settleCrosshair();
    settleLabels();
}

// Those without a grid of their own are of the volume, which may come after them: the newest are kept for it, and the
// newest of those that fit are shown.
void SlicesModel::settleLabels()
{
    if (m_SentLabels.empty())
        return;
    const std::size_t numSamples = grid().numSamples();
    const auto shown = std::find_if(m_SentLabels.rbegin(), m_SentLabels.rend(),
        [numSamples](const SentLabels& labels) { return labels.fit(numSamples); });
    const bool isNewestShown = shown == m_SentLabels.rbegin();
    m_WhyNoLabels = isNewestShown ? "" : whyLabelsDoNotFit(m_SentLabels.back());
    m_LabelNames.clear();
    if (shown == m_SentLabels.rend())
        return m_Labels.makeRoom();
    SuccessiveLabels kept{*shown};
    if (!isNewestShown)
        kept.push_back(m_SentLabels.back());
    m_SentLabels.swap(kept);
    const SentLabels& labels = m_SentLabels.front();
    if (labels.isRemoval())
        return m_Labels.makeRoom();
    m_LabelNames = labels.names;
    m_Labels.send({labels.grid.value_or(grid()), labels.samples, false});
}

std::string SlicesModel::whyLabelsDoNotFit(const SentLabels& labels) const
{
    const Vector3i& size = grid().size;
    return std::to_string(labels.samples.size()) + " labels are not those of " + std::to_string(size[0]) + " x " +
           std::to_string(size[1]) + " x " + std::to_string(size[2]) + " samples, which take " +
           std::to_string(grid().numSamples());
}

QString SlicesModel::nameOfLabel(double label) const
{
    if (!(std::abs(label) < LARGEST_LABEL))
        return {};
    const auto found = m_LabelNames.find(std::llround(label));
    return found != m_LabelNames.end() ? QString::fromStdString(found->second) : QString();
}

RGBA8 SlicesModel::colourOfLabel(std::int64_t label) const
{
    const auto found = m_LabelColours.find(label);
    return found != m_LabelColours.end() ? found->second : tavo::colourOfLabel(label);
}

void SlicesModel::refreshWindows()
{
    for (ShownLayer* layer : {&m_Volume, &m_Overlay}) {
        SliceSettings choice = layer->getChoice();
        choice.window.reset();
        layer->choose(choice);
        layer->refreshWindow();
    }
}

void SlicesModel::setSides(const SliceSides& sides)
{
    m_Sides = sides;
    m_Planes = slicePlanesOf(m_Volume.layer(), sides);
}

void SlicesModel::setVoxel(const Vector3i& voxel)
{
    m_Crosshair = grid().at({double(voxel[0]), double(voxel[1]), double(voxel[2])});
    settleCrosshair();
}

void SlicesModel::settleCrosshair()
{
    const Vector3i& size = grid().size;
    m_Voxel = m_Crosshair ? voxelAt(grid().indexAt(*m_Crosshair)) : Vector3i(size[0] / 2, size[1] / 2, size[2] / 2);
}

Vector3i SlicesModel::voxelAt(const Vector3d& index) const
{
    Vector3i voxel;
    for (std::size_t i = 0; i < 3; ++i)
        voxel[i] = static_cast<int>(std::clamp(std::floor(index[i] + 0.5), 0.0, grid().size[i] - 1.0));
    return voxel;
}

} // namespace tavo
