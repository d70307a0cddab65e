#include "apps/vireo-view/qtArguments.h"

#include <algorithm>

namespace vireo_view {

namespace {

// Qt takes them with one dash or two.
QString nameOf(const QString& argument)
{
    return argument.mid(argument.startsWith("--") ? 2 : 1);
}

bool standsAlone(const QString& name)
{
    static const QStringList NAMES = {"reverse", "widgetcount", "nograb", "dograb", "testability"};
    static const QStringList BEGINNINGS = {"style=", "stylesheet=", "qmljsdebugger="};
    return NAMES.contains(name) || std::any_of(BEGINNINGS.begin(), BEGINNINGS.end(),
                                       [&name](const QString& beginning) { return name.startsWith(beginning); });
}

bool hasValue(const QString& name)
{
    static const QStringList NAMES = {"platform", "platformpluginpath", "platformtheme", "plugin", "qwindowgeometry",
        "geometry", "qwindowicon", "icon", "qwindowtitle", "title", "display", "session", "style", "stylesheet"};
    return NAMES.contains(name);
}

} // namespace

QStringList withoutQtArguments(const QStringList& arguments)
{
    QStringList left;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == "--") // what follows are files
            return left + arguments.mid(i);
        const bool isOption = i > 0 && argument.startsWith('-');
        if (isOption && hasValue(nameOf(argument)))
            ++i;
        else if (!isOption || !standsAlone(nameOf(argument)))
            left.append(argument);
    }
    return left;
}

} // namespace vireo_view
