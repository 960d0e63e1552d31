#include "core/report/reportParts.h"
#include "core/report/reportText.h"

#include "core/analysis/statisticsGrid.h"

#include <QTest>

using namespace veltrona;

namespace {

QString report(const QStringList &names, ReportOptions options = {}) {
    Grid grid(gridColumn::Count);
    initGrid(grid, true);
    grid.setRows(static_cast<int>(names.size()) + 3);
    for (int row = 1; row <= names.size(); ++row) {
        grid.setTextMatrix(row, 0, names[row - 1]);
        grid.setTextMatrix(row, 1, QStringLiteral("12.5"));
        grid.setRow(row);
        grid.setCol(1);
        grid.setCellForeColor(red);
    }
    ReportContent content;
    content.options = options;
    content.doColor = true;
    return textOfAnsi(QByteArray::fromStdString(reportText(content, grid)));
}

} // namespace

class ReportPartsTest : public QObject {
    Q_OBJECT

private slots:
    void partsMakeTheWhole_data() {
        QTest::addColumn<QString>("name");
        for (const char *name : {"plain", "", "</table>", "</tr>", "\r\n</tr>\r\n<tr>", "<tr><td>",
                                 "<th class=\"Stil5\">", "<table", "<!-- <body>"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }
    void partsMakeTheWhole() {
        QFETCH(QString, name);
        const QString html = report({QStringLiteral("first"), name, QStringLiteral("last")});
        const ReportParts parts = reportParts(html);
        QCOMPARE(parts.before + parts.rows.join(QString()) + parts.after, html);
        QVERIFY(parts.before.endsWith(parts.tableHead + parts.headings));
        QVERIFY(parts.after.startsWith(QStringLiteral("</table>")));
        QVERIFY(parts.rows.size() >= 5); // the spacer and the summary are rows too
        QVERIFY(parts.styles.startsWith(QStringLiteral(".Stil5")));
        QVERIFY(!parts.styles.contains(u'>'));
    }

    void markupOfValuesIsTamed() {
        const auto tamed = [](const QString &name) {
            return cellTexts(reportParts(tamedReport(report({name}))).rows[0])[0];
        };
        QCOMPARE(tamed(QStringLiteral("a=b <b>c</b>")), QStringLiteral("a\u2060=b <b>c</b>"));
        QVERIFY(!tamed(QStringLiteral("<td colspan=100000000>")).contains(u"colspan="));
        QVERIFY(!tamedReport(report({QStringLiteral("<td\r\ncolspan=9>")})).contains(u"colspan="));
        QVERIFY(!tamed(QStringLiteral("<div>").repeated(20000)).contains(u'<'));
        for (const char *plain : {"a=b", "1 > 0", "", "Zo\u00EB"}) {
            const QString html = report({QString::fromUtf8(plain)});
            QCOMPARE(tamedReport(html), html);
        }
    }

    void withoutStatistics() {
        const QString html = report({}, {false, false, false, false});
        const ReportParts parts = reportParts(html);
        QCOMPARE(parts.before, html);
        QVERIFY(parts.rows.isEmpty() && parts.after.isEmpty());
        for (const QString &broken : {QString(), QStringLiteral("<th class=\"Stil5\">"),
                                      QStringLiteral("</table><table><tr><th class=\"Stil5\">")})
            QCOMPARE(reportParts(broken).before, broken);
    }
};

QTEST_APPLESS_MAIN(ReportPartsTest)
#include "reportPartsTest.moc"
