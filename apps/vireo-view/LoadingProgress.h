#pragma once

#include <QElapsedTimer>
#include <memory>
#include <string>

#include "apps/vireo-view/InputBuffer.h"

class QProgressDialog;

namespace vireo_view {

// Tells the person that a file takes long to load: with a window that does not block the others and has a button to
// cancel, or with lines on the standard error stream. Short work shows nothing. The application stays alive meanwhile.
class LoadingProgress
{
public:
    enum class Way
    {
        WINDOW,
        LINES
    };

    LoadingProgress(Way way, std::string fileName);
    ~LoadingProgress();

    // False once the person has cancelled or closed the debug window.
    bool update(double part);

private:
    void updateWindow(double part);
    void writeLine(double part);

    Way m_Way;
    std::string m_FileName;
    QElapsedTimer m_SinceStart;
    qint64 m_LastUpdate;
    std::unique_ptr<QProgressDialog> m_Dialog;
};

} // namespace vireo_view
