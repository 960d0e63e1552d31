#include "core/report/reportParts.h"

#include <algorithm>
#include <iterator>

namespace veltrona {

namespace {

constexpr QLatin1String tableEnd("</table>");
constexpr QLatin1String rowEnd("</tr>\r\n");

QString stylesOf(const QString &html) {
    const qsizetype begin = html.indexOf(QLatin1String("<!--"));
    const qsizetype end = html.indexOf(QLatin1String("--></style>"), begin);
    return begin < 0 || end < 0 ? QString() : html.sliced(begin + 4, end - begin - 4);
}

/// What stands before and behind a value in the writer's lines; of two that fit, the longer one is
/// first.
constexpr QLatin1String valueStarts[] = {
    QLatin1String(R"(<td><div align="left"><span class="Stil8">)"),
    QLatin1String(R"(<td><div align="right"><span class="Stil8">)"),
    QLatin1String(R"(<td><div align="left">)"),
    QLatin1String(R"(<td><div align="right">)"),
    QLatin1String(R"(<td width="70%"><span class="Stil5">)"),
    QLatin1String("<td>"),
};
constexpr QLatin1String valueEnds[] = {
    QLatin1String("</span></div></td>"),
    QLatin1String("</div></td>"),
    QLatin1String("</span></td>"),
    QLatin1String("</td>"),
};

template<std::size_t Count, class Fits>
qsizetype sizeOfFirst(const QLatin1String (&pieces)[Count], Fits fits) {
    const auto *found = std::find_if(std::begin(pieces), std::end(pieces), fits);
    return found == std::end(pieces) ? 0 : found->size();
}

/// A sign without width before the "=" makes another name of every attribute.
QString tamedValue(QString value) {
    constexpr int mostTags = 50;
    return value.count(u'<') > mostTags ? value.replace(u'<', QLatin1String("&lt;"))
                                        : value.replace(u'=', QString(QChar(0x2060)) + u'=');
}

/// The text without the start tag that it begins with.
QString behindTag(const QString &text) {
    return text.sliced(text.indexOf(u'>') + 1);
}

} // namespace

QString tamedReport(const QString &html) {
    QString tamed;
    tamed.reserve(html.size());
    qsizetype end = 0;
    for (qsizetype at = 0; at < html.size(); at = end) {
        const QStringView rest = QStringView(html).sliced(at);
        const qsizetype start =
            sizeOfFirst(valueStarts, [&](QLatin1String piece) { return rest.startsWith(piece); });
        // A value may have lines of its own, which don't end in the writer's way.
        const QLatin1String lineEnd(start > 0 ? "</td>\r\n" : "\r\n");
        const qsizetype found = html.indexOf(lineEnd, at + start);
        end = found < 0 ? html.size() : found + lineEnd.size();
        QStringView line = rest.first(end - at);
        const QStringView text = line.sliced(start, qMax<qsizetype>(0, line.size() - start - 2));
        const QStringView value = text.chopped(
            sizeOfFirst(valueEnds, [&](QLatin1String piece) { return text.endsWith(piece); }));
        if (start > 0 && value.contains(u'<')) {
            tamed += line.first(start);
            tamed += tamedValue(value.toString());
            line = line.sliced(start + value.size());
        }
        tamed += line;
    }
    return tamed;
}

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
