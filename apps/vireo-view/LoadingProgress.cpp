#include "apps/vireo-view/LoadingProgress.h"

#include <QCoreApplication>
#include <QProgressDialog>
#include <iostream>
#include <utility>

#include "tavo/base/debug/DebugOutput.h"
#include "tavo/base/debug/DebugWindow.h"

namespace vireo_view {

namespace {

constexpr qint64 MILLISECONDS_UNTIL_DIALOG = 500;
constexpr qint64 MILLISECONDS_BETWEEN_UPDATES = 50;
constexpr qint64 MILLISECONDS_BETWEEN_LINES = 2000;

int percent(double part)
{
    return static_cast<int>(100 * part);
}

bool debugWindowWasClosed()
{
    const tavo::DebugWindow* const window = tavo::debugOutput.getWindow();
    return window && !window->isVisible();
}

} // namespace

LoadingProgress::LoadingProgress(Way way, std::string fileName)
    : m_Way(way)
    , m_FileName(std::move(fileName))
    , m_LastUpdate(0)
{
    m_SinceStart.start();
}

LoadingProgress::~LoadingProgress() = default;

bool LoadingProgress::update(double part)
{
    const qint64 interval = m_Way == Way::WINDOW ? MILLISECONDS_BETWEEN_UPDATES : MILLISECONDS_BETWEEN_LINES;
    if (m_SinceStart.elapsed() - m_LastUpdate < interval)
        return true;
    m_LastUpdate = m_SinceStart.elapsed();
    if (m_Way == Way::LINES) {
        writeLine(part);
        return true;
    }
    updateWindow(part);
    return !(m_Dialog && m_Dialog->wasCanceled()) && !debugWindowWasClosed();
}

void LoadingProgress::updateWindow(double part)
{
    if (!m_Dialog && m_SinceStart.elapsed() > MILLISECONDS_UNTIL_DIALOG) {
        const QString text = QCoreApplication::translate("LoadingProgress", "Loading %1");
        const QString cancel = QCoreApplication::translate("LoadingProgress", "Cancel");
        m_Dialog = std::make_unique<QProgressDialog>(text.arg(QString::fromStdString(m_FileName)), cancel, 0, 100);
        m_Dialog->setAutoClose(false);
        m_Dialog->setAutoReset(false);
        m_Dialog->show();
    }
    if (m_Dialog)
        m_Dialog->setValue(percent(part));
    QCoreApplication::processEvents();
}

void LoadingProgress::writeLine(double part)
{
    std::clog << "vireo-view: loading " + m_FileName + ": " + std::to_string(percent(part)) + " %\n";
}

} // namespace vireo_view
