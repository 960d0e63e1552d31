#include "core/analysis/grid/figureNotes.h"

#include "core/analysis/records/cellText.h"
#include "core/analysis/records/recordWalk.h"
#include "core/base/storedText.h"
#include "core/base/text.h"

#include <cmath>
#include <optional>

namespace veltrona {

namespace {

/// A column of weights or of plain sums that its own note or a ratio shows.
constexpr bool isSummed(const GridColumn &column) {
    return column.weight || (column.rule == CellRule::Sum && !column.ratio.sentence);
}

constexpr FigureList figures(isSummed);

template<class Record>
void add(ColumnSums &sums, const Record &record) {
    gridColumn::forEach([&](auto col) {
        constexpr const GridColumn &column = gridColumn::at(col);
        if constexpr (isSummed(column)) {
            const double number = numberOf(record[figures.placeOf(*column.figure)]);
            if constexpr (!column.weight) {
                sums[col] += number / column.divisor;
            } else if (number != 0) {
                const double weight = numberOf(record[figures.placeOf(*column.weight)]);
                sums[col] += number * weight;
                sums[column.countColumn] += weight;
            }
        }
    });
}

QString decimals(double number, int count = 2) {
    return QString::number(roundHalfToEven(number, count), 'f', count);
}

/// The true ratio where the column shows another figure, else the sum.
struct TrueFigure {
    double value = 0;
    QString text;
    QString line; // how a ratio is computed; empty for a sum
};

QString sumText(const ColumnSums &sums, int col) {
    const double sum = sums[col];
    return gridColumn::at(col).decimals < 0 ? withLeadingZero(numberText(roundHalfToEven(sum, 2)))
                                            : decimals(sum);
}

/// None for a ratio without a divisor.
std::optional<TrueFigure> trueFigure(const ColumnSums &sums, int col) {
    const GridColumn &column = gridColumn::at(col);
    const TrueRatio &ratio = column.ratio;
    if (!ratio.sentence) {
        if (column.rule != CellRule::Sum)
            return std::nullopt;
        return TrueFigure{sums[col], sumText(sums, col), {}};
    }
    const double dividend = sums[ratio.dividend];
    const double divisor = sums[ratio.divisor];
    if (divisor == 0)
        return std::nullopt;
    const double value =
        (ratio.ofGain ? dividend - divisor : dividend) / divisor * (column.isPercent ? 100 : 1);
    const QString text = decimals(value) + (column.isPercent ? u" %"_s : QString());
    const QString sentence = QString::fromLatin1(ratio.sentence)
                                 .replace("%1"_L1, sumText(sums, ratio.dividend))
                                 .replace("%2"_L1, sumText(sums, ratio.divisor));
    return TrueFigure{value, text, sentence + text};
}

QString changeText(double now, double before) {
    const double percent = roundHalfToEven((now - before) / std::fabs(before) * 100, 1);
    return (percent > 0 ? u"+"_s : QString()) + decimals(percent + 0.0, 1) + u" %"_s;
}

/// "18 to 24 Nov", with the year if it isn't `year`.
QString shortDates(const DateRange &range, int year) {
    const CalendarDay first = calendarDay(dayNumber(range.start));
    const CalendarDay last = calendarDay(dayNumber(range.end));
    const auto text = [](const CalendarDay &day, bool withMonth, bool withYear) {
        QString date = QString::number(day.day);
        if (withMonth)
            date += u' ' + QString::fromLatin1(shortMonthName(day.month));
        if (withYear)
            date += u' ' + QString::number(day.year);
        return date;
    };
    const bool years = first.year != last.year;
    const QString end = text(last, true, years || last.year != year);
    if (first == last)
        return end;
    return text(first, years || first.month != last.month, years) + u" to "_s + end;
}

} // namespace

FigureNotes::Period FigureNotes::periodOf(ProjectRecords &records, const NodePath &path,
                                          const DateRange &range) {
    TextDictionary names;
    const RecordQuery query{path,
                            range,
                            {path.columnBelow()},
                            [&names](std::span<const std::string_view> name) {
                                return static_cast<int>(names.add(withoutBlanks(name.front())));
                            },
                            figures};
    std::vector<ColumnSums> sums; // by the names' codes
    Period period{range, {}, {}};
    visitRecords(records, query, [&](const RecordBatch &batch, auto) {
        sums.resize(names.size());
        forEachRecord(batch, [&](int name, const auto &record) {
            add(sums[static_cast<std::size_t>(name)], record);
            add(period.all, record);
        });
    });
    for (TextDictionary::Code name = 0; name < sums.size(); ++name)
        period.rows.insert(textOf(names.text(name)), sums[name]);
    return period;
}

FigureNotes::FigureNotes(ProjectRecords &records, const NodePath &path, const DateRange &range)
    : m_shown(periodOf(records, path, range)) {
    const int start = dayNumber(range.start);
    const int days = dayNumber(range.end) - start + 1;
    if (days > 0) // else the range is reversed
        m_earlier =
            periodOf(records, path,
                     {static_cast<DateValue>(start - days), static_cast<DateValue>(start - 1)});
}

QStringList FigureNotes::ofRow(const QString &name, int col) const {
    return lines(m_shown.rows.value(name), m_earlier.rows.value(name), col);
}

QStringList FigureNotes::ofSummary(int col) const {
    return lines(m_shown.all, m_earlier.all, col);
}

QStringList FigureNotes::lines(const ColumnSums &shown, const ColumnSums &earlier, int col) const {
    QStringList lines;
    const std::optional<TrueFigure> now = trueFigure(shown, col);
    if (now && !now->line.isEmpty())
        lines.append(now->line);
    const std::optional<TrueFigure> before = trueFigure(earlier, col);
    if (before && before->value != 0) {
        const int year = calendarDay(dayNumber(m_shown.range.start)).year;
        QString line = shortDates(m_earlier.range, year) + u": "_s + before->text;
        if (now)
            line += u", "_s + changeText(now->value, before->value);
        lines.append(line);
    }
    return lines;
}

} // namespace veltrona
