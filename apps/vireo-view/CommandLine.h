#pragma once

#include <QString>
#include <QStringList>
#include <variant>
#include <vector>

#include "apps/vireo-view/ExampleData.h"
#include "apps/vireo-view/Exhibits.h"

namespace vireo_view {

// What the command line asks for.
struct Options
{
    QStringList files;
    QString dataDirectory;     // where the example data are looked for
    QString picturesDirectory; // empty: a window is shown instead
    bool isFollowing = false;  // files that grow
    bool areSliced = false;    // volumes
    QString overlay;           // files of what lies on slices; empty if there is none
    QString labels;
    bool areTogether = false; // points, surfaces and volumes of all files, in one scene
    LoadOptions load;
};

// What to say instead of doing anything.
struct Answer
{
    QString text;
    int exitStatus;
};

constexpr int EXIT_STATUS_FAILED = 1;
constexpr int EXIT_STATUS_USAGE = 2;

// Parses the arguments, the first of which is the program's name. Works before there is a QCoreApplication, too.
std::variant<Options, Answer> parseCommandLine(const QStringList& arguments);

} // namespace vireo_view
