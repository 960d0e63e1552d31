// Failures of SQLite, the parser and the file system inside the window's handlers: each is told
// once, and leaves a window that shows one node and goes on.
#include "core/base/command.h"
#include "core/shell/modMain.h"
#include "support/dataTable.h"
#include "support/mainWindow.h"
#include "ui/import/frmWait.h"

#include <QApplication>
#include <QDateEdit>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace veltrona;

namespace {

const QStringList rows = {"One|g|k|Exact|Search Only|2007-05-07|1",
                          "One|g|l|Exact|Search Only|2007-05-08|2",
                          "Two|h|m|Broad|Search Only|2007-05-09|4"};

/// The table is out of the way of the program while one lives.
class HiddenTable {
public:
    HiddenTable() {
        m_other.open(modMain::DbFileName);
        m_other.execute("ALTER TABLE tblGoogleDays RENAME TO hidden");
    }
    ~HiddenTable() { m_other.execute("ALTER TABLE hidden RENAME TO tblGoogleDays"); }

private:
    sqlite::Connection m_other;
};

} // namespace

Q_DECLARE_METATYPE(std::function<void(veltrona::test::MainWindow &)>)

class FailureTest : public test::WindowTest {
    Q_OBJECT
protected:
    void prepare() override {
        m_home->importRows(rows);
        m_home->selectNode({"One"});
    }

private slots:
    void initTestCase() { services().lockWait = 100; }

    void handlers_data() {
        const test::DataTable<std::function<void(test::MainWindow &)>> row;
        const auto command = [](const QString &action) {
            return [action](test::MainWindow &home) { home.command(action); };
        };
        row("click", [](test::MainWindow &home) { home.selectNode({"Two"}); });
        row("picker", [](test::MainWindow &home) { home.view<QDateEdit>("dtpEnd")->stepBy(-1); });
        row("metric", [](test::MainWindow &home) { home.window().cboLeft.setListIndex(3); });
        row("export", command("mnuExport"));
        row("clean", command("mnuClean"));
    }

    void handlers() {
        const auto [handler] = test::row<std::function<void(test::MainWindow &)>>();
        const bool asks = QByteArray(QTest::currentDataTag()) == "clean";
        const QStringList before = m_home->viewDump();
        frmMain &window = m_home->window();
        {
            const HiddenTable hidden;
            // A preset that fails is chosen without a word.
            window.cboRange.setListIndex(0);
            QCOMPARE(isoText(window.dtpStart.Value()), "2007-05-13 12:00:00");
            QCOMPARE(m_home->viewDump(), before);
            if (asks)
                m_home->dialogs.expectAnswer(Answer::Yes);
            m_home->dialogs.expectAnswer(Answer::Ok);
            m_home->dialogs.whileOpen = [] { QVERIFY(!QApplication::overrideCursor()); };
            // The preset's dates over the figures of others make no report, and no dialog.
            QTimer::singleShot(0, [] {
                if (QWidget *dialog = QApplication::activeModalWidget())
                    dialog->close();
            });
            handler(*m_home);
            const test::ShownBox box = m_home->dialogs.boxes().value(asks ? 1 : 0);
            QCOMPARE(box.style, 48);
            QCOMPARE(box.title, "Veltrona");
            QVERIFY2(box.text.startsWith("Error ") && box.text.contains(modMain::DbFileName),
                     qPrintable(box.text));
            QCOMPARE(m_home->viewDump(), before);
        }
        window.cboRange.setListIndex(1);
        verifyUsable();
    }

    void lockedDuringImport() {
        const QStringList more = {"Three|g|k|Exact|Search Only|2007-05-07|8"};
        sqlite::Connection other;
        other.open(modMain::DbFileName);
        other.execute("BEGIN EXCLUSIVE");
        m_home->dialogs.expectAnswer(Answer::Ok);
        QVERIFY(CommandScope::running() == 0);
        m_home->dialogs.whileOpen = [] {
            QVERIFY(!frmWait::instance().isVisible());
            QVERIFY(CommandScope::running() != 0); // which locks are waited for but once in
        };
        m_home->importRows(more);
        const QString text = m_home->dialogs.boxes().value(0).text;
        QVERIFY2(text.contains("locked by another program") && text.contains("has stored: 0."),
                 qPrintable(text));
        // The views couldn't be rebuilt: no summary may stand over rows that are gone.
        QCOMPARE(m_home->gridDump().size(), 3);
        QVERIFY(m_home->gridDump().last().startsWith("Summary|0|0|"));
        other.execute("COMMIT");
        verifyUsable();
        m_home->importRows(more);
        QVERIFY(m_home->node({"Three"}));
    }

