#include "core/platform/services.h"
#include "support/dataTable.h"
#include "support/faults.h"
#include "support/projects.h"

#include "core/platform/desktop/replacementFile.h"

#include <QtTest>

#include <csignal>

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace veltrona;
using test::allow, test::contents, test::write;

namespace {
// That many more steps on the disk.
int killBefore = 0;
int failBefore = 0;

bool stepFails() {
    if (killBefore > 0 && --killBefore == 0)
        std::raise(SIGKILL);
    errno = EIO;
    return failBefore > 0 && --failBefore == 0;
}
} // namespace

// In place of the C library's functions, also for the standard library.
extern "C" {
int link(const char *from, const char *to) noexcept {
    return stepFails() ? -1
                       : static_cast<int>(syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0));
}
int rename(const char *from, const char *to) noexcept {
    return stepFails() ? -1
                       : static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}
int remove(const char *path) noexcept {
    return stepFails() ? -1 : static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}
}

namespace {
const QString deep = QString(240, 'd') + '/' + QString(240, 'e') + '/';
}

class MakeProjectTest : public QObject, test::ProjectFolder {
    Q_OBJECT

private slots:
    void init() { renewFolder(); }

    void newProjectReplacesWhole() {
        const QString older = path("O'Neil ä #1.vlt");
        write(older, "an older file");
        allow(older, 0600);
        QVERIFY(QFile::link(older, path("link.vlt")));
        // Left by a crash: played back, it would spoil the new project.
        write(older + "-journal", "journal");
        write(older + "-wal", "log");
        makeProject(test::projectTemplate(), path("link.vlt"));
        QCOMPARE(contents(older), contents(test::projectTemplate()));
        QCOMPARE(QFileInfo(path("link.vlt")).symLinkTarget(), older);
        QCOMPARE(QFile::permissions(older), QFile::Permissions(0x6600));
        QCOMPARE(files().size(), 2);
        const QString longest = path(QString(243, 'n') + ".vlt");
        makeProject(test::projectTemplate(), longest);
        QVERIFY(openProject(longest)->isOpen());
    }

    void failedCopyLeavesTheOlderFile_data() {
        const test::DataTable<QString, QString, QString> row;
        row("no template", "none.dat", "p.vlt", "none.dat\": No such file");
        row("bad template", "bad.dat", "p.vlt", "bad.dat\", is damaged");
        row("too long for SQLite", "data.dat", deep + QString(100, 'n') + ".vlt",
            "File name too long");
        row("no room for a journal", "data.dat", QString(251, 'n') + ".vlt", "File name too long");
        row("a folder", "data.dat", "folder", "folder\": Is a directory");
        row("write-protected", "data.dat", "protected.vlt", "Permission denied");
        row("protected folder", "data.dat", "folder/p.vlt", "Permission denied");
        row("full disk", "data.dat", "p.vlt", "File too large");
    }
    void failedCopyLeavesTheOlderFile() {
        const auto [templateName, target, reason] = test::row<QString, QString, QString>();
        constexpr const char *names[] = {"p.vlt", "p.vlt-journal", "protected.vlt",
                                         "protected.vlt-journal"};
        QDir(folder()).mkdir("folder");
        QDir(folder()).mkpath(deep);
        QByteArray bad = contents(test::projectTemplate());
        bad.chop(8192);
        write(path("bad.dat"), bad);
        // Another user may have no way to where the program was built.
        write(path("data.dat"), contents(test::projectTemplate()));
        for (const char *name : names)
            write(path(name), name);
        allow(path("protected.vlt"), 0444);
        allow(path("p.vlt"), 0666);
        allow(path("p.vlt-journal"), 0666);
        allow(folder(), 0777);
        const QStringList before = files();
        const AnotherUser user;
        QVERIFY(user.works());
        const test::FileSizeLimit disk(reason == "File too large" ? 10000 : 10000000);
        const QString from = path(templateName);
        const QString to = path(target);
        const auto failure = failureOf([&] { makeProject(from, to); });
        QVERIFY(failure);
        QVERIFY(failure->number() != 0);
        QVERIFY2(failure->text().contains(reason), qPrintable(failure->text()));
        QCOMPARE(files(), before);
        for (const char *name : names)
            QCOMPARE(contents(path(name)), QByteArray(name));
    }

