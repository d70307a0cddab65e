#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "vireo/show/delivery/ViewUpdate.h"
#include "vireo/show/images/ImagePixels.h"

namespace tavo {

// Which numbers are darkest and brightest.
struct ImageRange
{
    enum class Kind : unsigned char
    {
        Automatic,
        Fixed,      // from one number to another
        Percentiles // from 0 to 100
    };

    Kind kind = Kind::Automatic;
    double low = 0;
    double high = 0;

    bool operator==(const ImageRange& other) const = default;
};

// What can be said of how an image is shown, by the program or by a person.
struct ImageSettings
{
    std::optional<ImageRange> range;
    std::optional<std::string> colourMap;
    std::optional<double> gamma;
    std::optional<int> channel; // -1 for all of them together

    // Takes over what is said in another one.
    void merge(const ImageSettings& newer);

    bool operator==(const ImageSettings& other) const = default;
};

// What was sent to one image.
class ImageUpdate : public ViewUpdate
{
public:
    void merge(ViewUpdate& newer) override;
    Replaced replaced() const override;
    std::unique_ptr<ViewUpdate> copy() const override;
    std::string saveData(const QString& file) override;

    std::optional<ImagePixels> pixels; // of the only image, or the first of a stack: in place of all there were
    std::map<int, ImagePixels> layers; // of a stack, counted from 0, in place of those alone
    std::optional<std::vector<std::string>> layerNames;
    std::optional<bool> isBgr;
    std::optional<bool> isBottomUp;
    ImageSettings settings;
    std::vector<std::string> links;        // images that show the same part
    std::optional<std::string> difference; // the other image
};

} // namespace tavo
