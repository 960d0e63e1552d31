// The HTML report of a very long grid, compared with the same bytes written line by line, and its
// preview, from the call to the first page on the screen, compared with that of a short report.
#include "benchProject.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "core/report/reportWriter.h"
#include "ui/report/frmPrev.h"

#include <QFile>
#include <QTextBrowser>

#include <benchmark/benchmark.h>

#include <fstream>
#include <string>
#include <vector>

namespace veltrona::bench {

namespace {

constexpr int manyRows = 32'767;
constexpr const char *ourFile = BENCH_FOLDER "/ours.html";
constexpr const char *otherFile = BENCH_FOLDER "/other.html";

/// Names end in their number and are padded by words to `nameLength` characters.
void fill(Grid &grid, int rows, int nameLength = 0) {
    const QString words = QStringLiteral("günstige Schuhe kaufen ").repeated(nameLength / 23 + 1);
    initGrid(grid, true);
    grid.setRows(rows + 3);
    for (int row = 1; row <= rows; ++row) {
        const QString name = QStringLiteral("Schlüsselwort %1").arg(row);
        grid.setTextMatrix(row, gridColumn::Name,
                           words.left(qMax<qsizetype>(0, nameLength - name.size())) + name);
        for (int col = 1; col < gridColumn::Count; ++col)
            grid.setTextMatrix(row, col, QString::number(row * col / 7.0, 'f', 2));
    }
    resetSummary(grid);
}

Report writeOurs(Grid &grid) {
    ReportSource source;
    source.range = daysOf(largeRecords);
    source.grid = &grid;
    source.options.graph = false;
    source.locale = QLocale::c();
    return writeReport(QString::fromUtf8(ourFile), true, source);
}

void report(benchmark::State &state) {
    Grid grid(gridColumn::Count);
    fill(grid, manyRows);
    for ([[maybe_unused]] auto _ : state)
        writeOurs(grid);
}

void reportBaseline(benchmark::State &state) {
    Grid grid(gridColumn::Count);
    fill(grid, manyRows);
    writeOurs(grid);
    std::vector<std::string> lines;
    std::ifstream written(ourFile, std::ios::binary);
    for (std::string line; std::getline(written, line);)
        lines.push_back(line + '\n');
    for ([[maybe_unused]] auto _ : state) {
        std::ofstream file(otherFile, std::ios::binary);
        for (const std::string &line : lines)
            file << line;
    }
    if (lines.size() < manyRows)
        state.SkipWithError("the report is incomplete");
}

/// Pauses the benchmark when the preview has been painted, and closes it.
class EndsAtFirstPage : public QObject {
public:
    EndsAtFirstPage(frmPrev &preview, benchmark::State &state)
        : m_preview(preview), m_state(state) {
        page()->installEventFilter(this);
    }

private:
    QWidget *page() { return m_preview.findChild<QTextBrowser *>()->viewport(); }
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() == QEvent::Paint)
            QMetaObject::invokeMethod(this, &EndsAtFirstPage::end, Qt::QueuedConnection);
        return false;
    }
    void end() {
        if (!m_preview.isVisible())
            return;
        m_state.PauseTiming();
        if (!m_preview.isLoaded())
            m_state.SkipWithError("the report isn't shown");
        m_preview.reject();
    }

    frmPrev &m_preview;
    benchmark::State &m_state;
};

void preview(benchmark::State &state, int rows, int nameLength) {
    Grid grid(gridColumn::Count);
    fill(grid, rows, nameLength);
    const Report report = writeOurs(grid);
    frmPrev &form = frmPrev::instance();
    const EndsAtFirstPage end(form, state);
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        form.FileName = QString::fromUtf8(ourFile);
        form.report = report;
        state.ResumeTiming();
        form.Show();
        state.ResumeTiming();
    }
}
BENCHMARK_CAPTURE(preview, _, 2000, 0)->Name("preview/short");
BENCHMARK_CAPTURE(preview, _, manyRows, 0)->Name("preview/long");
BENCHMARK_CAPTURE(preview, _, manyRows, 1000)->Name("preview/longNames");

BENCHMARK(report)->Name("report/ours")->UseRealTime();
BENCHMARK(reportBaseline)->Name("report/baseline")->UseRealTime();

} // namespace

} // namespace veltrona::bench
