// Conversion of the table's texts, in UTF-8, to QString and back. Every character is kept,
// including NUL and a leading U+FEFF. Bytes that aren't UTF-8, which only a foreign project has,
// are shown as U+FFFD and converted back exactly, so that their node finds its records.
#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>

namespace veltrona {

/// A byte that isn't UTF-8 becomes a lone low surrogate, U+DC00 plus the byte.
QString textOf(std::string_view stored);
/// The bytes that textOf converted.
QByteArray storedBytes(const QString &text);

} // namespace veltrona
