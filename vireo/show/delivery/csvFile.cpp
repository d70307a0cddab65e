#include "vireo/show/delivery/csvFile.h"

#include <QFileInfo>

#include "tavo/base/files/saveFile.h"

namespace tavo {

QByteArray quotedCell(const std::string& text)
{
    QByteArray cell = QByteArray::fromStdString(text);
    return '"' + cell.replace('"', "\"\"") + '"';
}

std::string saveCsv(const QString& file, const std::function<QByteArray()>& nextPiece)
{
    if (QFileInfo(file).suffix().toLower() != "csv")
        return "data are comma-separated values: the file's name must end with .csv";
    return saveFile(file, nextPiece);
}

} // namespace tavo
