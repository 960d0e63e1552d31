#include "report/reportNames.h"

namespace veltrona {

QStringView trimmedBlanks(QStringView text) {
    while (text.startsWith(u' '))
        text = text.sliced(1);
    while (text.endsWith(u' '))
        text.chop(1);
    return text;
}

QString reportFileName(const QString &name) {
    const QString trimmed = trimmedBlanks(name).toString();
    const bool isHtml = trimmed.endsWith(QLatin1String(".htm"), Qt::CaseInsensitive) ||
                        trimmed.endsWith(QLatin1String(".html"), Qt::CaseInsensitive);
    return isHtml ? trimmed : trimmed + QStringLiteral(".html");
}

QString printReportPath(const QString &dataFolder, QChar separator) {
    return dataFolder + separator + QStringLiteral("Veltrona") + separator +
           QStringLiteral("Report.html");
}

QString graphPath(const QString &reportFile, QChar separator) {
    const QStringView trimmed = trimmedBlanks(reportFile);
    return trimmed.first(trimmed.lastIndexOf(separator) + 1).toString() +
           QStringLiteral("graph.jpg");
}

} // namespace veltrona
