#include "core/database/dayTable.h"
#include "core/platform/services.h"
#include "support/dataTable.h"
#include "support/faults.h"
#include "support/projects.h"

#include <QtTest>

#include <functional>

#include <sys/stat.h>

using namespace veltrona;
using sqlite::Connection;
using test::allow, test::contents, test::number, test::recordCount, test::write;

namespace {

void change(const QString &path, std::string_view sql) {
    Connection connection;
    connection.open(path);
    connection.execute(sql);
}

void addRecords(const QString &path, int count) {
    openProject(path)->execute(
        "INSERT OR IGNORE INTO tblGoogleDays (CreativeId) WITH n(i) AS (VALUES (1) "
        "UNION ALL SELECT i + 1 FROM n WHERE i < " +
        std::to_string(count) + ") SELECT i FROM n");
}

/// The table and its indexes again, with one part of the table's declaration in other words.
void declareOtherwise(const QString &path, const QRegularExpression &part, const QString &words) {
    Connection connection;
    connection.open(path);
    QStringList declarations;
    sqlite::Statement each = connection.prepare("SELECT sql FROM sqlite_master ORDER BY rowid");
    while (each.step())
        declarations += each.text(0);
    each = {};
    declarations.first().replace(part, words);
    const QString sql = "DROP TABLE tblGoogleDays;" + declarations.join(u';');
    connection.execute(sql.toStdString());
}

/// In the middle of a change of all records, the first page included: what a crash leaves.
QByteArray journalOf(const QString &path, const char *end = "ROLLBACK") {
    const auto connection = openProject(path);
    connection->execute("PRAGMA cache_size = 2; BEGIN; PRAGMA user_version = 1; UPDATE "
                        "tblGoogleDays SET Clicks = 1, headline = hex(zeroblob(500)); "
                        "SELECT * FROM tblGoogleDays");
    const QByteArray journal = contents(path + "-journal");
    connection->execute(end);
    return journal;
}

/// The end of a journal that names the file of a change over several databases.
QByteArray superJournal(const QByteArray &name) {
    QByteArray end;
    QDataStream stream(&end, QIODevice::WriteOnly);
    quint32 sum = 0;
    for (const char c : name)
        sum += static_cast<quint32>(c);
    stream << quint32(0x40000000 / 8192 + 1);
    stream.writeRawData(name.constData(), static_cast<int>(name.size()));
    stream << static_cast<quint32>(name.size()) << sum << quint64(0xd9d505f920a163d7);
    return end;
}

using Spoil = std::function<void(const QString &path)>;

} // namespace

Q_DECLARE_METATYPE(Spoil)

class ProjectFileTest : public QObject, test::ProjectFolder {
    Q_OBJECT

    /// Nothing is played back, nothing else is touched, and the text says what to do.
    Failure verifyRefused(const QString &file, const Spoil &spoil, const QString &reason) const {
        spoil(file);
        const auto state = [&] { return contents(file) + contents(path("letter")); };
        const QByteArray before = state();
        const QStringList filesBefore = files();
        const Failure failure = failureOf([&] { openProject(file); }).value_or(Failure(0, ""));
        if (!failure.text().contains(reason) || !failure.text().contains(file))
            QTest::qFail(qPrintable(failure.text()), __FILE__, __LINE__);
        if (state() != before || files() != filesBefore)
            QTest::qFail("something was touched", __FILE__, __LINE__);
        return failure;
    }

private slots:
    void initTestCase() { services().lockWait = 100; }
    void init() { renewFolder(); }

