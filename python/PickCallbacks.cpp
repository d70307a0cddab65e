#include "python/PickCallbacks.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <pybind11/stl.h>
#include <string>
#include <unistd.h>
#include <utility>

#include "python/handles.h"

namespace tavo::python {

namespace py = pybind11;

namespace {

// What waits for the interpreter. It is never destroyed: the window's thread may leave something after main().
struct Queue
{
    std::mutex mutex;
    std::condition_variable hasChanged;
    std::deque<std::function<void()>> work;
    bool isClosed = false;
    const pid_t process = getpid(); // children of forks have no thread that works, and maybe a mutex that is locked
    bool isStarted = false;         // both guarded by the interpreter's lock
    PyObject* thread = nullptr;

    bool push(std::function<void()> newWork)
    {
        if (getpid() != process)
            return false;
        const std::lock_guard<std::mutex> lock(mutex);
        if (isClosed)
            return false;
        work.push_back(std::move(newWork));
        hasChanged.notify_one();
        return true;
    }

    // Nothing when it was closed.
    std::function<void()> pop()
    {
        std::unique_lock<std::mutex> lock(mutex);
        hasChanged.wait(lock, [this] { return isClosed || !work.empty(); });
        if (isClosed)
            return nullptr;
        std::function<void()> next = std::move(work.front());
        work.pop_front();
        return next;
    }

    void close()
    {
        const std::lock_guard<std::mutex> lock(mutex);
        isClosed = true;
        hasChanged.notify_one();
    }
};

Queue& queue()
{
    static Queue* const theQueue = new Queue;
    return *theQueue;
}

// A function of Python's, which may be let go of in any thread.
class Callback
{
public:
    explicit Callback(py::object function)
        : m_Function(function.release().ptr())
    {}

    // Without a thread that has the interpreter, nobody lets go of it.
    ~Callback()
    {
        queue().push([function = m_Function] { Py_DECREF(function); });
    }

    Callback(const Callback&) = delete;
    Callback& operator=(const Callback&) = delete;

    // With the interpreter's lock. What it raises is printed.
    void operator()(const Picked& picked) const
    {
        const py::object function = py::reinterpret_borrow<py::object>(m_Function);
        try {
            function(picked);
        } catch (py::error_already_set& error) {
            error.discard_as_unraisable(function);
        }
    }

private:
    PyObject* m_Function;
};

void work()
{
    for (;;) {
        std::function<void()> next;
        {
            const GilRelease released;
            next = queue().pop();
        }
        if (!next)
            return;
        next();
    }
}

void startWork()
{
    // Set first: to import and to start a thread let another one of Python's go on, which may come here.
    if (std::exchange(queue().isStarted, true))
        return;
    py::object thread = py::module_::import("threading")
                            .attr("Thread")(py::arg("target") = py::cpp_function(work), py::arg("name") = "vireo",
                                py::arg("daemon") = true);
    thread.attr("start")();
    queue().thread = thread.release().ptr();
}

py::dict fieldsOf(const Picked& picked)
{
    py::dict fields;
    for (const Picked::Field& field : picked.fields)
        fields[py::str(field.name)] = field.value;
    return fields;
}

py::tuple tupleOf(const Vector3d& vector)
{
    return py::make_tuple(vector[0], vector[1], vector[2]);
}

py::object normalOf(const Picked& picked)
{
    return picked.normal ? py::object(tupleOf(*picked.normal)) : py::object(py::none());
}

py::object colourOf(const Picked& picked)
{
    if (!picked.colour)
        return py::none();
    const RGBA8& colour = *picked.colour;
    return py::make_tuple(colour[0], colour[1], colour[2], colour[3]);
}

} // namespace

void setPickCallback(const Scene& scene, const py::object& callback)
{
    if (!callback.is_none() && !PyCallable_Check(callback.ptr()))
        throw py::type_error("callback must be a function that takes a Picked, or None");
    std::function<void(const Picked&)> call;
    if (!callback.is_none() && !isShowOff()) {
        startWork();
        call = [shared = std::make_shared<Callback>(callback)](const Picked& picked) { (*shared)(picked); };
    }
    const GilRelease released;
    scene.onPick(std::move(call), [](std::function<void()> calling) { queue().push(std::move(calling)); });
}

void addPicked(py::module_& module)
{
    py::class_<Picked>(
        module, "Picked", madeByCalls(), "What a person clicked in a scene, in the terms in which it was sent.")
        .def_readonly("path", &Picked::path, "The item's.")
        .def_readonly("index", &Picked::index,
            "The point, vertex, arrow or box, counted from 0 as it was sent; of a surface or a line the nearest one.")
        .def_readonly("element", &Picked::element, "The face of a surface, or the line of lines and segments.")
        .def_property_readonly(
            "position", [](const Picked& picked) { return tupleOf(picked.position); },
            "The coordinates (x, y, z) of that point as they were sent.")
        .def_property_readonly(
            "place", [](const Picked& picked) { return tupleOf(picked.place); },
            "The place (x, y, z) in the scene that was clicked.")
        .def_property_readonly("colour", &colourOf, "(red, green, blue, opacity), if colours were sent, or None.")
        .def_property_readonly("normal", &normalOf, "(x, y, z), if normals were sent, or None.")
        .def_property_readonly("fields", &fieldsOf, "The numbers that were sent under a name.")
        .def("__repr__", [](const Picked& picked) {
            return "<picked " + py::cast<std::string>(py::repr(py::str(picked.path))) + ", " +
                   std::to_string(picked.index) + ">";
        });
}

void stopPickCallbacks()
{
    if (!queue().isStarted || getpid() != queue().process)
        return;
    queue().close();
    if (const auto thread = py::reinterpret_steal<py::object>(std::exchange(queue().thread, nullptr)))
        thread.attr("join")();
}

} // namespace tavo::python