    void setAsideWithAllThatBelongsToIt() {
        const auto restore = qScopeGuard([] { services().now = Services().now; });
        services().now = [] { return QDateTime(QDate(2007, 5, 14), QTime(13, 5, 9)); };
        const QString aside = path("O'Neil set aside 2007-05-14 130509");
        for (const char *time : {"", " 2"}) {
            for (const char *part : {"", "-journal", "-wal"})
                write(path("O'Neil.vlt") + part, QByteArray("old") + part);
            renameAside(path("O'Neil.vlt"));
            for (const char *part : {"", "-journal", "-wal"})
                QCOMPARE(contents(aside + time + ".vlt" + part), QByteArray("old") + part);
        }
        QCOMPARE(files().size(), 6);
        // What can't move leaves everything where it was, the parts before it too.
        write(path("b.vlt"), "old");
        write(path("b.vlt-journal"), "journal");
        write(path("b.vlt-wal"), "log");
        write(path("b set aside 2007-05-14 130509.vlt-wal"), "in the way");
        const QStringList before = files();
        QVERIFY(failureOf([&] { renameAside(path("b.vlt")); }));
        QCOMPARE(files(), before);
        QCOMPARE(contents(path("b.vlt-journal")) + contents(path("b.vlt-wal")), "journallog");
    }

    /// Wherever it is killed, a project keeps its journal, and no other one gets it.
    void killedWhileMoving() {
        for (const auto &move : std::initializer_list<void (*)(const QString &)>{
                 renameAside,
                 [](const QString &file) { makeProject(test::projectTemplate(), file); }}) {
            for (int status = -1, step = 1; status != 0; ++step) {
                renewFolder();
                const QString file = write(path("p.vlt"), "old");
                write(file + "-journal", "journal");
                const pid_t child = fork();
                if (child == 0) {
                    killBefore = step;
                    move(file);
                    _exit(0);
                }
                QCOMPARE(waitpid(child, &status, 0), child);
                makeMissingProject(test::projectTemplate(), file);
                for (const QString &name : files().filter(QRegularExpression("vlt$"))) {
                    const bool isOld = contents(path(name)) == "old";
                    QVERIFY2(QFile::exists(path(name + "-journal")) == isOld, qPrintable(name));
                }
                QVERIFY(step < 20);
            }
        }
    }

    /// Wherever the disk fails, the older project stays with its journal, or the new one is whole.
    void failedStep() {
        int failures = 0;
        for (int step = 1; failBefore == 0; ++step) {
            renewFolder();
            const QString file = write(path("p.vlt"), "old");
            write(file + "-journal", "journal");
            failBefore = step;
            if (failureOf([&] { makeProject(test::projectTemplate(), file); })) {
                QCOMPARE(contents(file) + contents(file + "-journal"), "oldjournal");
                ++failures;
            } else {
                QCOMPARE(contents(file), contents(test::projectTemplate()));
                QVERIFY(!QFile::exists(file + "-journal"));
            }
        }
        failBefore = 0;
        QVERIFY(failures > 0);
    }

    /// What a killed program has left goes, what another holds stays.
    void leftOversGo() {
        const auto unfinished = [&](const char *process) {
            const QString name = QCoreApplication::applicationName();
            return write(path(QString(".%1-unfinished-%2-1.tmp").arg(name, process)), "a draft");
        };
        constexpr const char *gone[] = {"2147483646", "2147483647"};
        unfinished(gone[0]);
        const QString held = unfinished(gone[1]);
        const QString ours = unfinished(QByteArray::number(getpid()));
        QStringList kept{held, ours};
        for (const char *name : {".unfinished-thesis.tmp", ".unfinished-2147483646-1.tmp"})
            kept << write(path(name), "a letter");
        const desktop::FileLock hold(held, O_RDWR);
        makeProject(test::projectTemplate(), path("p.vlt"));
        QCOMPARE(files().size(), 5);
        for (const QString &file : kept)
            QVERIFY(QFile::exists(file));
    }

    /// Both end on the project that stands there.
    void twoFirstStarts() {
        for (int round = 0; round < 20; ++round) {
            renewFolder();
            const QString file = path("Veltrona.vlt");
            write(file + "-journal", "of a project that is gone");
            const auto start = [&] {
                makeMissingProject(test::projectTemplate(), file);
                const auto connection = openProject(file);
                connection->execute("INSERT INTO tblGoogleDays (CreativeId) VALUES (" +
                                    std::to_string(getpid()) + ")");
            };
            const pid_t child = fork();
            if (child == 0)
                _exit(failureOf(start).has_value());
            start();
            int status = -1;
            QCOMPARE(waitpid(child, &status, 0), child);
            QCOMPARE(status, 0);
            QCOMPARE(test::recordCount(*openProject(file)), 2);
            QCOMPARE(files(), QStringList("Veltrona.vlt"));
        }
    }
};

QTEST_GUILESS_MAIN(MakeProjectTest)
#include "makeProjectTest.moc"