    void badProjectIsRefused_data() {
        const test::DataTable<int, QString, Spoil> row;
        const auto bytes = [](const QByteArray &content) {
            return [content](const QString &path) { write(path, content); };
        };
        const auto cut = [](qint64 size) {
            return [size](const QString &path) { QFile::resize(path, size); };
        };
        const auto sql = [](std::string_view text) {
            return [text](const QString &path) { change(path, text); };
        };
        const auto byte = [](qsizetype place, char value) {
            return [=](const QString &path) {
                QByteArray content = contents(path);
                content[place] = value;
                write(path, content);
            };
        };
        row("empty", noProject, "empty", bytes({}));
        row("another application's", noProject, "not one of Veltrona", byte(70, 0));
        row("of the next version", newerProject, "newer", byte(63, 2));
        row("a byte", noProject, "too short", bytes("x"));
        row("cut in the header", noProject, "too short", cut(60));
        row("cut in a page", damagedProject, "damaged", cut(20000));
        row("older", olderProject, "older version", sql("PRAGMA user_version = 0"));
        row("no table", damagedProject, "missing", sql("DROP TABLE tblGoogleDays"));
        row("no column", damagedProject, "isn't the one",
            sql("ALTER TABLE tblGoogleDays RENAME COLUMN headline TO head"));
        row("no key", damagedProject, "isn't the one", sql("DROP INDEX idxRecord"));
        const auto overwritten = [](qsizetype page) {
            return [page](const QString &path) {
                QByteArray content = contents(path);
                content.replace(page * 8192, 8192, QByteArray(8192, '\x55'));
                write(path, content);
            };
        };
        row("overwritten table", damagedProject, "damaged", overwritten(1));
        row("overwritten index of dates", damagedProject, "damaged", overwritten(3));

        const QString lastColumn("GoogleWeek      TEXT    NOT NULL DEFAULT ''");
        const auto more = [lastColumn](const QString &column) {
            return [=](const QString &path) {
                declareOtherwise(path, QRegularExpression(lastColumn), lastColumn + ", " + column);
            };
        };
        row("CHECK", damagedProject, "expressions", more("CHECK (length(hex(zeroblob(9e8))) > 1)"));
        row("generated", damagedProject, "expressions", more("x AS (hex(zeroblob(9e8))) STORED"));
        row("default", damagedProject, "expressions", more("x DEFAULT (hex(zeroblob(9e8)))"));
        row("expression in an index", damagedProject, "expressions",
            sql("CREATE INDEX x ON tblGoogleDays (Clicks || Clicks)"));
        row("index over a part", damagedProject, "expressions",
            sql("CREATE INDEX x ON tblGoogleDays (Clicks) WHERE Clicks > 7"));
        row("another key", damagedProject, "unique",
            sql("CREATE UNIQUE INDEX x ON tblGoogleDays (Clicks)"));
        row("case in the key", damagedProject, "unique",
            sql("DROP INDEX idxRecord; CREATE UNIQUE INDEX x ON tblGoogleDays (Campaign COLLATE "
                "NOCASE, Adgroup, KeyWord, kwType, GoogleDate, CreativeId)"));
        row("column without default", damagedProject, "refuse every", more("x NOT NULL"));
        const auto column = [](const QString &name, const QString &type) {
            return [=](const QString &path) {
                declareOtherwise(path, QRegularExpression(name + " +[A-Z]+( PRIMARY KEY,)?"),
                                 type.isEmpty() ? type : name + ' ' + type);
            };
        };
        row("no number", damagedProject, "column GoogleDayId", column("GoogleDayId", {}));
        row("numbers that aren't given", damagedProject, "column GoogleDayId",
            column("GoogleDayId", "INTEGER NOT NULL DEFAULT 0,"));
        row("case in names", damagedProject, "column Campaign", [column](const QString &path) {
            column("Campaign", "TEXT COLLATE NOCASE")(path);
            change(path, "DROP INDEX idxRecord; CREATE UNIQUE INDEX x ON tblGoogleDays (Adgroup, "
                         "Campaign COLLATE BINARY, KeyWord, kwType, GoogleDate, CreativeId)");
        });
        row("case in types", damagedProject, "column AdwordsTyp",
            column("AdwordsTyp", "TEXT COLLATE NOCASE"));
        row("names as numbers", damagedProject, "column Adgroup", column("Adgroup", "NUMERIC"));
        row("floating names", damagedProject, "column KeyWord", column("KeyWord", "REAL"));
        row("names of any type", damagedProject, "column kwType", column("kwType", "BLOB"));
        row("whole dates", damagedProject, "column GoogleDate", column("GoogleDate", "TEXTINT"));
        row("floating ids", damagedProject, "column CreativeId", column("CreativeId", "DOUBLE"));
        row("ids as texts", damagedProject, "column CreativeId", column("CreativeId", "CLOB"));
    }

