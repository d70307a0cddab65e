#include "apps/vireo-view/Viewer.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <iostream>
#include <iterator>
#include <new>
#include <sstream>
#include <utility>

#include "apps/vireo-view/DicomHeader.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/LoadingProgress.h"
#include "apps/vireo-view/pictureName.h"
#include "apps/vireo-view/showImage.h"
#include "apps/vireo-view/showPlot.h"
#include "apps/vireo-view/showScene.h"
#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugSection.h"
#include "tavo/base/debug/DebugWindow.h"
#include "tavo/base/files/saveFile.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLEventDisplayerWidget.h"
#include "vireo/displayers/GLGraphDisplayer.h"
#include "vireo/show/show.h"

namespace vireo_view {

namespace {

namespace fs = std::filesystem;

// Sizes of GLEventDisplayerWidget.
constexpr unsigned int SIZE_IN_WINDOW = 9;
constexpr unsigned int SIZE_IN_PICTURES = 10;
constexpr QSize WINDOW_SIZE(800, 900);

// Of the scene with all points and surfaces.
const std::string NAME_TOGETHER = "together";
// And of the stack with all images.
const std::string NAME_OF_STACK = "images together";

struct Sender
{
    void operator()(SceneExhibit& scene) const { showScene(std::move(scene), viewName); }

    void operator()(VolumeExhibit& exhibit) const
    {
        ShownVolume volume = exhibit.isSliced ? ShownVolume(std::move(exhibit), viewName, layers)
                                              : ShownVolume(std::move(exhibit), viewName);
        if (volume.getNumTimes() == 1 || !sliders)
            return;
        sliders->emplace_back(std::move(volume));
        sliders->back().show();
    }

    void operator()(const PathExhibit& path) const
    {
        const tavo::RGBA8 yellow(255, 220, 60, 255);
        tavo::debugOutputGraphs(path.name, path.pieces, std::vector<tavo::RGBA8>(path.pieces.size(), yellow));
    }

    void operator()(PlotExhibit& plot) const { showPlot(std::move(plot)); }

    void operator()(ImageExhibit& image) const
    {
        if (viewName == NAME_OF_STACK)
            addToStack(std::move(image), viewName, namesInStack);
        else
            showImage(std::move(image), viewName);
    }

