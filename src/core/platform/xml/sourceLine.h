// The place in a file at which a parser came to a stop, for a message.
#pragma once

#include "core/platform/xml/document.h"

class QFile;

namespace veltrona::xml {

/// The line that holds the byte at `position`, read in `encoding` (a name that libxml2 knows; empty
/// is UTF-8) and cut to a few words on both sides where it is long. Moves the file's position.
QString sourceLine(QFile &file, qint64 position, const QByteArray &encoding);

/// Finds the first byte of the file that `encoding` lacks, and tells its line, position and offset.
/// False for a file that is good throughout. Moves the file's position.
bool locateBadByte(QFile &file, const QByteArray &encoding, ParseError &error);

} // namespace veltrona::xml
