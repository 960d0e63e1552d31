#include "core/report/reportText.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "core/base/blanks.h"
#include "core/base/product.h"

#include <algorithm>
#include <string_view>

namespace veltrona {

namespace {

/// The code page between 0x80 and 0x9F; 0 stands for the control character of the same number.
constexpr char16_t upperPage[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

bool isLatin(char16_t unit) {
    return unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF);
}

void appendOther(std::string &out, char32_t character, std::vector<BytePlace> *references) {
    const auto *found = std::find(std::begin(upperPage), std::end(upperPage), character);
    if (character != 0 && found != std::end(upperPage)) {
        out += static_cast<char>(0x80 + (found - std::begin(upperPage)));
    } else if (character >= 0x80 && character < 0xA0 && upperPage[character - 0x80] == 0) {
        out += static_cast<char>(character);
    } else {
        const std::size_t begin = out.size();
        out += "&#";
        out += std::to_string(static_cast<std::uint32_t>(character));
        out += ';';
        if (references)
            references->push_back({begin, out.size()});
    }
}

class Lines {
public:
    Lines(std::size_t expectedSize, ReportPlaces *places) : m_places(places) {
        m_text.reserve(expectedSize);
    }

    /// Writes one line of pieces that are the report's own or a value.
    template<typename... Pieces>
    void write(const Pieces &...pieces) {
        (append(pieces), ...);
        m_text += "\r\n";
    }
    /// What is written between the two is a row of the statistics.
    void beginRow() {
        if (m_places)
            m_places->rows.push_back({{m_text.size(), 0}, m_places->values.size()});
    }
    void endRow() {
        if (m_places)
            m_places->rows.back().place.end = m_text.size();
    }
    std::string take() { return std::move(m_text); }

private:
    template<std::size_t Size>
    void append(const char (&piece)[Size]) {
        m_text.append(piece, Size - 1);
    }
    void append(std::string_view piece) { m_text += piece; }
    void append(QLatin1String piece) { m_text.append(piece.data(), std::size_t(piece.size())); }
    void append(QStringView value) {
        const std::size_t begin = m_text.size();
        appendAnsi(m_text, value, m_places ? &m_places->references : nullptr);
        if (m_places)
            m_places->values.push_back({begin, m_text.size()});
    }
    void append(const QString &value) { append(QStringView(value)); }

