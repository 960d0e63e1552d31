// The main window as a user meets it: commands, keyboard, sizes and what a screen reader is told.
#include "support/mainWindow.h"
#include "shell/modMain.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QMenuBar>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolBar>

using namespace veltrona;

namespace {

/// Closes each dialog that comes up and notes what it was.
class DialogCloser {
public:
    DialogCloser() {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            QWidget *dialog = QApplication::activeModalWidget();
            if (dialog && dialog->isActiveWindow()) {
                auto *run = dialog->findChild<QAbstractButton *>("cmdRun");
                seen << dialog->objectName() + (run ? u' ' + run->text() : QString());
                dialog->close();
            }
        });
        m_timer.start(0);
    }
    QStringList seen;

private:
    QTimer m_timer;
};

QRect inWindow(const QWidget &widget) {
    return {widget.mapTo(widget.window(), QPoint()), widget.size()};
}

void checkApart(const QList<QWidget *> &widgets, const QRect &room, QStringList &faults) {
    for (int i = 0; i < widgets.size(); ++i) {
        if (!room.contains(inWindow(*widgets[i])))
            faults << widgets[i]->objectName() + " leaves its place";
        for (int other = 0; other < i; ++other) {
            if (inWindow(*widgets[i]).intersects(inWindow(*widgets[other])))
                faults << widgets[i]->objectName() + " meets " + widgets[other]->objectName();
        }
    }
}

/// Where a control is cut, covered, or out of its frame; empty if all is well.
QString misplaced(frmMain &window) {
    QStringList faults;
    QList<QWidget *> parts = {window.menuBar(), window.findChild<QWidget *>("Toolbar1"),
                              window.statusBar()};
    for (const char *name : {"Frame1", "Frame2", "Frame3"}) {
        auto *frame = window.findChild<QWidget *>(name);
        parts << frame;
        QList<QWidget *> controls;
        for (auto *control : frame->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
            if (control->isVisible())
                controls << control;
        checkApart(controls, inWindow(*frame), faults);
    }
    checkApart(parts, window.rect(), faults);
    for (QWidget *control : window.findChildren<QWidget *>()) {
        const bool told = qobject_cast<QLabel *>(control) || qobject_cast<QComboBox *>(control) ||
                          qobject_cast<QAbstractButton *>(control) ||
                          qobject_cast<QDateEdit *>(control);
        QSize need = control->sizeHint();
        if (control->objectName() == "lblSum")
            need.setWidth(0); // it elides
        if (told && control->isVisible() && control->size().expandedTo(need) != control->size())
            faults << control->objectName() + ' ' + control->metaObject()->className() + " is cut";
    }
    return faults.join("; ");
}

} // namespace

class MainWindowTest : public test::WindowTest {
    Q_OBJECT
private slots:
    void menusAndBars() {
        frmMain &window = m_home->window();
        QStringList commands;
        for (QAction *menu : window.menuBar()->actions()) {
            commands << menu->text();
            for (QAction *entry : menu->menu()->actions()) {
                commands << "  " + entry->objectName() + ' ' + entry->text();
                QVERIFY(entry->isEnabled() && !entry->isCheckable() && entry->shortcut().isEmpty());
            }
        }
        QCOMPARE(commands, QStringList({"&File", "  mnuNew &New Database",
                                        "  mnuOpen &Open Database", "  mnuPRint &Print",
                                        "  mnuImport &Import Report", "  mnuExport &Export",
                                        "  mnuExit E&xit", "&Tools", "  mnuClean &Clean Database",
                                        "  mnuOptions &Options", "&Help", "  mnuAbout About..."}));
        QStringList buttons;
        for (QAction *button : window.findChild<QToolBar *>("Toolbar1")->actions()) {
            buttons << button->text();
            QVERIFY(!button->icon().isNull());
        }
        QCOMPARE(buttons, QStringList({"Import  ", "Export  ", "Print    "}));

        auto *done = window.statusBar()->findChild<QLabel *>();
        QCOMPARE(done->text(), QString("Done."));
        window.menuBar()->actions().first()->menu()->actions().first()->hover();
        QVERIFY(done->isVisible());
        QCOMPARE(window.statusBar()->currentMessage(), QString());
    }

