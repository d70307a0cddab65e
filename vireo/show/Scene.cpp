#include "vireo/show/Scene.h"

#include <cmath>
#include <exception>
#include <initializer_list>
#include <optional>
#include <utility>

#include "tavo/base/text/printable.h"
#include "vireo/show/colours/ColourMap.h"
#include "vireo/show/delivery/changeUpdate.h"
#include "vireo/show/delivery/isShowOff.h"
#include "vireo/show/delivery/nothingToSee.h"
#include "vireo/show/delivery/sayOnce.h"
#include "vireo/show/scenes/SceneBox.h"
#include "vireo/show/scenes/SceneCamera.h"
#include "vireo/show/scenes/SceneUpdate.h"
#include "vireo/show/scenes/pointSetItem.h"
#include "vireo/show/volumes/TransferFunction.h"
#include "vireo/show/volumes/VolumePreset.h"
#include "vireo/show/volumes/volumeItem.h"
#include "vireo/show/volumes/whyNoVolume.h"

namespace tavo {

namespace {

constexpr const char* WHAT_STAYS = "; what was shown stays";

template <typename Change>
void change(const ViewSlotPointer& slot, Change&& changeIt) noexcept
{
    changeUpdate<SceneUpdate>(slot, changeIt);
}

template <typename Change>
void changeItem(const ViewSlotPointer& slot, const std::string& path, Change&& changeIt) noexcept
{
    change(slot, [&](SceneUpdate& scene) { changeIt(scene.items[path]); });
}

std::string digits(double number)
{
    return QString::number(number, 'g', 17).toStdString();
}

// One call, and what is wrong with it, which is said.
struct Call
{
    const ViewSlotPointer& slot;
    const char* operation;
    std::string_view path;

    bool refuse(const std::string& why) const
    {
        sayOnce(callOf("scene", slot, operation, path) + ": " + why + WHAT_STAYS);
        return false;
    }

    bool hasAny(const NumberArray& numbers, const char* what) const
    {
        return !numbers.isEmpty() || refuse(std::string("there are no ") + what + " to show");
    }

    // Whether anything would be seen of what is sent.
    bool hasToBeSeen(std::initializer_list<SentToBeSeen> sent) const
    {
        const std::string why = whyNothingIsSeen(sent);
        return why.empty() || refuse(why);
    }

    // Whether the numbers make whole tuples.
    template <std::size_t... Widths>
    bool accepts(const Tuples<Widths...>& tuples, std::size_t width, const char* what) const
    {
        if (tuples.areTooMany())
            return refuse(std::string("there is no memory for so many ") + what);
        if (tuples.size() % width != 0)
            return refuse(std::to_string(tuples.size()) + " numbers are no " + what + ", which take " +
                          std::to_string(width) + " each");
        return true;
    }

    bool accepts(const Points& points, const char* what = "points") const { return accepts(points, 3, what); }

    bool accepts(const Points& points, const char* what, const Points& others, const char* whatOthers) const
    {
        if (!accepts(points, what) || !accepts(others, whatOthers))
            return false;
        if (points.size() == others.size())
            return true;
        return refuse(std::to_string(points.size() / 3) + ' ' + what + " and " + std::to_string(others.size() / 3) +
                      ' ' + whatOthers);
    }

    bool accepts(const Faces& faces) const
    {
        if (!faces.getNumCorners() || faces.areTooMany())
            return accepts(faces, faces.width() != 0 ? faces.width() : 3, "faces");
        const Numbers& numCorners = *faces.getNumCorners();
        double sum = 0;
        for (std::size_t i = 0; i < numCorners.size(); ++i) {
            if (!(numCorners[i] >= 0) || std::floor(numCorners[i]) != numCorners[i])
                return refuse("face " + std::to_string(i) + " has " + digits(numCorners[i]) + " corners");
            sum += numCorners[i];
        }
        if (sum == static_cast<double>(faces.size()))
            return true;
        return refuse(std::to_string(faces.size()) + " numbers are no faces that have " + digits(sum) + " corners");
    }

    // Whether all faces have vertices.
    bool accepts(const ItemShape& mesh) const
    {
        const NumberArray& named = mesh.faces.numbers;
        const std::size_t numVertices = mesh.points.size();
        const std::size_t bad = named.visit([numVertices](const auto* vertices, std::size_t size) {
            for (std::size_t i = 0; i < size; ++i)
                if (!(vertices[i] >= 0 && static_cast<double>(vertices[i]) < static_cast<double>(numVertices)))
                    return i;
            return size;
        });
        if (bad == named.size())
            return true;
        return refuse("face " + std::to_string(mesh.faceOf(bad)) + " names vertex " + digits(named[bad]) + " of " +
                      std::to_string(numVertices));
    }

