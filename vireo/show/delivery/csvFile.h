#pragma once

#include <QByteArray>
#include <QString>
#include <charconv>
#include <functional>
#include <string>

#include "vireo/show/delivery/dataFormats.h"

namespace tavo {

// What files of comma-separated values have in common.

// As large as pieces of their text are.
inline constexpr int CSV_PIECE = 1 << 20;

// As few digits as tell the number from all others of its type.
template <typename T>
void appendNumber(QByteArray& text, T number)
{
    char digits[32];
    const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
    text.append(digits, static_cast<int>(result.ptr - digits));
}

// In quotation marks, with any characters.
QByteArray quotedCell(const std::string& text);

// Saves a text that comes in pieces (see saveFile()) in a file whose name ends with "csv". Why it could not be saved,
// for a person; empty if it was. `formats` are all that the file could have had.
std::string saveCsv(const QString& file, const DataFormats& formats, const std::function<QByteArray()>& nextPiece);

} // namespace tavo
