#include "apps/vireo-view/Viewer.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QImage>
#include <QScreen>
#include <algorithm>
#include <iostream>
#include <iterator>
#include <new>
#include <sstream>

#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/LoadingProgress.h"
#include "apps/vireo-view/VolumeDisplayer.h"
#include "apps/vireo-view/pictureName.h"
#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tavo/base/files/saveFile.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"
#include "vireo/displayers/GLGraphDisplayer.h"
#include "vireo/displayers/GLPointCloudDisplayer.h"

namespace vireo_view {

namespace {

namespace fs = std::filesystem;

// Sizes of GLEventDisplayerWidget.
constexpr unsigned int SIZE_IN_WINDOW = 9;
constexpr unsigned int SIZE_IN_PICTURES = 10;
constexpr QSize WINDOW_SIZE(800, 900);

struct Sender
{
    void operator()(CloudExhibit& cloud) const
    {
        tavo::sendGLEventObject(cloud.name, new tavo::GLPointCloudDisplayer(cloud.points.release()));
    }

    void operator()(VolumeExhibit& volume) const
    {
        tavo::sendGLEventObject(volume.name, new VolumeDisplayer(std::move(volume.volume)));
    }

    template <unsigned int N>
    void operator()(const CurvesExhibit<N>& exhibit) const
    {
        tavo::debugOutputGraphs(exhibit.name, exhibit.curves, exhibit.colours);
    }
};

void setViewSize(tavo::DebugSection& section, unsigned int sizeIndex)
{
    if (auto* const widget = qobject_cast<tavo::GLEventDisplayerWidget*>(section.getDisplayerWidget()))
        widget->setSizeIndex(sizeIndex);
}

QSize windowSize()
{
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen ? WINDOW_SIZE.boundedTo(screen->availableSize()) : WINDOW_SIZE;
}

// The window system may tell late of the size that the window was opened with, and the window take that for new.
void waitForWindowSize(QWidget& window)
{
    constexpr int LONGEST_MILLISECONDS = 1000;
    QApplication::processEvents(QEventLoop::AllEvents, LONGEST_MILLISECONDS); // without a time, not all that are there
    for (QDeadlineTimer deadline(LONGEST_MILLISECONDS); window.size() != windowSize() && !deadline.hasExpired();) {
        window.resize(windowSize());
        QApplication::processEvents(QEventLoop::AllEvents, 10);
    }
}

void show(Exhibit& exhibit, unsigned int sizeIndex)
{
    std::visit(Sender(), exhibit);
    tavo::DebugWindow* const window = tavo::debugOutput.getWindow();
    if (!window || window->getSections().empty())
        return;
    if (window->getSections().size() == 1) {
        window->setWindowTitle("vireo-view");
        window->resize(windowSize());
    }
    setViewSize(*window->getSections().back(), sizeIndex);
}

bool wasWindowClosed()
{
    const tavo::DebugWindow* const window = tavo::debugOutput.getWindow();
    return window && !window->isVisible();
}

bool isVolumeOrCloud(const Exhibit& exhibit)
{
    return std::holds_alternative<CloudExhibit>(exhibit) || std::holds_alternative<VolumeExhibit>(exhibit);
}

// Curves are shown behind all that they tell of.
void moveCurves(std::vector<Exhibit>& from, std::vector<Exhibit>& to)
{
    const auto curves = std::stable_partition(from.begin(), from.end(), isVolumeOrCloud);
    std::move(curves, from.end(), std::back_inserter(to));
    from.erase(curves, from.end());
}

fs::path pathOf(const QString& name)
{
    return name.toStdU16String();
}

// The first error that was reported since the log had that size; empty if there was none.
std::string firstErrorSince(std::size_t size)
{
    const std::string text = tavo::debugOutput.getText();
    std::istringstream lines(text.size() < size ? text : text.substr(size)); // shorter where its beginning was dropped
    const std::string mark = "error: ";
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(mark))
            return line.substr(mark.size());
    return {};
}

} // namespace

Viewer::Viewer(const Options& options)
    : m_Options(options)
{}

