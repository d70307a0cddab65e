#pragma once

#include <array>
#include <optional>

#include "vireo/show/slices/ShownLayer.h"
#include "vireo/show/slices/SlicePlane.h"
#include "vireo/show/slices/SlicesUpdate.h"

namespace tavo {

// What slices show: a volume, what lies on it, and the crosshair, which is at one of its samples.
//
// The crosshair begins in the middle. Once the program or a person has put it somewhere, it stays at that place,
// however the volume changes; as far as there is a volume.
class SlicesModel
{
public:
    // Frees the samples, which others will replace.
    void makeRoom() { m_Volume.makeRoom(); }

    void apply(const SlicesUpdate& update);

    bool isEmpty() const { return m_Volume.isEmpty(); }
    const VolumeGrid& grid() const { return m_Volume.layer().grid; }
    bool isOriented() const { return m_Volume.layer().isOriented; }

    ShownLayer& volume() { return m_Volume; }
    const ShownLayer& volume() const { return m_Volume; }
    ShownLayer& overlay() { return m_Overlay; }
    const ShownLayer& overlay() const { return m_Overlay; }
    ShownLayer& labels() { return m_Labels; }
    const ShownLayer& labels() const { return m_Labels; }

    // Finds the windows afresh, unless they are said; what a person has chosen of them is forgotten.
    void refreshWindows();

    // Why the labels that were sent are not shown, but those before them, if they fit the volume; empty if they are
    // shown, or there are none.
    const std::string& whyNoLabels() const { return m_WhyNoLabels; }

    // Of the labels that have names.
    const NamesOfLabels& labelNames() const { return m_LabelNames; }

    // Of a label; empty if it has none.
    QString nameOfLabel(double label) const;

    // What the program says of it, or that of a category.
    RGBA8 colourOfLabel(std::int64_t label) const;

    // Whether only the edges of labels are seen.
    bool areLabelsOutlined() const { return m_AreLabelsOutlined; }

    const std::array<SlicePlane, 3>& planes() const { return m_Planes; }
    const SliceSides& getSides() const { return m_Sides; }
    void setSides(const SliceSides& sides);

    // Whether numbers go straight from sample to sample; labels never do.
    bool isInterpolated() const { return m_IsInterpolated; }
    void setInterpolated(bool isInterpolated) { m_IsInterpolated = isInterpolated; }

    // The sample of the crosshair.
    const Vector3i& voxel() const { return m_Voxel; }
    void setVoxel(const Vector3i& voxel);

    // The sample that is nearest to what is between samples, or beside the volume.
    Vector3i voxelAt(const Vector3d& index) const;

    // How many samples are no numbers or infinite.
    std::size_t numNotFinite() const { return m_NumNotFinite; }

private:
    void settleCrosshair();
    void settleLabels();
    std::string whyLabelsDoNotFit(const SentLabels& labels) const;

    ShownLayer m_Volume{"", 1};
    ShownLayer m_Overlay{"heat", 0.6};
    ShownLayer m_Labels{"", 0.5};
    SuccessiveLabels m_SentLabels;
    NamesOfLabels m_LabelNames; // of those that are shown
    ColoursOfLabels m_LabelColours;
    bool m_AreLabelsOutlined = false;
    std::string m_WhyNoLabels;
    SliceSides m_Sides;
    std::array<SlicePlane, 3> m_Planes;
    bool m_IsInterpolated = false;
    Vector3i m_Voxel;
    std::optional<Vector3d> m_Crosshair; // the place, if anybody has put it there
    std::size_t m_NumNotFinite = 0;
};

} // namespace tavo
