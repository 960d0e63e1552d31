#include "core/analysis/grid/figureNotes.h"

#include "core/analysis/grid/nodeStatistics.h"
#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/records/cellText.h"
#include "core/analysis/records/recordWalk.h"
#include "core/base/storedText.h"
#include "core/base/text.h"

#include <cmath>

namespace veltrona {

namespace {

/// A column of weights or of plain sums that its own note or a ratio shows.
constexpr bool isSummed(const GridColumn &column) {
    return column.weight || (column.rule == CellRule::Sum && !column.ratio.sentence);
}

constexpr FigureList figures(isSummed);

template<class Record>
void add(PlainSums &sums, const Record &record) {
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

QString countText(double number) {
    return withLeadingZero(numberText(roundHalfToEven(number, 2)));
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

QString sumText(const PlainSums &sums, int col) {
    const double sum = sums[col];
    return gridColumn::at(col).decimals < 0 ? countText(sum) : decimals(sum);
}

/// None for a ratio without a divisor.
std::optional<TrueFigure> trueFigure(const PlainSums &sums, int col) {
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
    const QString text = decimals(value) + (column.isPercent ? QStringLiteral(" %") : QString());
    const QString sentence = QString::fromLatin1(ratio.sentence)
                                 .replace(QLatin1String("%1"), sumText(sums, ratio.dividend))
                                 .replace(QLatin1String("%2"), sumText(sums, ratio.divisor));
    return TrueFigure{value, text, sentence + text};
}

QString changeText(double now, double before) {
    const double percent = roundHalfToEven((now - before) / std::fabs(before) * 100, 1);
    return (percent > 0 ? QStringLiteral("+") : QString()) + decimals(percent + 0.0, 1) +
           QStringLiteral(" %");
}

} // namespace

std::optional<DateRange> periodBefore(const DateRange &range) {
    const int start = dayNumber(range.start);
    const int days = dayNumber(range.end) - start + 1;
    if (days < 1)
        return std::nullopt;
    return DateRange{static_cast<DateValue>(start - days), static_cast<DateValue>(start - 1)};
}

QString shortDates(const DateRange &range, int year) {
    const CalendarDay first = calendarDay(dayNumber(range.start));
    const CalendarDay last = calendarDay(dayNumber(range.end));
    const auto text = [](const CalendarDay &day, bool withMonth, bool withYear) {
        QString date = QString::number(day.day);
        if (withMonth)
            date += u' ' + QString::fromStdString(std::string(shortMonthName(day.month)));
        if (withYear)
            date += u' ' + QString::number(day.year);
        return date;
    };
    const bool years = first.year != last.year;
    const QString end = text(last, true, years || last.year != year);
    if (first == last)
        return end;
    return text(first, years || first.month != last.month, years) + QStringLiteral(" to ") + end;
}

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
    std::vector<PlainSums> sums; // by the names' codes
    Period period;
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

FigureNotes FigureNotes::query(ProjectRecords &records, const NodePath &path,
                               const DateRange &range) {
    FigureNotes notes;
    notes.m_shown = periodOf(records, path, range);
    notes.m_year = calendarDay(dayNumber(range.start)).year;
    if (const auto before = periodBefore(range)) {
        notes.m_before = *before;
        notes.m_earlier = periodOf(records, path, *before);
    }
    return notes;
}

QStringList FigureNotes::ofRow(const QString &name, int col) const {
    return lines(m_shown.rows.value(name), m_earlier.rows.value(name), col);
}

QStringList FigureNotes::ofSummary(int col) const {
    return lines(m_shown.all, m_earlier.all, col);
}

QStringList FigureNotes::lines(const PlainSums &shown, const PlainSums &earlier, int col) const {
    QStringList lines;
    const std::optional<TrueFigure> now = trueFigure(shown, col);
    if (now && !now->line.isEmpty())
        lines.append(now->line);
    const std::optional<TrueFigure> before = trueFigure(earlier, col);
    if (before && before->value != 0) {
        QString line = shortDates(m_before, m_year) + QStringLiteral(": ") + before->text;
        if (now)
            line += QStringLiteral(", ") + changeText(now->value, before->value);
        lines.append(line);
    }
    return lines;
}

} // namespace veltrona
