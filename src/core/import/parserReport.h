// The text that tells a user why a report file couldn't be loaded.
#pragma once

#include "core/platform/xml/document.h"

namespace veltrona {

QString parserReport(const xml::ParseError &error);

} // namespace veltrona
