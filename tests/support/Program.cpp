#include "tests/support/Program.h"

#include <QProcess>

namespace vireo_test {

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
        process.readAllStandardOutput().toStdString(), process.readAllStandardError().toStdString()};
}

} // namespace vireo_test