    std::string m_text;
    ReportPlaces *m_places;
};

constexpr char head[] =
    R"(<html><head><meta http-equiv="Content-Type" content="text/html; charset=iso-8859-1"><title>)";
constexpr char style[] =
    R"(<style type="text/css"><!--.Stil5 {font-family: Arial, Helvetica, sans-serif; font-size: 12px; }.Stil6 {font-family: Arial, Helvetica, sans-serif; font-size: 18px; }.Stil8 {color: #FF3333}.GoogleHeader {font-family: Arial, Helvetica, sans-serif}.GoogleFooter {color: #008000}--></style><body>)";
constexpr char tableHead[] = R"(<table width="800" border="1" cellspacing="0">)";
constexpr char rowHead[] = R"(<tr class="Stil5">)";

template<class Value>
void writeDetailRow(Lines &lines, std::string_view caption, const Value &value) {
    lines.write(rowHead);
    lines.write("<td>", caption, "</td>");
    lines.write("<td>", value, "</td>");
    lines.write("</tr>");
}

void writeDetails(Lines &lines, const ReportContent &content) {
    const ReportDetails &details = content.details;
    lines.write(tableHead);
    lines.write("<tr>");
    lines.write(R"(<td width="30%"><span class="Stil5">Campaign</span></td>)");
    lines.write(R"(<td width="70%"><span class="Stil5">)", details.campaign, "</span></td>");
    lines.write("</tr>");
    writeDetailRow(lines, "Adgroup", details.adGroup);
    writeDetailRow(lines, "Search or Content", details.searchType);
    writeDetailRow(lines, "Keyword", details.keyword);
    writeDetailRow(lines, "Keyword type", details.keywordType);
    writeDetailRow(lines, "&nbsp;", std::string_view("&nbsp;"));
    writeDetailRow(lines, "Start date", content.start);
    writeDetailRow(lines, "End date", content.end);
    lines.write("</table>");
}

void writeStatistics(Lines &lines, const Grid &grid, bool doColor) {
    lines.write(tableHead);
    lines.write("<tr>");
    for (int col = 0; col < gridColumn::Shown; ++col)
        lines.write(R"(<th class="Stil5"><div align="left">)",
                    withoutBlanks(grid.TextMatrix(gridRow::Heading, col)), "</div></th>");
    lines.write("</tr>");
    for (int row = gridRow::FirstData; row < grid.Rows(); ++row) {
        lines.beginRow();
        lines.write(rowHead);
        for (int col = 0; col < gridColumn::Shown; ++col) {
            const std::string_view open = col == gridColumn::Name ? R"(<td><div align="left">)"
                                                                  : R"(<td><div align="right">)";
            const QStringView text = withoutBlanks(grid.TextMatrix(row, col));
            if (doColor && grid.isLoss(row))
                lines.write(open, reportMark, text, "</span></div></td>");
            else
                lines.write(open, text, "</div></td>");
        }
        lines.write("</tr>");
        lines.endRow();
    }
    lines.write("</table>");
}

std::size_t expectedSize(const ReportContent &content, const Grid &grid) {
    const std::size_t cell = content.doColor ? 75 : 50;
    const std::size_t rows = content.options.details ? std::size_t(grid.Rows()) : 0;
    return 4096 + rows * std::size_t(grid.Cols()) * cell;
}

} // namespace

void appendAnsi(std::string &out, QStringView text, std::vector<BytePlace> *references) {
    const char16_t *units = text.utf16();
    const qsizetype size = text.size();
    qsizetype at = 0;
    for (; at < size && isLatin(units[at]); ++at)
        out += static_cast<char>(units[at]);
    for (; at < size; ++at) {
        if (isLatin(units[at])) {
            out += static_cast<char>(units[at]);
        } else if (QChar::isHighSurrogate(units[at]) && at + 1 < size &&
                   QChar::isLowSurrogate(units[at + 1])) {
            appendOther(out, QChar::surrogateToUcs4(units[at], units[at + 1]), references);
            ++at;
        } else {
            appendOther(out, QChar::isSurrogate(units[at]) ? 0xFFFD : units[at], references);
        }
    }
}

std::string reportText(const ReportContent &content, const Grid &grid, ReportPlaces *places) {
    const ReportOptions &options = content.options;
    Lines lines(expectedSize(content, grid), places);
    lines.write(head, productName, " Report</title>");
    lines.write(style);
    lines.write(R"(<p class="Stil6">)", productName, " Report</p>");
    if (options.dateAndTime)
        lines.write(R"(<p class="Stil5">Created on: )", content.now, "</p>");
    writeDetails(lines, content);
    if (options.details)
        writeStatistics(lines, grid, content.doColor);
    if (options.graph) {
        lines.write(R"(<p class="Stil5"><strong>Graph: )", content.metric, "</strong></p>");
        lines.write("</span></p>");
        lines.write(R"(<p><img src="graph.jpg"></p>)");
    }
    if (options.footer)
        lines.write(R"(<p>&nbsp;</p><p align="center" class="Stil5">Created with <a href=")",
                    homePage, R"(">)", productName, "</a></p>");
    lines.write("</body></html>");
    std::string text = lines.take();
    if (places) {
        places->columns = gridColumn::Shown;
        places->digest = reportDigest(text);
    }
    return text;
}

std::size_t reportDigest(std::string_view bytes) {
    return std::hash<std::string_view>()(bytes);
}

QString textOfAnsi(QByteArrayView bytes) {
    QString text = QString::fromLatin1(bytes);
    for (QChar &c : text) {
        const int place = c.unicode() - 0x80;
        if (place >= 0 && place < 32 && upperPage[place] != 0)
            c = QChar(upperPage[place]);
    }
    return text;
}

} // namespace veltrona
