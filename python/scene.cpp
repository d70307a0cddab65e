#include <array>
#include <cstdint>
#include <optional>
#include <pybind11/stl.h>
#include <vector>

#include "python/NumberArgument.h"
#include "python/PickCallbacks.h"
#include "python/VolumeArgument.h"
#include "python/handles.h"

namespace tavo::python {

namespace {

using SceneClass = py::class_<SceneHandle>;
using SendPoints = Item (Scene::*)(std::string_view, const Points&, const Statement&) const;
using SendPointPairs = Item (Scene::*)(std::string_view, const Points&, const Points&, const Statement&) const;
using CopiedPoints = CopiedTuples<Points>;

constexpr const char* POINTS_SHAPE =
    " Points have the shape (n, 3), or (3 * n,) as x, y, z one after the other, in the "
    "units of the scene.";

// Points as an argument has them.
class PointsArgument : public NumberArgument
{
public:
    PointsArgument(const py::handle& argument, const char* what)
        : NumberArgument(argument, what)
    {
        requireTuples({3});
    }
};

template <typename Send>
ItemHandle send(const SceneHandle& scene, const std::string& path, Send&& sendIt)
{
    return {scene.name, path, withoutGil(std::forward<Send>(sendIt))};
}

// As numpy writes a matrix: row by row.
Transformation matrixOf(const py::handle& argument)
{
    const NumberArgument matrix(argument, "matrix");
    if (matrix.isLookedAt() &&
        !(matrix.getNumDimensions() == 2 && matrix.getExtent(0) == 4 && matrix.getExtent(1) == 4))
        matrix.refuseShape("(4, 4)");
    const Numbers numbers = matrix.copy();
    double rows[4][4] = {};
    for (std::size_t i = 0; i < numbers.size(); ++i)
        rows[i / 4][i % 4] = numbers[i];
    return Transformation(rows);
}

void addPointItem(
    SceneClass& scene, const char* operation, const char* argument, SendPoints sendPoints, const char* doc)
{
    scene.def(
        operation,
        [sendPoints](const SceneHandle& handle, const std::string& path, const py::object& numbers) {
            const PointsArgument points(numbers, "points");
            return send(handle, path,
                [&] { return (handle.scene.*sendPoints)(path, CopiedPoints(points.copy()), Statement()); });
        },
        py::arg("path"), py::arg(argument), (std::string(doc) + POINTS_SHAPE).c_str());
}

void addPairItem(SceneClass& scene, const char* operation, const char* first, const char* second,
    SendPointPairs sendPairs, const char* doc)
{
    scene.def(
        operation,
        [=](const SceneHandle& handle, const std::string& path, const py::object& one, const py::object& other) {
            const PointsArgument points(one, first);
            const PointsArgument others(other, second);
            return send(handle, path, [&] {
                return (handle.scene.*sendPairs)(
                    path, CopiedPoints(points.copy()), CopiedPoints(others.copy()), Statement());
            });
        },
        py::arg("path"), py::arg(first), py::arg(second), doc);
}

using Polygons = std::vector<std::vector<std::int64_t>>;

std::vector<std::int64_t> polygonOf(const std::vector<double>& corners)
{
    for (const double corner : corners)
        if (!isWhole(corner))
            throw py::type_error(
                "faces has " + py::cast<std::string>(py::str(py::float_(corner))) + ", which is not a whole number");
    return {corners.begin(), corners.end()};
}

// Faces of different numbers of corners: a list of lists.
std::optional<Faces> polygonsOf(const py::handle& argument)
{
    if (!py::isinstance<py::list>(argument) && !py::isinstance<py::tuple>(argument))
        return {};
    try {
        Polygons polygons;
        for (const std::vector<double>& corners : py::cast<std::vector<std::vector<double>>>(argument))
            polygons.push_back(polygonOf(corners));
        return Faces(polygons);
    } catch (const py::cast_error&) {
        return {}; // they are one after the other, or something else
    }
}

Faces facesOf(const NumberArgument& faces)
{
    const Numbers vertices = faces.copy();
    if (faces.getNumDimensions() < 2)
        return CopiedTuples<Faces>(vertices);
    return {vertices, std::vector<std::size_t>(faces.getExtent(0), faces.getExtent(1))};
}

ItemHandle sendMesh(
    const SceneHandle& handle, const std::string& path, const py::object& points, const py::object& triangles)
{
    const PointsArgument vertices(points, "vertices");
    if (const std::optional<Faces> polygons = polygonsOf(triangles))
        return send(handle, path, [&] { return handle.scene.mesh(path, CopiedPoints(vertices.copy()), *polygons); });
    const NumberArgument faces(triangles, "faces");
    if (faces.getNumDimensions() != 1 && faces.getNumDimensions() != 2 && faces.isLookedAt())
        faces.refuseShape("(n, corners) or (3 * n,)");
    faces.requireWholeNumbers();
    return send(handle, path, [&] { return handle.scene.mesh(path, CopiedPoints(vertices.copy()), facesOf(faces)); });
}

ItemHandle sendVolume(const SceneHandle& handle, const std::string& path, const py::object& numbers,
    const std::optional<VolumeSize>& asked, const py::object& spacing, const py::object& origin,
    const py::object& orientation)
{
    const VolumeArgument volume(numbers, asked, spacing, origin, orientation);
    return send(handle, path, [&] {
        return handle.scene.volume(
            path, volume.samples(), volume.size(), volume.spacing(), volume.origin(), volume.orientation());
    });
}

void addPointItems(SceneClass& scene)
{
    addPointItem(scene, "cloud", "points", &Scene::cloud, "Points.");
    addPointItem(scene, "lines", "points", &Scene::lines, "A line through points, in their order.");
    addPointItem(scene, "segments", "points", &Scene::segments,
        "A line from the first point to the second, from the third to the fourth, and so on.");
    addPairItem(scene, "vectors", "points", "directions", &Scene::vectors,
        "An arrow from each point, as long as its direction; both have the shape (n, 3).");
    addPairItem(scene, "boxes", "minima", "maxima", &Scene::boxes,
        "The edges of boxes along the axes, from minima to maxima, both of shape (n, 3).");
    scene.def("mesh", &sendMesh, py::arg("path"), py::arg("vertices"), py::arg("faces"),
        "A surface. vertices have the shape (n, 3); faces name them by numbers counted from 0: (m, 3) for triangles, "
        "(m, 4) for quadrangles, a list of lists for polygons of any number of corners each.");
}

void addOtherItems(SceneClass& scene)
{
    scene.def(
        "frame",
        [](const SceneHandle& handle, const std::string& path, const py::object& matrix) {
            const Transformation transformation = matrixOf(matrix);
            return send(handle, path, [&] { return handle.scene.frame(path, transformation); });
        },
        py::arg("path"), py::arg("matrix"),
        "The axes of a coordinate system: x red, y green, z blue. The matrix has the shape (4, 4), with the "
        "translation in its last column.");
    scene.def(
        "text",
        [](const SceneHandle& handle, const std::string& path, const py::object& numbers, const std::string& text) {
            const PointsArgument position(numbers, "position");
            return send(handle, path, [&] { return handle.scene.text(path, CopiedPoints(position.copy()), text); });
        },
        py::arg("path"), py::arg("position"), py::arg("text"), "A text at a position of shape (3,).");
    scene.def("volume", &sendVolume, py::arg("path"), py::arg("samples"), py::arg("size") = py::none(),
        py::arg("spacing") = 1.0, py::arg("origin") = py::make_tuple(0.0, 0.0, 0.0),
        py::arg("orientation") = py::none(),
        "A volume: samples on a grid, of shape (nz, ny, nx), or (nz, ny, nx, 3) or (nz, ny, nx, 4) for colours; or of "
        "any shape, x fastest, with a size (nx, ny, nz). spacing is one number or three, for x, y and z, in the units "
        "of the scene; origin is where the first sample is; orientation is where the axes x, y and z point.");
}

using SendBox = Scene (Scene::*)(const Vector3d&, const Vector3d&, const Statement&) const;

void addBox(SceneClass& scene, const char* name, SendBox send, const char* help)
{
    scene.def(
        name,
        [send](SceneHandle& handle, const py::object& low, const py::object& high) -> SceneHandle& {
            const Vector3d from = vectorOf(low, "low");
            const Vector3d to = vectorOf(high, "high");
            withoutGil([&] { (handle.scene.*send)(from, to, Statement()); });
            return handle;
        },
        py::arg("low"), py::arg("high"), SAME_HANDLE, help);
}

void addView(SceneClass& scene)
{
    scene.def(
        "view",
        [](SceneHandle& handle, const std::string& side) -> SceneHandle& {
            handle.scene.view(side);
            return handle;
        },
        py::arg("side"), SAME_HANDLE, WithoutGil(),
        "Looks at the whole scene from \"front\", \"back\", \"left\", \"right\", \"top\" or \"bottom\".");
    scene.def(
        "orthographic",
        [](SceneHandle& handle, bool isOrthographic) -> SceneHandle& {
            handle.scene.orthographic(isOrthographic);
            return handle;
        },
        py::arg("is_orthographic") = true, SAME_HANDLE, WithoutGil(),
        "Shows what is farther away as large as what is near.");
    scene.def(
        "bearings",
        [](SceneHandle& handle, bool areShown) -> SceneHandle& {
            handle.scene.bearings(areShown);
            return handle;
        },
        py::arg("are_shown") = true, SAME_HANDLE, WithoutGil(),
        "Shows a box about everything, with numbers along its edges.");
    addBox(scene, "clip_box", &Scene::clipBox, "Shows only what is in a box along the axes; both of shape (3,).");
    addBox(scene, "cut_out", &Scene::cutOut,
        "Takes away what is in a box along the axes, such as a corner of a volume; both of shape (3,). It takes the "
        "place of "
        "a clip box.");
    scene.def(
        "no_clip_box",
        [](SceneHandle& handle) -> SceneHandle& {
            handle.scene.noClipBox();
            return handle;
        },
        SAME_HANDLE, WithoutGil(), "Shows everything again.");
}

void addChanges(SceneClass& scene)
{
    scene.def(
        "transform",
        [](SceneHandle& handle, const std::string& path, const py::object& matrix) -> SceneHandle& {
            const Transformation transformation = matrixOf(matrix);
            withoutGil([&] { handle.scene.transform(path, transformation); });
            return handle;
        },
        py::arg("path"), py::arg("matrix"), SAME_HANDLE,
        "Moves all items of a path and below it: \"car\" moves \"car/body\". The matrix has the shape (4, 4), with the "
        "translation in its last column.");
    scene.def(
        "remove",
        [](SceneHandle& handle, const std::string& path) -> SceneHandle& {
            handle.scene.remove(path);
            return handle;
        },
        py::arg("path"), SAME_HANDLE, WithoutGil(), "Takes the items of a path and below it away.");
    scene.def(
        "clear",
        [](SceneHandle& handle) -> SceneHandle& {
            handle.scene.clear();
            return handle;
        },
        SAME_HANDLE, WithoutGil(), "Takes all items away.");
    scene.def(
        "on_pick",
        [](SceneHandle& handle, const py::object& callback) -> SceneHandle& {
            setPickCallback(handle.scene, callback);
            return handle;
        },
        py::arg("callback"), SAME_HANDLE,
        "Has a function called with a Picked: what a person clicks in the scene. It runs in a thread of its own, for "
        "which the window does not wait; what it raises is printed. None takes it away.");
}

} // namespace

void addScene(py::module_& module)
{
    addPicked(module);
    SceneClass scene(module, "Scene", madeByCalls(),
        "A scene: clouds of points, surfaces, lines and more in one view in space. scene(name) makes it.\n\n"
        "What sends something returns its Item, everything else the scene; calls may come from any thread.");
    py::class_<ItemHandle> item(module, "Item", madeByCalls(),
        "An item of a scene. Every operation returns it, so that calls can be chained. Colours and numbers belong to "
        "points if they are as many as the points, and to the faces of a mesh, the segments or the stretches of a line "
        "if they are as many as those.");
    addItem(item);
    addPointItems(scene);
    addOtherItems(scene);
    addView(scene);
    addChanges(scene);
    scene.def("__repr__", [](const SceneHandle& handle) { return "vireo.scene(" + quoted(handle.name) + ")"; });
    scene.def("_repr_png_", [](const SceneHandle& handle) { return pngOf(handle.name); });
    module.def(
        "scene",
        [](const std::string& name) {
            return SceneHandle{name, withoutGil([&] { return tavo::scene(name); })};
        },
        py::arg("name"),
        "The scene of that name, the same in every thread. It is in the window as soon as anything is sent to it.\n\n"
        "    import numpy, vireo\n\n"
        "    points = numpy.random.default_rng(1).normal(size=(10000, 3))\n"
        "    vireo.scene(\"world\").cloud(\"lidar\", points).scalar(\"height\", points[:, 2])\n"
        "    vireo.show()\n\n"
        "Points have the shape (n, 3), in any type and layout, and keep double precision.");
}

} // namespace tavo::python
