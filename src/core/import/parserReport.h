// The message for a report file that couldn't be loaded.
#pragma once

#include "core/platform/xml/document.h"

namespace veltrona {

QString parserReport(const xml::ParseError &error);

} // namespace veltrona
