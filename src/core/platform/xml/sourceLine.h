// The line of a file in which a parser came to a stop, for a message.
#pragma once

#include <QString>

class QFile;

namespace veltrona::xml {

/// The line that holds the byte at `position`, read in `encoding` (a name that libxml2 knows; empty
/// is UTF-8) and cut to a few words on both sides where it is long. Moves the file's position.
QString sourceLine(QFile &file, qint64 position, const QByteArray &encoding);

} // namespace veltrona::xml
