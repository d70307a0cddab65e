#include "vireo/show/delivery/displayPlatforms.h"

#include <QGuiApplication>
#include <algorithm>
#include <vector>

#include "tavo/base/text/printable.h"
#include "vireo/show/delivery/process.h"

namespace tavo {

namespace {

std::string pluginOf(const QString& platform)
{
    return platform.section(':', 0, 0).toStdString();
}

DisplayPlatforms findDisplayPlatforms()
{
    constexpr std::size_t LONGEST = 100;
    const std::vector<std::string> displays = openDisplays();
    const QString asked = qEnvironmentVariable("QT_QPA_PLATFORM");
    QStringList wanted = asked.split(';', Qt::SkipEmptyParts);
    if (wanted.isEmpty())
        for (const std::string& display : displays)
            wanted += QString::fromStdString(display);
    QStringList names;
    for (const QString& platform : wanted)
        if (std::find(displays.begin(), displays.end(), pluginOf(platform)) != displays.end())
            names += platform;
    if (displays.empty() || asked.startsWith("offscreen") || asked.startsWith("minimal"))
        return {{}, NO_DISPLAY};
    if (names.isEmpty())
        return {
            {}, "QT_QPA_PLATFORM is \"" + printable(asked.toStdString(), LONGEST) + "\", which opens no window here"};
    return {names, "Qt has no plugin that starts for \"" + printable(names.join(';').toStdString(), LONGEST) +
                       "\". VIREO_SHOW=pictures:FOLDER saves pictures instead"};
}

} // namespace

bool hasDisplay()
{
    const QString platform = QGuiApplication::platformName();
    return platform != "offscreen" && platform != "minimal";
}

const DisplayPlatforms& displayPlatforms()
{
    static const auto* const platforms = new DisplayPlatforms(findDisplayPlatforms());
    return *platforms;
}

} // namespace tavo