    void commandsByKeyboard() {
        frmMain &window = m_home->window();
        m_home->importRows({"One|g|k|Exact|Search Only|2007-05-07|1"});
        m_home->selectNode({"One"});
        const QStringList before = m_home->viewDump();
        DialogCloser closer;
        const auto menu = [&](Qt::Key title, Qt::Key entry) {
            // This platform gives the focus back to nobody when a dialog has closed.
            window.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&window));
            QTest::keyClick(&window, title, Qt::AltModifier);
            QTRY_VERIFY(QApplication::activePopupWidget());
            QTest::keyClick(QApplication::activePopupWidget(), entry);
            QTRY_VERIFY(!QApplication::activePopupWidget());
        };
        for (int i = 0; i < 4; ++i)
            m_home->dialogs.expectFile("");
        menu(Qt::Key_F, Qt::Key_N);
        menu(Qt::Key_F, Qt::Key_O);
        menu(Qt::Key_F, Qt::Key_I);
        m_home->command("Imp");
        QStringList titles;
        for (const FileDialogSetup &dialog : m_home->dialogs.fileDialogs().mid(1))
            titles << dialog.title + ' ' + dialog.filter;
        const QString import = "Import a Google Report XML file XML files (*.xml)|*.xml";
        const QString projects = " Veltrona Data files (*.vlt)|*.vlt";
        QCOMPARE(titles, QStringList({"Create a new database" + projects,
                                      "Open database" + projects, import, import}));

        menu(Qt::Key_F, Qt::Key_E);
        m_home->command("Exp");
        menu(Qt::Key_F, Qt::Key_P);
        m_home->command("Prn");
        menu(Qt::Key_T, Qt::Key_O);
        menu(Qt::Key_H, Qt::Key_Return);
        QCOMPARE(closer.seen.size(), 6);
        QCOMPARE(closer.seen[0], closer.seen[1]);
        QCOMPARE(closer.seen[2], closer.seen[3]);
        QVERIFY(closer.seen[0] != closer.seen[2] && closer.seen[2].startsWith("frmOutput "));
        QCOMPARE(closer.seen.mid(4), QStringList({"frmOptions", "frmAbout"}));

        for (const Answer answer : {Answer::No, Answer::Cancel}) {
            m_home->dialogs.expectAnswer(answer);
            menu(Qt::Key_T, Qt::Key_C);
        }
        QVERIFY(m_home->dialogs.allUsed());
        QCOMPARE(m_home->viewDump(), before); // nothing of all that was confirmed
        menu(Qt::Key_F, Qt::Key_X);
        QVERIFY(modMain::ExitFlag);
        QVERIFY(!window.isVisible());
    }

    void tabOrderAndBuddies() {
        QVERIFY(QTest::qWaitForWindowActive(&m_home->window()));
        QStringList buddies;
        for (const char *name : {"lblStart", "lblEnd", "lblRange", "lblLeft", "lblGroup"})
            buddies << m_home->view<QLabel>(name)->buddy()->objectName();
        QCOMPARE(buddies, QStringList({"dtpStart", "dtpEnd", "cboRange", "cboLeft", "cboGroup"}));
        m_home->view("treeList")->setFocus();
        QStringList order;
        for (int i = 0; i < 9; ++i) {
            order << QApplication::focusWidget()->objectName();
            // A date edit walks through its sections first.
            for (int section = 0;
                 section < 4 && QApplication::focusWidget()->objectName() == order.last();
                 ++section)
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(order, QStringList({"treeList", "dtpStart", "dtpEnd", "cboRange", "flxStat",
                                     "mscMain", "cboLeft", "cboGroup", "treeList"}));
        QCOMPARE(m_home->window().cboRange.ListIndex(), 1); // walking past is no edit
    }

    void sizes_data() {
        QTest::addColumn<int>("points");
        for (const int points : {9, 11, 14})
            QTest::addRow("%d points", points) << points;
    }

    void sizes() {
        QFETCH(int, points);
        const QFont before = QApplication::font();
        const auto restore = qScopeGuard([&] { QApplication::setFont(before); });
        QFont font = before;
        font.setPointSize(points);
        QApplication::setFont(font);
        QVERIFY(m_home->restart());
        frmMain &window = m_home->window();
        for (const QSize &size :
             {window.minimumSize(), QSize(1300, 900), QSize(2600, 1500), QSize(10, 10)}) {
            window.resize(size);
            QCoreApplication::processEvents();
            QTRY_COMPARE(window.size(), size.expandedTo(window.minimumSize()));
            QVERIFY2(misplaced(window).isEmpty(), qPrintable(misplaced(window)));
            // The place of the frames counts from below the menu bar.
            const int top = inWindow(*m_home->view("Frame1")).top() - window.menuBar()->height();
            QCOMPARE(top,
                     qMax(TwipScale(font).toPixels(600.F), m_home->view("Toolbar1")->height()));
        }
        // A font that changes under the open window.
        font.setPointSize(points == 9 ? 14 : 9);
        QApplication::setFont(font);
        QTRY_VERIFY2(misplaced(window).isEmpty(), qPrintable(misplaced(window)));
    }

    void minimised() {
        QList<QRect> places;
        for (int round = 0; round < 3; ++round) {
            for (const char *name : {"Frame1", "Frame2", "Frame3", "flxStat", "mscMain"})
                places << m_home->view(name)->geometry();
            QCOMPARE(places.mid(round * 5), places.first(5));
            round == 0 ? m_home->window().showMinimized() : m_home->window().showNormal();
            QCoreApplication::processEvents();
        }
    }

    void refreshKeepsPlace() {
        QStringList rows;
        for (int i = 0; i < 80; ++i)
            rows << QString("C %1|g|k|Exact|Search Only|2007-05-08|1").arg(i);
        m_home->importRows(rows);
        auto *grid = m_home->view<QTableView>("flxStat");
        QTRY_VERIFY(grid->verticalScrollBar()->maximum() > 0);
        grid->verticalScrollBar()->setValue(grid->verticalScrollBar()->maximum() / 2);
        const int scrolled = grid->verticalScrollBar()->value();
        grid->selectRow(40);
        m_home->selectNode({});
        QCOMPARE(grid->verticalScrollBar()->value(), scrolled);
        QCOMPARE(grid->selectionModel()->selectedIndexes().value(0).row(), 40);
    }

    void accessible() {
        QAccessible::setActive(true);
        m_home->importRows({"|g|k|||2007-05-08|7", "<img src=x> & b|||||2007-05-07|3"});
        m_home->window().cboLeft.setListIndex(3);
        QStringList names;
        for (const char *name : {"treeList", "dtpStart", "dtpEnd", "cboRange", "flxStat", "mscMain",
                                 "cboLeft", "cboGroup", "lblSum"}) {
            QAccessibleInterface *face = QAccessible::queryAccessibleInterface(m_home->view(name));
            // The bridge of this platform tells a label by its relation.
            const auto labels = face->relations(QAccessible::Label);
            names << (labels.isEmpty() ? face : labels.first().first)->text(QAccessible::Name);
            QVERIFY(!face->state().invisible);
        }
        QCOMPARE(names,
                 QStringList({"Account", "Start Date:", "End Date:", "Date Range:", "Statistics",
                              "Clicks", "Shown Values (bar):", "Group by:", "Campaign Summary"}));

        QAccessibleInterface *tree =
            QAccessible::queryAccessibleInterface(m_home->view("treeList"));
        QCOMPARE(tree->role(), QAccessible::Tree);
        QStringList nodes;
        for (int child = 1; child < tree->childCount(); ++child) // behind the hidden heading
            nodes << tree->child(child)->text(QAccessible::Name);
        QCOMPARE(nodes, QStringList({"Veltrona", "(no name)", "<img src=x> & b"}));
    }
};

QTEST_MAIN(MainWindowTest)
#include "mainWindowTest.moc"
