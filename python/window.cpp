#include <QCoreApplication>
#include <QTemporaryDir>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <pybind11/stl/filesystem.h>

#include "python/QtGuard.h"
#include "python/Together.h"
#include "python/handles.h"

namespace tavo::python {

namespace {

using namespace std::chrono_literals;
using Path = std::filesystem::path;

// Returns when the window is closed, or when somebody presses Ctrl+C, which only this thread learns. The window may
// need this thread, too.
void showUntilInterrupted()
{
    const QtGuard guard("vireo.show()");
    if (!guard.allowsWindow())
        return;
    const GilRelease released;
    std::future<void> isClosed = std::async(std::launch::async, [] { show(); });
    bool isInterrupted = false;
    while (isClosed.wait_for(10ms) != std::future_status::ready) {
        if (QCoreApplication::instance() && !isQtElsewhere())
            QCoreApplication::processEvents();
        const py::gil_scoped_acquire gil;
        isInterrupted = isInterrupted || PyErr_CheckSignals() != 0;
        if (isInterrupted)
            closeWindow(); // which may be opening only now
    }
    const py::gil_scoped_acquire gil;
    if (PyErr_Occurred())
        throw py::error_already_set();
}

bool pumpOnce()
{
    const QtGuard guard("vireo.pump()");
    return !guard.allowsWindow() || withoutGil([] { return pump(); });
}

bool openWindowBeside()
{
    const QtGuard guard("vireo.open_window()");
    return guard.allowsWindow() && withoutGil([] { return openWindow(); });
}

// Has something saved that the process can make.
template <typename Save>
bool savePictureOf(const char* call, Save&& save)
{
    const QtGuard guard(call);
    return guard.allowsPictures() && withoutGil(std::forward<Save>(save));
}

void addSaving(py::module_& module)
{
    module.def(
        "save_picture",
        [](const std::string& name, const Path& file, int width, int height) {
            return savePictureOf(
                "vireo.save_picture()", [&] { return savePicture(name, file.string(), width, height); });
        },
        py::arg("name"), py::arg("file"), py::arg("width") = 1000, py::arg("height") = 700,
        "Saves a picture of a view, width x height pixels, as a PNG or whatever the file's name ends with. It needs no "
        "display. False, with a line in the log, if it cannot be saved.");
    module.def(
        "save_pictures",
        [](const Path& folder) {
            return savePictureOf("vireo.save_pictures()", [&] { return savePictures(folder.string()); });
        },
        py::arg("folder"),
        "Saves a picture of every view in a folder, which is made if need be, as the view's name and \".png\".");
    module.def(
        "save_data", [](const std::string& name, const Path& file) { return saveData(name, file.string()); },
        py::arg("name"), py::arg("file"), WithoutGil(),
        "Saves the data of a view as comma-separated values in a \".csv\" file, or the bytes of an image in a \".png\" "
        "file.");
}

void addTogether(py::module_& module)
{
    py::class_<Together>(module, "Together", madeWhole<Together>(),
        "What is sent in its block is shown at once, whatever views it is for:\n\n"
        "    with vireo.Together():\n"
        "        vireo.plot(\"speed\").curve(\"left\", speed)\n"
        "        vireo.plot(\"torque\").curve(\"left\", torque)")
        .def(py::init())
        .def("__enter__", &Together::enter)
        .def("__exit__", [](Together& together, const py::args&) { together.exit(); });
}

} // namespace

py::object pngOf(const std::string& name)
{
    const QTemporaryDir folder;
    const std::string file = folder.filePath("view.png").toStdString();
    if (!savePictureOf("vireo", [&] { return savePicture(name, file); }))
        return py::none();
    std::ifstream stream(file, std::ios::binary);
    return py::bytes(std::string(std::istreambuf_iterator<char>(stream), {}));
}

void addWindow(py::module_& module)
{
    module.def("show", &showUntilInterrupted,
        "Opens the window and returns when it is closed, or raises KeyboardInterrupt at Ctrl+C. Returns at once, with "
        "a line in the log, if there is nothing to show or no display.");
    module.def("pump", &pumpOnce,
        "Serves the window from a loop; returns at once when nothing is due. True until the window is closed.\n\n"
        "    while vireo.pump():\n"
        "        vireo.plot(\"rpm\").append(\"motor\", time.time(), measure())");
    module.def("open_window", &openWindowBeside,
        "Opens the window and returns: it lives beside the prompt, or beside the program. False, with a line in the "
        "log, if there is no display.");
    module.def("close_window", &closeWindow, WithoutGil(),
        "Closes the window. What is sent goes on arriving; the next new view opens it again.");
    module.def(
        "remove", [](const std::string& name) { remove(name); }, py::arg("name"), WithoutGil(),
        "Takes a view away. A later call under its name makes a new one.");
    module.def("clear", &clear, WithoutGil(), "Takes all views away.");
    addSaving(module);
    addTogether(module);
    module.def("_is_qt_elsewhere", &isQtElsewhere);
}

} // namespace tavo::python
