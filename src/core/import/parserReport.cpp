#include "core/import/parserReport.h"

#include <QDir>

namespace veltrona {

QString parserReport(const xml::ParseError &error) {
    const QString lineEnd = QStringLiteral("\r\n");
    // "load" and "due" are joined without a blank; the reason ends in a line end.
    return QStringLiteral("Your XML Document failed to load") +
           QStringLiteral("due the following error.") + lineEnd + QStringLiteral("Error #: ") +
           QString::number(error.errorCode) + QStringLiteral(": ") + error.reason +
           QStringLiteral("Line #: ") + QString::number(error.line) + lineEnd +
           QStringLiteral("Line Position: ") + QString::number(error.linepos) + lineEnd +
           QStringLiteral("Position In File: ") + QString::number(error.filepos) + lineEnd +
           QStringLiteral("Source Text: ") + error.srcText + lineEnd +
           QStringLiteral("Document URL: ") + QDir::toNativeSeparators(error.url);
}

} // namespace veltrona
