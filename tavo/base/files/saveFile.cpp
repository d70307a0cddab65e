#include "tavo/base/files/saveFile.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageWriter>
#include <QSaveFile>
#include <utility>

namespace tavo {

namespace {

// Whether links lead to links more often than systems follow them.
bool isLinkLoop(const QString& path)
{
    constexpr int MOST_LINKS = 40;
    QFileInfo info(path);
    for (int i = 0; i < MOST_LINKS && info.isSymLink(); ++i)
        info = QFileInfo(info.symLinkTarget());
    return info.isSymLink();
}

// Why nothing can be saved under that name, empty if a regular file or nothing has it. QSaveFile would put a file in
// the place of a device.
std::string obstacleAt(const QString& path)
{
    const QFileInfo info(path);
    if (path.contains(QChar(0)))
        return "is no file's name";
    if (isLinkLoop(path))
        return "is a link that leads nowhere";
    if (info.isDir())
        return "is a directory";
    return info.exists() && !info.isFile() ? "is not a regular file" : "";
}

// A disk that fills up takes a part, and says why it takes no more when the rest is written. Of a buffer it would not
// say.
bool writeAll(QIODevice& device, const QByteArray& contents)
{
    qint64 written = 0;
    while (written < contents.size()) {
        const qint64 count = device.write(contents.constData() + written, contents.size() - written);
        if (count <= 0)
            return false;
        written += count;
    }
    return true;
}

} // namespace

std::string saveFile(const QString& path, const QByteArray& contents)
{
    return saveFile(path, [rest = contents]() mutable { return std::exchange(rest, {}); });
}

std::string saveFile(const QString& path, const std::function<QByteArray()>& nextPiece)
{
    if (const std::string obstacle = obstacleAt(path); !obstacle.empty())
        return obstacle;
    QSaveFile file(path);
    bool isWritten = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    for (QByteArray piece; isWritten && !(piece = nextPiece()).isEmpty();)
        isWritten = writeAll(file, piece);
    return isWritten && file.commit() ? std::string() : file.errorString().toStdString();
}

std::string savePicture(const QString& path, const QImage& picture)
{
    constexpr int QUICK_COMPRESSION = 50; // half of the time that Qt takes by itself, for a twentieth more bytes
    const QByteArray format = QFileInfo(path).suffix().toLower().toLatin1();
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    if (format == "png")
        writer.setQuality(QUICK_COMPRESSION);
    if (!writer.write(picture))
        return writer.errorString().toStdString();
    return saveFile(path, buffer.data());
}

} // namespace tavo
