#include "vireo/show/window/pictureFile.h"

namespace tavo {

QString pictureFileOf(const std::string& viewName, std::set<QString>& taken)
{
    constexpr int LONGEST = 80;
    QString name = QString::fromStdString(viewName).left(LONGEST);
    for (QChar& c : name)
        if (!c.isLetterOrNumber() && !QString("-_.").contains(c))
            c = '_';
    if (name.isEmpty() || name.startsWith('.'))
        name.prepend('_');
    QString file = name;
    for (int i = 2; !taken.insert(file.toLower()).second; ++i)
        file = name + '-' + QString::number(i);
    return file + ".png";
}

} // namespace tavo
