#include "ui/report/sampleRows.h"

#include "core/base/text.h"
#include "ui/views/plainText.h"

#include <QFontMetricsF>

#include <algorithm>
#include <set>

namespace veltrona {

QString shownValue(const QString &text) {
    QString shown = shownLine(text);
    for (qsizetype at = 0; at < shown.size(); ++at) {
        constexpr char16_t frameBegins = 0xFDD0, frameEnds = 0xFDD1;
        QChar &c = shown[at];
        if (c < u' ' || c == frameBegins || c == frameEnds ||
            c == QChar::ObjectReplacementCharacter || isLoneSurrogate(shown, at))
            c = QChar::ReplacementCharacter;
    }
    return shown;
}

double CharacterWidths::of(QStringView text) {
    const QFontMetricsF metrics(m_font);
    double sum = 0;
    for (const QChar c : text) {
        float &width = m_widths[c.unicode()];
        if (width == 0)
            width = static_cast<float>(metrics.horizontalAdvance(c));
        sum += width;
    }
    return sum;
}

bool CharacterWidths::areExactFor(QStringView text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c < QChar(0x250); });
}

std::vector<ReportRow> sampleRows(const std::vector<ReportRow> &rows, const QFont &font) {
    if (rows.empty())
        return {};
    struct Widest {
        double width = -1;
        std::size_t row = 0;
        void see(double other, std::size_t otherRow) {
            if (other > width)
                width = other, row = otherRow;
        }
    };
    struct Column {
        Widest text, word;
    };
    std::array<Column, gridColumn::Shown> columns;
    CharacterWidths widths(font);
    std::size_t marked = 0;
    for (std::size_t row = rows.size(); row-- > 0;) {
        if (rows[row].isMarked)
            marked = row;
        for (std::size_t col = 0; col < columns.size(); ++col) {
            const QString text = shownValue(rows[row].cells[col]);
            columns[col].text.see(widths.of(text), row);
            for (const QStringView word : QStringView(text).tokenize(u' '))
                columns[col].word.see(widths.of(word), row);
        }
    }
    std::set<std::size_t> found{0, marked, rows.size() - 1};
    for (const Column &column : columns)
        found.insert({column.text.row, column.word.row});
    std::vector<ReportRow> samples;
    for (const std::size_t row : found)
        samples.push_back(rows[row]);
    return samples;
}

} // namespace veltrona
