#include "python/QtGuard.h"

#include <QCoreApplication>
#include <QThread>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <pybind11/pybind11.h>
#include <string_view>

#include "tavo/base/debug/displayException.h"
#include "vireo/show/delivery/isShowOff.h"

namespace tavo::python {

namespace {

namespace py = pybind11;

// The Qt that this module has, and another one that is loaded.
struct Qts
{
    std::string own;
    std::string other;
};

bool isCoreOfQt(std::string_view file)
{
    constexpr std::string_view BEGIN = "libQt";
    const std::string_view name = file.substr(file.rfind('/') + 1);
    return name.starts_with(BEGIN) && name.substr(BEGIN.size() + 1).starts_with("Core");
}

int lookAtLibrary(dl_phdr_info* library, std::size_t, void* data)
{
    Qts& qts = *static_cast<Qts*>(data);
    const std::string_view file = library->dlpi_name ? library->dlpi_name : "";
    if (file.size() > 6 && isCoreOfQt(file) && file != qts.own)
        qts.other = file;
    return 0;
}

std::string anotherQt()
{
    Qts qts;
    Dl_info own{};
    if (dladdr(reinterpret_cast<const void*>(&qVersion), &own) && own.dli_fname)
        qts.own = own.dli_fname;
    dl_iterate_phdr(lookAtLibrary, &qts);
    return qts.other;
}

// It makes a QApplication as soon as there is a figure.
bool hasQtBackendOfMatplotlib()
{
    const py::dict modules = py::module_::import("sys").attr("modules");
    return modules.contains("matplotlib.backends.backend_qt");
}

bool isOfPackage(const QByteArray& folder)
{
    return folder.contains("/site-packages/") || folder.contains("/dist-packages/");
}

bool savesPicturesOnly()
{
    return qgetenv("VIREO_SHOW").startsWith("pictures:");
}

// Once for each call: pump() is called in a loop.
void sayOnce(const std::string& call, const std::string& why)
{
    static auto* const said = new py::set;
    const py::str line(call + ": " + why);
    if (said->contains(line))
        return;
    said->add(line);
    warning(py::cast<std::string>(line));
}

} // namespace

QtGuard::QtGuard(const std::string& call)
{
    if (isShowOff() || QCoreApplication::instance())
        return;
    if (hasQtBackendOfMatplotlib()) {
        m_AllowsWindow = false;
        m_AllowsPictures = false;
        sayOnce(call,
            "matplotlib's Qt backend is loaded and will make the QApplication: make a figure first, and vireo's "
            "window opens beside it");
        return;
    }
    for (const char* variable : {"QT_PLUGIN_PATH", "QT_QPA_PLATFORM_PLUGIN_PATH"})
        if (isOfPackage(qgetenv(variable)))
            change(variable, {});
    const std::string other = anotherQt();
    if (other.empty())
        return;
    change("QT_QPA_PLATFORM", "offscreen");
    m_AllowsWindow = savesPicturesOnly();
    if (!m_AllowsWindow)
        sayOnce(call, "another Qt is loaded, " + other + ": vireo makes pictures beside it, but opens no window");
}

QtGuard::~QtGuard()
{
    for (const auto& [variable, value] : m_Changed)
        if (value.isNull())
            qunsetenv(variable);
        else
            qputenv(variable, value);
}

void QtGuard::change(const char* variable, const QByteArray& value)
{
    m_Changed.emplace_back(variable, qEnvironmentVariableIsSet(variable) ? qgetenv(variable) : QByteArray());
    if (value.isNull())
        qunsetenv(variable);
    else
        qputenv(variable, value);
}

bool isQtElsewhere()
{
    const QCoreApplication* const application = QCoreApplication::instance();
    return application && application->thread() != QThread::currentThread();
}

} // namespace tavo::python
