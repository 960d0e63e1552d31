// Reports for tests, written as lines of values parted by "|".
#pragma once

#include <QByteArray>
#include <QStringList>

namespace veltrona::test {

/// The columns of a small report, in the order of a line's values; values left out at the end of a
/// line are attributes left out of the row.
inline const QStringList smallReportColumns = {
    "campaign", "adgroup", "keyword", "kwtype", "adwordstype", "date", "clicks",      "imps",
    "ctr",      "cpc",     "cost",    "conv",   "convvalue",   "pos",  "transactions"};

/// `columns` are the declared ones; each row stands on a line of its own.
inline QByteArray smallReport(const QStringList &rows,
                              const QStringList &columns = smallReportColumns) {
    QString text = "<report><table><columns>";
    for (const QString &column : columns)
        text += QString("<column name=\"%1\"/>").arg(column);
    text += "</columns><rows>\n";
    for (const QString &row : rows) {
        const QStringList values = row.split(u'|');
        text += "<row";
        for (qsizetype i = 0; i < values.size(); ++i)
            text += u' ' + columns[i] + "=\"" + values[i].toHtmlEscaped() + u'"';
        text += "/>\n";
    }
    return (text + "</rows></table></report>\n").toUtf8();
}

} // namespace veltrona::test