int Viewer::run()
{
    if (hasPictures() && !QDir().mkpath(m_Options.picturesDirectory)) {
        fail(m_Options.picturesDirectory.toStdString() + ": the directory cannot be made");
        return EXIT_STATUS_FAILED;
    }
    showFiles();
    if (tavo::debugOutput.getWindow()) {
        if (hasPictures())
            savePictures();
        else if (!wasWindowClosed())
            QApplication::exec();
    }
    return m_HasFailed ? EXIT_STATUS_FAILED : 0;
}

void Viewer::showFiles()
{
    std::vector<Exhibit> curvesOfExamples;
    for (const InputFile& file : findFiles()) {
        if (wasWindowClosed())
            return;
        std::vector<Exhibit> exhibits = loadFile(file);
        if (isShowingExamples())
            moveCurves(exhibits, curvesOfExamples);
        showAll(exhibits);
    }
    if (!wasWindowClosed())
        showAll(curvesOfExamples);
}

std::vector<InputFile> Viewer::findFiles()
{
    std::vector<InputFile> files;
    for (const QString& name : m_Options.files)
        files.push_back({pathOf(name), m_Options.load.up});
    if (!isShowingExamples())
        return files;
    m_Options.load.withCurves = true;
    for (const ExampleFile& example : exampleFiles()) {
        try {
            files.push_back(findExample(example, pathOf(m_Options.dataDirectory)));
        } catch (const InputError& error) {
            fail(error.what());
        }
    }
    return files;
}

// What can be shown of a file; nothing if that has failed.
std::vector<Exhibit> Viewer::loadFile(const InputFile& file)
{
    const std::string name = nameOf(file);
    LoadOptions options = m_Options.load;
    options.up = file.up;
    try {
        LoadingProgress progress(
            hasPictures() ? LoadingProgress::Way::LINES : LoadingProgress::Way::WINDOW, printableName(file.path));
        const auto tell = [&progress](double part) { return progress.update(part); };
        return loadExhibits(file.path, name, options, tell);
    } catch (const InputError& error) {
        if (!wasWindowClosed())
            fail(error.what());
        return {};
    }
}

void Viewer::showAll(std::vector<Exhibit>& exhibits)
{
    for (Exhibit& exhibit : exhibits) {
        try {
            show(exhibit, hasPictures() ? SIZE_IN_PICTURES : SIZE_IN_WINDOW);
        } catch (const std::bad_alloc&) {
            fail("there is not enough memory to show everything");
        }
    }
}

// The file's name alone where that is enough to tell it from the others.
std::string Viewer::nameOf(const InputFile& file)
{
    std::string name = printableName(file.path.filename());
    if (m_Names.contains(name))
        name = printableName(file.path);
    const std::string base = name;
    for (int i = 2; !m_Names.insert(name).second; ++i)
        name = base + " (" + std::to_string(i) + ")";
    return name;
}

void Viewer::savePictures()
{
    tavo::DebugWindow& window = *tavo::debugOutput.getWindow();
    waitForWindowSize(window);
    const QDir directory(m_Options.picturesDirectory);
    unsigned int number = 1;
    for (tavo::DebugSection* const section : window.getSections()) {
        const QString file = directory.filePath(pictureName(number++, section->getName()));
        const std::size_t before = tavo::debugOutput.getText().size();
        const QImage picture = section->getPicture();
        if (const std::string error = firstErrorSince(before); !error.empty()) {
            fail(section->getName() + ": " + error);
            if (picture.isNull())
                continue;
        }
        if (const std::string reason = tavo::savePicture(file, picture); !reason.empty())
            fail(file.toStdString() + ": the picture cannot be saved: " + reason);
    }
}

void Viewer::fail(const std::string& reason)
{
    const std::string line = "vireo-view: " + reason + "\n";
    // While there is a window, the debug output writes only to that.
    if (tavo::debugOutput.getWindow())
        std::cerr << line;
    tavo::debugOutput << line;
    m_HasFailed = true;
}

} // namespace vireo_view
