#pragma once

#include <QStringList>
#include <string>

namespace tavo {

// Why windows are refused where nobody could see them.
inline constexpr const char* NO_DISPLAY = "there is no display. VIREO_SHOW=pictures:FOLDER saves pictures instead";

struct DisplayPlatforms
{
    QStringList names;     // for Qt, which tries one after the other; none if there is nothing to try
    std::string whyNoneIs; // for a person, if no window can be opened
};

// Whether the QApplication has windows that can be seen. For its thread.
bool hasDisplay();

// Where windows can be opened, of the displays that answer and what QT_QPA_PLATFORM asks for. Looked for once.
const DisplayPlatforms& displayPlatforms();

} // namespace tavo
