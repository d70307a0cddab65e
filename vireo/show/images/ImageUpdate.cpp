#include "vireo/show/images/ImageUpdate.h"

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
    if (newerImage.pixels)
        pixels.swap(newerImage.pixels);
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
    if (!pixels)
        return "there are no pixels";
    pixels->isBgr = isBgr.value_or(false);
    pixels->isBottomUp = isBottomUp.value_or(false);
    return saveImage(file, *pixels);
}

} // namespace tavo
