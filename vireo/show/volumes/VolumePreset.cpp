#include "vireo/show/volumes/VolumePreset.h"

#include <algorithm>
#include <utility>

#include "tavo/base/text/printable.h"

namespace tavo {

namespace {

constexpr std::size_t LONGEST_NAME = 80;

}

// Those of computed tomography are in Hounsfield's units: air is at -1000, water at 0, and bone above 300.
const std::vector<VolumePreset>& volumePresets()
{
    static const std::vector<VolumePreset> PRESETS = {
        {"grey", "grey", {}, usualOpacities()},
        {"hot", "heat", {}, usualOpacities()},
        {"bone", "bone", {}, usualOpacities()},
        {"viridis", "viridis", {}, usualOpacities()},
        {"CT bone", "bone", std::pair(100.0, 1300.0), {{0, 0}, {0.1, 0}, {0.25, 0.15}, {1, 0.8}}},
        {"CT soft tissue", "heat", std::pair(-160.0, 240.0), {{0, 0}, {0.35, 0}, {0.5, 0.05}, {0.75, 0.1}, {1, 0.4}}},
        {"CT lung", "bone", std::pair(-1000.0, -300.0), {{0, 0}, {0.2, 0.02}, {0.6, 0.06}, {0.8, 0}, {1, 0}}},
        {"MRI", "grey", {}, {{0, 0}, {0.15, 0}, {0.3, 0.04}, {0.7, 0.2}, {1, 0.5}}},
        {"categories", {}, {}, opacitiesOfCategories(), true},
    };
    return PRESETS;
}

const VolumePreset* findVolumePreset(std::string_view name)
{
    const std::vector<VolumePreset>& presets = volumePresets();
    const auto found = std::find_if(
        presets.begin(), presets.end(), [name](const VolumePreset& preset) { return preset.name == name; });
    return found != presets.end() ? &*found : nullptr;
}

std::string whyNoVolumePreset(std::string_view name)
{
    std::string why = "there is no preset \"" + printable(name, LONGEST_NAME) + "\"; there are";
    const char* separator = " ";
    for (const VolumePreset& preset : volumePresets())
        why.append(std::exchange(separator, ", ")).append(preset.name);
    return why;
}

} // namespace tavo
