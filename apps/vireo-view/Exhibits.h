#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "apps/vireo-view/ExampleData.h"
#include "apps/vireo-view/Geometry.h"
#include "apps/vireo-view/ImageReader.h"
#include "apps/vireo-view/InputBuffer.h"
#include "apps/vireo-view/RawReader.h"
#include "apps/vireo-view/SceneFitting.h"
#include "apps/vireo-view/TablePlot.h"
#include "apps/vireo-view/Volume.h"

namespace vireo_view {

// How columns of numbers are shown.
enum class ColumnsAs
{
    AUTOMATIC, // in a plot, or as points if the file's name says so
    PLOT,
    POINTS, // three columns are the x, y and z of points in space
    PATH,   // three columns are the x, y and z of a curve in space
};

// From where a scene is seen first.
enum class Side
{
    FRONT, // z up, x to the right
    BACK,  // z up, x to the left
    RIGHT, // z up, y to the right
    TOP,   // y up, x to the right
};

// What scenes call it.
const char* nameOf(Side side);

// Points and surfaces in space, at the coordinates of their file.
struct SceneExhibit
{
    std::string name;
    std::vector<Geometry> geometries; // at least one
    Side side = Side::TOP;
    bool isTurned = false;            // so that x points up where z does otherwise
    std::vector<std::string> remarks; // what a person should know
};

// A volume, at the coordinates of its file.
struct VolumeExhibit
{
    std::string name;
    Volume volume;
    std::vector<std::string> remarks; // what a person should know
    bool isSliced = false;            // shown in slices, and not in a scene
};

// A curve in space, in pieces where it has gaps.
struct PathExhibit
{
    std::string name;
    std::vector<FittedPoints3> pieces;
};

// An image, or several as a stack.
struct ImageExhibit
{
    std::string name;
    std::vector<Picture> pictures; // at least one
};

using Exhibit = std::variant<SceneExhibit, VolumeExhibit, PathExhibit, PlotExhibit, ImageExhibit>;

const std::string& nameOf(const Exhibit& exhibit);

struct LoadOptions
{
    ColumnsAs columnsAs = ColumnsAs::AUTOMATIC;
    ColumnChoice columns;
    Axis up = Axis::Y;                           // of scenes, which are seen with this axis upwards
    bool withCurves = false;                     // show curves computed from clouds and volumes, too
    std::optional<RawFormat> raw{};              // of files that hold nothing but voxels
    std::vector<std::filesystem::path> slices{}; // further files of the same scan
    bool areVolumes = false;                     // few pages of a TIFF, too
};

// Whether the file is, or will be, a text with columns of numbers that are shown in a plot. One that is not there or
// has nothing in it is, unless its name says something else.
bool isPlotted(const std::filesystem::path& file, const LoadOptions& options);

// What a person should know of a table and its plot, one line each, with the file's name.
std::vector<std::string> remarksOn(const std::filesystem::path& file, const Table& table, const TablePlot& plot);

// Reads a file and makes of it what is shown. The name is that of the file in the exhibits' names. Throws InputError.
std::vector<Exhibit> loadExhibits(
    const std::filesystem::path& file, const std::string& name, const LoadOptions& options, const Progress& progress);

} // namespace vireo_view
