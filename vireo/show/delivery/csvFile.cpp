#include "vireo/show/delivery/csvFile.h"

#include <QFileInfo>

#include "tavo/base/files/saveFile.h"

namespace tavo {

QByteArray quotedCell(const std::string& text)
{
    QByteArray cell = QByteArray::fromStdString(text);
    return '"' + cell.replace('"', "\"\"") + '"';
}

std::string saveCsv(const QString& file, const DataFormats& formats, const std::function<QByteArray()>& nextPiece)
{
    if (QFileInfo(file).suffix().toLower() != "csv")
        return whyNoneIs(formats);
    return saveFile(file, nextPiece);
}

} // namespace tavo