    void journalIsRefused_data() {
        const test::DataTable<QString, Spoil> row;
        const auto beside = [](const char *suffix, auto make) {
            return [suffix, make](const QString &path) { make(QFile::encodeName(path + suffix)); };
        };
        const auto pipe = [](const QByteArray &path) { QVERIFY(mkfifo(path, 0600) == 0); };
        row("pipe", "ordinary", beside("-journal", pipe));
        row("pipe for a log", "ordinary", beside("-wal", pipe));
        row("pipe beside a log", "ordinary", [pipe](const QString &path) {
            change(path, "PRAGMA journal_mode = WAL");
            write(path + "-wal", {});
            pipe(QFile::encodeName(path + "-shm"));
        });
        row("link", "ordinary", [](const QString &path) {
            QVERIFY(QFile::link(QFileInfo(path).path() + "/letter", path + "-journal"));
        });
        row("super-journal", "several databases", [](const QString &path) {
            const QByteArray letter = QFile::encodeName(QFileInfo(path).path() + "/letter");
            write(path + "-journal", journalOf(path) + superJournal(letter));
        });
        row("super-journal that is gone", "several databases", [](const QString &path) {
            write(path + "-journal", journalOf(path) + superJournal("/none"));
        });
        row("backup of a later time", "another state", [](const QString &path) {
            const QByteArray journal = journalOf(path);
            change(path, "UPDATE tblGoogleDays SET Clicks = 2");
            change(path, "UPDATE tblGoogleDays SET Clicks = 3");
            write(path + "-journal", journal);
        });
        row("other file of the same age", "another state", [](const QString &path) {
            const QByteArray journal = journalOf(path);
            change(path, "CREATE TABLE t (i)");
            QByteArray content = contents(path);
            content[27] = static_cast<char>(content[27] - 1); // the count of changes
            write(path, content);
            write(path + "-journal", journal);
        });
        row("backup with fewer records", "another state", [](const QString &path) {
            write(path + "-journal", journalOf(path));
            write(path, contents(QCoreApplication::applicationDirPath() + "/data.dat"));
        });
        row("backup with more records", "another state", [](const QString &path) {
            const QByteArray journal = journalOf(path);
            addRecords(path, 2000);
            QByteArray unwritten = journal.left(8192 + 512);
            unwritten.replace(8, 4, QByteArray(4, '\0')); // as before its first sync
            write(path + "-journal", unwritten);
        });
    }

    void journalIsRefused() {
        const auto [reason, spoil] = test::row<QString, Spoil>();
        addRecords(project(), 200);
        write(path("letter"), "Dear Anna");
        verifyRefused(path("p.vlt"), spoil, reason);
    }

    void badProjectIsRefused() {
        const auto [fault, reason, spoil] = test::row<int, QString, Spoil>();
        const auto failure = verifyRefused(project("O'Neil #1.vlt"), spoil, reason);
        QCOMPARE(failure.number() & 0xff, fault);
    }

    void whatCannotBeWrittenIsRefused_data() {
        const test::DataTable<int, int, QString> row;
        row("the file", 0444, 0777, "read-only");
        row("the folder, which takes no journal", 0666, 0755, "folder can't be written");
    }
    void whatCannotBeWrittenIsRefused() {
        const auto [fileMode, folderMode, reason] = test::row<int, int, QString>();
        const QString file = project();
        allow(file, fileMode);
        allow(folder(), folderMode);
        const AnotherUser user;
        QVERIFY(user.works());
        verifyRefused(
            file, [](const QString &) {}, reason);
    }

