#include "report/reportText.h"

#include "analysis/nodeTag.h"
#include "analysis/statisticsGrid.h"
#include "report/reportNames.h"

#include <QTest>

using namespace veltrona;

namespace {

void fillRow(Grid &grid, int row, const QString &texts) {
    const QStringList cells = texts.split(u'|');
    for (int col = 0; col < cells.size(); ++col)
        grid.setTextMatrix(row, col, cells[col]);
}

void paintRow(Grid &grid, int row, Rgb color) {
    grid.setRow(row);
    for (int col = 0; col < grid.Cols(); ++col) {
        grid.setCol(col);
        grid.setCellForeColor(color);
    }
}

const QString headings =
    QStringLiteral("Search or Content|Clicks|Impr.|CTR|Avg.CPC|Cost|Conv.|Conv.Rate|Cost/Conv.|"
                   "Avg.Pos|Conv. Val.|ROI|Transactions");

/// A heading, a plain row, a red one, the spacer and a green summary. Hidden columns are filled.
Grid exampleGrid() {
    Grid grid(15, 5);
    grid.setForeColor(green);
    fillRow(grid, 0, headings);
    fillRow(grid, 1,
            QStringLiteral("Search Only|120|3400|3.53%|0.25|30|6|5%|5|1.4|90|200%|6|11|12"));
    fillRow(grid, 2,
            QStringLiteral(" Content Only |40|9000|0.44%|0.5|20|1|2.5%|20|3.2|10|-50%|1|13|14"));
    fillRow(grid, 4, QStringLiteral("Summary|160|12400|3.97%|0.38|50|7|7.5%|25|2.3|100|100%|7"));
    paintRow(grid, 2, red);
    paintRow(grid, 4, green);
    return grid;
}

Grid emptyGrid() {
    Grid grid(15);
    fillRow(grid, 0, headings);
    return grid;
}

ReportContent exampleContent() {
    ReportContent content;
    content.details = reportDetails(
        QStringLiteral("2-Campain: 'Shoes' > Adgroup: 'Spring'"),
        QStringLiteral(" AND campaign='Shoes' AND adGroup='Spring' ORDER BY adWordsTyp"),
        QStringLiteral("Spring"));
    content.now = QStringLiteral("7 Mar 2006 13:05:09");
    content.start = QStringLiteral("03/01/2006");
    content.end = QStringLiteral("03/07/2006");
    content.metric = QStringLiteral("Clicks");
    content.doColor = true;
    return content;
}

QList<QByteArray> linesOf(const std::string &text) {
    QList<QByteArray> lines;
    for (const QByteArray &line : QByteArray::fromStdString(text).split('\n')) {
        if (!line.isEmpty())
            lines << (line.endsWith('\r') ? line.chopped(1) : QByteArray("no CR: ") + line);
    }
    return lines;
}

QByteArray ansi(const QString &text) {
    std::string out;
    appendAnsi(out, text);
    return QByteArray::fromStdString(out);
}

} // namespace

class TestReportText : public QObject {
    Q_OBJECT

private slots:
    void workedRun() {
        QFile golden(QFINDTESTDATA("worked-run.html"));
        QVERIFY(golden.open(QIODevice::ReadOnly));
        const std::string expected = golden.readAll().toStdString();
        const std::string text = reportText(exampleContent(), exampleGrid());
        QCOMPARE(linesOf(text), linesOf(expected)); // tells the line
        QCOMPARE(text, expected);
        QCOMPARE(linesOf(text).size(), 120);
    }

