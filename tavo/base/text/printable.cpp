#include "tavo/base/text/printable.h"

#include <QString>

namespace tavo {

namespace {

// Characters that turn the text behind them round.
bool isDirection(QChar c)
{
    constexpr ushort FIRST_EMBEDDING = 0x202A, LAST_OVERRIDE = 0x202E, FIRST_ISOLATE = 0x2066, LAST_ISOLATE = 0x2069;
    return (c.unicode() >= FIRST_EMBEDDING && c.unicode() <= LAST_OVERRIDE) ||
           (c.unicode() >= FIRST_ISOLATE && c.unicode() <= LAST_ISOLATE);
}

bool isControl(QChar c)
{
    const QChar::Category category = c.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph || isDirection(c);
}

QString writtenOut(QChar c)
{
    constexpr int HEXADECIMAL = 16;
    const bool isShort = c.unicode() < 0x100;
    return QString(isShort ? "\\x%1" : "\\u%1").arg(c.unicode(), isShort ? 2 : 4, HEXADECIMAL, QChar('0'));
}

// The bytes among which that many characters and one more are, so that nobody converts the rest of a huge text.
std::string_view beginning(std::string_view text, std::size_t characters)
{
    constexpr std::size_t MOST_BYTES = 4; // of a character
    return characters < text.size() ? text.substr(0, MOST_BYTES * (characters + 1)) : text;
}

} // namespace

std::string printable(std::string_view text, std::size_t longest)
{
    const std::string_view bytes = beginning(text, longest);
    const QString all = QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size()));
    QString shown;
    std::size_t numCharacters = 0;
    for (const QChar c : all) {
        const QString piece = isControl(c) ? writtenOut(c) : QString(c);
        numCharacters += c.isLowSurrogate() ? 0 : static_cast<std::size_t>(piece.size());
        if (numCharacters > longest)
            return (shown + "...").toStdString();
        shown += piece;
    }
    return shown.toStdString();
}

} // namespace tavo
