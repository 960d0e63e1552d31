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
/// A look at the clock takes as long as a sixteenth of a record.
constexpr std::size_t recordsPerLook = 16;

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

std::size_t bytesOf(ExceptionalValues::const_iterator value,
                    ExceptionalValues::const_iterator end) {
    constexpr std::size_t nodeBytes = 48; // of a map's node beside its value
    std::size_t bytes = 0;
    for (; value != end; ++value)
        bytes += nodeBytes + sizeof *value + value->second.utf8().size();
    return bytes;
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

bool RecordColumns::append(const sqlite::Connection &connection, std::size_t maxBytes,
                           const std::function<bool()> &isOver) {
    std::string rest = "FROM tblGoogleDays NOT INDEXED";
    if (m_size > 0)
        rest += " WHERE GoogleDayId > " + std::to_string(m_lastId);
    if (!m_unpacked)
        m_unpacked = std::make_unique<Unpacked>();
    bool canBeHeld = true;
    const bool wereAll = sqlite::scanRecords(
        connection, readingColumns(), rest, {}, [&](std::span<const RecordValue> record) {
            canBeHeld = add(record) && bytes() <= maxBytes &&
                        (m_unpacked->leaves.size() < blockSize || pack(maxBytes));
            return canBeHeld && !(isOver && m_size % recordsPerLook == 0 && isOver());
        });
    if (!wereAll)
        return canBeHeld;
    canBeHeld = pack(maxBytes);
    m_unpacked.reset();
    return canBeHeld;
}

/// False if the record can't be held.
bool RecordColumns::add(std::span<const RecordValue> record) {
    // In a damaged table the ids may go back, and a later scan would then begin too early.
    const qint64 id = record[Id].int64();
    if (m_size > 0 && id <= m_lastId)
        return false;
    // Values of other types equal no text.
    for (std::size_t i = Date; i < FirstFigure; ++i) {
        if (record[i].type() != ValueType::Text)
            return false;
    }
    Unpacked &block = *m_unpacked;
    const std::string_view date = record[Date].utf8();
    // Neighbours mostly have the same date.
    const bool isSame = !block.dates.empty() && m_dates.text(block.dates.back()) == date;
    block.dates.push_back(isSame ? block.dates.back() : m_dates.add(date));
    LeafDictionary::Names names;
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] = record[FirstName + i].utf8();
    for (std::size_t i = 0; i < block.figures.size(); ++i)
        block.figures[i].push_back(plainNumber(record[FirstFigure + i], block.leaves.size(),
                                               static_cast<Figure>(i), block.exceptionalValues));
    // Thousands of long texts would otherwise come into memory before the block is packed.
    const auto added = block.exceptionalValues.lower_bound({block.leaves.size(), Figure()});
    block.exceptionalBytes += bytesOf(added, block.exceptionalValues.end());
    block.leaves.push_back(m_leaves.add(names));
    m_lastId = id;
    ++m_size;
    return true;
}

/// False if the blocks exceed their bytes.
bool RecordColumns::pack(std::size_t maxBytes) {
    Unpacked &unpacked = *m_unpacked;
    if (unpacked.leaves.empty())
        return true;
    Block block;
    block.size = unpacked.leaves.size();
    block.leaves = PackedColumn::ofCodes(unpacked.leaves);
    block.dates = PackedColumn::ofCodes(unpacked.dates);
    for (std::size_t i = 0; i < unpacked.figures.size(); ++i) {
        block.figures[i] = PackedColumn::ofNumbers(unpacked.figures[i]);
        unpacked.figures[i].clear();
    }
    block.exceptionalValues = std::exchange(unpacked.exceptionalValues, {});
    unpacked.exceptionalBytes = 0;
    unpacked.leaves.clear();
    unpacked.dates.clear();
    m_blockBytes += block.bytes();
    m_blocks.push_back(std::move(block));
    return bytes() <= maxBytes;
}

std::size_t RecordColumns::Block::bytes() const {
    std::size_t bytes = sizeof *this + leaves.bytes() + dates.bytes();
    for (const PackedColumn &figure : figures)
        bytes += figure.bytes();
    return bytes + bytesOf(exceptionalValues.begin(), exceptionalValues.end());
}

std::size_t RecordColumns::bytes() const {
    return m_blockBytes + m_leaves.bytes() + m_dates.bytes() +
           (m_unpacked ? m_unpacked->exceptionalBytes : 0);
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
