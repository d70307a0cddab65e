#pragma once

#include <QProcess>
#include <QStringList>
#include <stdexcept>

namespace vireo_bench {

// Runs a program to its end, and gives what it has written to its standard output. Throws std::runtime_error unless it
// ends well.
inline QByteArray outputOf(const QString& file, const QStringList& arguments = {})
{
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(file, arguments);
    process.waitForFinished(-1);
    if (process.error() != QProcess::UnknownError || process.exitCode() != 0)
        throw std::runtime_error(file.toStdString() + " " + arguments.join(" ").toStdString() + " failed");
    return process.readAllStandardOutput();
}

} // namespace vireo_bench
