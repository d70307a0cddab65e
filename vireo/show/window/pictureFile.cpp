#include "vireo/show/window/pictureFile.h"

#include <QFile>
#include <QRegularExpression>

namespace tavo {

namespace {

// In some locales files have no letters but ASCII's.
bool isForFiles(QChar c)
{
    return (c.isLetterOrNumber() || QString("-_.").contains(c)) && QFile::decodeName(QFile::encodeName(c)) == c;
}

// Windows means devices by these, whatever ends they have.
bool isDevice(const QString& name)
{
    static const QRegularExpression devices(
        "^(con|prn|aux|nul|com[0-9]|lpt[0-9])(\\.|$)", QRegularExpression::CaseInsensitiveOption);
    return devices.match(name).hasMatch();
}

} // namespace

QString pictureFileOf(const std::string& viewName, std::set<QString>& taken)
{
    constexpr int LONGEST = 80;
    QString name = QString::fromStdString(viewName).left(LONGEST);
    for (QChar& c : name)
        if (!isForFiles(c))
            c = '_';
    if (name.isEmpty() || name.startsWith('.') || isDevice(name))
        name.prepend('_');
    QString file = name;
    for (int i = 2; !taken.insert(file.toLower()).second; ++i)
        file = name + '-' + QString::number(i);
    return file + ".png";
}

} // namespace tavo
