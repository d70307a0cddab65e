#include <pybind11/numpy.h>

#include "python/PickCallbacks.h"
#include "python/handles.h"

PYBIND11_MODULE(_vireo, module)
{
    using namespace tavo::python;
    // Now, where one thread alone does so: two that load numpy at once would wait for each other.
    py::detail::npy_api::get();
    // Python is told of types, and tells of them, by the name of the package.
    const py::object name = module.attr("__name__");
    module.attr("__name__") = "vireo";
    addPlot(module);
    addScene(module);
    addSlices(module);
    addImage(module);
    addWindow(module);
    module.def("_stop_callbacks", &stopPickCallbacks);
    module.attr("__name__") = name;
}
