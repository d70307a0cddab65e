#pragma once

#include <list>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "apps/vireo-view/CommandLine.h"
#include "apps/vireo-view/Exhibits.h"
#include "apps/vireo-view/FollowedPlot.h"
#include "apps/vireo-view/TimeSlider.h"
#include "apps/vireo-view/showSlices.h"

namespace tavo {
class DebugSection;
}

namespace vireo_view {

// The program: loads what is asked for, and shows it in the window or saves pictures of it.
class Viewer
{
public:
    explicit Viewer(const Options& options);

    // Needs a QApplication and the registered displayers. Returns the program's exit status, with pictures at once,
    // else when the person has closed the window. What cannot be shown is reported in a line on the standard error
    // stream and in the window's log; the rest is shown. With pictures that stream has what the front door refuses,
    // too.
    int run();

private:
    // A plot or a scene, or a section of the debug window.
    struct Shown
    {
        std::string name;
        tavo::DebugSection* section; // null for a plot or a scene
        bool isRefused = false;      // the front door has said that it does not show something of it
    };

    bool hasPictures() const { return !m_Options.picturesDirectory.isEmpty(); }
    bool isShowingExamples() const { return m_Options.files.isEmpty(); }
    bool wasWindowClosed() const;
    std::vector<InputFile> findFiles();
    void showFiles();
    std::vector<Exhibit> loadFile(const InputFile& file);
    void loadLayers();
    std::optional<SentVolume> loadLayer(const QString& name);
    void showAll(std::vector<Exhibit>& exhibits);
    void show(Exhibit& exhibit);
    void openWindow();
    bool isFollowed(const InputFile& file);
    void serve();
    void pollFollowed();
    bool poll(FollowedPlot& plot);
    std::string nameOf(const InputFile& file);
    void savePictures();
    void savePicture(const Shown& shown, const QString& file);
    bool handOnWarnings();
    void tell(const std::string& text);
    void fail(const std::string& reason, int exitStatus = EXIT_STATUS_FAILED);

    Options m_Options;
    std::set<std::string> m_Names;
    std::vector<std::string> m_NamesInStack;
    std::vector<Shown> m_Shown;
    LayersOnSlices m_Layers;
    std::list<FollowedPlot> m_Followed;
    std::list<TimeSlider> m_Sliders; // of the volumes with several times
    std::size_t m_SizeOfLog = 0;     // when its warnings were handed on
    int m_ExitStatus = 0;
};

} // namespace vireo_view
