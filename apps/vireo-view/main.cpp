#include <QApplication>
#include <QFileInfo>
#include <cstdio>

#include "apps/vireo-view/CommandLine.h"
#include "apps/vireo-view/InputError.h"
#include "apps/vireo-view/Viewer.h"
#include "apps/vireo-view/qtArguments.h"
#include "apps/vireo-view/qtMessages.h"
#include "tavo/base/debug/EventDisplayer.h"
#include "tavo/platform/windowlessContext.h"
#include "vireo/Library.h"
#include "vireo/displayers/GLEventDisplayer.h"
#include "vireo/displayers/GLEventObject.h"
#include "vireo/displayers/GLGraphDisplayer.h"

namespace {

using namespace vireo_view;

int give(const Answer& answer)
{
    std::FILE* const stream = answer.exitStatus == 0 ? stdout : stderr;
    const bool given = std::fputs(answer.text.toLocal8Bit().constData(), stream) >= 0 && std::fflush(stream) == 0;
    if (given || answer.exitStatus != 0)
        return answer.exitStatus;
    std::perror("vireo-view: standard output");
    return EXIT_STATUS_FAILED;
}

QStringList argumentList(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

// Where not one file is there. Those that are followed are waited for.
Answer sayWhatIsMissing(const Options& options)
{
    QString text;
    for (const QString& file : options.files) {
        if (options.isFollowing || QFileInfo::exists(file))
            return {{}, 0};
        text += "vireo-view: ";
        text += InputError(file.toStdU16String(), "no such file").what();
        text += '\n';
    }
    return {text, text.isEmpty() ? 0 : EXIT_STATUS_FAILED};
}

// The classes that the debug output makes displayers of, while there is one of these.
class DisplayerClasses
{
public:
    DisplayerClasses()
    {
        tavo::initVireo();
        tavo::GLEventDisplayer::init(tavo::EventDisplayer::getClass());
        tavo::GLGraphDisplayer::init(tavo::GLEventObject::getClass());
    }
    ~DisplayerClasses()
    {
        tavo::GLGraphDisplayer::shutdown();
        tavo::GLEventDisplayer::shutdown();
        tavo::shutdownVireo();
    }
    DisplayerClasses(const DisplayerClasses&) = delete;
    DisplayerClasses& operator=(const DisplayerClasses&) = delete;
};

// Pictures need no display: without one, Qt draws them where nobody sees it, and EGL makes the contexts.
void doWithoutDisplay()
{
    for (const char* const variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (qEnvironmentVariableIsSet(variable))
            return;
    const tavo::WindowlessContext context = tavo::makeWindowlessContext();
    if (context.renderingContext)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    tavo::destroyWindowlessContext(context);
}

// This program's arguments say where plots go, whatever the environment says of the plots of others.
void directPlots(const Options& options)
{
    constexpr const char* VARIABLE = "VIREO_SHOW";
    if (!options.picturesDirectory.isEmpty())
        qputenv(VARIABLE, "pictures:" + options.picturesDirectory.toLocal8Bit());
    else if (qgetenv(VARIABLE) != "fresh")
        qunsetenv(VARIABLE);
}

} // namespace

int main(int argc, char** argv)
{
    // Neither help nor mistakes need a display.
    const auto asked = parseCommandLine(withoutQtArguments(argumentList(argc, argv)));
    if (const auto* const answer = std::get_if<Answer>(&asked))
        return give(*answer);
    const Options& options = std::get<Options>(asked);
    if (const Answer answer = sayWhatIsMissing(options); answer.exitStatus != 0)
        return give(answer);

    directPlots(options);
    if (!options.picturesDirectory.isEmpty())
        doWithoutDisplay();

    // The displayers go with the QApplication, and so before their classes.
    const DisplayerClasses classes;
    watchQtStart();
    const QApplication application(argc, argv);
    qtHasStarted();
    return Viewer(options).run();
}
