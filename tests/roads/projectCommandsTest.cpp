// New, open and clean through the real window, and projects that other programs work on.
#include "database/projectFile.h"
#include "shell/modMain.h"
#include "support/dataTable.h"
#include "support/mainWindow.h"
#include "support/testFolder.h"

#include <QApplication>
#include <QProcess>
#include <QTest>

using namespace veltrona;

namespace {

const QStringList firstRows = {"One|g|k|Exact|Search Only|2007-05-07|1"};
const QStringList otherRows = {"Two|g|k|Exact|Search Only|2007-05-07|2"};

qint64 recordCount() {
    sqlite::Statement count = modMain::DbConn->prepare("SELECT count(*) FROM tblGoogleDays");
    count.step();
    return count.int64(0);
}

} // namespace

class ProjectCommandsTest : public test::WindowTest {
    Q_OBJECT
protected:
    void prepare() override {
        m_home->importRows(firstRows);
        m_home->selectNode({"One"});
    }

private slots:
    void newProject() {
        runDialog("mnuNew", "  " + m_home->file("Client A.b") + " ");
        QCOMPARE(m_home->dialogs.fileDialogs().last().title, QString("Create a new database"));
        QVERIFY(m_home->dialogs.fileDialogs().last().confirmsOverwrite);
        QVERIFY(m_home->dialogs.fileDialogs().last().confirmsCreation);
        QCOMPARE(modMain::DbFileName, m_home->file("Client A.b.vlt"));
        QCOMPARE(m_home->remembered(), m_home->file("Client A.b.vlt"));
        QCOMPARE(m_home->treeDump(), QStringList{"Client A.b"});
        QCOMPARE(m_home->gridDump().size(), 3);
        // Any case of the extension will do; another file of the name gives way.
        const QString other = m_home->writeFile("Other.VLT", "something else");
        runDialog("mnuNew", other);
        QCOMPARE(modMain::DbFileName, other);
        QCOMPARE(m_home->treeDump(), QStringList{"Other"});
        runDialog("mnuOpen", m_home->file("Client A.b.vlt"));
        QCOMPARE(m_home->treeDump(), QStringList{"Client A.b"});
    }

    void newOverTheOpenProject() {
        const QStringList before = view();
        const QByteArray bytes = test::contents(modMain::DbFileName);
        const QString link = m_home->file("link.vlt");
        QVERIFY(QFile::link(modMain::DbFileName, link));
        const QString detour = m_home->file("data/../data/Veltrona/./Veltrona");
        for (const QString &path : {modMain::DbFileName, link, detour}) {
            m_home->dialogs.expectAnswer(Answer::Ok);
            runDialog("mnuNew", path);
            QVERIFY(m_home->dialogs.boxes().last().text.contains("is the project that is open"));
            QCOMPARE(view(), before);
        }
        QCOMPARE(test::contents(modMain::DbFileName), bytes);
        QCOMPARE(m_home->remembered(), QString("(none)"));
    }

    void failures() {
        const QStringList before = view();
        const sqlite::Connection *connection = modMain::DbConn.get();
        const std::pair<const char *, QString> commands[] = {
            {"mnuNew", m_home->file("no folder/x.vlt")},
            {"mnuOpen", m_home->writeFile("bad %1.vlt", "junk")},
            {"mnuOpen", m_home->file("gone.vlt")}};
        for (const auto &[command, path] : commands) {
            m_home->dialogs.expectAnswer(Answer::Ok);
            runDialog(command, path);
            QVERIFY(m_home->dialogs.boxes().last().text.contains(path));
            QCOMPARE(view(), before);
            QCOMPARE(modMain::DbConn.get(), connection);
            QCOMPARE(m_home->remembered(), path); // written first
        }
        m_home->selectNode({"One", "g"});
        QVERIFY(m_home->gridDump().value(1).startsWith("Search Only|1|"));
        // The next start finds the bad path.
        m_home->dialogs.expectChoice(1);
        QVERIFY(m_home->restart());
        QVERIFY(m_home->dialogs.boxes().last().text.contains("gone.vlt"));
        QVERIFY(m_home->node({"One"}));
    }

    /// It opens, and fails only when the view reads it.
    void damagedInside() {
        const QString first = modMain::DbFileName;
        const QString bad = m_home->file("b.vlt");
        runDialog("mnuNew", bad);
        QStringList rows;
        for (int i = 0; i < 3000; ++i)
            rows << QString("B%1|g|k|Exact|Search Only|2007-05-07|1").arg(i % 7 + i);
        m_home->importRows(rows);
        runDialog("mnuOpen", first);
        QFile file(bad);
        QVERIFY(file.open(QIODevice::ReadWrite) && file.seek(file.size() / 2));
        file.write(QByteArray(static_cast<int>(file.size() / 2), '\xff'));
        file.close();
        const QStringList before = view();
        m_home->dialogs.expectAnswer(Answer::Ok);
        runDialog("mnuOpen", bad);
        QVERIFY(m_home->dialogs.boxes().last().text.contains("damaged"));
        QCOMPARE(view(), before);
        QCOMPARE(recordCount(), 1);
        // At the start, too; a later failure leaves the view alone.
        m_home->dialogs.expectChoice(1);
        QVERIFY(m_home->restart());
        m_home->selectNode({"One"});
        const QStringList selected = view();
        m_home->dialogs.expectAnswer(Answer::Ok);
        runDialog("mnuOpen", m_home->file("gone.vlt"));
        QCOMPARE(view(), selected);
    }

