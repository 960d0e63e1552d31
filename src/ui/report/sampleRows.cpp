#include "ui/report/sampleRows.h"

#include "core/report/reportFile.h"
#include "ui/views/plainText.h"

#include <QFontMetricsF>

#include <algorithm>
#include <set>

namespace veltrona {

QString shownValue(const QString &text) {
    QString shown = shownLine(text);
    for (QChar &c : shown) {
        constexpr char16_t frameBegins = 0xFDD0, frameEnds = 0xFDD1;
        if (c < u' ' || c == frameBegins || c == frameEnds ||
            c == QChar::ObjectReplacementCharacter)
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

std::vector<int> sampleRows(const ReportFile &file, const QFont &font) {
    if (file.rows() == 0)
        return {};
    struct Widest {
        double width = -1;
        int row = 0;
        void see(double other, int otherRow) {
            if (other > width)
                width = other, row = otherRow;
        }
    };
    struct Column {
        Widest text, word;
    };
    std::vector<Column> columns(std::size_t(file.columns()));
    CharacterWidths widths(font);
    int marked = 0;
    for (int row = file.rows() - 1; row >= 0; --row) {
        if (file.isMarked(row, 0))
            marked = row;
        for (int col = 0; col < file.columns(); ++col) {
            const QString text = shownValue(file.cell(row, col));
            Column &column = columns[std::size_t(col)];
            column.text.see(widths.of(text), row);
            for (const QStringView word : QStringView(text).tokenize(u' '))
                column.word.see(widths.of(word), row);
        }
    }
    std::set<int> found{0, marked, file.rows() - 1};
    for (const Column &column : columns)
        found.insert({column.text.row, column.word.row});
    return {found.begin(), found.end()};
}

} // namespace veltrona
