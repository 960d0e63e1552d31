// The records of a node in a period, in the order of GoogleDayId, as batches: from memory, or from
// SQLite where they aren't in memory. The same visitor reads the figures of both, by `numberOf` and
// its like, so that both give the same digits.
#pragma once

#include "core/analysis/records/cellText.h"
#include "core/analysis/records/nodePath.h"
#include "core/base/dateValue.h"
#include "core/database/projectRecords.h"
#include "core/database/recordColumns.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace veltrona {

/// A figure that is a number.
struct PlainNumber {
    double value = 0;
    bool fitsFifteenDigits = false; // at most 15 significant digits
};

/// The number of the figure's text.
inline double numberOf(const FigureValue &value) {
    switch (value.type()) {
    case sqlite::ValueType::Integer:
        return toFifteenDigits(static_cast<double>(value.int64()));
    case sqlite::ValueType::Real:
        return toFifteenDigits(value.real());
    case sqlite::ValueType::Text:
        return numberOfText(value.utf8());
    default:
        return 0;
    }
}
inline double numberOf(const PlainNumber &number) {
    return number.fitsFifteenDigits ? number.value : toFifteenDigits(number.value);
}

inline double percentNumberOf(const FigureValue &value) {
    return value.type() == sqlite::ValueType::Text ? percentNumberOfText(value.utf8())
                                                   : numberOf(value);
}
inline double percentNumberOf(const PlainNumber &number) {
    return numberOf(number);
}

/// The stored number itself, not the one of its text.
inline double plainValueOf(const FigureValue &value) {
    const bool isNumber =
        value.type() == sqlite::ValueType::Real || value.type() == sqlite::ValueType::Integer;
    return isNumber ? value.real() : numberOf(value);
}
inline double plainValueOf(const PlainNumber &number) {
    return number.value;
}

/// The figure as SQLite sums and compares it.
inline double storedNumberOf(const FigureValue &value) {
    return value.real();
}
inline double storedNumberOf(const PlainNumber &number) {
    return number.value;
}
/// As in SQLite, a text is above all numbers.
inline bool isAboveZero(const FigureValue &value) {
    return value.type() == sqlite::ValueType::Text || value.type() == sqlite::ValueType::Blob ||
           value.real() > 0;
}
inline bool isAboveZero(const PlainNumber &number) {
    return number.value > 0;
}

/// A record whose figures can be summed up as whole numbers: see RecordColumns::exactScales.
class WholeRecord {
public:
    WholeRecord(const RecordBatch &batch, std::size_t record, std::span<const double> scales)
        : m_batch(batch), m_record(record), m_scales(scales) {}

    /// The figure times its scale.
    double operator[](std::size_t figure) const { return m_batch.numbers(figure).values[m_record]; }
    double number(std::size_t figure) const { return (*this)[figure] / m_scales[figure]; }

private:
    const RecordBatch &m_batch;
    std::size_t m_record;
    std::span<const double> m_scales;
};

struct RecordQuery {
    NodePath path;
    DateRange range; // whole days: times of day don't count
    /// The columns that decide the group of a record; if there are none, its date does.
    std::vector<NameColumn> groupedBy;
    /// The group by those names or by the date; -1 leaves the record out. May be called once for
    /// many records of the same texts.
    std::function<int(std::span<const std::string_view>)> groupOf;
    std::span<const Figure> figures;
    /// Whether the numbers may come multiplied by RecordColumns::exactScales.
    bool scaled = false;
};

/// Figure i of a batch is the query's i-th. `scales` is empty unless the numbers are multiplied by
/// these.
using BatchVisitor = std::function<void(const RecordBatch &batch, std::span<const double> scales)>;

/// Visits the records in batches, from memory or from SQLite. Throws Failure.
void visitRecords(ProjectRecords &records, const RecordQuery &query, const BatchVisitor &visitor);
/// False where the records are neither in memory nor few: one plain scan is faster then.
bool isCheap(ProjectRecords &records, const RecordQuery &query);

/// Calls `visitor(group, figures)` for each record of a batch; `figures[i]` is to be read by the
/// functions above.
template<class Visitor>
void forEachRecord(const RecordBatch &batch, Visitor visitor) {
    struct PlainRecord {
        const RecordBatch &batch;
        std::size_t record;
        PlainNumber operator[](std::size_t figure) const {
            const RecordBatch::Numbers &numbers = batch.numbers(figure);
            return {numbers.values[record], numbers.fitFifteenDigits};
        }
    };
    struct ExceptionalRecord {
        const RecordBatch &batch;
        std::size_t record;
        FigureValue operator[](std::size_t figure) const { return batch.value(figure, record); }
    };
    for (std::size_t i = 0; i < batch.size(); ++i) {
        if (batch.hasExceptionalValues())
            visitor(batch.group(i), ExceptionalRecord{batch, i});
        else
            visitor(batch.group(i), PlainRecord{batch, i});
    }
}

/// The first and the last date of the table; none if it is empty. Throws Failure, also for a date
/// that can't be read.
std::optional<DateRange> tableDates(ProjectRecords &records);

} // namespace veltrona
