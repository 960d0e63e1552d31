// The tree's view: what counts as a click, how clicks are gathered, and that a selection stays.
#include "ui/views/controls/treeView.h"
#include "ui/views/controls/treeModel.h"

#include "support/dataTable.h"

#include <QAbstractItemModelTester>
#include <QTest>
#include <QToolTip>

using namespace veltrona;

namespace {

struct Shown {
    Tree tree;
    TreeView view{tree};
    QStringList clicks;
    TreeNode *root = nullptr;

    Shown() {
        rebuild({"Alpha", "<img src=x> sale", QString(), "Delta"});
        tree.onNodeClick = [this](TreeNode *node) {
            QCOMPARE(tree.SelectedItem(), node);
            clicks.append(node->Text());
        };
        view.resize(300, 300);
        view.show();
        QVERIFY(QTest::qWaitForWindowActive(&view));
        view.setFocus();
    }

    void rebuild(const QStringList &names) {
        tree.beginRebuild();
        tree.Nodes().Clear();
        const auto child = TreeRelationship::Child;
        root = tree.Nodes().Add(nullptr, child, "0-", "Root", 1);
        root->Expanded = true;
        for (const QString &name : names) {
            TreeNode *node = tree.Nodes().Add(root, child, "1-" + name, name, 1);
            tree.Nodes().Add(node, child, "2-" + name, "Leaf", 1);
        }
        tree.endRebuild();
        tree.setSelectedItem(root);
    }

    QModelIndex top() const { return view.model()->index(0, 0); }
    QModelIndex campaign(int row) const { return view.model()->index(row, 0, top()); }
    void press(const QModelIndex &index, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers,
                          view.visualRect(index).center());
    }
    /// The clicks told since the last call.
    QStringList told() {
        QTest::qWait(1);
        QCoreApplication::processEvents();
        return std::exchange(clicks, {});
    }
};

} // namespace

