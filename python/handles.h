#pragma once

#include <pybind11/pybind11.h>
#include <string>
#include <utility>

#include "vireo/show/show.h"

namespace tavo::python {

namespace py = pybind11;

// The handles of C++ with their names, by which Python shows them.
struct PlotHandle
{
    std::string name;
    Plot plot;
};

struct SceneHandle
{
    std::string name;
    Scene scene;
};

struct ItemHandle
{
    std::string scene;
    std::string path;
    Item item;
};

struct ImageHandle
{
    std::string name;
    Image image;
};

// Operations return the very object that they were called of, so that they can be chained.
inline constexpr auto SAME_HANDLE = py::return_value_policy::reference;

// Other threads of Python go on while a call copies, sends or waits.
using WithoutGil = py::call_guard<py::gil_scoped_release>;

template <typename Work>
auto withoutGil(Work&& work)
{
    const py::gil_scoped_release released;
    return work();
}

inline std::string quoted(const std::string& text)
{
    return py::cast<std::string>(py::repr(py::str(text)));
}

// What each source of this folder adds to the module.
void addPlot(py::module_& module);
void addScene(py::module_& module);
void addItem(py::class_<ItemHandle>& item);
void addImage(py::module_& module);
void addWindow(py::module_& module);

// The PNG of a view for notebooks; None, with a line in the log, where it cannot be made.
py::object pngOf(const std::string& name);

} // namespace tavo::python
