#include "vireo/show/window/programName.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace tavo {

QString programName()
{
    QString name = QCoreApplication::applicationName();
    if (!name.isEmpty() && name != "vireo") // as the QApplication is called that this library makes itself
        return name;
    return QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
}

} // namespace tavo
