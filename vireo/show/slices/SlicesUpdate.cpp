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

void addLabels(SuccessiveLabels& labels, const SentLabels& newest)
{
    constexpr std::size_t MOST = 8; // lest they fill the memory while there is no volume
    std::erase_if(labels, [&newest](const SentLabels& before) {
        return newest.isRemoval() || newest.grid || (!before.grid && newest.fit(before.samples.size()));
    });
    if (labels.size() == MOST)
        labels.erase(labels.begin());
    labels.push_back(newest);
}

void SlicesUpdate::merge(ViewUpdate& newer)
{
    auto& newerSlices = static_cast<SlicesUpdate&>(newer);
    take(volume, newerSlices.volume);
    take(overlay, newerSlices.overlay);
    SuccessiveLabels displaced = labels; // which stay with the newer one, too
    for (const SentLabels& newest : newerSlices.labels)
        addLabels(labels, newest);
    newerSlices.labels.swap(displaced);
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