    void badRow() {
        QStringList bad = {"Kept|g|k|Exact|Search Only|2007-05-10|8",
                           "Lost|g|k|Exact|Search Only|31.02.2007|16",
                           "Behind|g|k|Exact|Search Only|2007-05-10|32"};
        m_home->dialogs.expectAnswer(Answer::Ok);
        m_home->dialogs.whileOpen = [&] {
            QVERIFY(!frmWait::instance().isVisible());
            QVERIFY(m_home->node({"Kept"}));
            QVERIFY(m_home->gridDump().value(1).startsWith("Kept|8|"));
            QCOMPARE(m_home->caption(), "Campaign Summary");
        };
        m_home->importRows(bad);
        QCOMPARE(m_home->dialogs.boxes().value(0).text.section(": ", 1),
                 QString("The import of \"%1\" has ended at row 2 (line 3 of the file): the value "
                         "\"31.02.2007\" of the column \"date\" is no date. The rows before it are "
                         "kept in the project; importing the corrected file skips them.")
                     .arg(m_home->file("rows.xml")));
        QVERIFY(!m_home->node({"Lost"}) && !m_home->node({"Behind"}));
        bad[1].replace("31.02.2007", "28.02.2007");
        m_home->importRows(bad);
        QVERIFY(m_home->node({"Lost"}) && m_home->node({"Behind"}));
        QVERIFY(m_home->gridDump().value(2).startsWith("Kept|8|"));
    }

    /// As at the end of a session: the message goes, then the window with the project.
    void closedUnderAMessage() {
        m_home->dialogs.expectAnswer(Answer::Ok);
        m_home->dialogs.whileOpen = [this] { m_home->window().close(); };
        m_home->importRows({"Three|g"}, {"campaign", "adgroup"});
        QVERIFY(!modMain::DbConn);
    }

    void noCommandBehindADialog() {
        QTimer::singleShot(0, qApp, [this] {
            QWidget *options = QApplication::activeModalWidget();
            m_home->command("Imp");
            m_home->command("mnuClean");
            m_home->command("mnuAbout");
            QCOMPARE(QApplication::activeModalWidget(), options);
            options->close();
        });
        m_home->command("mnuOptions");
        QVERIFY(m_home->dialogs.fileDialogs().size() == 1); // the import of init()
    }

    void brokenReport() {
        const QStringList before = m_home->viewDump();
        const QString path = m_home->writeFile("100%1.xml", "<r>\n  <row></r>\n");
        m_home->dialogs.expectAnswer(Answer::Ok);
        m_home->importReport(path);
        const test::ShownBox box = m_home->dialogs.boxes().value(0);
        QCOMPARE(box.title, "Veltrona");
        QCOMPARE(box.style, 48);
        QCOMPARE(
            box.text,
            "Your XML Document failed to loaddue the following error.\r\nError #: 76: Opening and "
            "ending tag mismatch: row line 2 and r\r\nLine #: 2\r\nLine Position: 12\r\nPosition "
            "In File: 15\r\nSource Text: <row></r>\r\nDocument URL: " +
                path);
        QCOMPARE(m_home->viewDump(), before);
        verifyUsable();
    }

private:
    /// No trace of the failure, and a click brings the figures of its node.
    void verifyUsable() {
        QVERIFY(!QApplication::overrideCursor());
        QVERIFY(m_home->window().flxStat.Redraw());
        QVERIFY(!QApplication::activeModalWidget());
        m_home->selectNode({"Two"});
        QCOMPARE(m_home->caption(), "Campain: 'Two'");
        QVERIFY(m_home->gridDump().value(1).startsWith("h|4|"));
        m_home->selectNode({});
        QVERIFY(m_home->gridDump().value(1).startsWith("One|3|"));
    }
};

QTEST_MAIN(FailureTest)
#include "failureTest.moc"
