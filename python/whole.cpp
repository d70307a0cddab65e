#include "python/whole.h"

namespace tavo::python {

namespace {

PyObject* refuse(PyTypeObject* type, PyObject*, PyObject*)
{
    PyErr_Format(PyExc_TypeError,
        "%s: objects of this type are made by functions of vireo, such as vireo.plot(name), and by nothing else",
        type->tp_name);
    return nullptr;
}

} // namespace

py::custom_type_setup madeByCalls()
{
    return py::custom_type_setup([](PyHeapTypeObject* type) { type->ht_type.tp_new = refuse; });
}

} // namespace tavo::python
