// One walk over the records of a node in a period, in the order of GoogleDayId whatever the road:
// the records in memory, or the engine where they aren't held. The same visitor takes the figures
// from either, by `numberOf` and its like, so that no digit tells the roads apart.
#pragma once

#include "core/analysis/records/cellText.h"
#include "core/analysis/records/nodeRecords.h"
#include "core/base/dateValue.h"
#include "core/database/projectRecords.h"
#include "core/platform/sqlite/recordScan.h"

#include <cstddef>
#include <optional>
#include <type_traits>

namespace veltrona {

/// A number in memory that has no other type.
struct PlainNumber {
    double value = 0;
    bool isShort = false; // at most 15 significant digits
};

template<class Value>
concept TypedValue = requires(const Value &value) {
    value.type();
};

/// Number of the figure's text.
double numberOf(const TypedValue auto &value) {
    switch (value.type()) {
    case sqlite::ValueType::Integer:
        return static_cast<double>(value.int64());
    case sqlite::ValueType::Real:
        return toFifteenDigits(value.real());
    case sqlite::ValueType::Text:
        return numberOfText(value.utf8());
    default:
        return 0;
    }
}
inline double numberOf(const PlainNumber &number) {
    return number.isShort ? number.value : toFifteenDigits(number.value);
}

double percentNumberOf(const TypedValue auto &value) {
    return value.type() == sqlite::ValueType::Text ? percentNumberOfText(value.utf8())
                                                   : numberOf(value);
}
inline double percentNumberOf(const PlainNumber &number) {
    return numberOf(number);
}

/// The figure as it stands, not by way of its text.
double plainValueOf(const TypedValue auto &value) {
    return value.type() == sqlite::ValueType::Real ? value.real() : numberOf(value);
}
inline double plainValueOf(const PlainNumber &number) {
    return number.value;
}

/// The figure as the engine adds it up and compares it.
double engineNumberOf(const TypedValue auto &value) {
    return value.real();
}
inline double engineNumberOf(const PlainNumber &number) {
    return number.value;
}
/// A text is above all numbers.
bool isAboveZero(const TypedValue auto &value) {
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

struct RecordQuestion {
    NodePath path;
    DateRange range; // whole days: times of day don't count
    /// The text that says which group a record belongs to: a name, or else its date.
    std::optional<NameColumn> groupedBy;
    std::function<int(std::string_view)> groupOf; // -1 leaves the record out
    std::span<const Figure> figures;
};

namespace recordWalk {
/// The columns to walk over, or null: then the engine is to be asked for `fromEngine`.
const RecordColumns *columnsFor(ProjectRecords &records, const RecordQuestion &question,
                                NodeRecords &fromEngine);
void visitColumns(const RecordColumns &columns, const RecordQuestion &question,
                  std::span<const double> exactScales, const RecordColumns::Visitor &visitor);
/// The group of each date, by its code.
std::vector<int> dateGroups(const TextDictionary &dates, const RecordQuestion &question);
std::string engineColumns(const RecordQuestion &question);

/// `visitor(group, figures)` for each record of a batch.
template<class Visitor>
void visitBatch(const RecordBatch &batch, Visitor visitor) {
    struct PlainRecord {
        const RecordBatch &batch;
        std::size_t record;
        PlainNumber operator[](std::size_t figure) const {
            const RecordBatch::Numbers &numbers = batch.numbers(figure);
            return {numbers.values[record], numbers.areShort};
        }
    };
    struct OddRecord {
        const RecordBatch &batch;
        std::size_t record;
        FigureValue operator[](std::size_t figure) const { return batch.value(figure, record); }
    };
    for (std::size_t i = 0; i < batch.size(); ++i) {
        if (batch.hasOddValues())
            visitor(batch.group(i), OddRecord{batch, i});
        else
            visitor(batch.group(i), PlainRecord{batch, i});
    }
}
} // namespace recordWalk

/// `visitor(group, figures)` is called for each record; `figures[i]` is the question's i-th, to be
/// read by the functions above. Where all figures have exact scales, `wholeVisitor(group, record)`
/// is called instead if there is one, and the scales are returned; else none are.
template<class Visitor, class WholeVisitor = std::nullptr_t>
std::vector<double> walkRecords(ProjectRecords &records, const RecordQuestion &question,
                                Visitor visitor, WholeVisitor wholeVisitor = {}) {
    NodeRecords fromEngine;
    const RecordColumns *columns = recordWalk::columnsFor(records, question, fromEngine);
    if (!columns) {
        sqlite::scanRecords(records.connection(), recordWalk::engineColumns(question),
                            fromEngine.sql, fromEngine.bindings,
                            [&](std::span<const sqlite::RecordValue> record) {
                                const int group = question.groupOf(record[0].utf8());
                                if (group >= 0)
                                    visitor(group, record.subspan(1));
                            });
        return {};
    }
    if constexpr (!std::is_null_pointer_v<WholeVisitor>) {
        std::vector<double> scales = columns->exactScales(question.figures);
        if (!scales.empty()) {
            recordWalk::visitColumns(*columns, question, scales, [&](const RecordBatch &batch) {
                for (std::size_t i = 0; i < batch.size(); ++i)
                    wholeVisitor(batch.group(i), WholeRecord(batch, i, scales));
            });
            return scales;
        }
    }
    recordWalk::visitColumns(*columns, question, {}, [&](const RecordBatch &batch) {
        recordWalk::visitBatch(batch, visitor);
    });
    return {};
}

/// The first and the last date of the table; none if it is empty. Throws Failure, also for a date
/// that can't be read.
std::optional<DateRange> tableDates(ProjectRecords &records);

} // namespace veltrona