    const std::string& viewName;
    std::list<TimeSlider>* sliders; // null: pictures show the first time
    const LayersOnSlices& layers;
    std::vector<std::string>& namesInStack;
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

bool isVolumeOrScene(const Exhibit& exhibit)
{
    return std::holds_alternative<SceneExhibit>(exhibit) || std::holds_alternative<VolumeExhibit>(exhibit);
}

const std::vector<std::string>& remarksOf(const Exhibit& exhibit)
{
    static const std::vector<std::string> NONE;
    return std::visit(
        [](const auto& shown) -> const std::vector<std::string>& {
            if constexpr (requires { shown.remarks; })
                return shown.remarks;
            else
                return NONE;
        },
        exhibit);
}

// Curves are shown behind all that they tell of.
void moveCurves(std::vector<Exhibit>& from, std::vector<Exhibit>& to)
{
    const auto curves = std::stable_partition(from.begin(), from.end(), isVolumeOrScene);
    std::move(curves, from.end(), std::back_inserter(to));
    from.erase(curves, from.end());
}

void slice(std::vector<Exhibit>& exhibits)
{
    for (Exhibit& exhibit : exhibits)
        if (auto* const volume = std::get_if<VolumeExhibit>(&exhibit))
            volume->isSliced = true;
}

// Before the volumes that they are of.
void addSlices(std::vector<Exhibit>& exhibits)
{
    for (std::size_t i = 0; i < exhibits.size(); ++i)
        if (const auto* const volume = std::get_if<VolumeExhibit>(&exhibits[i])) {
            VolumeExhibit sliced{
                volume->name.substr(0, volume->name.rfind(" - ")) + " in slices", volume->volume, {}, true};
            exhibits.insert(exhibits.begin() + static_cast<std::ptrdiff_t>(i++), std::move(sliced));
        }
}

fs::path pathOf(const QString& name)
{
    return name.toStdU16String();
}

// The directory and those above it, the innermost first.
QStringList missingDirectories(const QString& directory)
{
    QStringList missing;
    for (QString path = QDir::cleanPath(QDir().absoluteFilePath(directory));
         !QFileInfo::exists(path) && !QDir(path).isRoot(); path = QFileInfo(path).path()) // there may be no such drive
        missing.append(path);
    return missing;
}

void removeEmpty(const QStringList& directories)
{
    for (const QString& directory : directories)
        QDir().rmdir(directory); // not if there is anything in it
}

// What follows that mark in the lines that have been reported with it since the log had that size.
std::vector<std::string> linesSince(std::size_t size, const std::string& mark)
{
    const std::string text = tavo::debugOutput.getText();
    std::istringstream lines(text.size() < size ? text : text.substr(size)); // shorter where its beginning was dropped
    std::vector<std::string> found;
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(mark))
            found.push_back(line.substr(mark.size()));
    return found;
}

// In the first such line; empty if there is none.
std::string firstLineSince(std::size_t size, const std::string& mark)
{
    const std::vector<std::string> lines = linesSince(size, mark);
    return lines.empty() ? std::string() : lines.front();
}

// Whether the front door says that it shows this, only not as it was sent.
bool isShownAnyhow(const std::string& line)
{
    const std::size_t end = std::min(line.rfind("; "), line.size());
    return line.find(" drawn ", end) != std::string::npos;
}

} // namespace

Viewer::Viewer(const Options& options)
    : m_Options(options)
{
    if (m_Options.areTogether)
        m_Names = {NAME_TOGETHER, NAME_OF_STACK};
}

int Viewer::run()
{
    const QStringList newDirectories = hasPictures() ? missingDirectories(m_Options.picturesDirectory) : QStringList();
    if (hasPictures() && !QDir().mkpath(m_Options.picturesDirectory)) {
        fail(m_Options.picturesDirectory.toStdString() + ": the directory cannot be made");
        removeEmpty(newDirectories);
        return EXIT_STATUS_FAILED;
    }
    if (hasPictures())
        tavo::debugOutput.requireWindow(); // which keeps what is reported from the standard error stream
    m_SizeOfLog = tavo::debugOutput.getText().size();
    showFiles();
    if (hasPictures()) {
        savePictures();
        removeEmpty(newDirectories);
    } else if (tavo::debugOutput.getWindow() && !wasWindowClosed()) {
        serve();
    }
    return m_ExitStatus;
}

bool Viewer::wasWindowClosed() const
{
    const tavo::DebugWindow* const window = tavo::debugOutput.getWindow();
    return !hasPictures() && window && !window->isVisible();
}

void Viewer::serve()
{
    constexpr int POLL_MILLISECONDS = 200;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [this, &timer] {
        pollFollowed();
        const bool hasMore =
            std::any_of(m_Followed.begin(), m_Followed.end(), [](const FollowedPlot& plot) { return plot.hasMore(); });
        timer.setInterval(hasMore ? 0 : POLL_MILLISECONDS);
    });
    if (!m_Followed.empty())
        timer.start(0);
    QApplication::exec();
}

void Viewer::showFiles()
{
    const std::vector<InputFile> files = findFiles();
    loadLayers();
    std::vector<Exhibit> curvesOfExamples;
    for (const InputFile& file : files) {
        if (wasWindowClosed())
            return;
        if (isFollowed(file))
            continue;
        std::vector<Exhibit> exhibits = loadFile(file);
        if (m_Options.areSliced)
            slice(exhibits);
        if (isShowingExamples()) {
            addSlices(exhibits);
            moveCurves(exhibits, curvesOfExamples);
        }
        showAll(exhibits);
    }
    if (!wasWindowClosed())
        showAll(curvesOfExamples);
}

