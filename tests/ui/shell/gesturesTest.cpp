// Gestures in the main window: files dropped on it, rows that are opened, letters typed in the
// tree.
#include "core/shell/modMain.h"
#include "support/dataTable.h"
#include "support/mainWindow.h"
#include "ui/shell/droppedFiles.h"

#include <QDialog>
#include <QDropEvent>
#include <QMimeData>
#include <QTableView>
#include <QTest>
#include <QToolTip>
#include <QTreeView>
#include <QUrl>

using namespace veltrona;

namespace {

const QStringList rows = {"One|g|red shoes|Exact|Search Only|2007-05-07|1",
                          "One|g|k|Exact|Content Only|2007-05-07|1",
                          "Two|g|Brown-Shoes|Broad|Search Only|2007-05-08|1"};

} // namespace

class GesturesTest : public test::WindowTest {
    Q_OBJECT

    /// Drops files of the home folder; whether the window takes them.
    bool drop(const QStringList &names, Qt::DropActions actions = Qt::CopyAction) {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &name : names)
            urls.append(QUrl::fromLocalFile(m_home->file(name)));
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(9, 9), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_home->window(), &enter);
        QDropEvent event(QPointF(9, 9), actions, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&m_home->window(), &event);
        if (enter.isAccepted() != event.isAccepted())
            return false;
        QCoreApplication::processEvents();
        return event.isAccepted();
    }
    void writeReport(const QString &name, const QString &campaign) {
        m_home->writeFile(name,
                          test::smallReport({campaign + "|g|k|Exact|Search Only|2007-05-07"}));
    }
    QStringList campaigns() {
        QStringList names;
        for (const TreeNode *node : m_home->window().treeList.Nodes().Item(1)->Children)
            names.append(node->Text());
        return names;
    }
    QString selected() { return m_home->window().treeList.SelectedItem()->Text(); }

