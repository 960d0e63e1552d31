#include "core/analysis/grid/figureNotes.h"

#include "core/analysis/grid/nodeStatistics.h"
#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/records/cellText.h"
#include "core/analysis/records/recordWalk.h"
#include "core/base/blanks.h"
#include "core/base/storedText.h"

#include <cmath>

namespace veltrona {

namespace {

enum Field { Clicks, Impressions, Cost, Conv, ConvValue, Transactions, Pos };
constexpr std::array figures = {Figure::Clicks,    Figure::Impressions,  Figure::Cost, Figure::Conv,
                                Figure::ConvValue, Figure::Transactions, Figure::Pos};
constexpr double millionths = 1'000'000;

template<class Record>
void add(PlainSums &sums, const Record &record) {
    const double impressions = numberOf(record[Impressions]);
    const double position = numberOf(record[Pos]);
    sums.clicks += numberOf(record[Clicks]);
    sums.impressions += impressions;
    sums.cost += numberOf(record[Cost]) / millionths;
    sums.conversions += numberOf(record[Conv]);
    sums.conversionValue += numberOf(record[ConvValue]);
    sums.transactions += numberOf(record[Transactions]);
    if (position != 0) {
        sums.placedImpressions += impressions;
        sums.weightedPosition += position * impressions;
    }
}

QString countText(double number) {
    return withLeadingZero(numberText(roundHalfToEven(number, 2)));
}

QString decimals(double number, int count = 2) {
    return QString::number(roundHalfToEven(number, count), 'f', count);
}

/// A figure of a row: the true ratio where the column's own figure is another, else the sum.
struct TrueFigure {
    double value = 0;
    QString text;
    QString line; // how a ratio comes about; empty for a sum
};

TrueFigure count(double sum) {
    return {sum, countText(sum), {}};
}
TrueFigure money(double sum) {
    return {sum, decimals(sum), {}};
}

/// No figure without a divisor.
std::optional<TrueFigure> ratio(double divided, double divisor, double factor,
                                const QString &sentence, const QString &unit) {
    if (divisor == 0)
        return std::nullopt;
    const double value = divided / divisor * factor;
    const QString text = decimals(value) + unit;
    return TrueFigure{value, text, sentence + text};
}

std::optional<TrueFigure> trueFigure(const PlainSums &sums, int col) {
    const QString percent = QStringLiteral(" %");
    switch (col) {
    case gridColumn::Clicks:
        return count(sums.clicks);
    case gridColumn::Impressions:
        return count(sums.impressions);
    case gridColumn::Ctr:
        return ratio(sums.clicks, sums.impressions, 100,
                     QStringLiteral("%1 clicks of %2 impressions: ")
                         .arg(countText(sums.clicks), countText(sums.impressions)),
                     percent);
    case gridColumn::AverageCpc:
        return ratio(
            sums.cost, sums.clicks, 1,
            QStringLiteral("%1 for %2 clicks: ").arg(decimals(sums.cost), countText(sums.clicks)),
            QString());
    case gridColumn::Cost:
        return money(sums.cost);
    case gridColumn::Conversions:
        return count(sums.conversions);
    case gridColumn::ConversionRate:
        return ratio(sums.conversions, sums.clicks, 100,
                     QStringLiteral("%1 conversions of %2 clicks: ")
                         .arg(countText(sums.conversions), countText(sums.clicks)),
                     percent);
    case gridColumn::CostPerConversion:
        return ratio(sums.cost, sums.conversions, 1,
                     QStringLiteral("%1 for %2 conversions: ")
                         .arg(decimals(sums.cost), countText(sums.conversions)),
                     QString());
    case gridColumn::AveragePosition:
        return ratio(
            sums.weightedPosition, sums.placedImpressions, 1,
            QStringLiteral("Weighted by %1 impressions: ").arg(countText(sums.placedImpressions)),
            QString());
    case gridColumn::ConversionValue:
        return money(sums.conversionValue);
    case gridColumn::Roi:
        return ratio(sums.conversionValue - sums.cost, sums.cost, 100,
                     QStringLiteral("A value of %1 for a cost of %2: ")
                         .arg(decimals(sums.conversionValue), decimals(sums.cost)),
                     percent);
    case gridColumn::Transactions:
        return count(sums.transactions);
    default:
        return std::nullopt;
    }
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
        QString words = QString::number(day.day);
        if (withMonth)
            words += u' ' + QString::fromStdString(std::string(shortMonthName(day.month)));
        if (withYear)
            words += u' ' + QString::number(day.year);
        return words;
    };
    const bool years = first.year != last.year;
    const QString end = text(last, true, years || last.year != year);
    if (first == last)
        return end;
    return text(first, years || first.month != last.month, years) + QStringLiteral(" to ") + end;
}

FigureNotes::Period FigureNotes::periodOf(ProjectRecords &records, const TreeNode &node,
                                          const DateRange &range) {
    std::vector<PlainSums> sums;
    QHash<QByteArray, int> places;
    const RecordQuestion question{readNodeTag(node.Tag()),
                                  isoText(dayNumber(range.start)),
                                  isoText(dayNumber(range.end)) + QStringLiteral(" 23:59:59"),
                                  groupingColumn(node),
                                  [&](std::string_view text) {
                                      const std::string_view name = withoutBlanks(text);
                                      const QByteArray key(name.data(),
                                                           static_cast<qsizetype>(name.size()));
                                      const auto found = places.constFind(key);
                                      if (found != places.constEnd())
                                          return *found;
                                      sums.emplace_back();
                                      return *places.insert(key, static_cast<int>(sums.size()) - 1);
                                  },
                                  figures};
    Period period;
    walkRecords(records, question, [&](int place, const auto &record) {
        add(sums[static_cast<std::size_t>(place)], record);
        add(period.all, record);
    });
    for (auto place = places.constBegin(); place != places.constEnd(); ++place)
        period.rows.insert(textOf(place.key().toStdString()),
                           sums[static_cast<std::size_t>(place.value())]);
    return period;
}

FigureNotes FigureNotes::query(ProjectRecords &records, const TreeNode &node,
                               const DateRange &range) {
    FigureNotes notes;
    notes.m_shown = periodOf(records, node, range);
    notes.m_year = calendarDay(dayNumber(range.start)).year;
    if (const auto before = periodBefore(range)) {
        notes.m_before = *before;
        notes.m_earlier = periodOf(records, node, *before);
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
