// Finds the position of a parse error in its file and the text around it.
#pragma once

#include "core/platform/xml/document.h"

class QFile;

namespace veltrona::xml {

/// The line that holds the byte at `position`, read in `encoding` (a name that libxml2 knows; empty
/// is UTF-8) and shortened to a few words on both sides. Moves the file's position.
QString sourceLine(QFile &file, qint64 position, const QByteArray &encoding);

/// Finds the first byte that isn't valid in `encoding`, and sets the error's line, position and
/// offset. False if the whole file is valid. Moves the file's position.
bool locateBadByte(QFile &file, const QByteArray &encoding, ParseError &error);

} // namespace veltrona::xml
