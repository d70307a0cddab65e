#include <QCommandLineParser>
#include <QCoreApplication>
#include <cstdio>
#include <string>

#include "vireo/machine/MachineReport.h"

namespace {

constexpr int EXIT_STATUS_FAILED = 1;
constexpr int EXIT_STATUS_USAGE = 2;

const QString DESCRIPTION = QStringLiteral(
    "Tells what this machine can do with vireo, what it cannot, and what to do about that.\n"
    "\n"
    "OpenGL contexts that nobody sees are made in every way that the system has, and everything is tried in the first "
    "of\n"
    "them: programs, targets to draw into, textures, buffers. Each line has a subject, \"yes\" or \"NO\", what was "
    "found,\n"
    "and behind \"To do:\" what helps. The last section says what each class of the library would do here.\n"
    "\n"
    "No display is needed, and nothing of the system is changed. A report of a bug begins with this text.\n"
    "\n"
    "The exit status is 0, or 1 if there is no OpenGL context at all or the report cannot be written, or 2 if the "
    "command\n"
    "line is wrong.");

bool write(const std::string& text)
{
    if (std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0)
        return true;
    std::perror("vireo-info: standard output");
    return false;
}

int misuse(const QString& reason)
{
    std::fputs(("vireo-info: " + reason + " (see vireo-info --help)\n").toLocal8Bit().constData(), stderr);
    return EXIT_STATUS_USAGE;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QCommandLineOption json("json", "Write the report as JSON, for programs.");
    const QCommandLineOption help({"h", "help"}, "Show this help.");
    const QCommandLineOption version({"v", "version"}, "Show the version.");
    QCommandLineParser parser;
    parser.setApplicationDescription(DESCRIPTION);
    parser.addOptions({json, help, version});

    if (!parser.parse(QCoreApplication::arguments()))
        return misuse(parser.errorText());
    if (parser.isSet(help))
        return write(parser.helpText().toStdString()) ? 0 : EXIT_STATUS_FAILED;
    if (parser.isSet(version))
        return write("vireo-info " VIREO_VERSION "\n") ? 0 : EXIT_STATUS_FAILED;
    if (!parser.positionalArguments().isEmpty())
        return misuse("it takes no files");

    const tavo::MachineReport report = tavo::MachineReport::ofMachine();
    const bool isWritten = write(parser.isSet(json) ? report.getJson() : report.getText());
    return isWritten && report.hasOpenGL() ? 0 : EXIT_STATUS_FAILED;
}
