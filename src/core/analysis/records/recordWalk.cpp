#include "core/analysis/records/recordWalk.h"

#include "core/analysis/records/nodeRecords.h"
#include "core/base/storedText.h"
#include "core/base/text.h"
#include "core/database/projectFile.h"
#include "core/platform/sqlite/recordScan.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace veltrona {

namespace {

using Code = TextDictionary::Code;

/// The group of each leaf, by its code.
std::vector<int> leafGroups(const LeafDictionary &leaves, const RecordQuery &query) {
    std::vector<Code> path; // `none` fits no leaf
    for (const QString &name : query.path.recordNames())
        path.push_back(leaves.names().find(storedBytes(name).toStdString()));
    const auto isOfNode = [&](std::size_t leaf) {
        for (std::size_t i = 0; i < path.size(); ++i) {
            if (leaves.nameCode(leaf, static_cast<NameColumn>(i)) != path[i])
                return false;
        }
        return true;
    };
    constexpr int unknown = -2;
    std::vector<int> groups(leaves.size(), unknown);
    std::vector<int> groupsOfNames(leaves.names().size(), unknown); // where one name is enough
    std::vector<std::string_view> names(query.groupedBy.size());
    for (std::size_t leaf = 0; leaf < groups.size(); ++leaf) {
        if (!isOfNode(leaf)) {
            groups[leaf] = -1;
            continue;
        }
        int &group = names.size() == 1 ? groupsOfNames[leaves.nameCode(leaf, query.groupedBy[0])]
                                       : groups[leaf];
        if (group == unknown) {
            for (std::size_t i = 0; i < names.size(); ++i)
                names[i] = leaves.names().text(leaves.nameCode(leaf, query.groupedBy[i]));
            group = names.empty() ? 0 : query.groupOf(names);
        }
        groups[leaf] = group;
    }
    return groups;
}

/// The group of each date, by its code.
std::vector<int> dateGroups(const TextDictionary &dates, const RecordQuery &query) {
    // Dates compare byte by byte, as in SQLite.
    const DateTexts texts = dateTextsOf(query.range);
    const std::string first = texts.first.toStdString();
    const std::string last = texts.last.toStdString();
    std::vector<int> groups(dates.size());
    for (std::size_t date = 0; date < groups.size(); ++date) {
        const std::string_view text = dates.text(static_cast<Code>(date));
        const bool isWithin = text >= first && text <= last;
        groups[date] = !isWithin ? -1 : query.groupedBy.empty() ? query.groupOf({&text, 1}) : 0;
    }
    return groups;
}

/// The columns in memory, or null: SQLite has to be asked for `stored` then.
const RecordColumns *columnsFor(ProjectRecords &records, const RecordQuery &query,
                                NodeRecords &stored) {
    if (const RecordColumns *columns = records.held())
        return columns;
    stored = nodeRecords(records.connection(), query.path, query.range);
    return stored.areFew ? nullptr : records.read();
}

DateValue dateOf(std::string_view text, const QString &path) {
    if (const auto date = dateOfIsoText(text))
        return *date;
    throw Failure(unreadableDate,
                  QStringLiteral("The project \"%1\" holds a date that can't be read: \"%2\".")
                      .arg(path, shortened(textOf(text), 40, u"")));
}

} // namespace

/// Gathers the records of a scan until they make a batch.
class ScannedBatch {
public:
    ScannedBatch(std::span<const Figure> figures, const BatchVisitor &visitor)
        : m_values(figures.size()), m_visitor(visitor) {
        std::iota(m_places.begin(), m_places.end(), 0);
        m_batch.m_figures = figures;
        m_batch.m_exceptional = &m_exceptional;
        m_batch.m_places = m_places.data();
        for (std::size_t i = 0; i < m_values.size(); ++i)
            m_batch.m_numbers[i] = {m_values[i].data(), false};
    }

    void add(int group, std::span<const sqlite::RecordValue> figures) {
        for (std::size_t i = 0; i < figures.size(); ++i)
            m_values[i][m_count] =
                plainNumber(figures[i], m_count, m_batch.m_figures[i], m_exceptional);
        m_groups[m_count] = group;
        if (++m_count == size)
            end();
    }

    /// To be called after the last record too.
    void end() {
        if (m_count == 0)
            return;
        m_batch.m_groups = {m_groups.data(), m_count};
        m_visitor(m_batch, {});
        m_count = 0;
        m_exceptional.clear();
    }

private:
    static constexpr std::size_t size = 64;

    std::array<std::uint32_t, size> m_places;
    std::array<int, size> m_groups{};
    std::vector<std::array<double, size>> m_values; // of each figure
    ExceptionalValues m_exceptional;
    std::size_t m_count = 0;
    RecordBatch m_batch;
    const BatchVisitor &m_visitor;
};

static void scan(const sqlite::Connection &connection, const RecordQuery &query,
                 const NodeRecords &stored, const BatchVisitor &visitor) {
    std::string columns = query.groupedBy.empty() ? "GoogleDate" : "";
    for (const NameColumn column : query.groupedBy)
        columns.append(columns.empty() ? "" : ", ")
            .append(nameColumns[static_cast<std::size_t>(column)]);
    for (const Figure figure : query.figures)
        columns.append(", ").append(figureColumns[static_cast<std::size_t>(figure)]);
    std::vector<std::string_view> texts(std::max<std::size_t>(query.groupedBy.size(), 1));
    ScannedBatch batch(query.figures, visitor);
    sqlite::scanRecords(connection, columns, stored.sql, stored.bindings,
                        [&](std::span<const sqlite::RecordValue> record) {
                            for (std::size_t i = 0; i < texts.size(); ++i)
                                texts[i] = record[i].utf8();
                            const int group = query.groupOf(texts);
                            if (group >= 0)
                                batch.add(group, record.subspan(texts.size()));
                            return true;
                        });
    batch.end();
}

void visitRecords(ProjectRecords &records, const RecordQuery &query, const BatchVisitor &visitor) {
    NodeRecords stored;
    const RecordColumns *columns = columnsFor(records, query, stored);
    if (!columns) {
        scan(records.connection(), query, stored, visitor);
        return;
    }
    const std::vector<double> scales =
        query.scaled ? columns->exactScales(query.figures) : std::vector<double>();
    columns->visit(leafGroups(columns->leaves(), query), dateGroups(columns->dates(), query),
                   query.figures, scales,
                   [&](const RecordBatch &batch) { visitor(batch, scales); });
}

bool isCheap(ProjectRecords &records, const RecordQuery &query) {
    NodeRecords stored;
    return columnsFor(records, query, stored) || stored.areFew;
}

std::optional<DateRange> tableDates(ProjectRecords &records) {
    sqlite::Statement statement =
        records.connection().prepare("SELECT (SELECT min(GoogleDate) FROM tblGoogleDays), "
                                     "(SELECT max(GoogleDate) FROM tblGoogleDays)");
    if (!statement.step() || statement.type(0) == sqlite::ValueType::Null)
        return std::nullopt;
    const QString &path = records.connection().path();
    return DateRange{dateOf(statement.utf8(0), path), dateOf(statement.utf8(1), path)};
}

} // namespace veltrona
