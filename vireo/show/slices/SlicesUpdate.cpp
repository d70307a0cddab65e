#include "vireo/show/slices/SlicesUpdate.h"

#include "vireo/show/slices/slicesData.h"

namespace tavo {

namespace {

// What is displaced stays with the newer one, whose end is the sender's affair.
template <typename T>
void take(std::optional<T>& older, std::optional<T>& newer)
{
    if (newer)
        older.swap(newer);
}

template <typename T>
void copyIfSaid(std::optional<T>& older, const std::optional<T>& newer)
{
    if (newer)
        older = newer;
}

} // namespace

void SliceSettings::merge(const SliceSettings& newer)
{
    copyIfSaid(window, newer.window);
    copyIfSaid(colourMap, newer.colourMap);
    copyIfSaid(opacity, newer.opacity);
}

void SlicesUpdate::merge(ViewUpdate& newer)
{
    auto& newerSlices = static_cast<SlicesUpdate&>(newer);
    take(volume, newerSlices.volume);
    take(overlay, newerSlices.overlay);
    take(labels, newerSlices.labels);
    settings.merge(newerSlices.settings);
    overlaySettings.merge(newerSlices.overlaySettings);
    labelSettings.merge(newerSlices.labelSettings);
    copyIfSaid(labelColours, newerSlices.labelColours);
    copyIfSaid(areLabelsOutlined, newerSlices.areLabelsOutlined);
    copyIfSaid(crosshair, newerSlices.crosshair);
}

Replaced SlicesUpdate::replaced() const
{
    return {volume.has_value(), {}};
}

std::unique_ptr<ViewUpdate> SlicesUpdate::copy() const
{
    return std::make_unique<SlicesUpdate>(*this);
}

std::string SlicesUpdate::saveData(const QString& file)
{
    return volume ? saveSlices(file, *volume) : "there are no samples";
}

} // namespace tavo
