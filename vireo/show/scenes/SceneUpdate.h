#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tavo/base/math/vectors.h"
#include "vireo/show/delivery/NumberArray.h"
#include "vireo/show/delivery/ViewUpdate.h"
#include "vireo/show/scenes/Matrix4.h"
#include "vireo/show/scenes/PickReceiver.h"
#include "vireo/show/scenes/SceneBox.h"
#include "vireo/show/volumes/VolumeGrid.h"
#include "vireo/show/volumes/opacityCurve.h"

namespace tavo {

enum class ItemKind : unsigned char
{
    Cloud,
    Mesh,
    Lines,
    Segments,
    Vectors,
    Boxes,
    Frame,
    Text,
    Volume
};

// Numbers that belong together by `width`.
struct NumberTuples
{
    NumberArray numbers;
    std::size_t width = 3;

    std::size_t size() const { return numbers.size() / width; }
};

// What an item is made of, as it was sent. It has been checked.
struct ItemShape
{
    ItemKind kind = ItemKind::Cloud;
    NumberTuples points; // of boxes, their minima
    NumberTuples ends;   // of vectors, their directions; of boxes, their maxima
    NumberTuples faces;
    std::optional<NumberArray> numCorners; // of each face, if they have not all as many
    Matrix4 frame;
    std::string text;
    std::optional<VolumeGrid> grid; // of volumes, whose samples are numbers or colours that are sent to the item

    // The points, or the samples of a volume.
    std::size_t numPoints() const { return grid ? grid->numSamples() : points.size(); }

    // The faces of a mesh, the stretches of lines, the segments; 0 of what has none.
    std::size_t numParts() const;

    std::size_t numCornersOf(std::size_t face) const
    {
        return numCorners ? static_cast<std::size_t>((*numCorners)[face]) : faces.width;
    }

    // The face that the i-th number of the faces belongs to.
    std::size_t faceOf(std::size_t i) const;
};

// Numbers of points or parts that are shown as colours.
struct SceneField
{
    std::string name;
    NumberTuples values; // one by one
    bool areLabels = false;
    bool areOfParts = false; // as far as it is known
};

// That an item is where the samples of a volume have a value.
struct IsosurfaceOf
{
    std::string volume; // its path
    double value = 0;
};

// What was sent to one item.
struct ItemUpdate
{
    std::optional<ItemShape> shape;
    std::optional<NumberTuples> colours; // the width is 0 if it is not known
    std::optional<NumberTuples> normals;
    std::vector<SceneField> fields; // in the order in which they came first
    std::optional<std::map<std::int64_t, std::string>> labelNames;
    std::set<std::string> onFaces;    // fields, or "colours", that belong to parts
    std::optional<std::string> shown; // the field, or "colours"
    std::optional<std::pair<double, double>> range;
    std::optional<std::string> colourMap;
    std::optional<RGBA8> colour;
    std::optional<double> size; // only one of these two, the later one
    std::optional<NumberTuples> radii;
    std::optional<double> opacity;
    std::optional<bool> isVisible;
    std::optional<bool> isSmooth;
    std::optional<bool> areEdgesSeen;
    std::optional<bool> areBackFacesSeen;
    std::optional<OpacityCurve> opacities; // of a volume
    std::optional<bool> areCategories;     // its samples, instead of numbers on a scale
    std::optional<bool> isMaximum;         // what is seen of it: the greatest value along each line of sight
    std::optional<bool> isLit;
    std::optional<IsosurfaceOf> isosurface; // instead of a shape that is sent

    void merge(ItemUpdate& newer);

    // Replaces that of the same name.
    void addField(SceneField& field);
};

// Whether a path is that of the branch or below it: "car/lidar" is in "car".
bool isInBranch(const std::string& path, const std::string& branch);

// What was sent to one scene. It is applied from the top down.
class SceneUpdate : public ViewUpdate
{
public:
    void merge(ViewUpdate& newer) override;
    Replaced replaced() const override;
    std::unique_ptr<ViewUpdate> copy() const override;
    std::string saveData(const QString& file) override;

    // As if what was sent so far had never been: all items go.
    void clear();

    // The items of a branch go, and where it was moved to.
    void remove(const std::string& branch);

    bool isCleared = false;
    std::vector<std::string> removed;
    std::map<std::string, ItemUpdate> items; // by path
    std::map<std::string, Matrix4> transforms;
    std::optional<std::string> side; // from which it is seen
    std::optional<bool> isOrthographic;
    std::optional<bool> hasBearings;
    std::optional<std::optional<SceneBox>> clipBox; // outside of which nothing is seen; of none, all is
    std::optional<bool> isCutOut;                   // that box: what is in it is not seen, instead
    std::optional<std::shared_ptr<const PickReceiver>> pickReceiver; // of null: nobody any more
};

} // namespace tavo
