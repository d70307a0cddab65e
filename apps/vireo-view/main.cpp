#include <QApplication>
#include <cstdio>

#include "apps/vireo-view/CommandLine.h"
#include "apps/vireo-view/Viewer.h"
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
    // Help needs no display. Whatever else is asked for waits until the QApplication has taken its own arguments away.
    const auto early = parseCommandLine(argumentList(argc, argv));
    if (const auto* const answer = std::get_if<Answer>(&early); answer && answer->exitStatus == 0)
        return give(*answer);

    if (const auto* const options = std::get_if<Options>(&early)) {
        directPlots(*options);
        if (!options->picturesDirectory.isEmpty())
            doWithoutDisplay();
    }

    // The displayers go with the QApplication, and so before their classes.
    const DisplayerClasses classes;
    watchQtStart();
    const QApplication application(argc, argv);
    qtHasStarted();
    const auto asked = parseCommandLine(QCoreApplication::arguments());
    if (const auto* const answer = std::get_if<Answer>(&asked))
        return give(*answer);
    return Viewer(std::get<Options>(asked)).run();
}
