#include "core/import/importRows.h"

#include "core/base/numberGrammar.h"
#include "core/base/storedText.h"
#include "core/base/text.h"
#include "core/database/projectFile.h"
#include "core/import/progress.h"
#include "core/import/rowValues.h"
#include "core/platform/services.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <optional>

namespace veltrona {

namespace {

constexpr qsizetype maxShown = 40;

// A commit waits for the disk about four times, which shorter batches aren't worth. In a large
// project nearly every row of a batch changes another page of the index, so that longer batches pay
// off; they stay below what another program would notice.
constexpr std::chrono::milliseconds minBatch{100};
constexpr std::chrono::milliseconds maxBatch{1000};
constexpr qint64 bytesPerMinBatch = 32 << 20;

std::chrono::milliseconds batchDuration(const QString &project) {
    const qint64 times = QFileInfo(project).size() / bytesPerMinBatch;
    return std::clamp<std::chrono::milliseconds>(times * minBatch, minBatch, maxBatch);
}

constexpr int adgroup = reportColumn("adgroup");
constexpr int campaign = reportColumn("campaign");
constexpr int creativeId = reportColumn("creativeid");
constexpr int date = reportColumn("date");
constexpr int keyword = reportColumn("keyword");
constexpr int kwType = reportColumn("kwtype");

/// For each column of the insert, the report column that fills it; the last two are computed.
constexpr auto insertSources = [] {
    std::array<int, dayColumns.size()> sources{};
    for (std::size_t i = 0; i < sources.size(); ++i)
        sources[i] = indexOfColumn(&ReportColumn::dayColumn, dayColumns[i].name);
    return sources;
}();
static_assert(insertSources[dayColumns.size() - 3] < reportColumnCount);
static_assert(insertSources[dayColumns.size() - 2] == reportColumnCount);

QString shownValue(std::string_view value) {
    // More bytes than the characters that are shown can take.
    const auto head = value.substr(0, static_cast<std::size_t>(8 * maxShown));
    return shortened(onOneLine(textOf(head)), maxShown, u"...");
}

/// A value that ends the import.
struct UnreadableValue {
    int column;
    const char *reason;
};

class RowLoader {
public:
    RowLoader(sqlite::Connection &connection, sqlite::Statement &duplicateTest,
              const xml::Document &document, const ColumnCheck &check);
    void run(const std::function<bool()> &onRow);

private:
    void importRows(const std::function<bool()> &onRow);
    void importRow();
    bool isStored();
    void insert();
    void beginBatch();
    void commitBatch();
    void bindNumber(sqlite::Statement &statement, int parameter, int column) const;
    void readRowDate();
    Failure withContext(const UnreadableValue &value) const;
    Failure withContext(const Failure &failure) const;

