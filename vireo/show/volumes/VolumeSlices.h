#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tavo/points/RegularVolume.h"
#include "vireo/context/GLObject.h"
#include "vireo/show/scenes/SceneUpdate.h"
#include "vireo/show/volumes/CategoryEntries.h"
#include "vireo/show/volumes/VolumeGrid.h"
#include "vireo/volume/SliceVolumeRenderer.h"

namespace tavo {

// The samples of a volume as slices, for a program to colour: luminance says how far a sample is from the least to the
// greatest, alpha, where there are gaps, how much of it is a number; both are 0 where none is. Colours are colours.
//
// Where the range that is shown is a small part of all, they reach not much beyond it, so that one value far away does
// not take the others their places.
//
// Of categories it says which entry of a table they have, and nothing in between.
//
// They take one byte a sample of bytes, two of other numbers, twice as much with gaps, and three or four of colours.
// Where there would be more than textures hold, several samples become one, their mean.
class VolumeSlices : public SliceVolumeRenderer, public GLObject
{
public:
    // What there is to know of samples before they become textures.
    struct Survey
    {
        std::pair<double, double> range{0, 1};                       // from the least to the greatest
        bool haveGaps = false;                                       // whether some are no numbers
        std::shared_ptr<const CategoryEntries> categories = nullptr; // null unless they are that
    };

    // Of every so many samples; empty once it is unwanted. Calls no GL.
    static Survey surveyOf(const NumberTuples& samples, std::size_t step, const std::atomic<bool>& isUnwanted);

    // One, three or four numbers make a sample. Of coarse ones, few samples stand for all. The context must be current
    // for this, and for drawing.
    VolumeSlices(
        GLContext& context, const VolumeGrid& grid, NumberTuples samples, const Survey& survey, bool areCoarse);
    ~VolumeSlices() override;

    // Draws them as seen along a direction, in a box about 0 whose longest side is 1. What textures are missing is made
    // first.
    void draw(const Vector3f& viewDir);

    // Makes textures for that, for so long; returns whether all of them are there.
    bool prepare(const Vector3f& viewDir, double seconds);
    bool isPrepared(const Vector3f& viewDir);
    double partPrepared(const Vector3f& viewDir);

    // Has the textures tell values in a range apart.
    void show(const std::pair<double, double>& range);

    // How far apart the slices along an axis are, in smallest distances of samples.
    double distanceOf(unsigned int axis) const;

    // Of the textures of a stack.
    std::pair<float, float> textureSizeOf(unsigned int axis) const;

    const NumberTuples& getSamples() const { return m_Samples; }
    bool haveGaps() const { return m_Survey.haveGaps; }

    // What luminances of 0 and of 1 stand for.
    const std::pair<double, double>& getRange() const { return m_Range; }

    // Null unless samples are categories; what luminances of 1 stand for then.
    const CategoryEntries* categories() const { return m_Survey.categories.get(); }
    double largestEntry() const;

    // How many samples are drawn: fewer than there are if those are too many.
    const Vector3i& getDrawnSize() const { return m_Drawn->getExtends(); }

    // More samples than these take longer than one waits.
    static constexpr double COARSE = 1 << 20;

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

    // Where the texels of several slices are, one slice after the other.
    struct Texels
    {
        std::size_t axis;
        std::size_t u;
        std::size_t v;
        int first; // slice
        std::size_t width;
        std::size_t sliceSize;

        std::size_t at(const Vector3i& place) const
        {
            return static_cast<std::size_t>(place[axis] - first) * sliceSize +
                   static_cast<std::size_t>(place[v]) * width + static_cast<std::size_t>(place[u]);
        }

        // From a place to the next one along x.
        std::size_t distance() const { return axis == 0 ? sliceSize : 1; }
    };

    void settleScale();
    Layout layout() const;
    void settleSize();
    unsigned int axisOf(const Vector3f& viewDir);
    template <typename Component>
    void prepareStackOf(unsigned int axis, double seconds);
    template <typename Component, typename T>
    void fillSlices(unsigned int axis, int first, int count, const T* numbers, Component* texels) const;
    template <typename Component, typename Use>
    void forEachTexel(unsigned int axis, int first, int count, Component* texels, Use use) const;
    template <typename Component, typename T>
    void encodeRows(unsigned int axis, int first, int count, const T* numbers, Component* texels) const;
    template <typename Component, typename T>
    void encodeRow(
        const T* numbers, std::size_t length, std::size_t step, Component* texels, std::size_t distance) const;
    Texels texelsOf(unsigned int axis, int first) const;
    std::size_t sampleAt(const Vector3i& place) const;
    template <typename Component, typename T>
    void encodeMean(const T* numbers, const Vector3i& place, Component* texel) const;
    template <typename T>
    Mean meanAt(const T* numbers, const Vector3i& place) const;
    template <typename Use>
    void forEachOf(const Vector3i& place, Use use) const;
    void freeTextures();

    NumberTuples m_Samples;
    VolumeGrid m_Grid;
    Survey m_Survey;
    std::pair<double, double> m_Range{0, 1};
    bool m_AreBytes = false;
    bool m_AreCoarse = false;
    double m_ScaleOfOne = 0;                     // from a number to a component
    std::array<std::size_t, 3> m_Steps{1, 1, 1}; // how many samples become one
    std::unique_ptr<RegularVolume> m_Drawn;
    std::array<int, 3> m_NumPrepared{}; // slices of each axis
};

} // namespace tavo
