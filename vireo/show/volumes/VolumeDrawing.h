#pragma once

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

// Draws a volume: its slices, coloured by a table. Another look, and another view, cost a new table, which is next to
// nothing.
class VolumeDrawing
{
public:
    struct Look
    {
        std::vector<RGBA8> colours; // from the beginning of the range to its end; their opacity does not matter
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
        unsigned int sliceStep = 1; // of so many slices one is drawn
    };

    // Null if the driver has no programs. The context must be current for this, and for drawing.
    static std::unique_ptr<VolumeDrawing> make(GLContext& context, const VolumeGrid& grid, NumberTuples samples);

    const NumberTuples& getSamples() const { return m_Slices.getSamples(); }

    void setLook(Look look);

    // From the coordinates about the volume's centre, along the axes of the scene, to the eye's. GL's projection is
    // that of the camera.
    void draw(const Matrix4& modelView, const Way& way);

    // Whether the driver has programs for it, and room for textures.
    bool canBeLit() const { return m_CanBeLit; }

    const Vector3i& getDrawnSize() const { return m_Slices.getDrawnSize(); }

private:
    VolumeDrawing(GLContext& context, const VolumeGrid& grid, NumberTuples samples);

    // From what textures have to a place in the range, from 0 to 1.
    struct Window
    {
        double factor = 1;
        double summand = 0;
    };

    bool areColours() const { return getSamples().width > 1; }
    void drawSmoke(const Vector3f& viewDir, const Matrix4* litToEye);
    void setLight(unsigned int axis, const Matrix4& toEye);
    void drawGreatest(const Vector3f& viewDir);
    void writeTable(double thickness);
    double opacityOf(double place, double thickness) const;
    Window window() const;

    VolumeGrid m_Grid;
    VolumeSlices m_Slices;
    GLShaderARB m_Program;
    GLShaderARB m_LitProgram;
    GLShaderARB m_PlaceProgram;
    std::unique_ptr<GreatestValues> m_Greatest; // null if the driver cannot
    bool m_CanBeLit = false;
    ColourTable m_Table;
    Look m_Look;
    double m_TableThickness = 0; // of the layers that the table is for; 0 if there is none
};

} // namespace tavo
