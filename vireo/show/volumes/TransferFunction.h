#pragma once

#include <QByteArray>
#include <QString>
#include <string>
#include <utility>

#include "vireo/show/volumes/opacityCurve.h"

namespace tavo {

// Which colours the values of a volume have, and how opaque they are.
struct TransferFunction
{
    std::string colourMap;
    std::pair<double, double> range; // which values are at the beginning of the map and of the curve, and at their end
    OpacityCurve opacities;
    bool areCategories = false; // the values, which then have colours of their own

    bool operator==(const TransferFunction& other) const = default;
};

// As a file has it:
//
//     {
//         "transferFunction": 1,
//         "colourMap": "bone",
//         "window": 1200,
//         "level": 700,
//         "points": [{"place": 0, "opacity": 0}, {"place": 1, "opacity": 0.8}]
//     }
//
// The window is how wide the range is, the level its middle; places are from 0 at its beginning to 1 at its end. Of
// categories there is a "categories" that is true, besides. These return what is wrong, for a person; nothing if all is
// right.
std::string saveTransferFunction(const QString& file, const TransferFunction& function);
std::string loadTransferFunction(const QString& file, TransferFunction& function);
std::string readTransferFunction(const QByteArray& json, TransferFunction& function);

// Whether it is saved in files of that name.
bool isTransferFunctionFile(const QString& file);

} // namespace tavo
