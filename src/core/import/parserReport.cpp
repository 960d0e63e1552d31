#include "core/import/parserReport.h"

#include <QDir>

namespace veltrona {

QString parserReport(const xml::ParseError &error) {
    // "load" and "due" are joined without a blank; the reason ends in a line end.
    return QStringLiteral("Your XML Document failed to loaddue the following error.\r\n"
                          "Error #: %1: %2Line #: %3\r\nLine Position: %4\r\n"
                          "Position In File: %5\r\nSource Text: %6\r\nDocument URL: %7")
        .arg(QString::number(error.errorCode), error.reason, QString::number(error.line),
             QString::number(error.linepos), QString::number(error.filepos), error.srcText,
             QDir::toNativeSeparators(error.url));
}

} // namespace veltrona
