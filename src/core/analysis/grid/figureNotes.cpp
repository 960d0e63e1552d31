#include "core/analysis/grid/figureNotes.h"

#include "core/analysis/grid/comparedPeriods.h"
#include "core/analysis/records/cellText.h"
#include "core/analysis/records/recordWalk.h"
#include "core/base/dateTexts.h"
#include "core/base/failure.h"
#include "core/base/storedText.h"
#include "core/base/text.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <string_view>

namespace veltrona {

namespace {

/// A column of weights or of plain sums that its own note or a ratio shows.
constexpr bool isSummed(const GridColumn &column) {
    return column.weight || (column.rule == CellRule::Sum && !column.ratio.sentence);
}

constexpr FigureList figures(isSummed);

template<class Record>
void addRecord(ColumnSums &sums, const Record &record) {
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

/// Whether the project has records as early as the end of a range. An index answers this.
bool areInTable(ProjectRecords &records, const DateRange &range) {
    try {
        const std::optional<DateRange> table = tableDates(records);
        return table && dayNumber(table->start) <= dayNumber(range.end);
    } catch (const Failure &) {
        return true; // a date that can't be read is reported by "All"
    }
}

/// A number of a sentence, with a minus sign instead of a hyphen.
QString withMinus(QString number) {
    return number.replace(u'-', u'\u2212');
}

QString moneyText(double amount) {
    return withMinus(QString::number(roundHalfToEven(amount, 2), 'f', 2));
}

/// In the form of cells.
QString numberForm(double number, int decimals) {
    return withMinus(withLeadingZero(numberText(roundHalfToEven(number, decimals))));
}

/// A part of a positive whole: "36%".
QString shareText(double part, double whole) {
    const double percent = roundHalfToEven(part / whole * 100, 0);
    if (percent == 0 && part > 0)
        return u"less than 1%"_s;
    if (percent == 100 && part < whole)
        return u"more than 99%"_s;
    return numberForm(percent, 0) + u'%';
}

/// The true ratio where the column shows another figure, else the sum.
struct TrueFigure {
    double value = 0;
    QString text;
    QString line; // how a ratio is computed; empty for a sum
};

constexpr bool isCounted(const GridColumn &column) {
    return column.decimals < 0;
}

QString sumText(double sum, const GridColumn &column) {
    return isCounted(column) ? numberForm(sum, 2) : moneyText(sum);
}

/// "30 clicks", but "13.00"
QString amountText(double sum, const GridColumn &column) {
    const QString text = sumText(sum, column);
    return isCounted(column) ? counted(text, QLatin1StringView(column.noun)) : text;
}

/// None for a ratio without a divisor.
std::optional<TrueFigure> trueFigure(const ColumnSums &sums, int col) {
    const GridColumn &column = gridColumn::at(col);
    const TrueRatio &ratio = column.ratio;
    if (!ratio.sentence) {
        if (column.rule != CellRule::Sum)
            return std::nullopt;
        return TrueFigure{sums[col], sumText(sums[col], column), {}};
    }
    const double dividend = sums[ratio.dividend];
    const double divisor = sums[ratio.divisor];
    if (divisor == 0)
        return std::nullopt;
    const double value =
        (ratio.ofGain ? dividend - divisor : dividend) / divisor * (column.isPercent ? 100 : 1);
    const QString text = column.isPercent ? numberForm(value, 2) + u'%' : moneyText(value);
    const auto amount = [&](int of) { return amountText(sums[of], gridColumn::at(of)); };
    const QString sentence = QString::fromLatin1(ratio.sentence)
                                 .replace("%1"_L1, amount(ratio.dividend))
                                 .replace("%2"_L1, amount(ratio.divisor));
    return TrueFigure{value, text, sentence + text};
}

QString changeText(double now, double before) {
    const double percent = roundHalfToEven((now - before) / std::fabs(before) * 100, 1);
    if (percent == 0)
        return u"no change"_s;
    return (percent > 0 ? u"up "_s : u"down "_s) + numberForm(std::fabs(percent), 1) + u'%';
}

QStringList shareLines(double part, double whole, const GridColumn &column) {
    if (!column.noun || column.column >= gridColumn::Shown || part < 0 || whole <= 0)
        return {};
    const QString noun = QLatin1StringView(column.noun) + (isCounted(column) ? u"s"_s : QString());
    return {u"%1 of the %2 of this table."_s.arg(shareText(part, whole), noun)};
}

QStringList wasteLines(const NotedSums &sums) {
    const double cost = sums.sums[gridColumn::Cost];
    if (sums.wastingKeywords == 0 || cost <= 0)
        return {};
    return {u"%1 of it (%2) went to %3 without a conversion."_s.arg(
        moneyText(sums.wastedCost), shareText(sums.wastedCost, cost),
        counted(sums.wastingKeywords, "keyword"_L1))};
}

QStringList lossLines(const NotedSums &sums) {
    return QStringList{u"Loss: cost %1, brought %2."_s.arg(
               moneyText(sums.sums[gridColumn::Cost]),
               moneyText(sums.sums[gridColumn::ConversionValue]))} +
           wasteLines(sums);
}

/// The group of records is their leaf, so that the sums of a row and of its keywords come from one
/// walk.
class NotedLeaves {
public:
    int groupOf(std::span<const std::string_view> rowAndLeaf) {
        LeafDictionary::Names leaf;
        std::ranges::copy(rowAndLeaf.subspan(1), leaf.begin());
        const LeafDictionary::Code code = m_names.add(leaf);
        if (code == m_leaves.size())
            m_leaves.push_back({m_rows.add(withoutBlanks(rowAndLeaf.front()))});
        return static_cast<int>(code);
    }

    void add(const RecordBatch &batch) {
        m_sums.resize(m_rows.size());
        forEachRecord(batch, [this](int group, const auto &record) {
            Leaf &leaf = m_leaves[static_cast<std::size_t>(group)];
            addRecord(m_sums[leaf.row].sums, record);
            addRecord(m_all.sums, record);
            leaf.cost += numberOf(record[figures.placeOf(Figure::Cost)]) / millionths;
            leaf.conversions += numberOf(record[figures.placeOf(Figure::Conv)]);
        });
    }

    NotedSums all() const {
        NotedSums all = m_all;
        for (const Leaf &leaf : m_leaves)
            addWaste(leaf, all);
        return all;
    }
    QHash<QString, NotedSums> rows() const {
        std::vector<NotedSums> sums = m_sums;
        sums.resize(m_rows.size()); // some rows may have no records in the period
        for (const Leaf &leaf : m_leaves)
            addWaste(leaf, sums[leaf.row]);
        QHash<QString, NotedSums> rows;
        for (TextDictionary::Code row = 0; row < sums.size(); ++row)
            rows.insert(textOf(m_rows.text(row)), sums[row]);
        return rows;
    }

private:
    struct Leaf {
        TextDictionary::Code row = 0;
        double cost = 0;
        double conversions = 0;
    };
    static void addWaste(const Leaf &leaf, NotedSums &sums) {
        if (leaf.cost <= 0 || leaf.conversions != 0)
            return;
        sums.wastedCost += leaf.cost;
        ++sums.wastingKeywords;
    }

    TextDictionary m_rows;
    LeafDictionary m_names;
    std::vector<Leaf> m_leaves;    // by the names' codes
    std::vector<NotedSums> m_sums; // by the rows' codes
    NotedSums m_all;
};

} // namespace

FigureNotes::Period FigureNotes::periodOf(ProjectRecords &records, const NodePath &path,
                                          const DateRange &range) {
    NotedLeaves leaves;
    const RecordQuery query{path,
                            range,
                            {path.columnBelow(), NameColumn::Campaign, NameColumn::Adgroup,
                             NameColumn::AdwordsTyp, NameColumn::KeyWord, NameColumn::KwType},
                            [&leaves](auto names) { return leaves.groupOf(names); },
                            figures};
    visitRecords(records, query, [&](const RecordBatch &batch, auto) { leaves.add(batch); });
    return {range, leaves.rows(), leaves.all()};
}

FigureNotes::FigureNotes(ProjectRecords &records, const NodePath &path, const DateRange &range)
    : m_shown(periodOf(records, path, range)) {
    const std::optional<DateRange> before = periodBefore(range);
    const std::optional<DateRange> yearBefore = sameDaysOfYearBefore(range);
    if (before)
        m_earlier.push_back(periodOf(records, path, *before));
    if (yearBefore && yearBefore != before && areInTable(records, *yearBefore))
        m_earlier.push_back(periodOf(records, path, *yearBefore));
}

QStringList FigureNotes::ofRow(const QString &name, int col) const {
    return lines([&name](const Period &period) { return period.rows.value(name); }, col,
                 &m_shown.all);
}

QStringList FigureNotes::ofSummary(int col) const {
    return lines([](const Period &period) { return period.all; }, col, nullptr);
}

QStringList FigureNotes::ofLoss(ProjectRecords &records, const NodePath &path,
                                const DateRange &range) {
    const Period period = periodOf(records, path, range);
    // The records of a keyword type are those of its keyword, whose rows are the types.
    return lossLines(path.level() == NodeLevel::KeywordType ? period.rows.value(path.names.last())
                                                            : period.all);
}

QStringList FigureNotes::lines(const std::function<NotedSums(const Period &)> &sumsOf, int col,
                               const NotedSums *whole) const {
    const NotedSums shown = sumsOf(m_shown);
    if (col == gridColumn::Name)
        return lossLines(shown);
    QStringList lines;
    const std::optional<TrueFigure> now = trueFigure(shown.sums, col);
    if (now && !now->line.isEmpty())
        lines.append(now->line);
    if (col == gridColumn::Cost)
        lines += wasteLines(shown);
    if (whole)
        lines += shareLines(shown.sums[col], whole->sums[col], gridColumn::at(col));
    const int year = calendarDay(dayNumber(m_shown.range.start)).year;
    for (const Period &period : m_earlier) {
        const std::optional<TrueFigure> then = trueFigure(sumsOf(period).sums, col);
        if (!then || then->value == 0)
            continue;
        QString line = datesText(period.range, year) + u": "_s + then->text;
        if (now)
            line += u", "_s + changeText(now->value, then->value);
        lines.append(line);
    }
    return lines;
}

} // namespace veltrona
