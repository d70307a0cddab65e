#include "apps/vireo-view/pictureName.h"

#include <QRegularExpression>

namespace vireo_view {

QString pictureName(unsigned int number, const std::string& sectionName)
{
    constexpr int LONGEST = 80;
    QString name = QString::fromStdString(sectionName);
    name.remove(QRegularExpression(R"(\([^)]*\))"));
    name.replace(QRegularExpression("[^\\w.]+", QRegularExpression::UseUnicodePropertiesOption), "-");
    name.truncate(LONGEST);
    name.remove(QRegularExpression("^[-.]+|[-.]+$"));
    return QString("%1-%2.png").arg(number, 2, 10, QChar('0')).arg(name);
}

} // namespace vireo_view
