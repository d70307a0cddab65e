#pragma once

#include <pybind11/pybind11.h>

#include "vireo/show/Scene.h"

namespace tavo::python {

// What people click is told to functions of Python's by a thread of Python's that this module owns. The thread of the
// window never waits for the interpreter, which may be busy, or gone.

// None takes the function away. Throws a TypeError for what cannot be called.
void setPickCallback(const Scene& scene, const pybind11::object& callback);

// The class of what they are called with.
void addPicked(pybind11::module_& module);

// Ends the thread, behind the function that it may be calling. Nothing is called after it. For the interpreter's end.
void stopPickCallbacks();

} // namespace tavo::python
