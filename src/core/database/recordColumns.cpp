#include "core/database/recordColumns.h"

#include "core/platform/sqlite/recordScan.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace veltrona {

namespace {

using sqlite::RecordValue;
using sqlite::ValueType;

constexpr std::size_t blockSize = 8192;
/// Records of a visit at a time: their figures stay in the L1 cache.
constexpr std::size_t batchSize = 256;

/// The columns before the figures in a record of the reading scan.
enum ReadColumn { Id, Date, FirstName, FirstFigure = FirstName + int(nameColumns.size()) };

std::string readingColumns() {
    std::string columns = "GoogleDayId, GoogleDate";
    for (const char *name : nameColumns)
        columns.append(", ").append(name);
    for (const char *figure : figureColumns)
        columns.append(", ").append(figure);
    return columns;
}

} // namespace

double plainNumber(const RecordValue &value, std::size_t place, Figure figure,
                   ExceptionalValues &exceptional) {
    if (value.type() == ValueType::Real)
        return value.real();
    const auto whole = static_cast<double>(value.int64());
    if (value.type() == ValueType::Integer && std::abs(whole) < fifteenDigitLimit)
        return whole;
    exceptional.emplace(std::pair(place, figure), value);
    return 0;
}

/// Gathers records until they make a block.
class RecordColumns::Reader {
public:
    Reader(RecordColumns &columns, std::size_t maxBytes)
        : m_columns(columns), m_maxBytes(maxBytes) {}

    /// False if the record can't be held.
    bool add(std::span<const RecordValue> record) {
        // Values of other types equal no text.
        for (std::size_t i = Date; i < FirstFigure; ++i) {
            if (record[i].type() != ValueType::Text)
                return false;
        }
        m_dates.push_back(dateCode(record[Date].utf8()));
        LeafDictionary::Names names;
        for (std::size_t i = 0; i < names.size(); ++i)
            names[i] = record[FirstName + i].utf8();
        for (std::size_t i = 0; i < m_figures.size(); ++i)
            m_figures[i].push_back(plainNumber(record[FirstFigure + i], m_leaves.size(),
                                               static_cast<Figure>(i), m_exceptional));
        m_leaves.push_back(m_columns.m_leaves.add(names));
        m_columns.m_lastId = record[Id].int64();
        ++m_columns.m_size;
        return m_leaves.size() < blockSize || endBlock();
    }

    /// False if the blocks exceed their bytes.
    bool endBlock() {
        if (m_leaves.empty())
            return true;
        Block block;
        block.size = m_leaves.size();
        block.leaves = PackedColumn::ofCodes(m_leaves);
        block.dates = PackedColumn::ofCodes(m_dates);
        for (std::size_t i = 0; i < m_figures.size(); ++i) {
            block.figures[i] = PackedColumn::ofNumbers(m_figures[i]);
            m_figures[i].clear();
        }
        block.exceptionalValues = std::exchange(m_exceptional, {});
        m_leaves.clear();
        m_dates.clear();
        m_columns.m_blockBytes += block.bytes();
        m_columns.m_blocks.push_back(std::move(block));
        return m_columns.bytes() <= m_maxBytes;
    }

private:
    TextDictionary::Code dateCode(std::string_view date) {
        // Neighbours mostly have the same date.
        if (m_dates.empty() || m_columns.m_dates.text(m_dates.back()) != date)
            return m_columns.m_dates.add(date);
        return m_dates.back();
    }

    RecordColumns &m_columns;
    std::size_t m_maxBytes;
    std::vector<std::uint32_t> m_leaves;
    std::vector<std::uint32_t> m_dates;
    std::array<std::vector<double>, figureColumns.size()> m_figures;
    ExceptionalValues m_exceptional;
};

