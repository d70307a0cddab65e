#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "vireo/show/delivery/ViewUpdate.h"
#include "vireo/show/slices/SliceLayer.h"

namespace tavo {

// What can be said of how the numbers of a layer become colours, by the program or by a person.
struct SliceSettings
{
    std::optional<std::pair<double, double>> window; // the numbers that have the first and the last colour
    std::optional<std::string> colourMap;
    std::optional<double> opacity; // of what lies on the volume

    // Takes over what is said in other ones.
    void merge(const SliceSettings& newer);

    bool operator==(const SliceSettings& other) const = default;
};

// Labels of the samples of the volume.
struct SentLabels
{
    NumberTuples samples;
    std::optional<VolumeGrid> grid; // nothing if it is that of the volume
    NamesOfLabels names;

    // Without samples, there are no labels any more.
    bool isRemoval() const { return samples.numbers.isEmpty(); }

    // Whether they go with so many samples of the volume.
    bool fit(std::size_t numSamples) const { return isRemoval() || grid || samples.size() == numSamples; }
};

// The newest last. Those before them stay as long as they may be shown: where the newest do not fit the volume.
using SuccessiveLabels = std::vector<SentLabels>;

// Those that they replace, whatever the volume is, go.
void addLabels(SuccessiveLabels& labels, const SentLabels& newest);

// What was sent to one view of slices.
class SlicesUpdate : public ViewUpdate
{
public:
    void merge(ViewUpdate& newer) override;
    Replaced replaced() const override;
    std::unique_ptr<ViewUpdate> copy() const override;
    std::string saveData(const QString& file) override;

    std::optional<SliceLayer> volume;
    std::optional<SliceLayer> overlay; // without samples: there is none any more
    SuccessiveLabels labels;
    std::optional<ColoursOfLabels> labelColours;
    std::optional<bool> areLabelsOutlined;
    SliceSettings settings;
    SliceSettings overlaySettings;
    SliceSettings labelSettings;
    std::optional<Vector3d> crosshair; // a place
};

} // namespace tavo
