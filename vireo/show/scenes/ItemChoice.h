#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "tavo/base/math/vectors.h"
#include "vireo/show/volumes/opacityCurve.h"

namespace tavo {

// What a person has chosen of an item. What is empty is as the program says.
struct ItemChoice
{
    // Of the numbers of one name.
    struct OfField
    {
        std::optional<std::string> colourMap;
        std::optional<std::pair<double, double>> range;
        bool isWhole = false; // the range: from the least to the greatest number, whatever they come to be
        std::optional<OpacityCurve> opacities = {}; // of a volume
        std::optional<bool> areLabels = {};         // instead of numbers on a scale

        bool operator==(const OfField& other) const = default;
    };

    std::optional<std::string> shown; // as ItemUpdate::shown; it holds while the item has it
    std::map<std::string, OfField> fields;
    std::optional<RGBA8> colour; // where there are no others
    std::optional<double> size;
    std::optional<double> opacity;
    std::optional<bool> isVisible;
    std::optional<bool> isSmooth;
    std::optional<bool> areEdgesSeen;
    std::optional<bool> areBackFacesSeen;
    std::optional<bool> isMaximum;
    std::optional<bool> isLit;

    bool operator==(const ItemChoice& other) const = default;
};

} // namespace tavo
