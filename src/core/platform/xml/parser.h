// One pass of libxml2's parser over a file. Nothing but the file itself is ever read, whatever
// stands in it: no other file, no network.
#pragma once

#include "core/platform/xml/document.h"

class QFile;

namespace veltrona::xml {

struct ParseResult {
    NodeStream nodes;
    QString refusal;
    ParseError error; // has an error code if the file isn't well-formed
};

/// Parses an open file from its start; the fields of the error are set but for `url`.
ParseResult parse(QFile &file);

} // namespace veltrona::xml
