#include "core/import/importRows.h"
#include "core/import/progress.h"
#include "core/platform/services.h"
#include "support/dataTable.h"
#include "support/faults.h"
#include "support/recordTable.h"
#include "support/testFolder.h"

#include <QtTest>

#include <sys/wait.h>
#include <unistd.h>

using namespace veltrona;

namespace {

QByteArray columns(std::initializer_list<const char *> names) {
    QByteArray text = "<columns>";
    for (const char *name : names)
        text += QByteArray("<column name='") + name + "'/>";
    return text + "</columns>";
}

QByteArray report(std::initializer_list<const char *> names, const QByteArray &rows) {
    return "<report>\n" + columns(names) + rows + "</report>";
}

const std::initializer_list<const char *> keyColumns = {
    "campaign", "adgroup", "keyword", "kwtype", "creativeid", "date", "clicks"};

QByteArray row(const QByteArray &keyword, const QByteArray &clicks = "1") {
    return "\n<row campaign='C' adgroup='A' keyword='" + keyword +
           "' kwtype='Broad' creativeid='7' date='2007-05-14' clicks='" + clicks + "'/>";
}

} // namespace

class ImportTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    std::unique_ptr<test::RecordTable> m_table;
    xml::Document m_document;
    std::chrono::milliseconds m_time{};

    const xml::Document &load(const QByteArray &content) {
        const QString path = m_folder.filePath(QStringLiteral("week %1 O'Neil.xml"));
        test::write(path, content);
        if (!m_document.load(path))
            qFatal("%s", qPrintable(m_document.parseError().reason));
        return m_document;
    }

    int import(const QByteArray &content) {
        const ColumnCheck check = checkColumns(load(content));
        if (!check.passed)
            qFatal("the report should pass");
        int steps = 0;
        sqlite::Statement duplicateTest = prepareDuplicateTest(m_table->connection());
        importRows(m_table->connection(), duplicateTest, m_document, check, [&] {
            if (++steps == 100)
                m_time += std::chrono::milliseconds(110); // a batch is old enough to be committed
            return true;
        });
        return steps;
    }

    QString importFailure(const QByteArray &content) {
        const std::optional<Failure> failure = failureOf([&] { import(content); });
        return failure ? failure->text() : QString();
    }

    /// All records in the order of their storing, columns parted by "|".
    QStringList records(const QByteArray &names = "KeyWord, Clicks") {
        sqlite::Statement statement = m_table->connection().prepare(
            ("SELECT concat FROM (SELECT " + QByteArray(names).replace(", ", " || '|' || ") +
             " AS concat, GoogleDayId FROM tblGoogleDays) ORDER BY GoogleDayId")
                .toStdString());
        QStringList result;
        while (statement.step())
            result += statement.text(0);
        return result;
    }

