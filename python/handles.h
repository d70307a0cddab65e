#pragma once

#include <pybind11/pybind11.h>
#include <string>
#include <utility>

#include "python/whole.h"
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

// Virtual, so that the operations of slices return the overlay that they were called of.
struct SlicesHandle
{
    SlicesHandle(std::string itsName, const Slices& handle)
        : name(std::move(itsName))
        , slices(handle)
    {}
    virtual ~SlicesHandle() = default;

    std::string name;
    Slices slices;
};

struct SliceOverlayHandle : SlicesHandle
{
    SliceOverlayHandle(const SlicesHandle& below, std::string whatItIs, const SliceOverlay& handle)
        : SlicesHandle(below.name, handle)
        , what(std::move(whatItIs))
        , overlay(handle)
    {}

    std::string what; // "overlay" or "labels"
    SliceOverlay overlay;
};

struct ImageHandle
{
    std::string name;
    Image image;
};

// Operations return the very object that they were called of, so that they can be chained.
inline constexpr auto SAME_HANDLE = py::return_value_policy::reference;

// Lets other threads of Python go on while a call copies, sends or waits. When the interpreter ends, it ends daemon
// threads that ask for its lock, by an exception of the system's: whoever asks lets it pass.
class GilRelease
{
public:
    GilRelease()
        : m_State(PyEval_SaveThread())
    {}
    ~GilRelease() noexcept(false) { PyEval_RestoreThread(m_State); }

    GilRelease(const GilRelease&) = delete;
    GilRelease& operator=(const GilRelease&) = delete;

private:
    PyThreadState* m_State;
};

using WithoutGil = py::call_guard<GilRelease>;

template <typename Work>
auto withoutGil(Work&& work)
{
    const GilRelease released;
    return work();
}

inline std::string quoted(const std::string& text)
{
    // Names need not be UTF-8.
    const auto decoded = py::reinterpret_steal<py::object>(
        PyUnicode_DecodeUTF8(text.data(), static_cast<py::ssize_t>(text.size()), "replace"));
    return py::cast<std::string>(py::repr(decoded));
}

// What each source of this folder adds to the module.
void addPlot(py::module_& module);
void addScene(py::module_& module);
void addItem(py::class_<ItemHandle>& item);
void addSlices(py::module_& module);
void addImage(py::module_& module);
void addWindow(py::module_& module);

// The PNG of a view for notebooks; None, with a line in the log, where it cannot be made.
py::object pngOf(const std::string& name);

} // namespace tavo::python