    static SentToBeSeen coordinates(const NumberArray& numbers, const char* what, std::size_t width = 3)
    {
        return {&numbers, what, width, LARGEST_COORDINATE};
    }

    bool hasToBeSeen(const ItemShape& shape) const
    {
        const NumberArray& points = shape.points.numbers;
        const NumberArray& ends = shape.ends.numbers;
        switch (shape.kind) {
        case ItemKind::Frame: return true;
        case ItemKind::Mesh:
            return hasToBeSeen({coordinates(points, "vertices")}) && hasToBeSeen({{&shape.faces.numbers, "faces"}});
        case ItemKind::Segments: return hasToBeSeen({coordinates(points, "segments", 6)});
        case ItemKind::Vectors: return hasToBeSeen({coordinates(points, "points"), {&ends, "directions", 3}});
        case ItemKind::Boxes: return hasToBeSeen({coordinates(points, "minima"), coordinates(ends, "maxima")});
        default: return hasToBeSeen({coordinates(points, "points")});
        }
    }

    bool accepts(const Transformation& matrix) const
    {
        if (matrix.getNumNumbers() != 16)
            return refuse(std::to_string(matrix.getNumNumbers()) + " numbers are no matrix, which has 16");
        for (const double number : matrix.getNumbers())
            if (!std::isfinite(number))
                return refuse("a number of the matrix is not finite");
        return acceptsLastRow({matrix.getNumbers()});
    }