    void reopenAndClean() {
        frmMain &window = m_home->window();
        for (const char *command : {"mnuOpen", "mnuClean"}) {
            window.cboRange.setListIndex(4);
            window.cboLeft.setListIndex(3);
            window.cboGroup.setListIndex(2);
            if (command == QLatin1String("mnuOpen"))
                m_home->dialogs.expectFile(modMain::DbFileName);
            else
                m_home->dialogs.expectAnswer(Answer::Yes);
            m_home->command(command);
            QCOMPARE(window.cboRange.ListIndex(), 1);
            QCOMPARE(window.cboLeft.ListIndex(), 0);
            QCOMPARE(window.cboGroup.ListIndex(), 0);
            QCOMPARE(m_home->caption(), QString("Campaign Summary"));
            QCOMPARE(m_home->chartDump().size(), 7);
            QCOMPARE(recordCount(), command == QLatin1String("mnuOpen") ? 1 : 0);
        }
        const test::ShownBox box = m_home->dialogs.boxes().value(0);
        QCOMPARE(box.style, 275);
        QCOMPARE(box.title, QString("Delete all the data"));
        QCOMPARE(box.text, QString("Are you sure you want to erase all of the database contents?"));
        QCOMPARE(m_home->treeDump(), QStringList{"Veltrona"});
        QCOMPARE(m_home->gridDump().last(),
                 QString("Summary|0|0|0.00%|0|0|0|0.00%|0.00|0.0|.00|0.00%|0"));
        m_home->importRows(firstRows);
        QVERIFY(m_home->node({"One"}));
    }

    void movedWhileOpen_data() {
        const test::DataTable<QString> row("how");
        for (const char *how : {"deleted", "renamed", "replaced"})
            row(how, how);
    }

    void movedWhileOpen() {
        QFETCH(QString, how);
        const QString path = modMain::DbFileName;
        const QString aside = m_home->file("aside.vlt");
        QVERIFY(how == "deleted" ? QFile::remove(path) : QFile::rename(path, aside));
        if (how == "replaced")
            makeProject(QApplication::applicationDirPath() + "/data.dat", path);
        const QString left = how == "renamed" ? aside : path;
        const QByteArray bytes = test::contents(left);
        m_home->dialogs.expectAnswer(Answer::Ok);
        m_home->importRows(otherRows);
        QVERIFY(m_home->dialogs.boxes().last().text.contains("while it was open"));
        m_home->dialogs.expectAnswer(Answer::Yes);
        m_home->dialogs.expectAnswer(Answer::Ok);
        m_home->command("mnuClean");
        QVERIFY(m_home->dialogs.boxes().last().text.contains("while it was open"));
        QCOMPARE(test::contents(left), bytes);
        // What was stored is still shown, and the way out is another project.
        m_home->selectNode({});
        QVERIFY(m_home->gridDump().value(1).startsWith("One|1|"));
        runDialog("mnuNew", m_home->file("fresh"));
        m_home->importRows(otherRows);
        QVERIFY(m_home->node({"Two"}));
    }

    void twoPrograms() {
        const int count = 3000;
        QStringList reports;
        for (const int first : {0, 1000}) {
            QStringList rows;
            for (int i = first; i < first + count; ++i)
                rows << QString("Both|g|k%1|Exact|Search Only|2007-05-08|1").arg(i);
            reports << m_home->writeFile(QString("%1.xml").arg(first), test::smallReport(rows));
        }
        const QString ready = m_home->file("ready");
        QProcess second;
        second.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        second.start(QApplication::applicationDirPath() + "/secondProgram",
                     {modMain::DbFileName, reports[1], ready});
        QVERIFY(QTest::qWaitFor([&] { return QFile::exists(ready); }, 60'000));
        m_home->writeFile("ready.go", "");
        m_home->importReport(reports[0]);
        QVERIFY(second.state() == QProcess::NotRunning || second.waitForFinished(60'000));
        QCOMPARE(second.exitCode(), 0);
        QVERIFY(m_home->dialogs.boxes().isEmpty());
        // The next refresh shows what both have stored, nothing twice.
        QCOMPARE(recordCount(), 1 + count + 1000);
        m_home->selectNode({});
        QVERIFY(m_home->gridDump().value(1).startsWith("Both|4000|"));
    }

private:
    QStringList view() const {
        return m_home->viewDump() +
               QStringList{modMain::DbFileName, modMain::ProjectTitle, modMain::ConnectionText};
    }

    void runDialog(const char *command, const QString &path) {
        m_home->dialogs.expectFile(path);
        m_home->command(command);
    }
};

QTEST_MAIN(ProjectCommandsTest)
#include "projectCommandsTest.moc"
