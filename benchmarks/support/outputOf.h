#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QStringList>
#include <stdexcept>
#include <vector>

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

// Runs this program once more, to measure one of its contestants at one size, and gives the numbers that it prints.
inline std::vector<double> numbersOf(const char* who, qulonglong size)
{
    const QByteArray output = outputOf(QCoreApplication::applicationFilePath(), {who, QString::number(size)});
    std::vector<double> numbers;
    for (const QByteArray& word : output.simplified().split(' '))
        numbers.push_back(word.toDouble());
    return numbers;
}

} // namespace vireo_bench