std::vector<InputFile> Viewer::findFiles()
{
    std::vector<InputFile> files;
    for (const QString& name : m_Options.files) {
        const fs::path path = pathOf(name);
        const bool isNext = !m_Options.load.raw && !files.empty() && isDicom(path) && isDicom(files.back().path);
        if (isNext)
            files.back().slices.push_back(path);
        else
            files.push_back({path, m_Options.load.up});
    }
    if (!isShowingExamples())
        return files;
    m_Options.load.withCurves = true;
    for (const ExampleFile& example : exampleFiles()) {
        try {
            files.push_back(findExample(example, pathOf(m_Options.dataDirectory)));
            if (const fs::path labels = findLabelsOfExample(files.back().path); !labels.empty())
                m_Options.labels = QString::fromStdU16String(labels.u16string());
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
    options.slices = file.slices;
    try {
        LoadingProgress progress(
            hasPictures() ? LoadingProgress::Way::LINES : LoadingProgress::Way::WINDOW, printableName(file.path));
        const auto tell = [&progress](double part) { return progress.update(part); };
        return loadExhibits(file.path, name, options, tell);
    } catch (const NoSuchColumn& error) {
        fail(error.what(), EXIT_STATUS_USAGE);
        return {};
    } catch (const InputError& error) {
        if (!wasWindowClosed())
            fail(error.what());
        return {};
    }
}

void Viewer::loadLayers()
{
    m_Layers.overlay = loadLayer(m_Options.overlay);
    m_Layers.labels = loadLayer(m_Options.labels);
    try {
        if (m_Layers.labels)
            m_Layers.table = readLabelTable(pathOf(m_Options.labels));
    } catch (const InputError& error) {
        fail(error.what());
    }
}

// Nothing if there is no such file, or that has failed.
std::optional<SentVolume> Viewer::loadLayer(const QString& name)
{
    if (name.isEmpty())
        return {};
    std::vector<Exhibit> exhibits = loadFile({pathOf(name), m_Options.load.up});
    for (Exhibit& exhibit : exhibits)
        if (auto* const shown = std::get_if<VolumeExhibit>(&exhibit)) {
            for (const std::string& remark : shown->remarks)
                tell(remark);
            return sentVolumeOf(samplesOf(shown->volume.times.front()), shown->volume);
        }
    if (!exhibits.empty())
        fail(printableName(pathOf(name)) + ": is no volume");
    return {};
}

void Viewer::showAll(std::vector<Exhibit>& exhibits)
{
    for (Exhibit& exhibit : exhibits) {
        try {
            show(exhibit);
        } catch (const std::bad_alloc&) {
            fail("there is not enough memory to show everything");
        }
    }
}

void Viewer::show(Exhibit& exhibit)
{
    const std::string name = vireo_view::nameOf(exhibit);
    const bool isScene = isVolumeOrScene(exhibit);
    const bool isImage = std::holds_alternative<ImageExhibit>(exhibit);
    const auto* const volume = std::get_if<VolumeExhibit>(&exhibit);
    const bool isSliced = volume && volume->isSliced;
    const std::string nameTogether = isScene ? NAME_TOGETHER : NAME_OF_STACK;
    const std::string viewName = (isScene || isImage) && !isSliced && m_Options.areTogether ? nameTogether : name;
    for (const std::string& remark : remarksOf(exhibit))
        tell(remark);
    const bool isView = isScene || isImage || std::holds_alternative<PlotExhibit>(exhibit);
    std::visit(Sender{viewName, hasPictures() ? nullptr : &m_Sliders, m_Layers, m_NamesInStack}, exhibit);
    const bool isRefused = handOnWarnings();
    if (isView) {
        const bool isNew = std::none_of(m_Shown.begin(), m_Shown.end(),
            [&](const Shown& shown) { return !shown.section && shown.name == viewName; });
        if (isNew)
            m_Shown.push_back({viewName, nullptr, isRefused});
        return openWindow();
    }
    tavo::DebugWindow* const window = tavo::debugOutput.getWindow();
    if (!window || window->getSections().empty())
        return;
    if (hasPictures())
        window->resize(windowSize());
    tavo::DebugSection* const section = window->getSections().back();
    setViewSize(*section, hasPictures() ? SIZE_IN_PICTURES : SIZE_IN_WINDOW);
    m_Shown.push_back({name, section, isRefused});
}

void Viewer::openWindow()
{
    if (!hasPictures() && !tavo::openWindow())
        fail("plots, scenes and images cannot be shown without a display; --pictures saves them");
}

// Whether the file's plot grows with it from now on.
bool Viewer::isFollowed(const InputFile& file)
{
    try {
        if (!m_Options.isFollowing || !isPlotted(file.path, m_Options.load))
            return false;
        m_Followed.emplace_back(file.path, nameOf(file), m_Options.load.columns);
        if (!poll(m_Followed.back()))
            m_Followed.pop_back();
        else
            openWindow();
    } catch (const InputError& error) {
        fail(error.what());
    }
    return true;
}

void Viewer::pollFollowed()
{
    m_Followed.remove_if([this](FollowedPlot& plot) { return !poll(plot); });
}

// False if the file cannot be followed any more.
bool Viewer::poll(FollowedPlot& plot)
{
    try {
        const FollowedPlot::News news = plot.poll();
        for (const std::string& line : news.lines)
            tell(line);
        if (news.isAnew)
            tavo::plot(plot.getName()).clear();
        if (news.rows)
            appendToPlot(*news.rows);
        return true;
    } catch (const NoSuchColumn& error) {
        fail(error.what(), EXIT_STATUS_USAGE);
    } catch (const InputError& error) {
        fail(error.what());
    } catch (const std::bad_alloc&) {
        fail("there is not enough memory to show everything");
    }
    return false;
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
    tavo::DebugWindow& window = tavo::debugOutput.requireWindow();
    if (!window.getSections().empty())
        waitForWindowSize(window);
    const QDir directory(m_Options.picturesDirectory);
    unsigned int number = 1;
    for (const Shown& shown : m_Shown)
        savePicture(shown, directory.filePath(pictureName(number++, shown.name)));
    // Or the front door would save it all again when the program ends, under other names.
    tavo::clear();
    delete &window;
}

void Viewer::savePicture(const Shown& shown, const QString& file)
{
    const std::size_t before = tavo::debugOutput.getText().size();
    std::string reason;
    if (shown.section) {
        const QImage picture = shown.section->getPicture();
        if (const std::string error = firstLineSince(before, "error: "); !error.empty()) {
            fail(shown.name + ": " + error);
            if (picture.isNull())
                return;
        }
        reason = tavo::savePicture(file, picture);
    } else if (!tavo::savePicture(shown.name, file.toLocal8Bit().toStdString())) {
        const std::string line = firstLineSince(before, "warning: tavo::savePicture(");
        const std::string endOfCall = "): ";
        reason = line.substr(std::min(line.find(endOfCall), line.size() - endOfCall.size()) + endOfCall.size());
    }
    handOnWarnings();
    const bool isSaid = shown.isRefused && reason.starts_with("there is no view ");
    if (!reason.empty() && !isSaid)
        fail(file.toStdString() + ": the picture cannot be saved: " + reason);
}

// With pictures nobody sees the log: says what the front door has said there since the last call. Returns whether it
// refused anything.
bool Viewer::handOnWarnings()
{
    if (!hasPictures())
        return false;
    bool isRefused = false;
    const std::size_t before = std::exchange(m_SizeOfLog, tavo::debugOutput.getText().size());
    for (const std::string& line : linesSince(before, "warning: tavo: ")) {
        std::cerr << "vireo-view: " << line << '\n';
        isRefused = isRefused || !isShownAnyhow(line);
    }
    if (isRefused)
        m_ExitStatus = std::max<int>(m_ExitStatus, EXIT_STATUS_FAILED);
    return isRefused;
}

void Viewer::tell(const std::string& text)
{
    const std::string line = "vireo-view: " + text + "\n";
    // While there is a window, the debug output writes only to that.
    if (tavo::debugOutput.getWindow())
        std::cerr << line;
    tavo::debugOutput << line;
}

void Viewer::fail(const std::string& reason, int exitStatus)
{
    tell(reason);
    m_ExitStatus = std::max(m_ExitStatus, exitStatus);
}

} // namespace vireo_view