    sqlite::Connection &m_connection;
    const xml::Document &m_document;
    const ColumnCheck &m_check;
    sqlite::Statement &m_test;
    sqlite::Statement m_insert;
    xml::NodeReader m_walk;
    RowReader m_reader;
    std::optional<sqlite::Transaction> m_batch;
    std::chrono::milliseconds m_batchBegan{};
    std::chrono::milliseconds m_batchDuration;
    std::string_view m_dateText; // the report's text of m_date
    RowDate m_date;
    int m_row = 0;
    qint64 m_inBatch = 0;
    qint64 m_committed = 0;
};

RowLoader::RowLoader(sqlite::Connection &connection, sqlite::Statement &duplicateTest,
                     const xml::Document &document, const ColumnCheck &check)
    : m_connection(connection), m_document(document), m_check(check), m_test(duplicateTest),
      m_insert(connection.prepare(dayInsertStatement())), m_walk(document.nodes()),
      m_reader(check.names), m_batchDuration(batchDuration(connection.path())) {}

void RowLoader::run(const std::function<bool()> &onRow) {
    std::optional<UnreadableValue> unreadable;
    try {
        try {
            importRows(onRow);
        } catch (const UnreadableValue &value) {
            unreadable = value;
        }
        commitBatch();
    } catch (const Failure &failure) {
        // Keeps the rows before it if that is possible; the first failure is the one to report.
        try {
            commitBatch();
        } catch (const Failure &) {
            m_batch.reset();
        }
        throw withContext(failure);
    }
    if (unreadable)
        throw withContext(*unreadable);
}

void RowLoader::importRows(const std::function<bool()> &onRow) {
    for (auto step = m_walk.next(); step != xml::NodeReader::Step::End; step = m_walk.next()) {
        if (step != xml::NodeReader::Step::Element || m_walk.name() != "row")
            continue;
        if (progressRepaints(m_row, m_check.rowCount) && m_batch &&
            services().steadyTime() - m_batchBegan > m_batchDuration)
            commitBatch();
        ++m_row;
        if (!onRow())
            break;
        importRow();
    }
}

void RowLoader::importRow() {
    constexpr int steps = 10'000; // some hundred, if the indexes are sound
    m_connection.allowWork(steps);
    m_reader.read(m_walk);
    beginBatch();
    // The other values of a known record aren't read.
    if (!isStored())
        insert();
}

bool RowLoader::isStored() {
    m_test.bind(1, m_reader.value(adgroup));
    m_test.bind(2, m_reader.value(campaign));
    bindNumber(m_test, 3, creativeId);
    readRowDate();
    m_test.bind(4, std::string_view(m_date.text));
    m_test.bind(5, m_reader.value(keyword));
    m_test.bind(6, m_reader.value(kwType));
    const bool found = m_test.step();
    m_test.reset();
    return found;
}

void RowLoader::insert() {
    int parameter = 0;
    for (const DayColumn &column : dayColumns) {
        const int source = insertSources[static_cast<std::size_t>(parameter++)];
        if (source == reportColumnCount)
            break;
        if (column.kind == ColumnKind::Number)
            bindNumber(m_insert, parameter, source);
        else if (column.kind == ColumnKind::Date)
            m_insert.bind(parameter, std::string_view(m_date.text));
        else
            m_insert.bind(parameter, m_reader.value(source));
    }
    m_insert.bind(parameter++, std::string_view(m_date.month));
    m_insert.bind(parameter, std::string_view(m_date.week));
    m_insert.step();
    m_inBatch += m_connection.changes();
    m_insert.reset();
}

void RowLoader::beginBatch() {
    if (m_batch)
        return;
    if (m_connection.hasMoved()) {
        throw Failure(movedProject,
                      QStringLiteral("The project file \"%1\" has been moved, renamed, deleted or "
                                     "replaced while it was open.")
                          .arg(QDir::toNativeSeparators(m_connection.path())));
    }
    m_batch.emplace(m_connection);
    m_batchBegan = services().steadyTime();
}

void RowLoader::commitBatch() {
    if (!m_batch)
        return;
    m_batch->commit();
    m_batch.reset();
    m_committed += m_inBatch;
    m_inBatch = 0;
}

void RowLoader::bindNumber(sqlite::Statement &statement, int parameter, int column) const {
    const std::string_view text = m_reader.value(column);
    if (text.empty()) {
        statement.bind(parameter, qint64(0));
        return;
    }
    const std::optional<RowNumber> number = readNumber(text);
    if (!number)
        throw UnreadableValue{column, "is no number"};
    const double *decimal = std::get_if<double>(&*number);
    // As floats, two different IDs could become one.
    const bool isRoundedId = column == creativeId && scanNumber(text).isWhole;
    if (decimal != nullptr && (std::isinf(*decimal) || isRoundedId))
        throw UnreadableValue{column, "is too large"};
    std::visit([&](auto value) { statement.bind(parameter, value); }, *number);
}

void RowLoader::readRowDate() {
    const std::string_view text = m_reader.value(date);
    // Rows next to each other mostly have the same date. Its text is kept by the document.
    if (!text.empty() && text == m_dateText)
        return;
    std::optional<RowDate> read = readDate(text);
    if (!read)
        throw UnreadableValue{date, text.empty() ? "is missing" : "is no date"};
    m_date = std::move(*read);
    m_dateText = text;
}

// Both sentences are filled by one call of arg: a value may contain "%1".
Failure RowLoader::withContext(const UnreadableValue &value) const {
    return {unreadableReport,
            QStringLiteral("The import of \"%1\" has ended at row %2 (line %3 of the file): the "
                           "value \"%4\" of the column \"%5\" %6. The rows before it are kept in "
                           "the project; importing the corrected file skips them.")
                .arg(QDir::toNativeSeparators(m_document.path()), QString::number(m_row),
                     QString::number(m_walk.line()), shownValue(m_reader.value(value.column)),
                     m_check.names[static_cast<std::size_t>(value.column)],
                     QLatin1String(value.reason))};
}

Failure RowLoader::withContext(const Failure &failure) const {
    return {failure.number(),
            QStringLiteral("%1 The import of \"%2\" has ended at row %3 of %4. New records that it "
                           "has stored: %5. Importing the file again skips them.")
                .arg(failure.text(), QDir::toNativeSeparators(m_document.path()),
                     QString::number(m_row), QString::number(m_check.rowCount),
                     QString::number(m_committed))};
}

} // namespace

sqlite::Statement prepareDuplicateTest(const sqlite::Connection &connection) {
    return connection.prepare(
        "SELECT 1 FROM tblGoogleDays WHERE Adgroup = ? AND Campaign = ? AND CreativeId = ? "
        "AND GoogleDate = ? AND KeyWord = ? AND kwType = ?");
}

void importRows(sqlite::Connection &connection, sqlite::Statement &duplicateTest,
                const xml::Document &document, const ColumnCheck &check,
                const std::function<bool()> &onRow) {
    RowLoader(connection, duplicateTest, document, check).run(onRow);
}

} // namespace veltrona
