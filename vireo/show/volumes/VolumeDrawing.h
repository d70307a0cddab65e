#pragma once

#include <atomic>
#include <future>
#include <memory>
#include <utility>
#include <vector>

#include "tavo/base/math/vectors.h"
#include "vireo/shaders/GLShaderARB.h"
#include "vireo/show/scenes/Matrix4.h"
#include "vireo/show/volumes/ColourTable.h"
#include "vireo/show/volumes/GreatestValues.h"
#include "vireo/show/volumes/VolumeGrid.h"
#include "vireo/show/volumes/VolumeSlices.h"
#include "vireo/show/volumes/opacityCurve.h"

namespace tavo {

class CutOut;

// Draws a volume: its slices, coloured by a table. Another look, and another view, cost a new table, which is next to
// nothing. A large one is coarse at first, where that is enough, until refine() has made it whole.
class VolumeDrawing
{
public:
    struct Look
    {
        // From the beginning of the range to its end, or of each category; their opacity does not matter.
        std::vector<RGBA8> colours;
        std::pair<double, double> range;
        OpacityCurve opacities;
        double opacity = 1; // of all

        bool operator==(const Look&) const = default;
    };

    // Of all values along a line of sight only the greatest, or all behind each other, and with light that falls on
    // them from the eye, by their gradients.
    struct Way
    {
        bool isMaximum = false;
        bool isLit = false;
        unsigned int sliceStep = 1;     // of so many slices one is drawn
        const CutOut* cutOut = nullptr; // what is not drawn; null if all is
        bool mayBeCoarse = false;       // rather than late
    };

    using Categories = std::shared_ptr<const CategoryEntries>;

    // Of categories, unless they are null. Null if the driver has no programs. The context must be current for this,
    // and for drawing.
    static std::unique_ptr<VolumeDrawing> make(
        GLContext& context, const VolumeGrid& grid, NumberTuples samples, Categories categories = nullptr);

    ~VolumeDrawing();

    const NumberTuples& getSamples() const { return m_Samples; }
    const Categories& getCategories() const { return m_Categories; }

    void setLook(Look look);

    // From the coordinates about the volume's centre, along the axes of the scene, to the eye's. GL's projection is
    // that of the camera.
    void draw(const Matrix4& modelView, const Way& way);

    // Whether what was drawn last was coarse, and is to be made whole. Makes more of what it lacks, for about so long,
    // and returns whether it would be whole now. The context must be current.
    bool isCoarse() const { return m_IsCoarse && !m_IsGivenUp; }
    bool refine(double seconds);

    // How much of it is there, from 0 to 1.
    double progress() const { return m_Whole ? m_Whole->slices.partPrepared(m_ViewDir) : 0; }

    // Lets it stay coarse.
    void giveUp() { m_IsGivenUp = true; }

    // Whether the driver has programs for it, and room for textures.
    bool canBeLit() const { return !m_Shown || m_Shown->canBeLit; }

    // Of the whole; null if that is not there yet.
    const Vector3i* drawnSize() const { return m_Whole ? &m_Whole->slices.getDrawnSize() : nullptr; }

private:
    // The slices, and what draws them.
    struct Stacks
    {
        Stacks(GLContext& context, const VolumeGrid& grid, const NumberTuples& samples,
            const VolumeSlices::Survey& survey, bool areCoarse);

        VolumeSlices slices;
        GLShaderARB program;
        GLShaderARB litProgram;
        GLShaderARB placeProgram;
        std::unique_ptr<GreatestValues> greatest; // null if the driver cannot
        bool isValid = false;
        bool canBeLit = false;
    };

    VolumeDrawing(GLContext& context, const VolumeGrid& grid, NumberTuples samples, Categories categories);

    bool isLarge() const { return double(m_Grid.numSamples()) > VolumeSlices::COARSE; }
    VolumeSlices::Survey survey(std::size_t step) const;
    void makeWhole();
    Stacks* stacksFor(const Vector3f& viewDir, bool mayBeCoarse);
    // From what textures have to a place in the range, from 0 to 1.
    struct Window
    {
        double factor = 1;
        double summand = 0;
    };

    bool areColours() const { return getSamples().width > 1; }
    void drawSmoke(const Vector3f& viewDir, const Matrix4* litToEye, const CutOut* cutOut);
    void drawSlices(const Vector3f& viewDir, const CutOut* cutOut);
    void setLight(unsigned int axis, const Matrix4& toEye);
    void drawGreatest(const Vector3f& viewDir, const CutOut* cutOut);
    void writeTable(double thickness);
    double opacityOf(double place, double thickness) const;
    ColourTable::Entries entriesOfRange(double thickness) const;
    ColourTable::Entries entriesOfCategories(double thickness) const;
    Window window() const;

    GLContext& m_Context;
    VolumeGrid m_Grid;
    NumberTuples m_Samples;
    Categories m_Categories;
    std::atomic<bool> m_IsUnwanted = false;
    std::future<VolumeSlices::Survey> m_Survey; // of all samples, until it is taken
    std::unique_ptr<Stacks> m_Coarse;           // null if it is not needed
    std::unique_ptr<Stacks> m_Whole;            // null until all samples are known
    Stacks* m_Shown = nullptr;                  // one of these, as drawn last
    Vector3f m_ViewDir;
    bool m_IsCoarse = false;
    bool m_IsGivenUp = false;
    ColourTable m_Table;
    Look m_Look;
    double m_TableThickness = 0; // of the layers that the table is for; 0 if there is none
};

} // namespace tavo
