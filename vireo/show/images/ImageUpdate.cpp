#include "vireo/show/images/ImageUpdate.h"

#include "vireo/show/images/ImageStack.h"
#include "vireo/show/images/imageData.h"

namespace tavo {

namespace {

template <typename T>
void take(std::optional<T>& older, const std::optional<T>& newer)
{
    if (newer)
        older = newer;
}

} // namespace

void ImageSettings::merge(const ImageSettings& newer)
{
    take(range, newer.range);
    take(colourMap, newer.colourMap);
    take(gamma, newer.gamma);
    take(channel, newer.channel);
}

void ImageUpdate::merge(ViewUpdate& newer)
{
    auto& newerImage = static_cast<ImageUpdate&>(newer);
    if (newerImage.pixels) {
        pixels.swap(newerImage.pixels);
        layers.swap(newerImage.layers);
    } else {
        for (auto& [layer, layerPixels] : newerImage.layers)
            std::swap(layers[layer], layerPixels);
    }
    take(layerNames, newerImage.layerNames);
    take(isBgr, newerImage.isBgr);
    take(isBottomUp, newerImage.isBottomUp);
    settings.merge(newerImage.settings);
    links.insert(links.end(), newerImage.links.begin(), newerImage.links.end());
    take(difference, newerImage.difference);
}

Replaced ImageUpdate::replaced() const
{
    return {pixels.has_value(), {}};
}

std::unique_ptr<ViewUpdate> ImageUpdate::copy() const
{
    return std::make_unique<ImageUpdate>(*this);
}

std::string ImageUpdate::saveData(const QString& file)
{
    ImageStack stack;
    stack.apply(*this);
    ImagePixels shown = stack.pixels();
    shown.isBgr = isBgr.value_or(false);
    shown.isBottomUp = isBottomUp.value_or(false);
    return saveImage(file, shown);
}

} // namespace tavo
