#pragma once

#include <QCoreApplication>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "tests/support/Program.h"

namespace tavo {

// Runs the program, on machines that the environment makes.
class VireoInfoTest : public testing::Test
{
protected:
    Outcome run(const QStringList& arguments = {}) { return runProgram(VIREO_INFO, arguments, ".", m_Environment); }

    // The line of the text on that subject; empty if there is none.
    static std::string lineOn(const std::string& subject, const std::string& text)
    {
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with("  " + subject + "  "))
                return line;
        return "";
    }

    // "yes", "NO" or "", as the line on that subject has it.
    static std::string answerOn(const std::string& subject, const std::string& text)
    {
        std::istringstream words(lineOn(subject, text).substr(0, 2 + subject.size() + 60).substr(2 + subject.size()));
        std::string word;
        words >> word;
        return word == "yes" || word == "NO" ? word : "";
    }

    QProcessEnvironment m_Environment = QProcessEnvironment::systemEnvironment();

private:
    char m_Name[5] = "test";
    char* m_Arguments[2] = {m_Name, nullptr};
    int m_NumArguments = 1;
    QCoreApplication m_Application{m_NumArguments, m_Arguments};
};

} // namespace tavo
