#include <filesystem>
#include <map>
#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>
#include <span>
#include <utility>
#include <vector>

#include "python/NumberArgument.h"
#include "python/colour.h"
#include "python/handles.h"

namespace tavo::python {

namespace {

using ItemClass = py::class_<ItemHandle>;

// Each operation of an item that takes but a truth value.
void addSwitch(ItemClass& item, const char* operation, const char* argument,
    Item (Item::*set)(bool, const Statement&) const, const char* doc)
{
    item.def(
        operation,
        [set](ItemHandle& handle, bool isOn) -> ItemHandle& {
            (handle.item.*set)(isOn, Statement());
            return handle;
        },
        py::arg(argument) = true, SAME_HANDLE, WithoutGil(), doc);
}

void addNumber(ItemClass& item, const char* operation, const char* argument,
    Item (Item::*set)(double, const Statement&) const, const char* doc)
{
    item.def(
        operation,
        [set](ItemHandle& handle, double number) -> ItemHandle& {
            (handle.item.*set)(number, Statement());
            return handle;
        },
        py::arg(argument), SAME_HANDLE, WithoutGil(), doc);
}

void addName(ItemClass& item, const char* operation, Item (Item::*set)(std::string_view, const Statement&) const,
    const char* doc)
{
    item.def(
        operation,
        [set](ItemHandle& handle, const std::string& name) -> ItemHandle& {
            (handle.item.*set)(name, Statement());
            return handle;
        },
        py::arg("name"), SAME_HANDLE, WithoutGil(), doc);
}

template <std::size_t Width>
Colours colours(const Numbers& numbers)
{
    return numbers.visit([]<typename T>(const T* values, std::size_t count) {
        using Colour = std::array<T, Width>;
        return Colours(std::span(reinterpret_cast<const Colour*>(values), count / Width));
    });
}

// How many numbers a colour has, the shape says.
Colours coloursOf(const NumberArgument& argument)
{
    const Numbers numbers = argument.copy();
    if (argument.getNumDimensions() < 2)
        return CopiedTuples<Colours>(numbers);
    return argument.getExtent(1) == 3 ? colours<3>(numbers) : colours<4>(numbers);
}

ItemHandle& sendColours(ItemHandle& handle, const py::object& numbers)
{
    const NumberArgument values(numbers, "values");
    values.requireTuples({3, 4});
    withoutGil([&] { handle.item.colours(coloursOf(values)); });
    return handle;
}

ItemHandle& sendScalar(ItemHandle& handle, const std::string& name, const py::object& numbers)
{
    const NumberArgument values(numbers, "values");
    values.requireSeries();
    withoutGil([&] { handle.item.scalar(name, values.copy()); });
    return handle;
}

ItemHandle& sendLabels(ItemHandle& handle, const py::object& numbers, const std::string& name)
{
    const NumberArgument values(numbers, "values");
    values.requireSeries();
    withoutGil([&] { handle.item.labels(name, values.copy()); });
    return handle;
}

ItemHandle sendIsosurface(const ItemHandle& volume, double value, const std::string& name)
{
    return {volume.scene, volume.path + '/' + name, volume.item.isosurface(value, name)};
}

ItemHandle& sendNormals(ItemHandle& handle, const py::object& numbers)
{
    const NumberArgument values(numbers, "values");
    values.requireTuples({3});
    withoutGil([&] { handle.item.normals(CopiedTuples<Points>(values.copy())); });
    return handle;
}

ItemHandle& sendRadius(ItemHandle& handle, const py::object& units)
{
    const NumberArgument radii(units, "units");
    if (radii.getNumDimensions() > 1)
        radii.refuseShape("() or (n,)");
    withoutGil([&] { handle.item.radius(radii.copy()); });
    return handle;
}

ItemHandle& sendTransferFunction(ItemHandle& handle, const std::vector<std::pair<double, double>>& pairs)
{
    const GilRelease released;
    std::vector<TransferPoint> points;
    for (const auto& [value, opacity] : pairs)
        points.push_back({value, opacity});
    handle.item.transferFunction(points);
    return handle;
}

void addValues(ItemClass& item)
{
    item.def("colours", &sendColours, py::arg("values"), SAME_HANDLE,
        "A colour for each point, or each face, segment or stretch: shape (n, 3) for red, green and blue, or (n, 4) "
        "with opacity; integers from 0 to 255, floats from 0 to 1.");
    item.def("scalar", &sendScalar, py::arg("name"), py::arg("values"), SAME_HANDLE,
        "A number for each of them, of shape (n,), under a name, shown by the colours of a map. NaN is grey.");
    item.def("labels", &sendLabels, py::arg("values"), py::arg("name") = "labels", SAME_HANDLE,
        "A category for each, of shape (n,), shown by colours that depend on nothing but the category.");
    item.def(
        "label_names",
        [](ItemHandle& handle, const std::map<std::int64_t, std::string>& names) -> ItemHandle& {
            handle.item.labelNames(names);
            return handle;
        },
        py::arg("names"), SAME_HANDLE, WithoutGil(), "What the categories are called: a dict such as {2: \"ground\"}.");
    item.def("isosurface", &sendIsosurface, py::arg("value"), py::arg("name") = "isosurface", WithoutGil(),
        "Where a volume has a value: a surface of the scene, below the volume's path, which it returns. It follows new "
        "samples.");
    item.def("normals", &sendNormals, py::arg("values"), SAME_HANDLE,
        "The normal of each point or vertex, of shape (n, 3). They need not have the length 1.");
    item.def("radius", &sendRadius, py::arg("units"), SAME_HANDLE,
        "How large the points of a cloud are, in units of the scene: one radius for all, or one for each, of shape "
        "(n,).");
    item.def(
        "load_transfer_function",
        [](ItemHandle& handle, const std::filesystem::path& file) -> ItemHandle& {
            handle.item.loadTransferFunction(file.string());
            return handle;
        },
        py::arg("file"), SAME_HANDLE, WithoutGil(),
        "Shows a volume with the colours, the range and the opacity that the panel, or save_data, has saved.");
    item.def("transfer_function", &sendTransferFunction, py::arg("points"), SAME_HANDLE,
        "How opaque a volume is, by its values: a list of pairs of a value and an opacity from 0 to 1.");
}

void addLooks(ItemClass& item)
{
    addName(item, "show", &Item::show, "Shows the numbers of that name, or \"colours\", or with \"\" the one colour.");
    addName(item, "on_faces", &Item::onFaces,
        "Says that the numbers of that name, or \"colours\", belong to the faces of a mesh with as many vertices.");
    addName(item, "colour_map", &Item::colourMap, "The map from numbers to colours: \"viridis\" at first.");
    addName(item, "preset", &Item::preset,
        "Shows a volume as \"grey\", \"hot\", \"bone\", \"viridis\", \"CT bone\", \"CT soft tissue\", \"CT lung\" or "
        "\"MRI\".");
    addNumber(item, "size", "pixels", &Item::size, "How large points and how wide lines are, in pixels of the screen.");
    addNumber(item, "opacity", "opacity", &Item::opacity, "From 0, where nothing is seen of the item, to 1.");
    addSwitch(item, "visible", "is_visible", &Item::visible, "Shows or hides the item.");
    addSwitch(item, "smooth", "is_smooth", &Item::smooth, "Has light fall on a mesh as if it were curved.");
    addSwitch(item, "edges", "are_seen", &Item::edges, "Draws the edges of a mesh's faces over them.");
    addSwitch(item, "back_faces", "are_seen", &Item::backFaces, "Whether faces are seen from behind too.");
    addSwitch(item, "maximum_intensity", "is_maximum", &Item::maximumIntensity,
        "Whether of a volume only the greatest value along each line of sight is seen.");
    addSwitch(item, "lighting", "is_lit", &Item::lighting, "Whether light falls on a volume, by its gradients.");
    item.def(
        "range",
        [](ItemHandle& handle, double low, double high) -> ItemHandle& {
            handle.item.range(low, high);
            return handle;
        },
        py::arg("low"), py::arg("high"), SAME_HANDLE, WithoutGil(),
        "The numbers that have the first and the last colour of the map.");
    item.def(
        "colour",
        [](ItemHandle& handle, const py::object& colour) -> ItemHandle& {
            const RGBA8 bytes = colourOf(colour);
            withoutGil([&] { handle.item.colour(bytes); });
            return handle;
        },
        py::arg("colour"), SAME_HANDLE,
        "One colour for all: (red, green, blue) or (red, green, blue, opacity), each from 0 to 255.");
}

} // namespace

void addItem(ItemClass& item)
{
    addValues(item);
    addLooks(item);
    item.def("__repr__", [](const ItemHandle& handle) {
        return "<item " + quoted(handle.path) + " of vireo.scene(" + quoted(handle.scene) + ")>";
    });
    item.def("_repr_png_", [](const ItemHandle& handle) { return pngOf(handle.scene); });
}

} // namespace tavo::python