    // But for rounding, that of whatever moves things is 0, 0, 0, 1.
    bool acceptsLastRow(const Matrix4& matrix) const
    {
        constexpr double ROUNDING = 1e-5;
        bool isLastRow = std::abs(matrix.at(3, 3) - 1) <= ROUNDING;
        std::string row;
        for (std::size_t column = 0; column < 4; ++column) {
            isLastRow = isLastRow && (column == 3 || std::abs(matrix.at(3, column)) <= ROUNDING);
            row += (column > 0 ? ", " : "") + digits(matrix.at(3, column));
        }
        return isLastRow || refuse("the last row of the matrix is " + row +
                                   " and not 0, 0, 0, 1: 16 numbers are column by column, with the translation near "
                                   "the end");
    }
};

Matrix4 matrixOf(const Transformation& matrix)
{
    Matrix4 affine{matrix.getNumbers()};
    for (std::size_t column = 0; column < 4; ++column)
        affine.at(3, column) = column == 3 ? 1 : 0;
    return affine;
}

ItemShape shapeOf(ItemKind kind, const Points& points, const Points& ends = {})
{
    ItemShape shape;
    shape.kind = kind;
    shape.points.numbers = points;
    shape.ends.numbers = ends;
    return shape;
}

// Has `send` send an item. Whether it does is remembered until the statement ends.
template <typename Send>
void sendItem(const ViewSlotPointer& slot, const char* operation, std::string_view path, Send&& send) noexcept
{
    if (isSent(slot))
        runGuarded([&] { noteWhetherRefused(slot, path, !send(Call{slot, operation, path})); });
}

bool sendShape(const Call& call, ItemShape shape)
{
    if (!call.hasToBeSeen(shape))
        return false;
    changeItem(call.slot, std::string(call.path), [&](ItemUpdate& item) {
        item.shape = std::move(shape);
        item.isosurface.reset();
    });
    return true;
}

bool sendUpdate(const Call& call, ItemUpdate& sent)
{
    changeItem(call.slot, std::string(call.path), [&](ItemUpdate& item) { item.merge(sent); });
    return true;
}

// Whether anything may come of numbers of an item's points or faces.
bool areNumbersSent(const ViewSlotPointer& slot, std::string_view path)
{
    return isSent(slot) && !isRefused(slot, path);
}

void sendField(
    const ViewSlotPointer& slot, const std::string& path, const char* operation, SceneField field, bool areTooMany)
{
    if (!areNumbersSent(slot, path))
        return;
    const Call call{slot, operation, path};
    if (areTooMany)
        call.refuse("there is no memory for so many numbers");
    else if (call.hasAny(field.values.numbers, "numbers"))
        changeItem(slot, path, [&](ItemUpdate& item) { item.addField(field); });
}

std::string written(const Vector3d& place)
{
    return "{" + digits(place[0]) + ", " + digits(place[1]) + ", " + digits(place[2]) + "}";
}

void sendClipBox(
    const ViewSlotPointer& slot, const char* operation, const Vector3d& low, const Vector3d& high, bool isCutOut)
{
    if (!isSent(slot))
        return;
    bool isFinite = true;
    bool isBox = true;
    for (std::size_t i = 0; i < 3; ++i) {
        isFinite = isFinite && std::isfinite(low[i]) && std::isfinite(high[i]);
        isBox = isBox && low[i] <= high[i];
    }
    const auto refuse = [&](const char* why) {
        sayOnce(callWith("scene", slot, operation, written(low) + ", " + written(high)) + ": " + why + WHAT_STAYS);
    };
    if (!isFinite)
        refuse("an end of the box is not finite");
    else if (!isBox)
        refuse("the low end of the box is above the high end");
    else
        change(slot, [&](SceneUpdate& scene) {
            scene.isCutOut = isCutOut;
            scene.clipBox.emplace().emplace();
            for (const Vector3d& end : {low, high})
                (*scene.clipBox)->extend(end);
        });
}

} // namespace

Scene scene(std::string_view name)
{
    Scene handle;
    if (!isShowOff())
        runGuarded([&] { handle.m_Slot = inbox::findSlot(ViewKind::Scene, std::string(name)); });
    return handle;
}

Item Scene::cloud(std::string_view path, const Points& points, const Statement&) const
{
    sendItem(m_Slot, "cloud", path,
        [&](const Call& call) { return call.accepts(points) && sendShape(call, shapeOf(ItemKind::Cloud, points)); });
    return {m_Slot, path};
}

Item Scene::cloud(std::string_view path, const PointSet& points, const Statement&) const
{
    sendItem(m_Slot, "cloud", path, [&](const Call& call) {
        try {
            std::optional<ItemUpdate> sent = pointSetItem(points);
            if (!sent)
                return call.refuse("the points have no \"position\" of three floats");
            return call.hasToBeSeen(*sent->shape) && sendUpdate(call, *sent);
        } catch (const std::exception&) {
            return call.refuse("there is no memory for so many points");
        }
    });
    return {m_Slot, path};
}

Item Scene::mesh(std::string_view path, const Points& vertices, const Faces& faces, const Statement&) const
{
    sendItem(m_Slot, "mesh", path, [&](const Call& call) {
        ItemShape shape = shapeOf(ItemKind::Mesh, vertices);
        shape.faces = {faces, faces.width() != 0 ? faces.width() : 3};
        shape.numCorners = faces.getNumCorners();
        return call.accepts(vertices, "vertices") && call.accepts(faces) && call.accepts(shape) &&
               sendShape(call, std::move(shape));
    });
    return {m_Slot, path};
}

Item Scene::lines(std::string_view path, const Points& points, const Statement&) const
{
    sendItem(m_Slot, "lines", path,
        [&](const Call& call) { return call.accepts(points) && sendShape(call, shapeOf(ItemKind::Lines, points)); });
    return {m_Slot, path};
}

Item Scene::segments(std::string_view path, const Points& points, const Statement&) const
{
    sendItem(m_Slot, "segments", path, [&](const Call& call) {
        if (!call.accepts(points))
            return false;
        if (points.size() % 6 != 0)
            return call.refuse(std::to_string(points.size() / 3) + " points are no segments, which take two each");
        return sendShape(call, shapeOf(ItemKind::Segments, points));
    });
    return {m_Slot, path};
}

Item Scene::vectors(std::string_view path, const Points& points, const Points& directions, const Statement&) const
{
    sendItem(m_Slot, "vectors", path, [&](const Call& call) {
        return call.accepts(points, "points", directions, "directions") &&
               sendShape(call, shapeOf(ItemKind::Vectors, points, directions));
    });
    return {m_Slot, path};
}

Item Scene::boxes(std::string_view path, const Points& minima, const Points& maxima, const Statement&) const
{
    sendItem(m_Slot, "boxes", path, [&](const Call& call) {
        return call.accepts(minima, "minima", maxima, "maxima") &&
               sendShape(call, shapeOf(ItemKind::Boxes, minima, maxima));
    });
    return {m_Slot, path};
}

Item Scene::frame(std::string_view path, const Transformation& matrix, const Statement&) const
{
    sendItem(m_Slot, "frame", path, [&](const Call& call) {
        if (!call.accepts(matrix))
            return false;
        ItemShape shape;
        shape.kind = ItemKind::Frame;
        shape.frame = matrixOf(matrix);
        return sendShape(call, std::move(shape));
    });
    return {m_Slot, path};
}

Item Scene::text(std::string_view path, const Points& position, std::string_view text, const Statement&) const
{
    sendItem(m_Slot, "text", path, [&](const Call& call) {
        if (!call.accepts(position))
            return false;
        ItemShape shape = shapeOf(ItemKind::Text, position);
        shape.text = std::string(text);
        if (shape.points.size() != 1)
            return call.refuse(std::to_string(shape.points.size()) + " points are no position");
        return sendShape(call, std::move(shape));
    });
    return {m_Slot, path};
}

Item Scene::volume(std::string_view path, const Samples& samples, const GridSize& size, const Spacing& spacing,
    const Vector3d& origin, const Orientation& orientation, const Statement&) const
{
    sendItem(m_Slot, "volume", path, [&](const Call& call) {
        const SentGrid grid{size, spacing, origin, orientation};
        const std::string why =
            samples.areTooMany() ? "there is no memory for so many samples" : whyNoVolume(grid, samples.size());
        if (!why.empty())
            return call.refuse(why);
        ItemUpdate sent = volumeItem(gridOf(grid), {samples, numChannelsOf(grid, samples.size())});
        return call.hasToBeSeen({{&samples, "samples"}}) && sendUpdate(call, sent);
    });
    return {m_Slot, path};
}

Item Scene::volume(std::string_view path, const RegularVolume& volume, std::string_view channel, const Statement&) const
{
    sendItem(m_Slot, "volume", path, [&](const Call& call) {
        try {
            std::optional<ItemUpdate> sent = volumeItem(volume, channel);
            if (!sent)
                return call.refuse("it has no channel of one, three or four numbers for each sample" +
                                   (channel.empty() ? "" : " by the name \"" + printable(channel, 80) + "\""));
            const NumberArray& samples = sent->colours ? sent->colours->numbers : sent->fields.front().values.numbers;
            return call.hasToBeSeen({{&samples, "samples"}}) && sendUpdate(call, *sent);
        } catch (const std::exception&) {
            return call.refuse("there is no memory for so many samples");
        }
    });
    return {m_Slot, path};
}

Scene Scene::transform(std::string_view path, const Transformation& matrix, const Statement&) const
{
    if (isSent(m_Slot) && Call{m_Slot, "transform", path}.accepts(matrix))
        change(m_Slot, [&](SceneUpdate& scene) { scene.transforms[std::string(path)] = matrixOf(matrix); });
    return *this;
}

Scene Scene::remove(std::string_view path, const Statement&) const
{
    change(m_Slot, [&](SceneUpdate& scene) { scene.remove(std::string(path)); });
    return *this;
}

Scene Scene::clear(const Statement&) const
{
    change(m_Slot, [](SceneUpdate& scene) { scene.clear(); });
    return *this;
}

Scene Scene::view(std::string_view side, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    if (SceneCamera::sideOf(side))
        change(m_Slot, [&](SceneUpdate& scene) { scene.side = std::string(side); });
    else
        Call{m_Slot, "view", side}.refuse(
            "there is no such side, but \"front\", \"back\", \"left\", \"right\", \"top\" and \"bottom\"");
    return *this;
}

Scene Scene::orthographic(bool isOrthographic, const Statement&) const
{
    change(m_Slot, [=](SceneUpdate& scene) { scene.isOrthographic = isOrthographic; });
    return *this;
}

Scene Scene::bearings(bool areShown, const Statement&) const
{
    change(m_Slot, [=](SceneUpdate& scene) { scene.hasBearings = areShown; });
    return *this;
}

Scene Scene::clipBox(const Vector3d& low, const Vector3d& high, const Statement&) const
{
    sendClipBox(m_Slot, "clipBox", low, high, false);
    return *this;
}

Scene Scene::cutOut(const Vector3d& low, const Vector3d& high, const Statement&) const
{
    sendClipBox(m_Slot, "cutOut", low, high, true);
    return *this;
}

Scene Scene::noClipBox(const Statement&) const
{
    change(m_Slot, [](SceneUpdate& scene) { scene.clipBox.emplace(); });
    return *this;
}

Scene Scene::onPick(std::function<void(const Picked&)> callback, const Statement& statement) const
{
    return onPick(std::move(callback), nullptr, statement);
}

Scene Scene::onPick(
    std::function<void(const Picked&)> callback, std::function<void(std::function<void()>)> run, const Statement&) const
{
    change(m_Slot, [&](SceneUpdate& scene) {
        scene.pickReceiver.emplace();
        if (callback)
            *scene.pickReceiver = std::make_shared<PickReceiver>(PickReceiver{std::move(callback), std::move(run)});
    });
    return *this;
}

Item::Item(std::shared_ptr<ViewSlot> slot, std::string_view path)
    : m_Slot(std::move(slot))
    , m_Path(m_Slot ? path : std::string_view())
{}

Item Item::colours(const Colours& values, const Statement&) const
{
    if (!areNumbersSent(m_Slot, m_Path))
        return *this;
    const Call call{m_Slot, "colours", m_Path};
    if (call.accepts(values, 1, "colours") && call.hasAny(values, "colours"))
        changeItem(m_Slot, m_Path, [&](ItemUpdate& item) { item.colours = NumberTuples{values, values.width()}; });
    return *this;
}

Item Item::scalar(std::string_view name, const Numbers& values, const Statement&) const
{
    sendField(m_Slot, m_Path, "scalar", {std::string(name), {values, 1}, false}, values.areTooMany());
    return *this;
}

Item Item::labels(const Numbers& values, const Statement&) const
{
    sendField(m_Slot, m_Path, "labels", {"labels", {values, 1}, true}, values.areTooMany());
    return *this;
}

Item Item::labels(std::string_view name, const Numbers& values, const Statement&) const
{
    sendField(m_Slot, m_Path, "labels", {std::string(name), {values, 1}, true}, values.areTooMany());
    return *this;
}

Item Item::labelNames(const std::map<std::int64_t, std::string>& names, const Statement&) const
{
    changeItem(m_Slot, m_Path, [&](ItemUpdate& item) { item.labelNames = names; });
    return *this;
}

Item Item::onFaces(std::string_view name, const Statement&) const
{
    changeItem(m_Slot, m_Path, [&](ItemUpdate& item) { item.onFaces.insert(std::string(name)); });
    return *this;
}

Item Item::show(std::string_view name, const Statement&) const
{
    changeItem(m_Slot, m_Path, [&](ItemUpdate& item) { item.shown = std::string(name); });
    return *this;
}

Item Item::range(double from, double to, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    if (std::isfinite(from) && std::isfinite(to))
        changeItem(m_Slot, m_Path, [=](ItemUpdate& item) { item.range = std::pair(from, to); });
    else
        Call{m_Slot, "range", m_Path}.refuse("an end of the range is not finite");
    return *this;
}

Item Item::colourMap(std::string_view name, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    if (findColourMap(name))
        changeItem(m_Slot, m_Path, [&](ItemUpdate& item) { item.colourMap = std::string(name); });
    else
        Call{m_Slot, "colourMap", m_Path}.refuse(whyNoColourMap(name));
    return *this;
}

Item Item::colour(const RGBA8& colour, const Statement&) const
{
    changeItem(m_Slot, m_Path, [&](ItemUpdate& item) { item.colour = colour; });
    return *this;
}

Item Item::normals(const Points& values, const Statement&) const
{
    if (!areNumbersSent(m_Slot, m_Path))
        return *this;
    const Call call{m_Slot, "normals", m_Path};
    if (call.accepts(values, "normals") && call.hasAny(values, "normals"))
        changeItem(m_Slot, m_Path, [&](ItemUpdate& item) { item.normals = NumberTuples{values, 3}; });
    return *this;
}

Item Item::size(double pixels, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    if (pixels > 0 && std::isfinite(pixels))
        changeItem(m_Slot, m_Path, [=](ItemUpdate& item) {
            item.size = pixels;
            item.radii.reset();
        });
    else
        Call{m_Slot, "size", m_Path}.refuse("a size of " + digits(pixels) + " pixels cannot be drawn");
    return *this;
}

Item Item::radius(double units, const Statement&) const
{
    return radius(Numbers{units});
}

Item Item::radius(const Numbers& units, const Statement&) const
{
    if (!areNumbersSent(m_Slot, m_Path))
        return *this;
    const Call call{m_Slot, "radius", m_Path};
    if (units.areTooMany())
        call.refuse("there is no memory for so many numbers");
    else if (!call.hasAny(units, "radii"))
        return *this;
    else if (units.size() == 1 && !(units[0] >= 0 && std::isfinite(units[0])))
        call.refuse("a radius of " + digits(units[0]) + " cannot be drawn");
    else
        changeItem(m_Slot, m_Path, [&](ItemUpdate& item) {
            item.radii = NumberTuples{units, 1};
            item.size.reset();
        });
    return *this;
}

Item Item::opacity(double opacity, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    if (opacity >= 0 && opacity <= 1)
        changeItem(m_Slot, m_Path, [=](ItemUpdate& item) { item.opacity = opacity; });
    else
        Call{m_Slot, "opacity", m_Path}.refuse(digits(opacity) + " is not from 0 to 1");
    return *this;
}

Item Item::visible(bool isVisible, const Statement&) const
{
    changeItem(m_Slot, m_Path, [=](ItemUpdate& item) { item.isVisible = isVisible; });
    return *this;
}

Item Item::smooth(bool isSmooth, const Statement&) const
{
    changeItem(m_Slot, m_Path, [=](ItemUpdate& item) { item.isSmooth = isSmooth; });
    return *this;
}

Item Item::edges(bool areSeen, const Statement&) const
{
    changeItem(m_Slot, m_Path, [=](ItemUpdate& item) { item.areEdgesSeen = areSeen; });
    return *this;
}

Item Item::transferFunction(const std::vector<TransferPoint>& points, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    const std::string why = whyNoTransferFunction(points);
    if (!why.empty())
        Call{m_Slot, "transferFunction", m_Path}.refuse(why);
    else
        changeItem(m_Slot, m_Path, [&](ItemUpdate& item) {
            item.range = std::pair(points.front().value, points.back().value);
            item.opacities = opacitiesOf(points);
        });
    return *this;
}

Item Item::preset(std::string_view name, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    if (const VolumePreset* const preset = findVolumePreset(name))
        changeItem(m_Slot, m_Path, [&](ItemUpdate& item) {
            if (!preset->colourMap.empty())
                item.colourMap = std::string(preset->colourMap);
            item.opacities = preset->opacities;
            item.areCategories = preset->areCategories;
            if (preset->range)
                item.range = preset->range;
        });
    else
        Call{m_Slot, "preset", m_Path}.refuse(whyNoVolumePreset(name));
    return *this;
}

Item Item::loadTransferFunction(const std::string& file, const Statement&) const
{
    if (!isSent(m_Slot))
        return *this;
    runGuarded([&] {
        TransferFunction function;
        const std::string why = tavo::loadTransferFunction(QString::fromLocal8Bit(file.c_str()), function);
        if (!why.empty())
            Call{m_Slot, "loadTransferFunction", m_Path}.refuse(
                (file.empty() ? "" : printable(file, 200) + ": ") + why);
        else
            changeItem(m_Slot, m_Path, [&](ItemUpdate& item) {
                item.colourMap = function.colourMap;
                item.range = function.range;
                item.opacities = function.opacities;
                item.areCategories = function.areCategories;
            });
    });
    return *this;
}

Item Item::maximumIntensity(bool isMaximum, const Statement&) const
{
    changeItem(m_Slot, m_Path, [=](ItemUpdate& item) { item.isMaximum = isMaximum; });
    return *this;
}

Item Item::lighting(bool isLit, const Statement&) const
{
    changeItem(m_Slot, m_Path, [=](ItemUpdate& item) { item.isLit = isLit; });
    return *this;
}

Item Item::isosurface(double value, std::string_view name, const Statement&) const
{
    Item surface(m_Slot, m_Path + '/' + std::string(name));
    if (!isSent(m_Slot))
        return surface;
    if (std::isfinite(value))
        changeItem(m_Slot, surface.m_Path, [&](ItemUpdate& item) {
            item.shape.reset();
            item.isosurface = IsosurfaceOf{m_Path, value};
        });
    else
        Call{m_Slot, "isosurface", m_Path}.refuse("a value of " + digits(value) + " is nowhere");
    return surface;
}

Item Item::backFaces(bool areSeen, const Statement&) const
{
    changeItem(m_Slot, m_Path, [=](ItemUpdate& item) { item.areBackFacesSeen = areSeen; });
    return *this;
}

} // namespace tavo
