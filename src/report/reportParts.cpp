#include "report/reportParts.h"

namespace veltrona {

namespace {

constexpr QLatin1String tableEnd("</table>");
constexpr QLatin1String rowEnd("</tr>\r\n");

QString stylesOf(const QString &html) {
    const qsizetype begin = html.indexOf(QLatin1String("<!--"));
    const qsizetype end = html.indexOf(QLatin1String("--></style>"), begin);
    return begin < 0 || end < 0 ? QString() : html.sliced(begin + 4, end - begin - 4);
}

/// The text without the start tag that it begins with.
QString behindTag(const QString &text) {
    return text.sliced(text.indexOf(u'>') + 1);
}

} // namespace

ReportParts reportParts(const QString &html) {
    ReportParts parts;
    parts.styles = stylesOf(html);
    parts.before = html;
    const qsizetype heading = html.indexOf(QLatin1String("<th class=\"Stil5\">"));
    const qsizetype table = heading < 0 ? -1 : html.lastIndexOf(QLatin1String("<table"), heading);
    const qsizetype row = table < 0 ? -1 : html.indexOf(QLatin1String("<tr>"), table);
    const qsizetype headingEnd = html.indexOf(rowEnd, heading);
    const qsizetype end = html.lastIndexOf(tableEnd);
    if (row < 0 || row > heading || headingEnd < 0 || end < headingEnd)
        return parts;

    qsizetype at = headingEnd + rowEnd.size();
    parts.before = html.first(at);
    parts.tableHead = html.sliced(table, row - table);
    parts.headings = html.sliced(row, at - row);
    while (at < end) {
        qsizetype next = html.indexOf(rowEnd, at);
        next = next < 0 ? end : qMin(next + rowEnd.size(), end);
        parts.rows << html.sliced(at, next - at);
        at = next;
    }
    parts.after = html.sliced(end);
    return parts;
}

QStringList cellTexts(const QString &row) {
    QStringList texts;
    for (const QString &line : row.split(QLatin1String("\r\n"))) {
        if (!line.startsWith(QLatin1String("<td><div ")))
            continue;
        QString text = behindTag(line.sliced(4));
        const bool marked = text.startsWith(QLatin1String("<span "));
        if (marked)
            text = behindTag(text);
        text.chop(marked ? 18 : 11); // the end tags of span, div and td
        texts << text;
    }
    return texts;
}

} // namespace veltrona
