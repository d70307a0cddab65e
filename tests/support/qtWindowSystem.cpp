#include "tests/support/qtWindowSystem.h"

#include <QByteArray>

namespace tavo {

bool chooseQtWindowSystem()
{
    const QByteArray windowSystem = qgetenv("VIREO_TEST_WINSYS");
    if (windowSystem == "wgl")
        return true;
    if (!windowSystem.isEmpty()) {
        qputenv("QT_QPA_PLATFORM", "xcb");
        qputenv("QT_XCB_GL_INTEGRATION", "xcb_" + windowSystem);
    }
    return qEnvironmentVariableIsSet("DISPLAY");
}

} // namespace tavo
