// A copy of the day records in memory, column by column in the order of GoogleDayId: leaf of the
// account, date and the figures that the views read. It is a copy and nothing else; it knows no
// sums. ProjectRecords keeps it true to the file.
#pragma once

#include "core/database/packedColumn.h"
#include "core/database/textDictionary.h"
#include "core/platform/sqlite/connection.h"
#include "core/platform/sqlite/recordScan.h"

#include <array>
#include <functional>
#include <optional>
#include <string>
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

/// A figure as the engine gives it, with the names of sqlite::RecordValue.
class FigureValue {
public:
    FigureValue() = default;
    explicit FigureValue(double number) : m_real(number) {}
    FigureValue(sqlite::ValueType type, qint64 whole, double real, std::string_view text)
        : m_type(type), m_whole(whole), m_real(real), m_text(text) {}

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

/// The value if it is a 64-bit float or a whole number of at most 15 digits.
std::optional<double> plainNumber(const sqlite::RecordValue &value);

/// Some of the records that a walk visits, side by side. Valid during the visit.
class RecordBatch {
public:
    struct Numbers {
        const double *values = nullptr;
        bool areShort = false; // at most 15 significant digits each
    };

    std::size_t size() const { return m_groups.size(); }
    int group(std::size_t record) const { return m_groups[record]; }
    /// Figures count in the order in which the walk asks for them.
    const Numbers &numbers(std::size_t figure) const { return m_numbers[figure]; }
    /// Whether a record may hold what is no number of at most 15 digits or a 64-bit float, such as
    /// a text: only `value` tells it then.
    bool hasOddValues() const { return m_hasOddValues; }
    FigureValue value(std::size_t figure, std::size_t record) const;

private:
    friend class RecordColumns;
    friend class ScannedBatch;
    std::span<const int> m_groups;
    std::array<Numbers, figureColumns.size()> m_numbers;
    bool m_hasOddValues = false;
    std::function<FigureValue(std::size_t figure, std::size_t record)> m_oddValue;
};

class RecordColumns {
public:
    /// Takes in all records behind those that are held. False if they can't be held: more than
    /// `mostBytes` in all, or names and dates that are no texts; the columns are of no use then.
    /// Throws Failure and std::bad_alloc, the columns being of no use either.
    bool readOn(const sqlite::Connection &connection, std::size_t mostBytes);

    std::size_t size() const { return m_size; }
    std::size_t bytes() const { return m_blockBytes + m_leaves.bytes() + m_dates.bytes(); }
    const LeafDictionary &leaves() const { return m_leaves; }
    /// The texts of all dates, in no order.
    const TextDictionary &dates() const { return m_dates; }

    /// For each figure the power of ten that makes all its numbers whole. Empty unless all sums of
    /// each of them are exact in whatever order: no number is below zero, and as whole numbers they
    /// come to less than 1E15 together.
    std::vector<double> exactScales(std::span<const Figure> figures) const;

    using Visitor = std::function<void(const RecordBatch &)>;
    /// Visits the records whose leaf and date both have a group, by their codes; -1 is none. The
    /// group of a record is the sum of both. With `exactScales` the numbers come times the scale of
    /// their figure.
    void visit(const std::vector<int> &groupOfLeaf, const std::vector<int> &groupOfDate,
               std::span<const Figure> figures, std::span<const double> exactScales,
               const Visitor &visitor) const;

private:
    class Reader;
    double exactScale(std::size_t figure) const;

    /// What a block of numbers doesn't take.
    struct OddValue {
        std::uint32_t place = 0;
        Figure figure = Figure::Clicks;
        FigureValue value;
    };
    struct Block {
        std::size_t size = 0;
        PackedColumn leaves;
        PackedColumn dates;
        std::array<PackedColumn, figureColumns.size()> figures;
        std::vector<OddValue> oddValues; // by place and figure
        const FigureValue *oddValue(std::uint32_t place, Figure figure) const;
        std::size_t bytes() const;
    };

    LeafDictionary m_leaves;
    TextDictionary m_dates;
    std::vector<Block> m_blocks;
    std::size_t m_blockBytes = 0;
    std::size_t m_size = 0;
    qint64 m_lastId = 0; // of the records held
};

} // namespace veltrona
