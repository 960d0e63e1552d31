// A report's HTML text in parts, so that a long one can be shown piece by piece. The texts are
// copies of what the file holds; nothing here reads a file.
#pragma once

#include <QString>
#include <QStringList>

namespace veltrona {

struct ReportParts {
    /// The style sheet, without the comment marks that the reader of rich text stumbles at.
    QString styles;
    /// Everything before the first row below the headings of the statistics; the whole report if
    /// it has no statistics.
    QString before;
    /// The start tag of the statistics table and the row of its headings.
    QString tableHead;
    QString headings;
    /// Whole rows, from start tag to end tag.
    QStringList rows;
    /// Everything behind the last row.
    QString after;
};

/// The report's HTML text with the markup in its values tamed: attributes count for nothing, and a
/// value of very many tags is plain text. A cell that spans a million columns, or a picture as high
/// as a house, would stop preview and print.
QString tamedReport(const QString &html);

ReportParts reportParts(const QString &html);

/// The texts of a row's cells as the writer put them in.
QStringList cellTexts(const QString &row);

} // namespace veltrona
