// A report's bytes to records, tree, grid, chart and page. Whatever the bytes are, they end in a
// refusal or in records that every view finds again; a second import adds none.
#include "attack/finding.h"

#include "core/analysis/chart/chartSeries.h"
#include "core/analysis/grid/nodeStatistics.h"
#include "core/analysis/grid/statisticsGrid.h"
#include "core/analysis/tree/navigationTexts.h"
#include "core/analysis/tree/navigationTree.h"
#include "core/import/columnCheck.h"
#include "core/import/importRows.h"
#include "core/report/reportText.h"
#include "support/recordTable.h"

#include <QCoreApplication>
#include <QTemporaryFile>

#include <algorithm>

using namespace veltrona;

namespace {

constexpr int mostNodes = 40; // looked at of a tree

class Attack {
public:
    Attack() {
        FINDING_UNLESS(m_file.open(), "no temporary file");
        m_table.connection().execute("PRAGMA cache_size = 200");
    }
    void run(const unsigned char *data, std::size_t size);

private:
    void import(const ColumnCheck &check);
    void lookAtEverything();
    qint64 number(const char *sql);

    QTemporaryFile m_file;
    test::RecordTable m_table;
    ProjectRecords m_records{m_table.connection()};
    sqlite::Statement m_duplicateTest = prepareDuplicateTest(m_table.connection());
    xml::Document m_document;
    DateRange m_range;
};

void Attack::run(const unsigned char *data, std::size_t size) {
    m_file.resize(0);
    m_file.seek(0);
    m_file.write(reinterpret_cast<const char *>(data), static_cast<qint64>(size));
    m_file.flush();
    if (!m_document.load(m_file.fileName())) {
        const xml::ParseError &error = m_document.parseError();
        FINDING_UNLESS(error.errorCode != 0 && error.reason.endsWith("\r\n"), "no reason");
        FINDING_UNLESS(error.line >= 1 && error.linepos >= 0 && error.filepos >= 0 &&
                           error.filepos <= static_cast<qint64>(size),
                       "a place outside the file");
        parserReport(error);
        return;
    }
    try {
        const ColumnCheck check = checkColumns(m_document);
        if (!check.passed)
            return;
        import(check);
    } catch (const Failure &failure) {
        FINDING_UNLESS(!failure.text().isEmpty(), "a failure without a text");
    }
    lookAtEverything();
    m_table.connection().execute("DELETE FROM tblGoogleDays");
}

void Attack::import(const ColumnCheck &check) {
    int rows = 0;
    importRows(m_table.connection(), m_duplicateTest, m_document, check,
               [&rows] { return ++rows > 0; });
    const qint64 stored = number("SELECT count(*) FROM tblGoogleDays");
    FINDING_UNLESS(rows == check.rowCount && stored <= rows, "rows");
    importRows(m_table.connection(), m_duplicateTest, m_document, check, [] { return true; });
    FINDING_UNLESS(number("SELECT count(*) FROM tblGoogleDays") == stored, "a record is doubled");
}

void Attack::lookAtEverything() {
    if (number("SELECT count(*) FROM tblGoogleDays") == 0)
        return;
    ChartRequest request;
    request.allDates = true;
    const ChartSeries series = queryChartSeries(m_records, request);
    m_range = series.range;
    Tree tree;
    buildNavigationTree(m_table.connection(), "title", tree);
    Grid grid(gridColumn::Count);
    initGrid(grid, false);
    for (int i = 1; i <= std::min(tree.Nodes().Count(), mostNodes); ++i) {
        const TreeNode &node = *tree.Nodes().Item(i);
        const NodePath path = pathOf(node);
        const NodeStatistics statistics = queryNodeStatistics(m_records, path, m_range);
        // A branch may be empty; a campaign or an ad group has come from a record.
        const bool isBranch = path.level() >= NodeLevel::Branch;
        FINDING_UNLESS(isBranch || !statistics.rows.empty(), "a node finds no record");
        fillGrid(statistics, grid, true);
        if (!statistics.rows.empty())
            sumUp(grid, true);
        const Report report = makeReport({.selected = path, .grid = &grid}, false);
        FINDING_UNLESS(reportText(report).ends_with("</body></html>\r\n"), "the page's end");
    }
    const qint64 campaigns =
        number("SELECT count(DISTINCT trim(Campaign, ' ')) FROM tblGoogleDays");
    FINDING_UNLESS(qint64(queryNodeStatistics(m_records, NodePath(), m_range).rows.size()) ==
                       campaigns,
                   "campaigns in the grid");
}

qint64 Attack::number(const char *sql) {
    sqlite::Statement statement = m_table.connection().prepare(sql);
    statement.step();
    return statement.int64(0);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv) {
    new QCoreApplication(*argc, *argv); // finds the template, and lives as long as the program
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    static Attack attack;
    attack.run(data, size);
    return 0;
}
