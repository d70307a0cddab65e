#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <string>

#include "tavo/base/Export.h"

namespace tavo {

class Persistent;

// Collects persistent objects as text that a person can read and edit, and that InputObjectStream reads back. It is
// JSON:
//
//     {
//         "format": "tavo objects",
//         "objects": [
//             {
//                 "class": "Shape",
//                 "parts": [
//                     { "class": "Shape", "properties": { "m_Size": 3 }, "version": 1000 }
//                 ]
//             }
//         ],
//         "version": 1
//     }
//
// An object has one part for each of its classes that has properties, from the outermost base class down.
class TAVO_BASE_EXPORT OutputObjectStream
{
public:
    // Appends the object as its properties are now. Throws PException if its class is not registered.
    void writeObject(const Persistent& object);

    // The objects written so far, in UTF-8.
    QByteArray getText() const;

    // Puts the text into a file, replacing what it held (see tavo/base/files/saveFile.h). Throws PException if that
    // fails; then the file is as it was.
    void saveFile(const std::string& path) const;

private:
    QJsonArray m_Objects;
};

} // namespace tavo
