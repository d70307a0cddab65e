#include "apps/vireo-view/showImage.h"

#include <utility>

#include "vireo/show/show.h"

namespace vireo_view {

namespace {

// What is sent takes the numbers, without copying them.
tavo::Pixels pixelsOf(NumberColumn& numbers)
{
    return std::visit([](auto& values) { return tavo::Pixels(std::move(values)); }, numbers);
}

} // namespace

void showImage(ImageExhibit exhibit, const std::string& image)
{
    const tavo::Statement together;
    const tavo::Image shown = tavo::image(image);
    for (std::size_t i = 0; i < exhibit.pictures.size(); ++i) {
        Picture& picture = exhibit.pictures[i];
        if (i == 0)
            tavo::image(image, pixelsOf(picture.numbers), picture.width, picture.height, picture.channels);
        else
            shown.layer(
                static_cast<int>(i), pixelsOf(picture.numbers), picture.width, picture.height, picture.channels);
    }
}

void addToStack(ImageExhibit exhibit, const std::string& image, std::vector<std::string>& names)
{
    const tavo::Statement together;
    const tavo::Image shown = tavo::image(image);
    for (Picture& picture : exhibit.pictures) {
        const auto layer = static_cast<int>(names.size());
        shown.layer(layer, pixelsOf(picture.numbers), picture.width, picture.height, picture.channels);
        names.push_back(exhibit.name);
    }
    shown.layerNames(names);
}

} // namespace vireo_view