private slots:
    void initTestCase() {
        services().steadyTime = [this] { return m_time; };
    }
    void init() { m_table = std::make_unique<test::RecordTable>(); }

    void checksTheColumns_data() {
        const test::DataTable<QByteArray, bool> add;
        const QByteArray both = "<column name='campaign'/><column name='date'/>";
        add("in any case", "<r><column name='CAMPAIGN'/><column name='Date'/></r>", true);
        add("one missing", "<r><column name='campaign'/></r>", false);
        add("a text element in front", "<r><title>Report</title>" + both + "</r>", false);
        add("rows with children in front", "<r><row><x/></row>" + both + "</r>", false);
        add("a column with content",
            "<r><column name='campaign'>x</column><column name='date'/></r>", false);
        add("the second with content",
            "<r><column name='campaign'/><column name='date'>x</column></r>", true);
        add("blank around a name", "<r><column name='campaign '/><column name='date'/></r>", false);
        add("an empty name",
            "<r><column name=''/><column name='campaign'/><column name='date'/></r>", true);
        add("white space in a column",
            "<r><column name='campaign'>\n</column><column name='date'/></r>", true);
        // The walk stops before it comes to the column that has no name.
        add("stopped early", "<r><title>x</title><column/></r>", false);
    }
    void checksTheColumns() {
        const auto [content, passes] = test::row<QByteArray, bool>();
        QCOMPARE(checkColumns(load(content)).passed, passes);
    }

    void refusesWhatItCannotTake_data() {
        const test::DataTable<QByteArray, QStringList> add;
        add("a column without name", "<r>\n<column/></r>", {"line 2", "no name"});
        add("too many rows", report({"campaign", "date"}, QByteArray("<row/>").repeated(32768)),
            {"32768", "32767", "shorter periods"});
    }
    void refusesWhatItCannotTake() {
        const auto [content, parts] = test::row<QByteArray, QStringList>();
        load(content);
        const std::optional<Failure> failure = failureOf([&] { checkColumns(m_document); });
        QVERIFY(failure);
        for (const QString &part : parts + QStringList{m_document.path()})
            QVERIFY2(failure->text().contains(part), qPrintable(failure->text()));
        QCOMPARE(
            checkColumns(load(report({"campaign", "date"}, QByteArray("<row/>").repeated(32767))))
                .rowCount,
            32767);
    }

    void storesEachColumnInItsPlace() {
        QByteArray names;
        QByteArray values;
        std::initializer_list<const char *> none;
        for (int i = 0; i < reportColumnCount; ++i) {
            const std::string name(reportColumns[std::size_t(i)].name);
            names += "<column name='" + QByteArray::fromStdString(name) + "'/>";
            const bool isDate = name == "date";
            values += QByteArray::fromStdString(name) + "=' " +
                      (isDate ? QByteArray("May 14, 2007") : QByteArray::number(i + 1)) + "  ' ";
        }
        import("<r>" + names + "<row " + values + "/>" + report(none, "") + "</r>");
        QByteArray all;
        for (const DayColumn &column : dayColumns)
            all += (all.isEmpty() ? "" : ", ") + QByteArray(column.name);
        QCOMPARE(records(all),
                 QStringList{"1|2|3|4|5|6|7|8|10|9|11|12|13|14|15|16|17|18|19|2007-05-14|21|22|23|"
                             "24|25|26|27|28|29|30|31|32|33|34|2007 05|2007 20"});
    }

    void storesAbsentAndBlankValues() {
        const QByteArray rows = "<row campaign='  ' date='2007-05-14' clicks=' ' pos='+1.50'/>"
                                "<row date='2007-05-15' clicks='9223372036854775808'/>";
        import(report({"campaign", "date", "clicks", "pos", "headline"}, rows));
        QCOMPARE(records("Campaign, Clicks, Pos, headline, CreativeId, typeof(Clicks)"),
                 (QStringList{"|0|1.5||0|integer", "|9.22337203685478e+18|0||0|real"}));
    }

    void storesRowsWhereverTheyStand() {
        const auto rowOf = [](const QByteArray &name, const QByteArray &inside = "") {
            return "<row CAMPAIGN='" + name + "' campaign='other' Date='2007-05-14'>" + inside +
                   "</row>";
        };
        const QByteArray content =
            "<r>" + rowOf("ahead of the columns") +
            "<columns><column name='campaign'/><column name='CAMPAIGN'/><column name='Date'/>"
            "</columns><rows>" +
            rowOf("outer", rowOf("inner")) + "</rows><ROW/><more>" + rowOf("second list") +
            "</more></r>";
        QCOMPARE(checkColumns(load(content)).rowCount, 4);
        import(content);
        QCOMPARE(records("Campaign"),
                 (QStringList{"ahead of the columns", "outer", "inner", "second list"}));
    }

    void eachKeyValueMakesAnotherRecord() {
        QByteArray rows = row("k");
        const std::pair<const char *, const char *> changes[] = {{"'C'", "'c'"},
                                                                 {"'A'", "'a'"},
                                                                 {"'k'", "'K'"},
                                                                 {"'Broad'", "'broad'"},
                                                                 {"'7'", "'123456789012345678'"},
                                                                 {"'7'", "'123456789012345679'"},
                                                                 {"05-14'", "05-14 00:00:01'"}};
        for (const auto &[from, to] : changes)
            rows += row("k").replace(from, to);
        import(report(keyColumns, rows + rows));
        QCOMPARE(
            records("Campaign, Adgroup, KeyWord, kwType, CreativeId, GoogleDate"),
            (QStringList{"C|A|k|Broad|7|2007-05-14", "c|A|k|Broad|7|2007-05-14",
                         "C|a|k|Broad|7|2007-05-14", "C|A|K|Broad|7|2007-05-14",
                         "C|A|k|broad|7|2007-05-14", "C|A|k|Broad|123456789012345678|2007-05-14",
                         "C|A|k|Broad|123456789012345679|2007-05-14",
                         "C|A|k|Broad|7|2007-05-14 00:00:01"}));
    }

    void storesARecordOnce() {
        // Only the six key values count, exactly; the first figures stand, and nothing else of a
        // known row is looked at.
        QCOMPARE(import(report(keyColumns, row("a", "1") + row("a", "x") + row(" a ", "3") +
                                               row("A", "4") + row("\xC3\xA4", "5"))),
                 5);
        QCOMPARE(import(report(keyColumns, row("\xC3\xA4", "-") + row("b", "6") + row("a", "7"))),
                 3);
        QCOMPARE(records(), (QStringList{"a|1", "A|4", "\u00E4|5", "b|6"}));
        // Another form of the same date and number is the same record; a missing column isn't.
        import(report(keyColumns, row("b")
                                      .replace("2007-05-14", "5/14/2007 0:00")
                                      .replace("creativeid='7'", "creativeid='7.0'")));
        QCOMPARE(records().size(), 4);
        import(report({"campaign", "adgroup", "keyword", "kwtype", "date"}, row("b")));
        QCOMPARE(records("KeyWord, CreativeId").last(), QStringLiteral("b|0"));
    }

    void endsAtAValueThatCannotBeRead_data() {
        const test::DataTable<QByteArray, QStringList> add;
        add("number", row("b", "12&#10;%"), {"\"12 %\"", "\"clicks\""});
        add("a pair at the cut", row("b", QByteArray(39, '1') + "\U0001F600 and more"),
            {QString(39, '1').prepend('"') + "...\"", "\"clicks\""});
        add("key", row("b").replace("'7'", "'7; x'"), {"\"7; x\"", "\"creativeid\""});
        add("date", row("b").replace("05-14", "02-30"), {"\"2007-02-30\"", "\"date\""});
        add("a creative above 64 bits", row("b").replace("'7'", "'9223372036854775808'"),
            {"\"9223372036854775808\"", "\"creativeid\" is too large."});
        add("no float holds it", row("b", "1E309"), {"\"clicks\" is too large."});
        add("no date", row("b").replace("date=", "day="), {"\"date\"", "missing"});
    }
    void endsAtAValueThatCannotBeRead() {
        const auto [bad, parts] = test::row<QByteArray, QStringList>();
        const QByteArray good = row("a") + row("a2");
        const QString text = importFailure(report(keyColumns, good + bad + row("c")));
        for (const QString &part :
             parts + QStringList{m_document.path(), "row 3 ", "line 5 ", "kept"})
            QVERIFY2(text.contains(part), qPrintable(text));
        QCOMPARE(records("KeyWord"), (QStringList{"a", "a2"}));
        QCOMPARE(import(report(keyColumns, good + row("b") + row("c"))), 4);
        QCOMPARE(records("KeyWord"), (QStringList{"a", "a2", "b", "c"}));
    }

    void countsOnlyWhatIsCommitted() {
        // The disk is full after twelve pages.
        m_table->connection().execute("PRAGMA max_page_count = 12");
        QByteArray rows;
        for (int i = 1; i <= 1000; ++i)
            rows += row("k" + QByteArray::number(i));
        const QString text = importFailure(report(keyColumns, rows));
        QVERIFY2(text.contains(QStringLiteral("full")), qPrintable(text));
        QVERIFY(records().size() > 0);
        QVERIFY2(text.contains(QStringLiteral("stored: %1.").arg(records().size())),
                 qPrintable(text));
        m_table->connection().execute("PRAGMA max_page_count = 100000");
        import(report(keyColumns, rows));
        QCOMPARE(records().size(), 1000);
    }

    void sharesTheProjectWithAnotherProgram() {
        const QString path = m_table->connection().path();
        const auto rows = [](int from, int to) {
            QByteArray text;
            for (int i = from; i <= to; ++i)
                text += row("k" + QByteArray::number(i), QByteArray::number(i));
            return report(keyColumns, text);
        };
        const ColumnCheck check = checkColumns(load(rows(1, 3000)));
        const pid_t child = fork();
        if (child == 0) {
            _exit(failureOf([&] {
                      sqlite::Connection connection;
                      connection.open(path);
                      sqlite::Statement duplicateTest = prepareDuplicateTest(connection);
                      importRows(connection, duplicateTest, m_document, check, [] { return true; });
                  }).has_value());
        }
        import(rows(1001, 4000));
        int status = -1;
        QCOMPARE(waitpid(child, &status, 0), child);
        QCOMPARE(status, 0);
        QCOMPARE(records().size(), 4000);
    }
};

QTEST_GUILESS_MAIN(ImportTest)
#include "importTest.moc"
