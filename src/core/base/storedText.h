// Names and other texts as the table stores them, in UTF-8, and as they are shown. Every character
// is kept, NUL and a first U+FEFF included. Bytes that aren't UTF-8, which only a foreign project
// holds, are shown as U+FFFD and find their way back, so that their node finds its records.
#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>

namespace veltrona {

/// A byte that isn't UTF-8 becomes a lone low surrogate, U+DC00 plus the byte.
QString textOf(std::string_view stored);
/// The very bytes that textOf got.
QByteArray storedBytes(const QString &text);

} // namespace veltrona
