#include "core/report/reportNames.h"

#include "core/base/blanks.h"
#include "core/base/product.h"

namespace veltrona {

QString reportFileName(const QString &name) {
    const QString trimmed = withoutBlanks(name).toString();
    const bool isHtml = trimmed.endsWith(QLatin1String(".htm"), Qt::CaseInsensitive) ||
                        trimmed.endsWith(QLatin1String(".html"), Qt::CaseInsensitive);
    return isHtml ? trimmed : trimmed + QStringLiteral(".html");
}

QString printReportPath(const QString &dataFolder, QChar separator) {
    return dataFolder + separator + productName + separator + QStringLiteral("Report.html");
}

QString graphPath(const QString &reportFile, QChar separator) {
    const QStringView trimmed = withoutBlanks(reportFile);
    return trimmed.first(trimmed.lastIndexOf(separator) + 1).toString() +
           QStringLiteral("graph.jpg");
}

} // namespace veltrona
