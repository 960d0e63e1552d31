#include "core/report/reportText.h"

#include "core/analysis/grid/statisticsGrid.h"
#include "core/platform/services.h"
#include "support/dataTable.h"
#include "support/gridText.h"

#include <QTest>

using namespace veltrona;

namespace {

void fillRow(Grid &grid, int row, const QString &texts) {
    int col = 0;
    for (const QString &text : texts.split(u'|'))
        grid.setTextMatrix(row, col++, text);
}

const QString headings =
    QStringLiteral("Search or Content|Clicks|Impr.|CTR|Avg.CPC|Cost|Conv.|Conv.Rate|Cost/Conv.|"
                   "Avg.Pos|Conv. Val.|ROI|Transactions");

/// A heading, a plain row, a red one, the spacer and a green summary. Hidden columns are filled.
Grid exampleGrid() {
    Grid grid(15, 13, 5);
    grid.setForeColor(green);
    fillRow(grid, 0, headings);
    fillRow(grid, 1, "Search Only|120|3400|3.53%|0.25|30|6|5%|5|1.4|90|200%|6|11|12");
    fillRow(grid, 2, " Content Only |40|9000|0.44%|0.5|20|1|2.5%|20|3.2|10|-50%|1|13|14");
    fillRow(grid, 4, "Summary|160|12400|3.97%|0.38|50|7|7.5%|25|2.3|100|100%|7");
    test::colorRow(grid, 2, red);
    test::colorRow(grid, 4, green);
    return grid;
}

/// Of an ad group, over the first week of March 2006.
Report exampleReport(Grid grid, ReportOptions options = {}) {
    services().now = [] { return QDateTime(QDate(2006, 3, 7), QTime(13, 5, 9)); };
    return makeReport(
        {.selected = {{"Shoes", "Spring"}},
         .range = {dateValue(CalendarDay{2006, 3, 1}), dateValue(CalendarDay{2006, 3, 7})},
         .grid = &grid,
         .metric = "Clicks",
         .options = options,
         .locale = QLocale::c()},
        true);
}

QList<QByteArray> linesOf(const std::string &text) {
    QList<QByteArray> lines;
    for (const QByteArray &line : QByteArray::fromStdString(text).split('\n')) {
        if (!line.isEmpty())
            lines << (line.endsWith('\r') ? line.chopped(1) : QByteArray("no CR: ") + line);
    }
    return lines;
}

} // namespace

class ReportTextTest : public QObject {
    Q_OBJECT

private slots:
    void workedRun() {
        QFile golden(QFINDTESTDATA("worked-run.html"));
        QVERIFY(golden.open(QIODevice::ReadOnly));
        const std::string expected = golden.readAll().toStdString();
        const std::string text = reportText(exampleReport(exampleGrid()));
        QCOMPARE(linesOf(text), linesOf(expected)); // names the line
        QCOMPARE(text, expected);
        QCOMPARE(linesOf(text).size(), 120);
    }

    void optionsChangeTheirLinesAlone() {
        QByteArray found;
        for (int ticked = 0; ticked < 5; ++ticked) {
            const std::string text = reportText(exampleReport(Grid(15), {.graph = ticked == 1,
                                                                         .details = ticked == 2,
                                                                         .dateAndTime = ticked == 3,
                                                                         .footer = ticked == 4}));
            found += QByteArray::number(linesOf(text).size());
            for (const char *mark : {"graph.jpg", "<th ", "Created on: ", "<a href"})
                found += text.find(mark) != std::string::npos ? '+' : '-';
        }
        QCOMPARE(found, "38----41+---85-+--39--+-39---+");
    }

    void details() {
        const auto values = [](const QStringList &names) { return reportDetails({names}); };
        QCOMPARE(values({}), QStringList(5, "All"));
        QCOMPARE(values({"C", ""}), (QStringList{"C", "", "All", "All", "All"}));
        QCOMPARE(values({"C", "G", "S", "K", "T"}), (QStringList{"C", "G", "S", "K", "T"}));
    }

    void codePage_data() {
        const test::DataTable<QString, QByteArray> row;
        row("nothing is escaped", "<script>&\"'\t", "<script>&\"'\t");
        row("latin", "Müller ÿ\u00a0", "M\xfcller \xff\xa0");
        row("upper page", "€‚ƒŽ‘’“”•–—™Ÿ", "\x80\x82\x83\x8e\x91\x92\x93\x94\x95\x96\x97\x99\x9f");
        row("holes of the page", QString(QChar(0x81)) + QChar(0x9d), "\x81\x9d");
        row("outside", QChar(0xFEFF) + QString("aŁ日b\u0080"), "&#65279;a&#321;&#26085;b&#128;");
        row("beyond 16 bits", "😀", "&#128512;");
        row("half a pair", QString(QChar(0xD83D)) + u'x' + QChar(0xDE00), "&#65533;x&#65533;");
    }
    void codePage() {
        const auto [text, bytes] = test::row<QString, QByteArray>();
        std::string out;
        appendAnsi(out, text);
        QCOMPARE(QByteArray::fromStdString(out), bytes);
    }

    void dates() {
        // The last two: direction marks around the separator, and a month in letters.
        const std::pair<QLocale, QChar> separators[] = {{QLocale("en_US"), u'/'},
                                                        {QLocale("de_DE"), u'.'},
                                                        {QLocale("ar_EG"), u'/'},
                                                        {QLocale::c(), u'/'}};
        for (const auto &[locale, separator] : separators)
            QCOMPARE(dateSeparator(locale), separator);
        QCOMPARE(reportDate(dateValue(CalendarDay{2006, 3, 7}, 86399), u'.'), "03.07.2006");
    }
};

QTEST_GUILESS_MAIN(ReportTextTest)
#include "reportTextTest.moc"
