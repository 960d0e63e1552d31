// New, open and clean through the real window, and projects that other programs work on.
#include "core/database/projectFile.h"
#include "core/shell/modMain.h"
#include "support/dataTable.h"
#include "support/mainWindow.h"
#include "support/projects.h"
#include "support/shownForm.h"
#include "support/testFolder.h"
#include "ui/shell/frmAbout.h"
#include "ui/shell/readAhead.h"

#include <QTest>

using namespace veltrona;

namespace {

const QStringList firstRows = {"One|g|k|Exact|Search Only|2007-05-07|1"};
const QStringList otherRows = {"Two|g|k|Exact|Search Only|2007-05-07|2"};

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
        QCOMPARE(m_home->dialogs.fileDialogs().last().title, "Create a new database");
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
        QCOMPARE(m_home->remembered(), "(none)");
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
        QCOMPARE(test::recordCount(*modMain::DbConn), 1);
    }

    void clean() {
        frmMain &window = m_home->window();
        window.cboRange.setListIndex(4);
        window.cboLeft.setListIndex(3);
        window.cboGroup.setListIndex(2);
        m_home->dialogs.expectAnswer(Answer::Yes);
        m_home->command("mnuClean");
        QCOMPARE(window.cboRange.ListIndex(), 1);
        QCOMPARE(window.cboLeft.ListIndex(), 0);
        QCOMPARE(window.cboGroup.ListIndex(), 0);
        QCOMPARE(m_home->caption(), "Campaign Summary");
        QCOMPARE(m_home->chartDump().size(), 7);
        QCOMPARE(test::recordCount(*modMain::DbConn), 0);
        const test::ShownBox box = m_home->dialogs.boxes().value(0);
        QCOMPARE(box.style, 275);
        QCOMPARE(box.title, "Delete all the data");
        QCOMPARE(box.text, "Are you sure you want to erase all of the database contents?");
        QCOMPARE(m_home->treeDump(), QStringList{"Veltrona"});
        QCOMPARE(m_home->gridDump().last(), "Summary|0|0|0.00%|0|0|0|0.00%|0.00|0.0|.00|0.00%|0");
        m_home->importRows(firstRows);
        QVERIFY(m_home->node({"One"}));
    }

    /// Without a click, but not under a dialog; again and again until another program is done.
    void recordsAreReadAhead() {
        const auto isRead = [] { return modMain::Records->held() != nullptr; };
        QTRY_VERIFY(isRead());
        sqlite::Connection other;
        other.open(modMain::DbFileName);
        other.execute("UPDATE tblGoogleDays SET cost = 7");
        QVERIFY(!isRead());
        const auto slice = [&] {
            QTimerEvent now(0);
            QCoreApplication::sendEvent(m_home->window().findChild<ReadAhead *>(), &now);
        };
        test::during<frmAbout>([&] { m_home->command("mnuAbout"); },
                               [&](frmAbout &about) {
                                   slice();
                                   QVERIFY(!isRead());
                                   about.close();
                               });
        other.execute("BEGIN EXCLUSIVE");
        slice();
        other.execute("ROLLBACK");
        QVERIFY(!isRead());
        QTRY_VERIFY(isRead());
    }

    void movedWhileOpen_data() {
        const test::DataTable<QString> row;
        for (const char *how : {"renamed", "replaced"})
            row(how, how);
    }

    void movedWhileOpen() {
        const auto [how] = test::row<QString>();
        const QString path = modMain::DbFileName;
        const QString aside = m_home->file("aside.vlt");
        QVERIFY(QFile::rename(path, aside));
        if (how == "replaced")
            makeProject(test::projectTemplate(), path);
        const QByteArray bytes = test::contents(aside) + test::contents(path);
        m_home->dialogs.expectAnswer(Answer::Ok);
        m_home->importRows(otherRows);
        QVERIFY(m_home->dialogs.boxes().last().text.contains("while it was open"));
        m_home->dialogs.expectAnswer(Answer::Yes);
        m_home->dialogs.expectAnswer(Answer::Ok);
        m_home->command("mnuClean");
        QVERIFY(m_home->dialogs.boxes().last().text.contains("while it was open"));
        QCOMPARE(test::contents(aside) + test::contents(path), bytes);
        // What was stored is still shown, and the way out is another project.
        m_home->selectNode({});
        QVERIFY(m_home->gridDump().value(1).startsWith("One|1|"));
        runDialog("mnuNew", m_home->file("fresh"));
        m_home->importRows(otherRows);
        QVERIFY(m_home->node({"Two"}));
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
