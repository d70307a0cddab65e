#pragma once

#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "apps/vireo-view/ExampleData.h"
#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/SceneFitting.h"
#include "tavo/points/PointSet.h"
#include "tavo/points/RegularVolume.h"

namespace vireo_view {

// How a table of numbers is shown.
enum class ColumnsAs
{
    AUTOMATIC, // one column as a series, three as a curve in space, any other number as graphs of the plane
    SERIES,    // every column as a graph over its index
    PLANE,     // the first column is x, and every other one the y of a graph
    SPACE,     // the first three are a curve's x, y and z
    CLOUD,     // the first three are the x, y and z of points
};

// What is shown under a name, fitted to the view.
struct CloudExhibit
{
    std::string name;
    std::unique_ptr<tavo::PointSet> points; // never null
};

// A volume with a channel "density" (see readNifti).
struct VolumeExhibit
{
    std::string name;
    std::unique_ptr<tavo::RegularVolume> volume; // never null
};

// Curves with the colour of each, in the plane or in space.
template <unsigned int N>
struct CurvesExhibit
{
    std::string name;
    std::vector<std::vector<tavo::StaticVector<float, N>>> curves;
    std::vector<tavo::RGBA8> colours;
};

using Exhibit = std::variant<CloudExhibit, VolumeExhibit, CurvesExhibit<2>, CurvesExhibit<3>>;

const std::string& nameOf(const Exhibit& exhibit);

struct LoadOptions
{
    ColumnsAs columnsAs = ColumnsAs::AUTOMATIC;
    Axis up = Axis::Y;       // of clouds, which are turned: this axis upwards, the longer of the others to the right
    bool withCurves = false; // show curves computed from clouds and volumes, too
};

// Reads a file and makes of it what is shown. The name is that of the file in the exhibits' names. Throws InputError.
std::vector<Exhibit> loadExhibits(
    const std::filesystem::path& file, const std::string& name, const LoadOptions& options, const Progress& progress);

} // namespace vireo_view
