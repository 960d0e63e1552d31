#include "platform/desktop/browser.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace veltrona::desktop;

// Everything happens in a private desktop: its folders are all that the environment names.
class BrowserTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_page;

    QString path(const QString &name) const { return m_folder->filePath(name); }
    void write(const QString &name, const QString &content) const {
        QVERIFY(QDir().mkpath(QFileInfo(path(name)).path()));
        QFile out(path(name));
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(content.toUtf8());
    }
    /// A program that records its arguments, one on a line, and the folder that it runs in.
    void installProgram(const QString &name) const {
        write(name, QStringLiteral("#!/bin/sh\n(pwd; printf '%s\\n' \"$@\") > '%1/record.new'\n"
                                   "mv '%1/record.new' '%1/record'\n")
                        .arg(m_folder->path()));
        QFile(path(name)).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    void installEntry(const QString &id, const QString &keys,
                      const QString &folder = "data") const {
        write(folder + QStringLiteral("/applications/") + id,
              QStringLiteral("# a comment\n[Desktop Entry]\nType=Application\n") + keys +
                  QStringLiteral("\n[Desktop Action new]\nExec=/nowhere\n"));
    }
    void setDefault(const QString &ids, const QString &list = "config/mimeapps.list") const {
        write(list, QStringLiteral("[Default Applications]\ntext/html=%1\n").arg(ids));
    }
    QString found() const {
        QString program;
        findExecutable(m_page, program);
        return program.isEmpty() ? program : QFileInfo(program).fileName();
    }
    QStringList record() const {
        QFile in(path(QStringLiteral("record")));
        if (!QTest::qWaitFor([&] { return in.exists(); }) || !in.open(QIODevice::ReadOnly))
            return {QStringLiteral("nothing was started")};
        const QStringList lines = QString::fromUtf8(in.readAll()).split(u'\n');
        in.remove();
        return lines.sliced(1, lines.size() - 2);
    }

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(path(QStringLiteral("config"))));
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(path(QStringLiteral("etc"))));
        qputenv("XDG_DATA_HOME", QFile::encodeName(path(QStringLiteral("data"))));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(path(QStringLiteral("share"))));
        qputenv("XDG_CURRENT_DESKTOP", "Stub:GNOME");
        m_page = path(QStringLiteral("report.html"));
        write(QStringLiteral("report.html"), QStringLiteral("<html>"));
        installProgram(QStringLiteral("stub"));
    }

    void namesArriveIntact_data() {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"plain.html", "with blanks  .html", "\"quotes' `id` $HOME.html",
              "50%25 #1?a=b&c;d|e.html", "Müller 日本 😀.HTM", "-dash.html", "back\\slash\\n.html"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }
    void namesArriveIntact() {
        QFETCH(QString, name);
        write(name, QStringLiteral("<html>"));
        setDefault(QStringLiteral("stub.desktop"));
        for (const char *code : {"%f", "%F", "%u", "%U", "", "--file=%f"}) {
            installEntry(QStringLiteral("stub.desktop"),
                         QStringLiteral("Exec=%1 %2")
                             .arg(path(QStringLiteral("stub")), QLatin1String(code)));
            QString program;
            QVERIFY(findExecutable(path(name), program) > 32);
            QVERIFY(shellExecute(program, path(name)) > 32);
            const QStringList given = record();
            QCOMPARE(given.size(), 1);
            if (QByteArray(code).toLower() == "%u") {
                QVERIFY(!given[0].contains(u' ') && !given[0].contains(u'#'));
                QCOMPARE(QUrl(given[0]).toLocalFile(), path(name));
            } else {
                QCOMPARE(given[0],
                         (QByteArray(code).startsWith("--") ? "--file=" : "") + path(name));
            }
        }
    }

    void relativeNamesBecomeAbsolute() {
        installEntry(QStringLiteral("stub.desktop"),
                     QStringLiteral("Exec=%1 %f\nPath=/").arg(path(QStringLiteral("stub"))));
        const QString before = QDir::currentPath();
        QDir::setCurrent(m_folder->path());
        const int result = shellExecute(path(QStringLiteral("data/applications/stub.desktop")),
                                        QStringLiteral("report.html"));
        QDir::setCurrent(before);
        QVERIFY(result > 32);
        QCOMPARE(record(), QStringList{QFileInfo(m_page).canonicalFilePath()});
    }

    void commandLines_data() {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QStringList>("given");
        QTest::newRow("quotes") << R"("a b" "c \\"d\\" \\$e" %f)"
                                << QStringList{"a b", "c \"d\" $e", "FILE"};
        QTest::newRow("escapes of the file")
            << R"(a\sb\\\\c %f)" << QStringList{"a", "b\\\\c", "FILE"};
        QTest::newRow("codes") << "%i %c %k 100%% %d%D%m %f"
                               << QStringList{"--icon", "sign", "A Stub", "ENTRY", "100%", "FILE"};
        QTest::newRow("empty argument") << "\"\" %f" << QStringList{"", "FILE"};
    }
    void commandLines() {
        QFETCH(QString, arguments);
        QFETCH(QStringList, given);
        installEntry(QStringLiteral("stub.desktop"),
                     QStringLiteral("Name = A Stub\nIcon=sign\nExec=\"%1\" %2")
                         .arg(path(QStringLiteral("stub")), arguments));
        const QString entry = path(QStringLiteral("data/applications/stub.desktop"));
        QVERIFY(shellExecute(entry, m_page) > 32);
        given.replaceInStrings(QStringLiteral("FILE"), m_page);
        given.replaceInStrings(QStringLiteral("ENTRY"), entry);
        QCOMPARE(record(), given);
    }

    void theRightProgramIsFound() {
        const QString exec = QStringLiteral("Exec=%1 %f").arg(path(QStringLiteral("stub")));
        QCOMPARE(found(), QString());
        const QString opens = exec + QStringLiteral("\nMimeType=text/plain;text/html;");
        installEntry(QStringLiteral("sub/z.desktop"), opens, QStringLiteral("share"));
        QCOMPARE(found(), QStringLiteral("z.desktop"));
        installEntry(QStringLiteral("other.desktop"),
                     exec + QStringLiteral("\nMimeType=text/plain"));
        QCOMPARE(found(), QStringLiteral("z.desktop"));
        installEntry(QStringLiteral("user.desktop"), opens);
        QCOMPARE(found(), QStringLiteral("user.desktop"));
        installEntry(QStringLiteral("added.desktop"), exec);
        write(QStringLiteral("config/mimeapps.list"),
              QStringLiteral("[Added Associations]\ntext/html=added.desktop;\n"
                             "[Removed Associations]\ntext/html=user.desktop;\n"));
        QCOMPARE(found(), QStringLiteral("added.desktop"));
        QFile::remove(path(QStringLiteral("data/applications/added.desktop")));
        QCOMPARE(found(), QStringLiteral("z.desktop"));
        // The default of the system, of the user, of the running desktop: each goes before the
        // last.
        setDefault(QStringLiteral("other.desktop"), QStringLiteral("etc/mimeapps.list"));
        QCOMPARE(found(), QStringLiteral("other.desktop"));
        setDefault(QStringLiteral("gone.desktop;sub-z.desktop"));
        QCOMPARE(found(), QStringLiteral("z.desktop"));
        setDefault(QStringLiteral("user.desktop"), QStringLiteral("config/stub-mimeapps.list"));
        QCOMPARE(found(), QStringLiteral("user.desktop"));
    }

    void whatCannotBeStartedIsAFailure() {
        QString program = QStringLiteral("stale");
        QVERIFY(findExecutable(path(QStringLiteral("missing.html")), program) <= 32);
        QVERIFY(program.isEmpty());
        QVERIFY(findExecutable(m_page, program) <= 32);
        setDefault(QStringLiteral("stub.desktop"));
        const QString exec = QStringLiteral("Exec=%1 %f").arg(path(QStringLiteral("stub")));
        for (const QString &keys : {exec + "\nHidden=true", exec + "\nTryExec=no-such-program",
                                    QString("Name=No command")}) {
            installEntry(QStringLiteral("stub.desktop"), keys);
            QVERIFY(findExecutable(m_page, program) <= 32);
        }
        write(QStringLiteral("notAProgram"), QStringLiteral("text"));
        for (const QString &command : {path(QStringLiteral("gone")) + QStringLiteral(" %f"),
                                       path(QStringLiteral("notAProgram")) + QStringLiteral(" %f"),
                                       QStringLiteral("\"never closed %f")}) {
            installEntry(QStringLiteral("stub.desktop"), QStringLiteral("Exec=") + command);
            QVERIFY(findExecutable(m_page, program) > 32);
            QVERIFY(shellExecute(program, m_page) <= 32);
        }
        QVERIFY(shellExecute(path(QStringLiteral("gone.desktop")), m_page) <= 32);
    }
};

QTEST_GUILESS_MAIN(BrowserTest)
#include "browserTest.moc"
