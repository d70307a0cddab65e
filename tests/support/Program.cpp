#include "tests/support/Program.h"

#include <QProcess>

namespace tavo {

namespace {

// As its text streams wrote them: on Windows each line ends with two characters.
std::string textOf(QByteArray output)
{
    return output.replace("\r\n", "\n").toStdString();
}

} // namespace

Outcome runProgram(const QString& program, const QStringList& arguments, const QString& workingDirectory,
    const QProcessEnvironment& environment)
{
    constexpr int MILLISECONDS = 120000;
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(workingDirectory);
    process.start(program, arguments);
    if (!process.waitForFinished(MILLISECONDS)) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
        textOf(process.readAllStandardOutput()), textOf(process.readAllStandardError())};
}

} // namespace tavo
