#include "core/report/reportText.h"

#include "core/base/text.h"
#include "core/design/product.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace veltrona {

namespace {

/// The code page from 0x80 to 0x9F; 0 means the control character of the same number.
constexpr char16_t upperPage[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                    0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

bool isLatin(char16_t unit) {
    return unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF);
}

/// Appends the characters before the first one that isn't a byte of the same number, and returns
/// how many.
qsizetype appendLatin(std::string &out, QStringView text) {
    const char16_t *const begin = text.utf16();
    const char16_t *const end = std::find_if_not(begin, begin + text.size(), isLatin);
    const std::size_t size = out.size();
    out.resize(size + static_cast<std::size_t>(end - begin));
    std::transform(begin, end, out.data() + size, [](char16_t c) { return static_cast<char>(c); });
    return end - begin;
}

void appendOther(std::string &out, char32_t character) {
    const auto *found = std::find(std::begin(upperPage), std::end(upperPage), character);
    if (character != 0 && found != std::end(upperPage)) {
        out += static_cast<char>(0x80 + (found - std::begin(upperPage)));
    } else if (character >= 0x80 && character < 0xA0 && upperPage[character - 0x80] == 0) {
        out += static_cast<char>(character);
    } else {
        out += "&#";
        out += std::to_string(static_cast<std::uint32_t>(character));
        out += ';';
    }
}

class Lines {
public:
    Lines(const ReportForm &form, std::size_t expectedSize) : m_form(form) {
        m_text.reserve(expectedSize);
    }

    /// Writes a line of fixed pieces and of values, which are QStrings.
    template<typename... Pieces>
    void write(const Pieces &...pieces) {
        (append(pieces), ...);
        m_text += "\r\n";
    }
    std::string pixels(int length) const { return std::to_string(qRound(length * m_form.zoom)); }
    std::string take() { return std::move(m_text); }

private:
    template<std::size_t Size>
    void append(const char (&piece)[Size]) {
        m_text.append(piece, Size - 1);
    }
    void append(std::string_view piece) { m_text += piece; }
    void append(QLatin1String piece) { m_text.append(piece.data(), std::size_t(piece.size())); }
    void append(const QString &value) { m_form.appendValue(m_text, value); }

    const ReportForm &m_form;
    std::string m_text;
};

constexpr char head[] =
    R"(<html><head><meta http-equiv="Content-Type" content="text/html; charset=iso-8859-1"><title>)";
constexpr char font[] = "{font-family: Arial, Helvetica, sans-serif";
constexpr char rowHead[] = R"(<tr class="Stil5">)";

void writeStyleSheet(Lines &lines, const ReportForm &form) {
    lines.write(R"(<style type="text/css">)", form.styleBegin, ".Stil5 ", font,
                "; font-size: ", lines.pixels(reportTextSize), "px; }.Stil6 ", font,
                "; font-size: ", lines.pixels(reportTitleSize),
                "px; }.Stil8 {color: #FF3333}.GoogleHeader ", font,
                "}.GoogleFooter {color: #008000}", form.styleEnd, "</style><body>");
}

void beginTable(Lines &lines) {
    lines.write(R"(<table width=")", lines.pixels(reportTableWidth),
                R"(" border="1" cellspacing="0">)");
}

template<class Value>
void writeDetailRow(Lines &lines, std::string_view caption, const Value &value) {
    lines.write(rowHead);
    lines.write("<td>", caption, "</td>");
    lines.write("<td>", value, "</td>");
    lines.write("</tr>");
}

void writeDetails(Lines &lines, const Report &report) {
    beginTable(lines);
    lines.write("<tr>");
    lines.write(R"(<td width="30%"><span class="Stil5">Campaign</span></td>)");
    lines.write(R"(<td width="70%"><span class="Stil5">)", report.details[0], "</span></td>");
    lines.write("</tr>");
    writeDetailRow(lines, "Adgroup", report.details[1]);
    writeDetailRow(lines, "Search or Content", report.details[2]);
    writeDetailRow(lines, "Keyword", report.details[3]);
    writeDetailRow(lines, "Keyword type", report.details[4]);
    writeDetailRow(lines, "&nbsp;", std::string_view("&nbsp;"));
    writeDetailRow(lines, "Start date", report.start);
    writeDetailRow(lines, "End date", report.end);
    lines.write("</table>");
}

void writeStatistics(Lines &lines, const ReportCells &headings,
                     const std::vector<ReportRow> &rows) {
    beginTable(lines);
    lines.write("<tr>");
    for (const QString &heading : headings)
        lines.write(R"(<th class="Stil5"><div align="left">)", heading, "</div></th>");
    lines.write("</tr>");
    for (const ReportRow &row : rows) {
        const std::string_view open = row.isMarked ? R"(<span class="Stil8">)" : "";
        const std::string_view close = row.isMarked ? "</span>" : "";
        std::string_view align = "left";
        lines.write(rowHead);
        for (const QString &cell : row.cells) {
            lines.write(R"(<td><div align=")", align, R"(">)", open, cell, close, "</div></td>");
            align = "right";
        }
        lines.write("</tr>");
    }
    lines.write("</table>");
}

} // namespace

void appendAnsi(std::string &out, QStringView text) {
    for (qsizetype at = 0; at < text.size(); ++at) {
        at += appendLatin(out, text.sliced(at));
        if (at == text.size())
            return;
        const char16_t unit = text[at].unicode();
        if (isLoneSurrogate(text, at))
            appendOther(out, QChar::ReplacementCharacter);
        else if (QChar::isHighSurrogate(unit))
            appendOther(out, QChar::surrogateToUcs4(unit, text[++at].unicode()));
        else
            appendOther(out, unit);
    }
}

std::string reportText(const Report &report, const std::vector<ReportRow> &rows,
                       const ReportForm &form) {
    constexpr std::size_t expectedRow = 13 * 60, expectedRest = 4096; // bytes
    const ReportOptions &options = report.options;
    Lines lines(form, expectedRest + rows.size() * expectedRow);
    lines.write(head, productName, " Report</title>");
    writeStyleSheet(lines, form);
    lines.write(R"(<p class="Stil6">)", productName, " Report</p>");
    if (options.dateAndTime)
        lines.write(R"(<p class="Stil5">Created on: )", report.now, "</p>");
    writeDetails(lines, report);
    if (options.details)
        writeStatistics(lines, report.headings, rows);
    if (options.graph) {
        lines.write(R"(<p class="Stil5"><strong>Graph: )", report.metric, "</strong></p>");
        lines.write("</span></p>");
        lines.write(R"(<p><img src="graph.jpg"></p>)");
    }
    if (options.footer)
        lines.write(R"(<p>&nbsp;</p><p align="center" class="Stil5">Created with <a href=")",
                    homePage, R"(">)", productName, "</a></p>");
    lines.write("</body></html>");
    return lines.take();
}

} // namespace veltrona
