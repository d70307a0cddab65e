#pragma once

#include <QApplication>
#include <QGLWidget>
#include <cstdio>
#include <string>
#include <tavo/base/debug/DebugOutput.h>
#include <tavo/base/debug/DebugSection.h>
#include <tavo/base/debug/DebugWindow.h>
#include <tavo/base/files/saveFile.h>

// Runs an example that has sent something to the debug window, until that is closed; or, with a file name as the
// program's argument, saves a picture of the first section and ends.
inline int showDebugWindow()
{
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2)
        return QApplication::exec();
    tavo::DebugWindow* const window = tavo::debugOutput.getWindow();
    QApplication::processEvents(); // the window appears
    window->findChild<QGLWidget*>()->setFixedSize(320, 320);
    const QString& file = arguments[1];
    const std::string error = tavo::savePicture(file, window->getSections().front()->getPicture());
    if (!error.empty())
        std::fprintf(stderr, "%s: the picture cannot be saved: %s\n", qPrintable(file), error.c_str());
    return error.empty() ? 0 : 1;
}