    void optionsChangeTheirLinesAlone_data() {
        QTest::addColumn<ReportOptions>("options");
        QTest::addColumn<int>("lines");
        QTest::addColumn<QByteArrayList>("holds");
        QTest::newRow("all") << ReportOptions{} << 90
                             << QByteArrayList{"graph.jpg", "<th ", "Created on: ", "<a href"};
        QTest::newRow("none") << ReportOptions{false, false, false, false} << 38
                              << QByteArrayList{};
        QTest::newRow("graph") << ReportOptions{true, false, false, false} << 41
                               << QByteArrayList{"graph.jpg"};
        QTest::newRow("details") << ReportOptions{false, true, false, false} << 85
                                 << QByteArrayList{"<th "};
        QTest::newRow("date") << ReportOptions{false, false, true, false} << 39
                              << QByteArrayList{"Created on: "};
        QTest::newRow("footer") << ReportOptions{false, false, false, true} << 39
                                << QByteArrayList{"<a href"};
    }
    void optionsChangeTheirLinesAlone() {
        QFETCH(ReportOptions, options);
        QFETCH(QByteArrayList, holds);
        ReportContent content = exampleContent();
        content.options = options;
        const std::string text = reportText(content, emptyGrid());
        QTEST(int(linesOf(text).size()), "lines");
        for (const char *mark : {"graph.jpg", "<th ", "Created on: ", "<a href"})
            QCOMPARE(text.find(mark) != std::string::npos, holds.contains(mark));
    }

    void marksRedCellsOfAColouredReportAlone() {
        const auto marks = [](bool doColor, const Grid &grid) {
            ReportContent content = exampleContent();
            content.doColor = doColor;
            return QByteArray::fromStdString(reportText(content, grid)).count("class=\"Stil8\"");
        };
        Grid grid = exampleGrid();
        QCOMPARE(marks(false, grid), 0);
        QCOMPARE(marks(true, grid), 13);
        paintRow(grid, 4, red);
        QCOMPARE(marks(true, grid), 26);
        paintRow(grid, 1, {255, 1, 0}); // nearly red isn't red
        QCOMPARE(marks(true, grid), 26);
        QCOMPARE(marks(true, emptyGrid()), 0);
    }