    /// A crash in the middle of a batch, or before its end is sealed: the next start takes it back.
    void crashCostsTheOpenBatchAlone() {
        for (const char *end : {"ROLLBACK", "COMMIT"}) {
            renewFolder();
            const QString file = project();
            addRecords(file, 200);
            write(file + "-journal", journalOf(file, end));
            const auto crashed = openProject(file);
            QCOMPARE(number(*crashed, "SELECT sum(Clicks) FROM tblGoogleDays"), 0);
            QCOMPARE(recordCount(*crashed), 200);
        }
    }

    void harmlessDifferencesAreWelcome() {
        const QString file = project();
        declareOtherwise(file, QRegularExpression("Campaign +TEXT"), "x, Campaign varchar(9)");
        declareOtherwise(file, QRegularExpression("CreativeId +NUMERIC"), "CreativeId bigint");
        declareOtherwise(file, QRegularExpression("Clicks +NUMERIC"), "Clicks TEXT");
        change(file, "CREATE INDEX names ON tblGoogleDays (Campaign COLLATE NOCASE)");
        addRecords(file, 100);
        QCOMPARE(recordCount(*openProject(file)), 100);
    }

    void foreignTriggersNeverRun() {
        const QString file = project();
        change(file, "CREATE TRIGGER evil AFTER INSERT ON tblGoogleDays BEGIN DELETE FROM "
                     "tblGoogleDays; END");
        addRecords(file, 100);
        QCOMPARE(recordCount(*openProject(file)), 100);
    }

    /// Another tool has split the project into several files.
    void projectBecomesOneFileAgain() {
        const QString file = project();
        change(file, "PRAGMA journal_mode = WAL; INSERT INTO tblGoogleDays (Clicks) VALUES (1)");
        const auto connection = openProject(file);
        connection->execute("INSERT INTO tblGoogleDays (Clicks, CreativeId) VALUES (1, 1)");
        QCOMPARE(files(), QStringList("p.vlt"));
        QCOMPARE(number(*connection, "PRAGMA synchronous"), 2); // FULL
        QVERIFY(QFile::copy(file, path("mailed.vlt")));
        QCOMPARE(recordCount(*openProject(path("mailed.vlt"))), 2);
    }

    void cleanGivesTheSpaceBack() {
        const QString file = project();
        addRecords(file, 5000);
        QVERIFY(QFileInfo(file).size() > 100000);
        const auto connection = openProject(file);
        cleanProject(*connection);
        QCOMPARE(recordCount(*connection), 0);
        QCOMPARE(QFileInfo(file).size(), QFileInfo(test::projectTemplate()).size());
    }

    /// Deliberate: the records are gone, and that is what was asked for.
    void cleanThatKeepsTheSpaceIsNoFailure() {
        const QString file = project();
        addRecords(file, 5000);
        const auto connection = openProject(file);
        auto running = connection->prepare("SELECT name FROM sqlite_master");
        QVERIFY(running.step()); // VACUUM refuses to run beside another statement
        const qint64 size = QFileInfo(file).size();
        cleanProject(*connection);
        QCOMPARE(recordCount(*connection), 0);
        QCOMPARE(QFileInfo(file).size(), size);
    }

    void cleanOfALockedProjectKeepsAll() {
        const QString file = project();
        addRecords(file, 100);
        const auto connection = openProject(file);
        const auto reader = openProject(file);
        auto running = reader->prepare("SELECT CreativeId FROM tblGoogleDays");
        QVERIFY(running.step());
        QCOMPARE(failureOf([&] { cleanProject(*connection); })->number(), 5);
        running = {};
        QCOMPARE(recordCount(*connection), 100);
    }
};

QTEST_GUILESS_MAIN(ProjectFileTest)
#include "projectFileTest.moc"
