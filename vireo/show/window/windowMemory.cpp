#include "vireo/show/window/windowMemory.h"

#include <QSettings>
#include <QUrl>

#include "vireo/show/delivery/Mode.h"
#include "vireo/show/window/programName.h"

namespace tavo::windowMemory {

namespace {

bool remembers()
{
    return showMode() == Mode::Window;
}

QString keyOf(Thing thing)
{
    static constexpr const char* NAMES[] = {"geometry", "layout", "theme", "scenePanel", "imagePanel", "slicesPanel"};
    const QString program = QString::fromLatin1(QUrl::toPercentEncoding(programName())); // a key's "/" makes groups
    return (program.isEmpty() ? "program" : program) + "/" + NAMES[static_cast<int>(thing)];
}

// Open for one access: what is written is then in the file, however the program ends.
class Settings : public QSettings
{
public:
    Settings()
        : QSettings(IniFormat, UserScope, "vireo", "vireo-show")
    {}
};

} // namespace

QByteArray recall(Thing thing)
{
    return remembers() ? Settings().value(keyOf(thing)).toByteArray() : QByteArray();
}

void remember(Thing thing, const QByteArray& value)
{
    if (remembers() && recall(thing) != value)
        Settings().setValue(keyOf(thing), value);
}

void forget(Thing thing)
{
    if (remembers())
        Settings().remove(keyOf(thing));
}

} // namespace tavo::windowMemory
