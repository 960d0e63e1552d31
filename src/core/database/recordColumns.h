// A copy of the day records in memory, column by column in the order of GoogleDayId: leaf of the
// account, date and the figures that the views read, with the scale at which sums of a figure are
// exact. ProjectRecords keeps it up to date.
#pragma once

#include "core/database/leafDictionary.h"
#include "core/database/packedColumn.h"
#include "core/platform/sqlite/connection.h"
#include "core/platform/sqlite/recordScan.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace veltrona {

enum class Figure {
    Clicks,
    Impressions,
    Ctr,
    Cpc,
    Cost,
    Conv,
    Pos,
    ConvValue,
    Transactions,
    Budget,
    ConvCost,
    MaxContentCpc,
    MaxCpc
};
inline constexpr std::array<const char *, 13> figureColumns = {
    "Clicks",    "Impressions",  "ctr",    "cpc",      "cost",          "conv",  "Pos",
    "ConvValue", "Transactions", "Budget", "ConvCost", "MaxContentCpc", "MaxCpc"};
/// Reports give amounts of money in millionths of the currency unit.
inline constexpr double millionths = 1'000'000;

/// A figure as SQLite returns it, with the interface of sqlite::RecordValue.
class FigureValue {
public:
    FigureValue() = default;
    explicit FigureValue(double number) : m_real(number) {}
    explicit FigureValue(const sqlite::RecordValue &value)
        : m_type(value.type()), m_whole(value.int64()), m_real(value.real()), m_text(value.utf8()) {
    }

    sqlite::ValueType type() const { return m_type; }
    qint64 int64() const { return m_whole; }
    double real() const { return m_real; }
    std::string_view utf8() const { return m_text; }

private:
    sqlite::ValueType m_type = sqlite::ValueType::Real;
    qint64 m_whole = 0;
    double m_real = 0;
    std::string m_text;
};

/// Values that are neither 64-bit floats nor whole numbers of at most 15 digits, such as texts: by
/// the record's place among its neighbours, and figure.
using ExceptionalValues = std::map<std::pair<std::size_t, Figure>, FigureValue>;

/// The value as a number. An exceptional one is added to `exceptional`, and 0 takes its place.
double plainNumber(const sqlite::RecordValue &value, std::size_t place, Figure figure,
                   ExceptionalValues &exceptional);

/// Some of the visited records, side by side. Valid during the visit.
class RecordBatch {
public:
    struct Numbers {
        const double *values = nullptr;
        bool fitFifteenDigits = false;
    };

    std::size_t size() const { return m_groups.size(); }
    int group(std::size_t record) const { return m_groups[record]; }
    /// Figures count in the order in which `visit` was asked for them.
    const Numbers &numbers(std::size_t figure) const { return m_numbers[figure]; }
    /// Whether a record may have an exceptional value, which `value` alone returns.
    bool hasExceptionalValues() const { return !m_exceptional->empty(); }
    FigureValue value(std::size_t figure, std::size_t record) const;

private:
    friend class RecordColumns;
    friend class ScannedBatch;
    std::span<const int> m_groups;
    std::array<Numbers, figureColumns.size()> m_numbers;
    std::span<const Figure> m_figures;
    const ExceptionalValues *m_exceptional = nullptr;
    const std::uint32_t *m_places = nullptr; // of the records among the exceptional values
};

class RecordColumns {
public:
    /// Reads the records after those that are held, to the last one, or until `isOver` says so.
    /// False if they can't be held: more than `maxBytes` in all, or a name or date that isn't a
    /// text. Throws Failure and std::bad_alloc. The columns must not be used after either.
    bool append(const sqlite::Connection &connection, std::size_t maxBytes,
                const std::function<bool()> &isOver = {});
    /// Whether the last `append` has read all records; the columns must not be visited before.
    bool isComplete() const { return m_unpacked == nullptr; }

    std::size_t size() const { return m_size; }
    std::size_t bytes() const;
    const LeafDictionary &leaves() const { return m_leaves; }
    /// The texts of all dates, unordered.
    const TextDictionary &dates() const { return m_dates; }

    /// For each figure the power of ten that makes all its numbers whole. Empty unless all their
    /// sums are exact in any order: no number is negative, and as whole numbers they sum up to less
    /// than 1E15.
    std::vector<double> exactScales(std::span<const Figure> figures) const;

    using Visitor = std::function<void(const RecordBatch &)>;
    /// Visits the records whose leaf and date both have a group, by their codes; -1 is none. The
    /// group of a record is the sum of both. With `exactScales` the numbers are multiplied by the
    /// scale of their figure.
    void visit(const std::vector<int> &groupOfLeaf, const std::vector<int> &groupOfDate,
               std::span<const Figure> figures, std::span<const double> exactScales,
               const Visitor &visitor) const;

private:
    bool add(std::span<const sqlite::RecordValue> record);
    bool pack(std::size_t maxBytes);
    double exactScale(std::size_t figure) const;

    struct Block {
        std::size_t size = 0;
        PackedColumn leaves;
        PackedColumn dates;
        std::array<PackedColumn, figureColumns.size()> figures;
        ExceptionalValues exceptionalValues; // by place in the block
        std::size_t bytes() const;
    };

    /// The last records read, until they make a block.
    struct Unpacked {
        std::vector<std::uint32_t> leaves;
        std::vector<std::uint32_t> dates;
        std::array<std::vector<double>, figureColumns.size()> figures;
        ExceptionalValues exceptionalValues; // by place in the block
        std::size_t exceptionalBytes = 0;
    };

    LeafDictionary m_leaves;
    TextDictionary m_dates;
    std::vector<Block> m_blocks;
    std::unique_ptr<Unpacked> m_unpacked; // while records are being read
    std::size_t m_blockBytes = 0;
    std::size_t m_size = 0;
    qint64 m_lastId = 0; // of the records held
};

} // namespace veltrona
