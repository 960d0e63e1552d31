// The import of the largest report, compared with one prepared insert of the same rows in one
// transaction: indexes in place, no look-ups, no XML. Real time, since both wait for the disk.
#include "benchProject.h"
#include "benchWindow.h"

#include "core/database/dayTable.h"
#include "core/database/projectFile.h"
#include "core/shell/modMain.h"

#include <QFile>
#include <QXmlStreamReader>

#include <benchmark/benchmark.h>

#include <array>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace veltrona::bench {

namespace {

constexpr int reportRows = 32'767;

using Value = std::variant<qint64, double, std::string>;
using Values = std::array<Value, dayColumns.size()>;

Value valueOf(const DayColumn &column, const QString &text) {
    bool whole = false;
    const qint64 integer = text.toLongLong(&whole);
    if (column.kind != ColumnKind::Number)
        return text.toStdString();
    return whole ? Value(integer) : Value(text.toDouble());
}

/// All rows of the report, ready to be bound; read before the measured part.
const std::vector<Values> &rowsOfReport() {
    static std::vector<Values> rows;
    if (!rows.empty())
        return rows;
    QFile file(QStringLiteral(BENCH_REPORT));
    if (!file.open(QIODevice::ReadOnly))
        return rows;
    for (QXmlStreamReader reader(&file); !reader.atEnd(); reader.readNext()) {
        if (!reader.isStartElement() || reader.name() != u"row")
            continue;
        const QXmlStreamAttributes attributes = reader.attributes();
        Values values;
        for (std::size_t i = 0; i < dayColumns.size(); ++i) {
            const QString name = reportColumn(dayColumns[i].name);
            values[i] = valueOf(dayColumns[i], name.startsWith(u"google")
                                                   ? QStringLiteral("2025 01") // month and week
                                                   : attributes.value(name).toString());
        }
        rows.push_back(std::move(values));
    }
    return rows;
}

qint64 count(const sqlite::Connection &connection) {
    return connection.number("SELECT count(*) FROM tblGoogleDays");
}

void insertAll(sqlite::Connection &connection, const std::vector<Values> &rows) {
    sqlite::Transaction transaction(connection);
    sqlite::Statement insert = connection.prepare(dayInsertStatement());
    for (const Values &values : rows) {
        int parameter = 0;
        for (const Value &value : values) {
            ++parameter;
            if (const auto *text = std::get_if<std::string>(&value))
                insert.bind(parameter, std::string_view(*text));
            else if (const auto *whole = std::get_if<qint64>(&value))
                insert.bind(parameter, *whole);
            else
                insert.bind(parameter, std::get<double>(value));
        }
        insert.step();
        insert.reset();
    }
    transaction.commit();
}

const QString report = QStringLiteral(BENCH_REPORT);

/// Imports into an empty project that shows all dates, or a second time into the same one.
void importOnce(benchmark::State &state, bool again) {
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        Window window(emptyProject());
        window.chooseAllDates();
        if (again)
            window.import(report);
        state.ResumeTiming();
        window.import(report);
        state.PauseTiming();
        if (count(*modMain::DbConn) != reportRows)
            state.SkipWithError("rows are missing");
        state.ResumeTiming();
    }
}
BENCHMARK_CAPTURE(importOnce, _, false)->Name("import/ours")->UseRealTime();
BENCHMARK_CAPTURE(importOnce, _, true)->Name("import/again")->UseRealTime();

/// One report of a year, imported after the others into the same window, which shows all dates. The
/// records are in memory before and after.
void importOfYear(benchmark::State &state, int reportsBefore) {
    static std::vector<QString> reports;
    for (int next = static_cast<int>(reports.size()); next <= reportsBefore; ++next)
        reports.push_back(reportAfter(next * reportRows, reportRows));
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        auto window = std::make_unique<Window>(emptyProject());
        window->chooseAllDates();
        for (int i = 0; i < reportsBefore; ++i)
            window->import(reports[static_cast<std::size_t>(i)]);
        state.ResumeTiming();
        window->import(reports[static_cast<std::size_t>(reportsBefore)]);
        state.PauseTiming();
        if (count(*modMain::DbConn) != (reportsBefore + 1) * reportRows)
            state.SkipWithError("rows are missing");
        window.reset();
        state.ResumeTiming();
    }
}
BENCHMARK_CAPTURE(importOfYear, _, 0)->Name("importOfYear/first")->UseRealTime();
BENCHMARK_CAPTURE(importOfYear, _, 29)->Name("importOfYear/thirtieth")->UseRealTime();

void baseline(benchmark::State &state) {
    const std::vector<Values> &rows = rowsOfReport();
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        auto connection = openProject(emptyProject());
        state.ResumeTiming();
        insertAll(*connection, rows);
        state.PauseTiming();
        if (count(*connection) != reportRows)
            state.SkipWithError("rows are missing");
        connection.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(baseline)->Name("import/baseline")->UseRealTime();

} // namespace

} // namespace veltrona::bench
