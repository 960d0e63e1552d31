#include "core/platform/sqlite/connection.h"
#include "core/base/command.h"
#include "core/platform/services.h"
#include "core/platform/sqlite/recordScan.h"
#include "support/faults.h"
#include "support/testFolder.h"

#include <QtTest>

#include <atomic>
#include <limits>
#include <thread>

#include <sys/stat.h>

using namespace veltrona;
using namespace veltrona::sqlite;

namespace {

// SQLite's result codes, as a user would report it.
constexpr int cantOpen = 14;
constexpr int tooBig = 18;
constexpr int tooMuchWork = 9;
constexpr int damaged = 11;

qint64 count(const Connection &connection) {
    return connection.number("SELECT count(*) FROM t");
}

} // namespace

class ConnectionTest : public QObject, test::TestFolder {
    Q_OBJECT

    QString makeDatabase(const QString &name = "p.vlt") const {
        const QString file = test::write(path(name), {});
        Connection connection;
        connection.open(file);
        connection.execute(
            "CREATE TABLE t (n NUMERIC NOT NULL UNIQUE, s TEXT NOT NULL DEFAULT '')");
        return file;
    }

private slots:
    void init() { renewFolder(); }

    /// A relative name reaches SQLite as it was chosen.
    void namesMeanFiles() {
        const QString before = QDir::currentPath();
        QDir::setCurrent(folder());
        const auto back = qScopeGuard([&] { QDir::setCurrent(before); });
        for (const char *utf8 :
             {"O'Neil & \"Söhne\".vlt", "100%41 ?mode=ro#x.vlt", "file:x?mode=memory"}) {
            const QString name = QString::fromUtf8(utf8);
            makeDatabase(name);
            Connection connection;
            connection.open(name);
            connection.execute("INSERT INTO t (n) VALUES (1)");
            connection.close();
            connection.open(path(name));
            QCOMPARE(count(connection), 1);
            QVERIFY(files().contains(name));
        }
        QCOMPARE(files().size(), 3);
    }

    void refusesWhatIsNoFile() {
        QVERIFY(QDir(folder()).mkdir("folder"));
        QVERIFY(mkfifo(QFile::encodeName(path("pipe")).constData(), 0600) == 0);
        for (const QString &name : {QString(), path("missing.vlt"), path("folder"), path("pipe")}) {
            Connection connection;
            const auto failure = failureOf([&] { connection.open(name); });
            QVERIFY2(failure, qPrintable(name));
            QCOMPARE(failure->number(), cantOpen);
            QVERIFY(failure->text().contains(name));
            QVERIFY(!connection.isOpen());
        }
        QVERIFY(!QFile::exists(path("missing.vlt")));
    }

    void textsAndWorkHaveBounds() {
        Connection connection;
        connection.open(makeDatabase());
        const auto fails = [&](std::string_view sql) {
            const auto failure = failureOf([&] {
                Statement statement = connection.prepare(sql);
                while (statement.step())
                    statement.utf8(0);
            });
            return failure ? failure->number() : 0;
        };
        for (int statement = 0; statement < 3; ++statement)
            QCOMPARE(fails("SELECT hex(zeroblob(5000000))"), 0);
        QCOMPARE(fails("SELECT hex(zeroblob(5000001))"), tooBig);
        QCOMPARE(fails("SELECT length(zeroblob(150000000))"), 0); // what a record may come to
        QCOMPARE(fails("SELECT length(zeroblob(200000000))"), tooBig);
        QCOMPARE(fails("WITH n AS (SELECT 1 UNION ALL SELECT 1 FROM n) SELECT count(*) FROM n"),
                 tooMuchWork);
        QCOMPARE(fails("SELECT 1"), 0);
        const auto failsTenTimes = [&] {
            for (int i = 0; i < 10; ++i) {
                const int number = fails("WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
                                         "WHERE i < 250000) SELECT count(*) FROM n");
                if (number != 0)
                    return number;
            }
            return 0;
        };
        QCOMPARE(failsTenTimes(), 0);
        const CommandScope command;
        QCOMPARE(failsTenTimes(), tooMuchWork);
        connection.allowWork(50'000'000);
        QCOMPARE(failsTenTimes(), 0);
    }

    /// A page names one record, most of which is on other pages, 600 times.
    void oneTextManyTimes() {
        const QString file = makeDatabase();
        Connection connection;
        connection.open(file);
        connection.execute("INSERT INTO t VALUES (1, hex(zeroblob(18706)))");
        connection.close();
        QByteArray content = test::contents(file);
        const qsizetype page = 4096; // where the table begins
        content.replace(page + 3, 2, QByteArray("\x02\x58"));
        content.replace(page + 8, 1200, content.mid(page + 8, 2).repeated(600));
        test::write(file, content);
        connection.open(file);
        const auto failure = [&](bool scans) {
            return failureOf([&] {
                if (scans)
                    sqlite::scanRecords(connection, "s", "FROM t", {}, [](const auto &record) {
                        return record[0].utf8().size() == 37'412;
                    });
                Statement statement = connection.prepare("SELECT s FROM t");
                while (!scans && statement.step())
                    statement.utf8(0);
            });
        };
        for (const bool scans : {false, true})
            QCOMPARE(failure(scans).value_or(Failure(0, "")).number(), damaged);
    }

