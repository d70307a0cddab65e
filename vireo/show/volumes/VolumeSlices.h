#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "tavo/points/RegularVolume.h"
#include "vireo/context/GLObject.h"
#include "vireo/show/scenes/SceneUpdate.h"
#include "vireo/show/volumes/VolumeGrid.h"
#include "vireo/volume/SliceVolumeRenderer.h"

namespace tavo {

// The samples of a volume as slices, for a program to colour: luminance says how far a sample is from the least to the
// greatest, alpha, where there are gaps, how much of it is a number; both are 0 where none is. Colours are colours.
//
// They take one byte a sample of bytes, two of other numbers, twice as much with gaps, and three or four of colours.
// Where there would be more than textures hold, several samples become one, their mean.
class VolumeSlices : public SliceVolumeRenderer, public GLObject
{
public:
    // One, three or four numbers make a sample. The context must be current for this, and for drawing.
    VolumeSlices(GLContext& context, const VolumeGrid& grid, NumberTuples samples);
    ~VolumeSlices() override;

    // Draws them as seen along a direction, in a box about 0 whose longest side is 1.
    void draw(const Vector3f& viewDir);

    // How far apart the slices along an axis are, in smallest distances of samples.
    double distanceOf(unsigned int axis) const;

    // Of the textures of a stack.
    std::pair<float, float> textureSizeOf(unsigned int axis) const;

    const NumberTuples& getSamples() const { return m_Samples; }
    bool haveGaps() const { return m_HaveGaps; }

    // What luminances of 0 and of 1 stand for.
    const std::pair<double, double>& getRange() const { return m_Range; }

    // How many samples are drawn: fewer than there are if those are too many.
    const Vector3i& getDrawnSize() const { return m_Drawn->getExtends(); }

protected:
    void prepareTextures(RegularVolume* volume, Vector3f viewDir, const std::vector<std::string>& channels,
        Mapping mapping, void* userData) override;
    void onDeleteContext() override;

private:
    struct Layout;

    // Of the samples that a texel stands for.
    struct Mean
    {
        double values[4] = {};
        double part = 0; // of them that are numbers
    };

    void findRange();
    Layout layout() const;
    void settleSize();
    void prepareStack(unsigned int axis);
    template <typename Component>
    void prepareStackOf(unsigned int axis);
    template <typename Component, typename T>
    void fillSlices(unsigned int axis, int first, int count, const T* numbers, Component* texels) const;
    template <typename Component, typename Use>
    void forEachTexel(unsigned int axis, int first, int count, Component* texels, Use use) const;
    template <typename Component, typename T>
    void encodeOne(T number, Component* texel) const;
    template <typename Component, typename T>
    void encodeMean(const T* numbers, const Vector3i& place, Component* texel) const;
    template <typename T>
    Mean meanAt(const T* numbers, const Vector3i& place) const;
    template <typename Use>
    void forEachOf(const Vector3i& place, Use use) const;
    void freeTextures();

    NumberTuples m_Samples;
    VolumeGrid m_Grid;
    std::pair<double, double> m_Range{0, 1};
    bool m_AreBytes = false;
    bool m_HaveGaps = false;
    double m_ScaleOfOne = 0;                     // from a number to a component
    std::array<std::size_t, 3> m_Steps{1, 1, 1}; // how many samples become one
    std::unique_ptr<RegularVolume> m_Drawn;
    std::array<bool, 3> m_IsPrepared{};
};

} // namespace tavo
