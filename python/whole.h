#pragma once

#include <pybind11/pybind11.h>

namespace tavo::python {

// Extras of a class that keep Python from making objects of it that hold nothing yet, whose operations would read
// memory that nobody has written:
//
//     py::class_<PlotHandle>(module, "Plot", madeByCalls());

namespace py = pybind11;

// Only functions of the module make objects; the type itself raises a TypeError.
py::custom_type_setup madeByCalls();

// Objects are as by the constructor without arguments from the first moment on.
template <typename T>
py::custom_type_setup madeWhole()
{
    return py::custom_type_setup([](PyHeapTypeObject* type) {
        type->ht_type.tp_new = [](PyTypeObject* made, PyObject*, PyObject*) -> PyObject* {
            try {
                auto object = py::reinterpret_steal<py::object>(py::detail::make_new_instance(made));
                py::type::of<T>().attr("__init__")(object);
                return object.release().ptr();
            } catch (py::error_already_set& error) {
                error.restore();
                return nullptr;
            }
        };
    });
}

} // namespace tavo::python
