// Parses a file with libxml2. Nothing but the file itself is ever read, whatever it refers to: no
// other file, no network.
#pragma once

#include "core/platform/xml/document.h"

class QFile;

namespace veltrona::xml {

struct ParseResult {
    NodeStream nodes;
    QString refusal;
    ParseError error; // its code isn't 0 if the file isn't well-formed
};

/// Parses an open file from its start. Sets all fields of the error except `url`.
ParseResult parse(QFile &file);

} // namespace veltrona::xml
