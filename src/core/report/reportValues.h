// The values that a report states above its tables: what is selected, and dates in the form of the
// system's locale.
#pragma once

#include "core/base/dateValue.h"

#include <QLocale>
#include <QString>

namespace veltrona {

/// "All" where the selected node fixes nothing.
struct ReportDetails {
    QString campaign;
    QString adGroup;
    QString searchType;
    QString keyword;
    QString keywordType;
};

/// From the three texts of a tree node.
ReportDetails reportDetails(const QString &key, const QString &tag, const QString &text);

/// The first sign between the parts of the locale's short date, "/" where it has none.
QChar dateSeparator(const QLocale &locale);
/// Month, day and year: "03/07/2006".
QString reportDate(DateValue date, QChar separator);

} // namespace veltrona