bool RecordColumns::append(const sqlite::Connection &connection, std::size_t maxBytes) {
    std::string rest = "FROM tblGoogleDays NOT INDEXED";
    if (m_size > 0)
        rest += " WHERE GoogleDayId > " + std::to_string(m_lastId);
    Reader reader(*this, maxBytes);
    return sqlite::scanRecords(
               connection, readingColumns(), rest, {},
               [&](std::span<const RecordValue> record) { return reader.add(record); }) &&
           reader.endBlock();
}

std::size_t RecordColumns::Block::bytes() const {
    std::size_t bytes = sizeof *this + leaves.bytes() + dates.bytes();
    for (const PackedColumn &figure : figures)
        bytes += figure.bytes();
    constexpr std::size_t nodeBytes = 48; // of a map's node beside its value
    for (const auto &each : exceptionalValues)
        bytes += nodeBytes + sizeof each + each.second.utf8().size();
    return bytes;
}

FigureValue RecordBatch::value(std::size_t figure, std::size_t record) const {
    const auto found = m_exceptional->find({m_places[record], m_figures[figure]});
    return found == m_exceptional->end() ? FigureValue(m_numbers[figure].values[record])
                                         : found->second;
}

/// 0 for none.
double RecordColumns::exactScale(std::size_t figure) const {
    double scale = 1;
    for (const Block &block : m_blocks) {
        const PackedColumn &column = block.figures[figure];
        if (!block.exceptionalValues.empty() || !column.scaledTotal())
            return 0;
        scale = std::max(scale, column.scale());
    }
    double total = 0;
    for (const Block &block : m_blocks)
        total += *block.figures[figure].scaledTotal() * (scale / block.figures[figure].scale());
    return total < fifteenDigitLimit ? scale : 0;
}

std::vector<double> RecordColumns::exactScales(std::span<const Figure> figures) const {
    std::vector<double> scales;
    for (const Figure figure : figures) {
        scales.push_back(exactScale(static_cast<std::size_t>(figure)));
        if (scales.back() == 0)
            return {};
    }
    return scales;
}

void RecordColumns::visit(const std::vector<int> &groupOfLeaf, const std::vector<int> &groupOfDate,
                          std::span<const Figure> figures, std::span<const double> exactScales,
                          const Visitor &visitor) const {
    std::array<std::uint32_t, batchSize> leaves;
    std::array<std::uint32_t, batchSize> dates;
    std::array<std::uint32_t, batchSize> places;
    std::array<int, batchSize> groups;
    std::vector<double> numbers(figures.size() * batchSize);
    RecordBatch batch;
    batch.m_figures = figures;
    batch.m_places = places.data();

    for (const Block &each : m_blocks) {
        batch.m_exceptional = &each.exceptionalValues;
        for (std::size_t first = 0; first < each.size; first += batchSize) {
            const std::size_t count = std::min(batchSize, each.size - first);
            each.leaves.codes(first, {leaves.data(), count});
            each.dates.codes(first, {dates.data(), count});
            std::size_t counted = 0;
            for (std::size_t i = 0; i < count; ++i) {
                const int leafGroup = groupOfLeaf[leaves[i]];
                const int dateGroup = groupOfDate[dates[i]];
                places[counted] = static_cast<std::uint32_t>(first + i);
                groups[counted] = leafGroup + dateGroup;
                counted += (leafGroup | dateGroup) >= 0;
            }
            if (counted == 0)
                continue;
            batch.m_groups = {groups.data(), counted};
            for (std::size_t i = 0; i < figures.size(); ++i) {
                const PackedColumn &column = each.figures[static_cast<std::size_t>(figures[i])];
                double *const values = numbers.data() + i * batchSize;
                if (exactScales.empty())
                    column.numbers({places.data(), counted}, values);
                else
                    column.scaledNumbers({places.data(), counted}, exactScales[i], values);
                batch.m_numbers[i] = {values, column.fitsFifteenDigits()};
            }
            visitor(batch);
        }
    }
}

} // namespace veltrona