private slots:
    void whatIsTaken_data() {
        const test::DataTable<QStringList, QString> row;
        row("reports in order", {"b.xml", "B2.XML", "\u00E4.xml"}, "\u00E4.xml|b.xml|B2.XML");
        row("a project", {"p.vlt"}, "p.vlt");
        row("a project and more", {"p.vlt", "b.xml"}, "");
        row("two projects", {"p.vlt", "q.VLT"}, "");
        row("anything else", {"b.xml", "c.txt"}, "");
        row("a folder", {"folder.xml"}, "");
        row("a missing file", {"none.xml"}, "");
        row("nothing", {}, "");
    }
    void whatIsTaken() {
        const auto [names, taken] = test::row<QStringList, QString>();
        QDir(m_home->home()).mkdir("folder.xml");
        QMimeData data;
        QList<QUrl> urls;
        for (const QString &name : names) {
            if (name != "none.xml" && name != "folder.xml")
                m_home->writeFile(name, {});
            urls.append(QUrl::fromLocalFile(m_home->file(name)));
        }
        data.setUrls(urls);
        const DroppedFiles files = droppedFiles(data);
        QStringList accepted;
        for (const QString &path : files.reports + QStringList(files.project))
            accepted.append(QFileInfo(path).fileName());
        accepted.removeAll(QString());
        QCOMPARE(accepted.join('|'), taken);
        data.setUrls({QUrl("https://shop.example/b.xml")});
        QVERIFY(droppedFiles(data).isEmpty());
    }

    void reportsUpToTheOneThatFails() {
        writeReport("1.xml", "First");
        m_home->writeFile("2.xml", "<report>");
        writeReport("3.xml", "Third");
        writeReport("4.xml", "Fourth");
        m_home->dialogs.expectAnswer(Answer::Ok);
        QVERIFY(drop({"4.xml", "2.xml", "1.xml", "3.xml"}));
        QCOMPARE(campaigns(), QStringList{"First"});
        const QString text = m_home->dialogs.boxes().last().text;
        QVERIFY(text.startsWith("Your XML Document failed to load"));
        QVERIFY(text.endsWith(
            "\r\rThis was the report \"2.xml\". Not read any more: \"3.xml\", \"4.xml\"."));
        m_home->writeFile("2.xml", "<report/>"); // no columns
        m_home->dialogs.expectAnswer(Answer::Ok);
        QVERIFY(drop({"2.xml", "3.xml"}));
        QCOMPARE(campaigns(), QStringList{"First"});
        QVERIFY(m_home->dialogs.boxes().last().text.endsWith("Not read any more: \"3.xml\"."));
        QVERIFY(drop({"4.xml", "3.xml"}));
        QCOMPARE(campaigns(), QStringList({"First", "Fourth", "Third"}));
        m_home->dialogs.expectAnswer(Answer::Ok);
        QVERIFY(drop({"2.xml"})); // alone: the same message as when it is chosen
        QVERIFY(m_home->dialogs.boxes().last().text.endsWith("some report columns."));
    }

    void aProjectGoesTheStepsOfOpen() {
        m_home->importRows(rows);
        QVERIFY(QFile::copy(modMain::DbFileName, m_home->file("other.vlt")));
        m_home->dialogs.expectAnswer(Answer::Yes);
        m_home->command("mnuClean");
        QVERIFY(drop({"other.vlt"}));
        QCOMPARE(selected(), "other");
        QCOMPARE(campaigns(), QStringList({"One", "Two"}));
        QCOMPARE(test::MainWindow::remembered(), m_home->file("other.vlt"));
        const QModelIndex root = m_home->view<QTreeView>("treeList")->model()->index(0, 0);
        const QString text = m_home->file("other.vlt") + "\n3 records, 7 to 8 May 2007.";
        QCOMPARE(root.data(Qt::ToolTipRole), text);
        QCOMPARE(root.data(Qt::AccessibleDescriptionRole), QString(text).replace("\n", ". "));
    }

    void refusesDropsBesideADialogAndMoves() {
        writeReport("1.xml", "First");
        QVERIFY(!drop({"1.xml"}, Qt::MoveAction));
        QDialog dialog(&m_home->window());
        dialog.setModal(true);
        dialog.show();
        QVERIFY(!drop({"1.xml"}));
        QCOMPARE(campaigns(), QStringList());
    }

    void rowsOpenTheirNodes() {
        m_home->importRows(rows);
        auto *grid = m_home->view<QTableView>("flxStat");
        const auto enter = [&](int row) {
            grid->setCurrentIndex(grid->model()->index(row, 3));
            QTest::keyClick(grid, row % 2 == 0 ? Qt::Key_Return : Qt::Key_Enter);
            return m_home->caption();
        };
        QCOMPARE(enter(3), "Campaign Summary"); // the summary
        QCOMPARE(enter(2), "Campaign Summary"); // the spacer
        QCOMPARE(enter(0), "Campain: 'One'");
        QCOMPARE(selected(), "One");
        const QRect cell = grid->visualRect(grid->model()->index(0, 1));
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
        const QString group = "Campain: 'One' > Adgroup: 'g'";
        QCOMPARE(m_home->caption(), group);
        QCOMPARE(enter(0), group + " > Content");
        QCOMPARE(enter(0), group + " > Content"); // which has no nodes below it
        m_home->selectNode({"One", "g"});
        QCOMPARE(enter(1), group + " > Search keywords");
        const QString keyword = group + " > Search keywords > Keyword: 'red shoes'";
        QCOMPARE(enter(0), keyword);
        QCOMPARE(enter(0), keyword + " > KeywordType: 'Exact'");
        QCOMPARE(enter(0), keyword + " > KeywordType: 'Exact'");
        m_home->importRows({"|g|k|Exact|Search Only|2007-05-07|1"});
        QCOMPARE(enter(3), "Campaign Summary"); // the spacer is no row without a name
    }

    void answersByKey() {
        m_home->importRows(rows);
        m_home->window().activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&m_home->window()));
        const auto press = [this](const QString &view, Qt::Key key, Qt::KeyboardModifiers with) {
            m_home->view(view)->setFocus();
            QTest::keyClick(m_home->view(view), key, with);
            QCoreApplication::processEvents();
            return QToolTip::text();
        };
        QVERIFY(press("treeList", Qt::Key_F8, {}).contains("No part of the account lost money"));
        modMain::DbConn->execute("UPDATE tblGoogleDays SET cost = 2000000 WHERE Campaign = 'Two'");
        press("treeList", Qt::Key_F8, {});
        QCOMPARE(m_home->caption().right(36), "'Brown-Shoes' > KeywordType: 'Broad'");
        auto *tree = m_home->view<QTreeView>("treeList");
        QVERIFY(tree->isExpanded(tree->currentIndex().parent()));
        QVERIFY(press("treeList", Qt::Key_F1, Qt::ShiftModifier).contains(">Broad<"));
        auto *grid = m_home->view<QTableView>("flxStat");
        grid->setCurrentIndex(grid->model()->index(0, gridColumn::AverageCpc));
        QVERIFY(press("flxStat", Qt::Key_F1, Qt::ShiftModifier)
                    .contains("Broad\nAvg.CPC: 0\n2.00 for 1 click: 2.00\nMean of "));
        QVERIFY(press("mscMain", Qt::Key_Return, {}).contains("No bar is marked"));
        QVERIFY(press("mscMain", Qt::Key_Left, Qt::AltModifier).contains("No bar's days"));
        QVERIFY(press("mscMain", Qt::Key_F1, Qt::ShiftModifier).contains("7 bars, 6 May 2007 to"));
    }

    void lettersFindTheNextNode() {
        m_home->importRows(rows);
        auto *tree = m_home->view<QTreeView>("treeList");
        const auto type = [&](const QString &letters) {
            QTest::keyClicks(tree, letters);
            QTest::keyClick(tree, Qt::Key_Return); // ends the typing at once
            QCoreApplication::processEvents();
            return selected();
        };
        QCOMPARE(type("SHOE"), "red shoes");
        QVERIFY(tree->isExpanded(tree->currentIndex().parent()));
        QCOMPARE(m_home->caption().right(10), "red shoes'");
        QCOMPARE(type("shoe"), "Brown-Shoes");
        QCOMPARE(type("shoe"), "red shoes"); // after the last node from the root again
        const QPersistentModelIndex open = tree->currentIndex();
        tree->expand(open);
        QCOMPARE(type("n-s"), "Brown-Shoes");
        QVERIFY(tree->isExpanded(open));
        QCOMPARE(type("nowhere"), "Brown-Shoes");
        QTest::keyClicks(tree, "one");
        QCOMPARE(selected(), "Brown-Shoes"); // not before the typing pauses
        QTRY_COMPARE(selected(), "One");
    }
};

QTEST_MAIN(GesturesTest)
#include "gesturesTest.moc"
