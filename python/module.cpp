#include "python/PickCallbacks.h"
#include "python/handles.h"

PYBIND11_MODULE(_vireo, module)
{
    using namespace tavo::python;
    addPlot(module);
    addScene(module);
    addImage(module);
    addWindow(module);
    module.def("_stop_callbacks", &stopPickCallbacks);
}
