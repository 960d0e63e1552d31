#include "projectFolder.h"
#include "support/anotherUser.h"
#include "support/failureOf.h"

#include <QtTest>

#include <csignal>

#include <sys/resource.h>
#include <unistd.h>

using namespace veltrona;

namespace {

/// No file grows beyond a size while this lives; the nearest thing to a full disk that needs no
/// mount.
class SmallDisk {
public:
    explicit SmallDisk(rlim_t size) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit small{size, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

private:
    rlimit m_before{};
};

} // namespace

class MakeProjectTest : public QObject, ProjectFolder {
    Q_OBJECT

private slots:
    void init() { renewFolder(); }

    void newProjectReplacesWhole() {
        const QString older = path("O'Neil ä #1.vlt");
        write(older, "an older file");
        QFile::setPermissions(older, QFile::Permissions(0x6600));
        QVERIFY(QFile::link(older, path("link.vlt")));
        // Left behind by a crash: played back, it would spoil the new project.
        write(older + "-journal", "journal");
        write(older + "-wal", "log");
        makeProject(templatePath(), path("link.vlt"));
        QCOMPARE(contents(older), contents(templatePath()));
        QCOMPARE(QFileInfo(path("link.vlt")).symLinkTarget(), older);
        QCOMPARE(QFile::permissions(older), QFile::Permissions(0x6600));
        QCOMPARE(files().size(), 2);
        const QString longest = path(QString(243, 'n') + ".vlt");
        makeProject(templatePath(), longest);
        QVERIFY(openProject(longest)->isOpen());
    }

    void failedCopyLeavesTheOlderFile_data() {
        QTest::addColumn<QString>("templateName");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("reason");
        QTest::newRow("no template") << "none.dat"
                                     << "p.vlt"
                                     << "none.dat\": No such file";
        QTest::newRow("bad template") << "bad.dat"
                                      << "p.vlt"
                                      << "bad.dat\", is damaged";
        QTest::newRow("no folder") << "data.dat"
                                   << "none/p.vlt"
                                   << "none/p.vlt\": No such file";
        QTest::newRow("no room for a journal") << "data.dat" << QString(251, 'n') + ".vlt"
                                               << "File name too long";
        QTest::newRow("a folder") << "data.dat"
                                  << "folder"
                                  << "folder\": Is a directory";
        QTest::newRow("write-protected") << "data.dat"
                                         << "protected.vlt"
                                         << "Permission denied";
        QTest::newRow("protected folder") << "data.dat"
                                          << "folder/p.vlt"
                                          << "Permission denied";
        QTest::newRow("full disk") << "data.dat"
                                   << "p.vlt"
                                   << "File too large";
    }

    void failedCopyLeavesTheOlderFile() {
        QFETCH(QString, templateName);
        QFETCH(QString, target);
        QFETCH(QString, reason);
        QDir(folder()).mkdir("folder");
        QByteArray bad = contents(templatePath());
        bad.chop(8192);
        write(path("bad.dat"), bad);
        // Another user may have no way to where the program was built.
        write(path("data.dat"), contents(templatePath()));
        for (const char *name : {"p.vlt", "p.vlt-journal", "protected.vlt"})
            write(path(name), name);
        QFile::setPermissions(path("protected.vlt"), QFile::Permissions(0x4444));
        QFile::setPermissions(path("p.vlt"), QFile::Permissions(0x6666));
        QFile::setPermissions(path("p.vlt-journal"), QFile::Permissions(0x6666));
        QFile::setPermissions(folder(), QFile::Permissions(0x7777));
        const QStringList before = files();
        const AnotherUser user;
        if (!user.works())
            QSKIP("root's rights can't be laid down here");
        const SmallDisk disk(reason == "File too large" ? 10000 : 10000000);
        const QString source = path(templateName);
        const auto failure = failureOf([&] { makeProject(source, path(target)); });
        QVERIFY(failure);
        QVERIFY(failure->number() != 0);
        QVERIFY2(failure->text().contains(reason), qPrintable(failure->text()));
        QCOMPARE(files(), before);
        for (const char *name : {"p.vlt", "p.vlt-journal", "protected.vlt"})
            QCOMPARE(contents(path(name)), QByteArray(name));
    }

    void sameFileByAnyPath() {
        const QString file = project();
        const QString other = project("other.vlt");
        QDir(folder()).mkdir("sub");
        QVERIFY(QFile::link(file, path("soft.vlt")));
        QVERIFY(::link(QFile::encodeName(file).constData(),
                       QFile::encodeName(path("hard.vlt")).constData()) == 0);
        for (const char *same : {"p.vlt", "soft.vlt", "hard.vlt", "sub/../p.vlt", "./p.vlt"})
            QVERIFY2(isSameFile(path(same), file), same);
        QVERIFY(isSameFile(QDir::current().relativeFilePath(file), file));
        QVERIFY(!isSameFile(other, file));
        QVERIFY(!isSameFile(path("P.vlt"), file));
        QVERIFY(!isSameFile(path("none"), path("none")));
        QVERIFY(!isSameFile(QString(QChar(0xD800)), file));
    }

    void titles_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("title");
        QTest::newRow("plain") << "C:\\data\\Garden.vlt"
                               << "Garden";
        QTest::newRow("dots") << "C:\\da.ta\\Garden.2007.05.vlt"
                              << "Garden.2007.05";
        QTest::newRow("no extension") << "C:\\da.ta\\Garden"
                                      << "Garden";
        QTest::newRow("leading dot") << "C:\\.vlt"
                                     << "";
        QTest::newRow("no folder") << "Garden.vlt"
                                   << "Garden";
        QTest::newRow("slashes stay") << "C:\\a/b.vlt"
                                      << "a/b";
        QTest::newRow("folder") << "C:\\Garden.vlt\\"
                                << "";
        QTest::newRow("nothing") << ""
                                 << "";
    }

    void titles() {
        QFETCH(QString, path);
        QFETCH(QString, title);
        QCOMPARE(projectTitle(path, QLatin1Char('\\')), title);
        // The other separator, the other way round.
        const auto swapped = [](QString text) {
            for (QChar &c : text)
                c = c == '\\' ? QChar('/') : c == '/' ? QChar('\\') : c;
            return text;
        };
        QCOMPARE(projectTitle(swapped(path), QLatin1Char('/')), swapped(title));
    }
};

QTEST_GUILESS_MAIN(MakeProjectTest)
#include "makeProjectTest.moc"
