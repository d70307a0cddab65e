#pragma once

#include <QProcessEnvironment>
#include <QStringList>
#include <string>

namespace tavo {

// What a program left when it ended.
struct Outcome
{
    int exitStatus = -1; // -1 if the program crashed or did not end
    std::string output;
    std::string errors;
};

// Runs a program until it ends, or for two minutes. A QCoreApplication must exist.
Outcome runProgram(const QString& program, const QStringList& arguments, const QString& workingDirectory,
    const QProcessEnvironment& environment);

} // namespace tavo
