#include "python/whole.h"

namespace tavo::python {

namespace {

PyObject* refuse(PyTypeObject* type, PyObject*, PyObject*)
{
    PyErr_Format(PyExc_TypeError, "%s: functions of vireo make it, such as vireo.plot(name), and nothing else does",
        type->tp_name);
    return nullptr;
}

} // namespace

py::custom_type_setup madeByCalls()
{
    return py::custom_type_setup([](PyHeapTypeObject* type) { type->ht_type.tp_new = refuse; });
}

} // namespace tavo::python
