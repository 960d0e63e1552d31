#include "core/platform/desktop/browser.h"

#include "support/dataTable.h"
#include "support/testFolder.h"

#include <QTest>

using namespace veltrona;
using namespace veltrona::desktop;

// Everything happens in a private desktop: its folders are all that the environment names.
class BrowserTest : public QObject, test::TestFolder {
    Q_OBJECT

    QString m_page;

    void put(const QString &name, const QString &content) const {
        test::write(path(name), content.toUtf8());
    }
    void installEntry(const QString &id, const QString &keys,
                      const QString &folder = "data") const {
        put(folder + "/applications/" + id,
            "# a comment\nHidden=true\n[Desktop Entry]\nType=Application\n" + keys +
                "\n[Desktop Action new]\nExec=/nowhere\n");
    }
    void setDefault(const QString &ids, const QString &list = "config/mimeapps.list") const {
        put(list, QString("[Default Applications]\ntext/html=%1\n").arg(ids));
    }
    QString found() const {
        QString program;
        findExecutable(m_page, program);
        return program.isEmpty() ? program : QFileInfo(program).fileName();
    }
    QStringList record() const {
        QFile in(path("record"));
        if (!QTest::qWaitFor([&] { return in.exists(); }) || !in.open(QIODevice::ReadOnly))
            return {"nothing was started"};
        const QStringList lines = QString::fromUtf8(in.readAll()).split(u'\n');
        in.remove();
        return lines.sliced(1, lines.size() - 2);
    }

private slots:
    void init() {
        renewFolder();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(path("config")));
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(path("etc")));
        qputenv("XDG_DATA_HOME", QFile::encodeName(path("data")));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(path("share")));
        qputenv("XDG_CURRENT_DESKTOP", "Stub:GNOME");
        m_page = path("report.html");
        put("report.html", "<html>");
        test::installRecorder(path("stub"));
    }

    void namesArriveIntact_data() {
        const test::DataTable<QByteArray> row;
        for (const char *code : {"%f", "%F", "%u", "%U", "", "--file=%f"})
            row(code, code);
    }
    void namesArriveIntact() {
        const auto [code] = test::row<QByteArray>();
        setDefault("stub.desktop");
        installEntry("stub.desktop", "Exec=" + path("stub") + ' ' + code);
        for (const char *utf8 :
             {"with blanks  .html", "\"quotes' `id` $HOME.html", "50%25 #1?a=b&c;d|e.html",
              "Müller 日本 😀.HTM", "-dash.html", "back\\slash\\n.html"}) {
            const QString name = QString::fromUtf8(utf8);
            put(name, "<html>");
            QString program;
            QVERIFY(findExecutable(path(name), program) > 32);
            QVERIFY(shellExecute(program, path(name)) > 32);
            const QStringList given = record();
            QCOMPARE(given.size(), 1);
            if (code.toLower() == "%u") {
                QVERIFY(!given[0].contains(u' ') && !given[0].contains(u'#'));
                QCOMPARE(QUrl(given[0]).toLocalFile(), path(name));
            } else {
                QCOMPARE(given[0], (code.startsWith("--") ? "--file=" : "") + path(name));
            }
        }
    }

    void theRightProgramIsFound() {
        const QString exec = QString("Exec=%1 %f").arg(path("stub"));
        QCOMPARE(found(), QString());
        const QString opens = exec + "\nMimeType=text/plain;text/html;";
        installEntry("sub/z.desktop", opens, "share");
        QCOMPARE(found(), "z.desktop");
        installEntry("other.desktop", exec + "\nMimeType=text/plain");
        QCOMPARE(found(), "z.desktop");
        installEntry("user.desktop", opens);
        QCOMPARE(found(), "user.desktop");
        installEntry("added.desktop", exec);
        put("config/mimeapps.list",
            QStringLiteral("[Added Associations]\ntext/html=added.desktop;\n"
                           "[Removed Associations]\ntext/html=user.desktop;\n"));
        QCOMPARE(found(), "added.desktop");
        QFile::remove(path("data/applications/added.desktop"));
        QCOMPARE(found(), "z.desktop");
        // The default of the system, of the user, of the running desktop: each goes before the
        // last.
        setDefault("other.desktop", "etc/mimeapps.list");
        QCOMPARE(found(), "other.desktop");
        setDefault(QString("a-").repeated(60) + "gone.desktop;sub-z.desktop");
        QCOMPARE(found(), "z.desktop");
        setDefault("user.desktop", "config/stub-mimeapps.list");
        QCOMPARE(found(), "user.desktop");
    }

    void whatCannotBeStartedIsAFailure() {
        QString program = "stale";
        QVERIFY(findExecutable(path("missing.html"), program) <= 32);
        QVERIFY(program.isEmpty());
        QVERIFY(findExecutable(m_page, program) <= 32);
        setDefault("stub.desktop");
        const QString exec = QString("Exec=%1 %f").arg(path("stub"));
        for (const QString &keys : {exec + "\nHidden=true", exec + "\nTryExec=no-such-program",
                                    QString("Name=No command")}) {
            installEntry("stub.desktop", keys);
            QVERIFY(findExecutable(m_page, program) <= 32);
        }
        put("notAProgram", "text");
        for (const QString &command : {path("gone") + " %f", path("notAProgram") + " %f",
                                       path("stub") + " \"never closed %f"}) {
            installEntry("stub.desktop", "Exec=" + command);
            QVERIFY(findExecutable(m_page, program) > 32);
            QVERIFY(shellExecute(program, m_page) <= 32);
        }
        QVERIFY(shellExecute(path("gone.desktop"), m_page) <= 32);
    }
};

QTEST_GUILESS_MAIN(BrowserTest)
#include "browserTest.moc"
