#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "vireo/show/delivery/NumberArray.h"
#include "vireo/show/scenes/SceneUpdate.h"

namespace tavo {

// How an item is shown, for whoever offers other ways.
struct ItemState
{
    struct Field
    {
        std::string name;
        bool areLabels;
    };

    ItemKind kind = ItemKind::Cloud;
    bool hasColours = false;
    bool hasNormals = false;
    std::vector<Field> fields; // whose numbers can be shown
    bool areLabels = false;    // whether the shown numbers are categories
    std::string shown;         // the field, or "colours", or empty for the one colour
    NumberArray numbers;       // that are shown by a colour map
    std::string colourMap;
    std::pair<double, double> range;
    double size = 0;                                // in pixels
    std::optional<std::pair<double, double>> radii; // the least and the greatest, in the scene, where they are drawn
    double opacity = 1;
    bool isSmooth = false;
    bool areEdgesSeen = false;
    bool areBackFacesSeen = true;
    OpacityCurve opacities; // of a volume
    bool isMaximum = false;
    bool isLit = false;

    // What can take the place of `shown`.
    std::vector<std::string> waysToColour() const
    {
        std::vector<std::string> ways{{}};
        if (hasColours)
            ways.emplace_back("colours");
        for (const Field& field : fields)
            ways.push_back(field.name);
        return ways;
    }

    // Whether it is made of points or lines.
    bool hasSize() const
    {
        return kind != ItemKind::Text && kind != ItemKind::Volume && (kind != ItemKind::Mesh || areEdgesSeen);
    }
};

} // namespace tavo
