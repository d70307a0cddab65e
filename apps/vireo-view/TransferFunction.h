#pragma once

#include <cstddef>

#include "apps/vireo-view/ColourMap.h"
#include "apps/vireo-view/Histogram.h"
#include "tavo/points/RegularVolume.h"

namespace vireo_view {

// How densities look: those in a window around a level go through the colours of a map, and become ever more opaque.
// Below the window nothing is seen; above it everything looks as at its upper end.
class TransferFunction
{
public:
    // What suits a volume at first: from its mean density, below which is mostly air, to what few samples exceed.
    explicit TransferFunction(const Histogram& histogram = Histogram());

    // The width of the window; not negative. With 0 everything from the level on looks as at the upper end.
    double getWindow() const { return m_Window; }
    void setWindow(double window) { m_Window = window; }

    // The middle of the window.
    double getLevel() const { return m_Level; }
    void setLevel(double level) { m_Level = level; }

    // How opaque a slice is at the upper end of the window, 0 to 1.
    double getOpacity() const { return m_Opacity; }
    void setOpacity(double opacity) { m_Opacity = opacity; }

    // One of colourMaps(); an index beyond them is ignored.
    std::size_t getColourMap() const { return m_ColourMap; }
    void setColourMap(std::size_t index);

    // Where in the window a density lies, from 0 at its lower end, and below, to 1. What is no number is at 0.
    double partAt(double density) const;

    tavo::RGBA8 look(double density) const;

    bool operator==(const TransferFunction&) const = default;

private:
    double m_Window = 1;
    double m_Level = 0.5;
    double m_Opacity = 0.25;
    std::size_t m_ColourMap = 0;
};

} // namespace vireo_view
