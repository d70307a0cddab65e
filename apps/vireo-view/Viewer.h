#pragma once

#include <set>
#include <string>
#include <vector>

#include "apps/vireo-view/CommandLine.h"
#include "apps/vireo-view/Exhibits.h"

namespace vireo_view {

// The program: loads what is asked for, and shows it in the debug window or saves pictures of it.
class Viewer
{
public:
    explicit Viewer(const Options& options);

    // Needs a QApplication and the registered displayers. Returns the program's exit status, with pictures at once,
    // else when the person has closed the window. What cannot be shown is reported in a line on the standard error
    // stream and in the debug window's log; the rest is shown.
    int run();

private:
    bool hasPictures() const { return !m_Options.picturesDirectory.isEmpty(); }
    bool isShowingExamples() const { return m_Options.files.isEmpty(); }
    std::vector<InputFile> findFiles();
    void showFiles();
    std::vector<Exhibit> loadFile(const InputFile& file);
    void showAll(std::vector<Exhibit>& exhibits);
    std::string nameOf(const InputFile& file);
    void savePictures();
    void fail(const std::string& reason);

    Options m_Options;
    std::set<std::string> m_Names;
    bool m_HasFailed = false;
};

} // namespace vireo_view
