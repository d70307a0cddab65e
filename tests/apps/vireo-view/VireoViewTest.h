#pragma once

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <string>
#include <vector>

#include "tests/apps/vireo-view/FilesTest.h"
#include "tests/support/Program.h"

namespace vireo_view {

// Runs the program on files of the test's own.
class VireoViewTest : public FilesTest
{
protected:
    VireoViewTest() { m_Environment.insert("XDG_RUNTIME_DIR", QString::fromStdString(directory().string())); }

    tavo::Outcome run(const QStringList& arguments)
    {
        return tavo::runProgram(VIREO_VIEW, arguments, QString::fromStdString(directory().string()), m_Environment);
    }

    std::vector<std::string> pictures() const
    {
        std::vector<std::string> names;
        for (const QString& name : picturesDirectory().entryList(QDir::Files, QDir::Name))
            names.push_back(name.toStdString());
        return names;
    }

    QImage picture(const char* name) const { return QImage(picturesDirectory().filePath(name)); }

    QProcessEnvironment m_Environment = QProcessEnvironment::systemEnvironment();

private:
    QDir picturesDirectory() const { return QDir(QString::fromStdString((directory() / "pictures").string())); }

    char m_Name[5] = "test";
    char* m_Arguments[2] = {m_Name, nullptr};
    int m_NumArguments = 1;
    QGuiApplication m_Application{m_NumArguments, m_Arguments};
};

} // namespace vireo_view
