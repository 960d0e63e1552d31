#include "core/database/dayTable.h"
#include "projectFolder.h"
#include "support/anotherUser.h"
#include "support/dataTable.h"
#include "support/failureOf.h"

#include <QtTest>

#include <functional>

using namespace veltrona;
using sqlite::Connection;
using test::allow, test::contents, test::write;

namespace {

void change(const QString &path, std::string_view sql) {
    Connection connection;
    connection.open(path);
    connection.execute(sql);
}

qint64 number(const Connection &connection, std::string_view sql) {
    sqlite::Statement statement = connection.prepare(sql);
    return statement.step() ? statement.int64(0) : -1;
}

qint64 records(const Connection &connection) {
    return number(connection, "SELECT count(*) FROM tblGoogleDays");
}

void addRecords(const QString &path, int count) {
    openProject(path)->execute("INSERT INTO tblGoogleDays (CreativeId) WITH n(i) AS (VALUES (1) "
                               "UNION ALL SELECT i + 1 FROM n WHERE i < " +
                               std::to_string(count) + ") SELECT i FROM n");
}

using Spoil = std::function<void(const QString &path)>;

} // namespace

Q_DECLARE_METATYPE(Spoil)

class ProjectFileTest : public QObject, ProjectFolder {
    Q_OBJECT

private slots:
    void initTestCase() { sqlite::lockWait = 100; }
    void init() { renewFolder(); }

    void sixValuesMakeARecord() {
        const auto connection = openProject(project());
        const auto add = [&](const char *column, const QString &value) {
            auto insert = connection->prepare(dayInsertStatement());
            for (std::size_t i = 0; i < dayColumns.size(); ++i) {
                const bool chosen = std::string_view(dayColumns[i].name) == column;
                insert.bind(static_cast<int>(i) + 1, chosen ? value : QStringLiteral("1"));
            }
            const qint64 before = records(*connection);
            insert.step();
            return records(*connection) - before;
        };
        QCOMPARE(add("", {}), 1);
        QCOMPARE(add("", {}), 0);
        QStringList keys;
        for (const DayColumn &column : dayColumns) {
            if (add(column.name, QStringLiteral("2")) == 1)
                keys += column.name;
        }
        QCOMPARE(keys.join(','), "Adgroup,Campaign,CreativeId,GoogleDate,KeyWord,kwType");
        QCOMPARE(add("CreativeId", QStringLiteral("123456789012345678")), 1);
        QCOMPARE(add("CreativeId", QStringLiteral("123456789012345679")), 1);
    }

    void badProjectIsRefused_data() {
        const test::DataTable<int, QString, Spoil> row("fault", "reason", "spoil");
        const auto bytes = [](const QByteArray &content) {
            return [content](const QString &path) { write(path, content); };
        };
        const auto cut = [](qint64 size) {
            return [size](const QString &path) { QFile::resize(path, size); };
        };
        const auto sql = [](std::string_view text) {
            return [text](const QString &path) { change(path, text); };
        };
        row("empty", noProject, "empty", bytes({}));
        row("cut in the header", noProject, "not one of Veltrona", cut(60));
        row("cut in a page", damagedProject, "damaged", cut(20000));
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
    }

    void badProjectIsRefused() {
        QFETCH(int, fault);
        QFETCH(QString, reason);
        QFETCH(Spoil, spoil);
        const QString file = project(QStringLiteral("O'Neil #1.vlt"));
        spoil(file);
        const QByteArray before = contents(file);
        const QStringList filesBefore = files();
        const auto failure = failureOf([&] { openProject(file); });
        QVERIFY(failure);
        QCOMPARE(failure->number() & 0xff, fault);
        QVERIFY2(failure->text().contains(reason), qPrintable(failure->text()));
        QVERIFY(failure->text().contains(file));
        QCOMPARE(contents(file), before);
        QCOMPARE(files(), filesBefore);
    }

    /// A file that can be written, in a folder that takes no journal.
    void projectInAReadOnlyFolderIsRefused() {
        const QString file = project();
        const QByteArray before = contents(file);
        allow(file, 0666);
        allow(folder(), 0755);
        const AnotherUser user;
        if (!user.works())
            QSKIP("root's rights can't be laid down here");
        const auto failure = failureOf([&] { openProject(file); });
        QVERIFY(failure);
        QVERIFY2(failure->text().contains("folder can't be written"), qPrintable(failure->text()));
        QCOMPARE(contents(file), before);
    }

    /// A crash in the middle of a batch: the next start takes the batch back.
    void crashCostsTheOpenBatchAlone() {
        const QString file = project();
        addRecords(file, 200);
        const auto connection = openProject(file);
        connection->execute("PRAGMA cache_size = 2; BEGIN; UPDATE tblGoogleDays SET Clicks = 1, "
                            "headline = hex(zeroblob(500))");
        QVERIFY(QFile::copy(file, path("crashed.vlt")));
        QVERIFY(QFile::copy(file + "-journal", path("crashed.vlt-journal")));
        const auto crashed = openProject(path("crashed.vlt"));
        QCOMPARE(number(*crashed, "SELECT sum(Clicks) FROM tblGoogleDays"), 0);
        QCOMPARE(records(*crashed), 200);
    }

    void foreignTriggersNeverRun() {
        const QString file = project();
        change(file, "CREATE TRIGGER evil AFTER INSERT ON tblGoogleDays BEGIN DELETE FROM "
                     "tblGoogleDays; END");
        addRecords(file, 100);
        QCOMPARE(records(*openProject(file)), 100);
    }

    /// Another tool has split the project into several files.
    void projectBecomesOneFileAgain() {
        const QString file = project();
        change(file, "PRAGMA journal_mode = WAL; INSERT INTO tblGoogleDays (Clicks) VALUES (1)");
        const auto connection = openProject(file);
        connection->execute("INSERT INTO tblGoogleDays (Clicks, CreativeId) VALUES (1, 1)");
        QCOMPARE(files(), QStringList("p.vlt"));
        QVERIFY(QFile::copy(file, path("mailed.vlt")));
        QCOMPARE(records(*openProject(path("mailed.vlt"))), 2);
    }

    void cleanGivesTheSpaceBack() {
        const QString file = project();
        addRecords(file, 5000);
        QVERIFY(QFileInfo(file).size() > 100000);
        const auto connection = openProject(file);
        cleanProject(*connection);
        QCOMPARE(records(*connection), 0);
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
        QCOMPARE(records(*connection), 0);
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
        QCOMPARE(records(*connection), 100);
    }
};

QTEST_GUILESS_MAIN(ProjectFileTest)
#include "projectFileTest.moc"
