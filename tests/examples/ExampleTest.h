#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

#include "tests/support/Picture.h"
#include "tests/support/Program.h"
#include "tests/support/qtWindowSystem.h"

namespace tavo {

// From the bottom up, as pictures read from GL are.
inline Picture toPicture(const QImage& image)
{
    const QImage rgba = image.mirrored().convertToFormat(QImage::Format_RGBA8888);
    Picture picture(static_cast<unsigned int>(rgba.width()), static_cast<unsigned int>(rgba.height()));
    for (unsigned int y = 0; y < picture.height; ++y) {
        const unsigned char* const row = rgba.constScanLine(static_cast<int>(y));
        for (unsigned int x = 0; x < picture.width; ++x)
            picture.at(x, y) = {row[4 * x], row[4 * x + 1], row[4 * x + 2], row[4 * x + 3]};
    }
    return picture;
}

// What a program wrote to its standard error stream, without the debug output of the cache of render textures.
inline std::string complaints(const Outcome& outcome)
{
    std::istringstream lines(outcome.errors);
    std::string text;
    for (std::string line; std::getline(lines, line);)
        if (!line.starts_with("num cached render textures: "))
            text += line + '\n';
    return text;
}

// Runs an example in a window of its own, with Qt's contexts made where VIREO_TEST_WINSYS says.
class ExampleTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!chooseQtWindowSystem())
            GTEST_SKIP() << "there is no X server: DISPLAY is not set";
        m_Environment = QProcessEnvironment::systemEnvironment();
        m_Environment.insert("XDG_RUNTIME_DIR", m_Directory.path());
    }

    Outcome run(const char* example, const QString& pictureFile) const
    {
        return runProgram(QString(VIREO_EXAMPLES) + "/" + example, {pictureFile}, m_Directory.path(), m_Environment);
    }

    // For the example.
    void setEnvironment(const char* name, const char* value) { m_Environment.insert(name, value); }

    QString path(const char* name) const { return m_Directory.filePath(name); }
    QImage picture(const char* name) const { return QImage(path(name)); }

private:
    char m_Name[5] = "test";
    char* m_Arguments[2] = {m_Name, nullptr};
    int m_NumArguments = 1;
    QCoreApplication m_Application{m_NumArguments, m_Arguments};
    // Where the test runs: on Windows that is the drive with the files that the examples were built with.
    QTemporaryDir m_Directory{QDir::currentPath() + "/example-XXXXXX"};
    QProcessEnvironment m_Environment;
};

} // namespace tavo
