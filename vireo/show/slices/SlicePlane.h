#pragma once

#include <QChar>
#include <QString>
#include <array>
#include <cstddef>

#include "vireo/show/slices/SliceLayer.h"

namespace tavo {

// From which sides slices of a patient are seen.
struct SliceSides
{
    bool isRightOnTheLeft = true; // as radiologists look at patients, and not as neurologists do
    bool isFrontOnTheLeft = true; // in slices from front to back

    bool operator==(const SliceSides&) const = default;
};

// One of three directions in which a volume is cut into slices: along which axes of the samples they are drawn.
struct SlicePlane
{
    QString name;
    std::size_t through = 2; // from slice to slice
    std::size_t across = 0;  // to the right
    std::size_t up = 1;
    bool isAcrossReversed = false; // the numbers of samples fall to the right
    bool isUpReversed = false;

    double signAcross() const { return isAcrossReversed ? -1 : 1; }
    double signUp() const { return isUpReversed ? -1 : 1; }
};

// Axial, coronal and sagittal slices, along the axes of samples that lie most nearly so. Of a volume that has no
// orientation its own planes, whose numbers rise to the right and upwards.
std::array<SlicePlane, 3> slicePlanesOf(const SliceLayer& volume, const SliceSides& sides);

// The side of the patient that an axis of the samples leads to: L or R, P or A, I or S.
QChar sideOf(const VolumeGrid& grid, std::size_t axis, bool isReversed);

} // namespace tavo
