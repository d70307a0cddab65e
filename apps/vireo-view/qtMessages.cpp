#include "apps/vireo-view/qtMessages.h"

#include <QString>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>
#include <vector>

#include "apps/vireo-view/CommandLine.h"

namespace vireo_view {

namespace {

QtMessageHandler qtsOwnHandler = nullptr;
bool hasStarted = false;
std::vector<std::pair<QtMsgType, QString>> keptBack;
// What Qt's platform has said first.
QString platformsReason;

[[noreturn]] void endProgram(const QString& fatalMessage)
{
    const bool knowsBetter = !hasStarted && !platformsReason.isEmpty();
    const QString reason = (knowsBetter ? platformsReason : fatalMessage).simplified();
    std::fprintf(
        stderr, "vireo-view: Qt cannot %s: %s\n", hasStarted ? "go on" : "start", reason.toLocal8Bit().constData());
    std::fflush(nullptr);
    std::_Exit(EXIT_STATUS_FAILED); // without destructors, as abort() does: Qt is in the middle of something
}

// What Qt's platforms without a display say of every window; nobody sees those.
bool isOfNoConcern(const QString& message)
{
    return message.startsWith("This plugin does not support");
}

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (isOfNoConcern(message))
        return;
    if (type == QtFatalMsg)
        endProgram(message);
    if (hasStarted) {
        qtsOwnHandler(type, context, message);
        return;
    }
    keptBack.emplace_back(type, message);
    if (platformsReason.isEmpty() && context.category && std::string_view(context.category).starts_with("qt.qpa"))
        platformsReason = message;
}

} // namespace

void watchQtStart()
{
    qtsOwnHandler = qInstallMessageHandler(handleMessage);
}

void qtHasStarted()
{
    hasStarted = true;
    for (const auto& [type, message] : std::exchange(keptBack, {}))
        qtsOwnHandler(type, QMessageLogContext(), message);
}

} // namespace vireo_view