class TreeViewTest : public QObject {
    Q_OBJECT

private slots:
    void showsTheNodes() {
        Shown shown;
        QAbstractItemModelTester tester(shown.view.model(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QVERIFY(shown.view.isExpanded(shown.top()));
        QVERIFY(!shown.view.isExpanded(shown.campaign(0)));
        QCOMPARE(shown.campaign(1).data(), "<img src=x> sale");
        QCOMPARE(shown.campaign(2).data(), QString());
        QVERIFY(!shown.top().data(Qt::DecorationRole).value<QIcon>().pixmap(16, 16).isNull());
        QCOMPARE(shown.told(), QStringList()); // what the program selects is no click
    }

    void aRebuildHonoursExpandedNodes() {
        Shown shown;
        shown.tree.beginRebuild();
        shown.root->Children[3]->Expanded = true;
        QCOMPARE(shown.view.model()->rowCount(), 0); // in between it holds no node
        shown.tree.endRebuild();
        QVERIFY(shown.view.isExpanded(shown.campaign(3)));
        QVERIFY(!shown.view.isExpanded(shown.campaign(0)));
        shown.view.collapse(shown.top());
        QVERIFY(!shown.root->Expanded);
        shown.rebuild({});
        QCOMPARE(shown.view.model()->rowCount(shown.top()), 0);
        QCOMPARE(shown.view.currentIndex(), shown.top());
        QCOMPARE(shown.told(), QStringList());
    }

    void aClickOnAnyNodeIsTold() {
        Shown shown;
        shown.press(shown.campaign(0));
        QCOMPARE(shown.told(), QStringList{"Alpha"});
        shown.press(shown.campaign(0)); // the selected one too
        QCOMPARE(shown.told(), QStringList{"Alpha"});
        shown.tree.setSelectedItem(shown.root);
        QCOMPARE(shown.view.currentIndex(), shown.top());
        QCOMPARE(shown.told(), QStringList());
    }

    void nothingTakesTheSelectionAway() {
        Shown shown;
        shown.press(shown.campaign(1));
        shown.press(shown.campaign(1), Qt::ControlModifier);
        QTest::keyClick(&shown.view, Qt::Key_Space, Qt::ControlModifier);
        QTest::mouseClick(shown.view.viewport(), Qt::LeftButton, {}, QPoint(150, 290));
        shown.told();
        QCOMPARE(shown.view.selectionModel()->selectedIndexes(),
                 QModelIndexList({shown.campaign(1)}));
        QCOMPARE(shown.tree.SelectedItem()->Text(), "<img src=x> sale");
    }

    void anArrowThatOpensANodeIsNoClick() {
        Shown shown;
        const QRect item = shown.view.visualRect(shown.campaign(0));
        const QPoint arrow(item.left() - shown.view.indentation() / 2, item.center().y());
        QTest::mouseClick(shown.view.viewport(), Qt::LeftButton, {}, arrow);
        QVERIFY(shown.view.isExpanded(shown.campaign(0)));
        QVERIFY(shown.root->Children[0]->Expanded);
        QCOMPARE(shown.told(), QStringList());
        QCOMPARE(shown.tree.SelectedItem(), shown.root);
    }

    // Closing a node over the selected one moves the selection to it, which is a move by the user.
    void movesByKeyAreTold_data() {
        const test::DataTable<QList<int>, QStringList> row;
        row("end", {Qt::Key_End}, {"Delta"});
        row("into and back", {Qt::Key_Right, Qt::Key_Left}, {"Root"});
        row("gathered", {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down}, {"Delta"});
    }
    void movesByKeyAreTold() {
        const auto [keys, told] = test::row<QList<int>, QStringList>();
        Shown shown;
        for (const int key : keys) {
            QKeyEvent press(QEvent::KeyPress, key, {});
            QCoreApplication::sendEvent(&shown.view, &press); // with no event loop in between
        }
        QCOMPARE(shown.told(), told);
    }

    void findsComposedNames() {
        Shown shown;
        shown.rebuild({"Alpha", "\u590f", "\u590f\u30bb\u30fc\u30eb"});
        const auto compose = [&](const QString &preedit, const QString &commit) {
            QInputMethodEvent event(preedit, {});
            event.setCommitString(commit);
            QCoreApplication::sendEvent(&shown.view, &event);
        };
        for (const QString &part : {QString("\u590f"), QString("\u30bb\u30fc\u30eb")}) {
            QInputMethodQueryEvent query(Qt::ImEnabled);
            QCoreApplication::sendEvent(&shown.view, &query);
            QVERIFY(query.value(Qt::ImEnabled).toBool() &&
                    shown.view.testAttribute(Qt::WA_InputMethodEnabled));
            compose("na", {});
            QTest::qWait(QApplication::keyboardInputInterval() + 100); // a candidate is looked for
            QCOMPARE(shown.clicks, QStringList());
            compose(part.startsWith(QChar(0x590f)) ? "se" : "", part);
        }
        QTRY_COMPARE(shown.clicks, QStringList{"\u590f\u30bb\u30fc\u30eb"});
        compose("de", {});
        compose({}, {}); // given up
        QTest::qWait(QApplication::keyboardInputInterval() + 100);
        compose({}, "delta?");
        QTRY_VERIFY(QToolTip::text().contains("contains &quot;delta?&quot;"));
    }

    // A click that still waits when the tree is rebuilt would report a node that is gone.
    void aRebuildDropsAWaitingClick() {
        Shown shown;
        shown.press(shown.campaign(3));
        shown.clicks.clear();
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Up, {});
        QCoreApplication::sendEvent(&shown.view, &press);
        shown.rebuild({"Other"});
        QCOMPARE(shown.told(), QStringList());
        QCOMPARE(shown.tree.SelectedItem(), shown.root);
    }
};

QTEST_MAIN(TreeViewTest)
#include "treeViewTest.moc"