    void details_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("tag");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("values");
        const QString keywordTag = QStringLiteral(" AND campaign='C' AND adGroup='G' AND "
                                                  "adWordsTyp='Search Only' AND Keyword='K' "
                                                  "ORDER BY kwType");
        QTest::newRow("root") << "0-Campaign Summary"
                              << " ORDER BY campaign"
                              << "Title" << QStringList{"All", "All", "All", "All", "All"};
        QTest::newRow("campaign") << "1-Campain: 'C'"
                                  << " AND campaign='C' ORDER BY adGroup"
                                  << "C" << QStringList{"C", "All", "All", "All", "All"};
        QTest::newRow("content")
            << "3-..."
            << " AND campaign='C' AND adGroup='G' AND adWordsTyp='Content Only' "
               "ORDER BY Keyword"
            << "Content" << QStringList{"C", "G", "Content Only", "All", "All"};
        QTest::newRow("keyword") << "4-..." << keywordTag << "K"
                                 << QStringList{"C", "G", "Search Only", "K", "All"};
        QTest::newRow("keyword type") << "5-..." << keywordTag << "Broad"
                                      << QStringList{"C", "G", "Search Only", "K", "Broad"};
        const QString hostile = QStringLiteral("O'Neil adGroup='x' ORDER BY '");
        QTest::newRow("hostile names")
            << "2-..."
            << QStringLiteral(" AND campaign='%1' AND adGroup='%2' ORDER BY adWordsTyp")
                   .arg(doubledApostrophes(hostile), doubledApostrophes(QStringLiteral("'")))
            << "'" << QStringList{hostile, "'", "All", "All", "All"};
        QTest::newRow("empty name") << "1-Campain: ''"
                                    << " AND campaign='' ORDER BY adGroup"
                                    << "" << QStringList{"", "All", "All", "All", "All"};
        QTest::newRow("nothing selected") << ""
                                          << ""
                                          << "" << QStringList{"All", "All", "All", "All", "All"};
    }
    void details() {
        QFETCH(QString, key);
        QFETCH(QString, tag);
        QFETCH(QString, text);
        const ReportDetails found = reportDetails(key, tag, text);
        QTEST((QStringList{found.campaign, found.adGroup, found.searchType, found.keyword,
                           found.keywordType}),
              "values");
    }

    void codePage_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("nothing is escaped") << "<script>&\"'\t" << QByteArray("<script>&\"'\t");
        QTest::newRow("latin") << QStringLiteral("Müller ÿ\u00a0")
                               << QByteArray("M\xfcller \xff\xa0");
        QTest::newRow("upper page")
            << QStringLiteral("€‚ƒŽ‘’“”•–—™Ÿ")
            << QByteArray("\x80\x82\x83\x8e\x91\x92\x93\x94\x95\x96\x97\x99\x9f");
        QTest::newRow("holes of the page")
            << QString(QChar(0x81)) + QChar(0x9d) << QByteArray("\x81\x9d");
        QTest::newRow("other control characters") << QString(QChar(0x80)) << QByteArray("&#128;");
        QTest::newRow("outside") << QStringLiteral("aŁ日b") << QByteArray("a&#321;&#26085;b");
        QTest::newRow("beyond 16 bits") << QStringLiteral("😀") << QByteArray("&#128512;");
        QTest::newRow("half a pair")
            << QString(QChar(0xD83D)) + u'x' + QChar(0xDE00) << QByteArray("&#65533;x&#65533;");
    }
    void codePage() {
        QFETCH(QString, text);
        QTEST(ansi(text), "bytes");
    }

    void valuesGoThroughTheCodePage() {
        ReportContent content = exampleContent();
        content.details.campaign = QStringLiteral("<b>Ł & Ä</b>");
        content.metric = QStringLiteral("€");
        const QList<QByteArray> lines = linesOf(reportText(content, emptyGrid()));
        QCOMPARE(lines[7],
                 "<td width=\"70%\"><span class=\"Stil5\"><b>&#321; & \xc4</b></span></td>");
        QVERIFY(lines.contains("<p class=\"Stil5\"><strong>Graph: \x80</strong></p>"));
    }

    void dates() {
        QCOMPARE(dateSeparator(QLocale(QStringLiteral("en_US"))), QChar(u'/'));
        QCOMPARE(dateSeparator(QLocale(QStringLiteral("de_DE"))), QChar(u'.'));
        QCOMPARE(dateSeparator(QLocale(QStringLiteral("sv_SE"))), QChar(u'-'));
        QCOMPARE(dateSeparator(QLocale(QStringLiteral("ar_EG"))), QChar(u'/')); // marks around it
        QCOMPARE(dateSeparator(QLocale::c()), QChar(u'/'));                     // "7 Mar 2006"
        QCOMPARE(reportDate(dateValue(CalendarDay{2006, 3, 7}, 86399), u'.'),
                 QStringLiteral("03.07.2006"));
        QCOMPARE(reportDate(dateValue(CalendarDay{1752, 12, 31}, 1), u'/'),
                 QStringLiteral("12/31/1752"));
    }

    void names() {
        QCOMPARE(reportFileName(QStringLiteral("  report ")), QStringLiteral("report.html"));
        QCOMPARE(reportFileName(QStringLiteral("a.HtM")), QStringLiteral("a.HtM"));
        QCOMPARE(reportFileName(QStringLiteral("a.HTML ")), QStringLiteral("a.HTML"));
        QCOMPARE(reportFileName(QStringLiteral("a.txt")), QStringLiteral("a.txt.html"));
        QCOMPARE(reportFileName(QStringLiteral("html")), QStringLiteral("html.html"));
        QCOMPARE(reportFileName(QStringLiteral("\ta.htm\t")), QStringLiteral("\ta.htm\t.html"));
        QCOMPARE(printReportPath(QStringLiteral("C:\\Data"), u'\\'),
                 QStringLiteral("C:\\Data\\Veltrona\\Report.html"));
        QCOMPARE(printReportPath(QStringLiteral("/d"), u'/'),
                 QStringLiteral("/d/Veltrona/Report.html"));
        QCOMPARE(graphPath(QStringLiteral(" C:\\x.y\\r.html "), u'\\'),
                 QStringLiteral("C:\\x.y\\graph.jpg"));
        QCOMPARE(graphPath(QStringLiteral("r.html"), u'/'), QStringLiteral("graph.jpg"));
    }
};

QTEST_GUILESS_MAIN(TestReportText)
#include "reportTextTest.moc"
