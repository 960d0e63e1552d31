#include "core/platform/desktop/replacementFile.h"

#include "core/platform/desktop/endSignals.h"
#include "support/faults.h"
#include "support/testFolder.h"

#include <QProcess>
#include <QTest>

#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace veltrona;
using desktop::ReplacementFile;

class ReplacementFileTest : public QObject, test::TestFolder {
    Q_OBJECT

    static unsigned modeOf(const QString &file) {
        struct stat status {};
        return stat(QFile::encodeName(file).constData(), &status) == 0 ? status.st_mode & 0777 : 0;
    }

private slots:
    void init() { renewFolder(); }

    void keepsAPrivateFilePrivate() {
        umask(022);
        for (const unsigned mode : {0600U, 0664U, 0U}) { // 0: there is none
            const QString page = path(QString::number(mode));
            if (mode != 0)
                test::allow(test::write(page, "older"), int(mode));
            ReplacementFile file(page);
            file.write("newer");
            QCOMPARE(modeOf(file.path()), mode == 0 ? 0644U : 0600U);
            file.commit();
            QCOMPARE(modeOf(page), mode == 0 ? 0644U : mode);
            QCOMPARE(QFile(page).size(), 5);
        }
    }

    void waitsForNoPipe() {
        const QString pipe = path("pipe");
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        const int reader = open(QFile::encodeName(pipe).constData(), O_RDONLY | O_NONBLOCK);
        for (const bool isRead : {true, false}) {
            QVERIFY(failureOf([&] { ReplacementFile(pipe).write("page"); }));
            if (isRead)
                close(reader);
        }
        QCOMPARE(files(), QStringList("pipe"));
    }

    void aLimitOfFilesEndsNothing() {
        const desktop::EndSignals endSignals([] {});
        std::raise(SIGXFSZ);
        QProcess shell; // not ignored by a program that is started
        shell.start("sh", {"-c", "sh -c 'kill -XFSZ $$'; test $? -gt 128"});
        QVERIFY(shell.waitForFinished());
        QCOMPARE(shell.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(ReplacementFileTest)
#include "replacementFileTest.moc"
