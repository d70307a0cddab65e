#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <string>

#include "tavo/base/Export.h"

namespace tavo {

class Persistent;

/// Collects persistent objects as text that people can read and edit, and that InputObjectStream reads back.
///
///     OutputObjectStream stream;
///     stream.writeObject(shape);
///     stream.saveFile("shapes.json");
///
/// The text is JSON. An object has one part for each of its classes that has properties, outermost base class first:
///
/// @code{.json}
/// {
///     "format": "tavo objects",
///     "objects": [
///         {
///             "class": "Shape",
///             "parts": [
///                 { "class": "Shape", "properties": { "m_Size": 3 }, "version": 1000 }
///             ]
///         }
///     ],
///     "version": 1
/// }
/// @endcode
class TAVO_BASE_EXPORT OutputObjectStream
{
public:
    /// Appends the object with its present properties.
    /// @throws PException If its class is not registered.
    void writeObject(const Persistent& object);

    /// The objects written so far, in UTF-8.
    QByteArray getText() const;

    /// Saves the text, replacing what the file held (see tavo/base/files/saveFile.h).
    /// @throws PException If that fails. The file is then as it was.
    void saveFile(const std::string& path) const;

private:
    QJsonArray m_Objects;
};

} // namespace tavo