    void theSystemsReasonIsTold() {
        // Written in the middle of the statement, and at its end.
        for (const char *cache : {"PRAGMA cache_size = 2", "PRAGMA cache_size = 2000"}) {
            renewFolder();
            Connection connection;
            connection.open(makeDatabase());
            connection.execute(cache);
            const test::FileSizeLimit disk(20'000);
            const auto failure = failureOf([&] {
                connection.execute("INSERT INTO t (n, s) VALUES (1, hex(zeroblob(90000)))");
            });
            QVERIFY(failure && failure->text().endsWith("failed (File too large)."));
        }
    }

    void usedUpNumbersAreNoFullDisk() {
        Connection connection;
        connection.open(makeDatabase());
        connection.execute("CREATE TABLE u (i INTEGER PRIMARY KEY AUTOINCREMENT, n); "
                           "INSERT INTO u VALUES (9223372036854775806, 1)");
        const auto failure = failureOf([&] {
            const Transaction import(connection);
            connection.execute("INSERT INTO u (n) VALUES (2)");
            connection.execute("INSERT INTO u (n) VALUES (3)");
        });
        QVERIFY(failure && failure->text().contains("no numbers left"));
    }

    /// A text that can't be converted isn't an empty one.
    void noMemoryIsAFailure() {
        Connection connection;
        connection.open(test::write(path("utf16.vlt"), {}));
        connection.execute("PRAGMA encoding = 'UTF-16'; CREATE TABLE t (s); "
                           "INSERT INTO t VALUES (hex(zeroblob(2000000)))");
        Statement text = connection.prepare("SELECT s FROM t");
        QVERIFY(text.step());
        const auto unlimited = qScopeGuard([] { sqlite3_hard_heap_limit64(0); });
        sqlite3_hard_heap_limit64(sqlite3_memory_used() + 100'000);
        const auto failure = failureOf([&] { text.utf8(0); });
        QVERIFY(failure && failure->number() == SQLITE_NOMEM);
    }

    /// A wrong column isn't a lock of another program, also not inside another scan.
    void scanInsideAScan() {
        Connection connection;
        connection.open(makeDatabase());
        connection.execute("INSERT INTO t (n) VALUES (1), (2)");
        int visits = 0;
        std::optional<Failure> failure;
        const bool isWhole = scanRecords(connection, "n", "FROM t", {}, [&](const auto &) {
            const auto scan = [&] { scanRecords(connection, "m", "FROM t", {}, {}); };
            failure = failureOf(scan);
            return ++visits < 1;
        });
        QVERIFY(failure && failure->text().contains("no such column"));
        QVERIFY(!isWhole && visits == 1);
    }

    void locksAreWaitedFor() {
        const auto exhaust = [](BusyTimeout &timeout) {
            for (int attempt = 0; timeout.wait(attempt);)
                ++attempt;
        };
        int &lockWait = services().lockWait;
        int &lockWaitOfCommand = services().lockWaitOfCommand;
        const auto restore = qScopeGuard([&, wait = lockWait, all = lockWaitOfCommand] {
            lockWait = wait;
            lockWaitOfCommand = all;
        });
        constexpr int never = 1'000'000;
        BusyTimeout timeout;
        {
            const CommandScope command;
            lockWait = 1;
            exhaust(timeout);
            lockWait = never;
            QVERIFY(!timeout.wait(0)); // given up for this command
            timeout.reset();
            QVERIFY(timeout.wait(0));
            lockWaitOfCommand = 5;
            exhaust(timeout);
            const CommandScope inner;
            timeout.reset();
            BusyTimeout other;
            QVERIFY(!timeout.wait(0) && !other.wait(0)); // for all connections
        }
        lockWait = 300;
        QVERIFY(timeout.wait(0));
        QThread::msleep(310);
        QVERIFY(timeout.wait(0)); // each wait by a clock of its own

        // A commit shows that the other program has finished: the next lock is waited for again.
        const CommandScope next;
        QVERIFY(timeout.wait(0));
        Connection first;
        first.open(makeDatabase());
        Connection second;
        second.open(path("p.vlt"));
        const auto insert = [&] { first.execute("INSERT INTO t (n) VALUES (random())"); };
        lockWait = 1;
        lockWaitOfCommand = never;
        second.execute("BEGIN EXCLUSIVE");
        QVERIFY(failureOf(insert));
        second.execute("COMMIT");
        {
            Transaction transaction(first);
            insert();
            transaction.commit();
        }
        lockWait = never;
        second.execute("BEGIN EXCLUSIVE");
        std::thread writer([&] {
            QThread::msleep(50);
            second.execute("COMMIT");
        });
        const auto failure = failureOf(insert);
        writer.join();
        QVERIFY(!failure);
    }

    void readsOneStateWhileAnotherCommits() {
        const QString file = makeDatabase();
        Connection first;
        first.open(file);
        Connection second;
        second.open(file);
        std::optional<ReadTransaction> reading(first);
        QCOMPARE(count(first), 0);
        std::atomic<bool> done = false;
        std::thread writer([&] {
            second.execute("INSERT INTO t (n) VALUES (1)");
            done = true;
        });
        // The journal shows that the writer waits with nothing left but its commit.
        while (!done && !QFile::exists(file + "-journal"))
            QThread::msleep(1);
        const qint64 between = count(first);
        const bool tooEarly = done;
        reading.reset();
        writer.join();
        QCOMPARE(between, 0);
        QVERIFY(!tooEarly);
        QCOMPARE(count(first), 1);

        Transaction outer(first);
        first.execute("INSERT INTO t (n) VALUES (2)");
        { const ReadTransaction inner(first); }
        outer.commit();
        QCOMPARE(count(second), 2);
    }
};

QTEST_GUILESS_MAIN(ConnectionTest)
#include "connectionTest.moc"
