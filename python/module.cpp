#include <pybind11/numpy.h>

#include "python/PickCallbacks.h"
#include "python/handles.h"

PYBIND11_MODULE(_vireo, module)
{
    using namespace tavo::python;
    // Now, where one thread alone does so: two that load numpy at once would wait for each other.
    py::detail::npy_api::get();
    addPlot(module);
    addScene(module);
    addSlices(module);
    addImage(module);
    addWindow(module);
    module.def("_stop_callbacks", &stopPickCallbacks);
}
