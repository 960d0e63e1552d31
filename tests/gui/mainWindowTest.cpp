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

/// Where a control is cut, covered, or out of its frame; empty if all is well.
QString misplaced(frmMain &window) {
    QStringList faults;
    QList<QWidget *> solid = {window.menuBar(), window.findChild<QWidget *>("Toolbar1"),
                              window.statusBar()};
    for (const char *name : {"Frame1", "Frame2", "Frame3"}) {
        auto *frame = window.findChild<QWidget *>(name);
        for (QWidget *other : std::as_const(solid)) {
            if (inWindow(*frame).intersects(inWindow(*other)))
                faults << frame->objectName() + " meets " + other->objectName();
        }
        solid << frame;
        if (!window.rect().contains(inWindow(*frame)))
            faults << frame->objectName() + " leaves the window";
        const auto controls = frame->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
        for (QWidget *control : controls) {
            if (!control->isVisible())
                continue;
            if (!frame->rect().contains(control->geometry()))
                faults << control->objectName() + " leaves " + name;
            for (QWidget *other : controls) {
                if (other != control && other->isVisible() &&
                    other->geometry().intersects(control->geometry()))
                    faults << control->objectName() + " meets " + other->objectName();
            }
        }
    }
    for (QWidget *control : window.findChildren<QWidget *>()) {
        const bool told = qobject_cast<QLabel *>(control) || qobject_cast<QComboBox *>(control) ||
                          qobject_cast<QAbstractButton *>(control) ||
                          qobject_cast<QDateEdit *>(control);
        const QSize need = control->sizeHint();
        // The caption elides where it lacks the width.
        const bool wide = control->width() >= need.width() || control->objectName() == "lblSum";
        if (told && control->isVisible() && !(wide && control->height() >= need.height()))
            faults << QString("%1 is %2x%3 and needs %4x%5")
                          .arg(control->objectName())
                          .arg(control->width())
                          .arg(control->height())
                          .arg(need.width())
                          .arg(need.height());
    }
    return faults.join("; ");
}

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT
private slots:
    void menusAndBars() {
        test::MainWindow home;
        QVERIFY(home.start());
        frmMain &window = home.window();
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
        test::MainWindow home;
        QVERIFY(home.start());
        frmMain &window = home.window();
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
            home.dialogs.expectFile("");
        menu(Qt::Key_F, Qt::Key_N);
        menu(Qt::Key_F, Qt::Key_O);
        menu(Qt::Key_F, Qt::Key_I);
        home.command("Imp");
        QStringList titles;
        for (const FileDialogSetup &dialog : home.dialogs.fileDialogs())
            titles << dialog.title + ' ' + dialog.filter;
        const QString import = "Import a Google Report XML file XML files (*.xml)|*.xml";
        const QString projects = " Veltrona Data files (*.vlt)|*.vlt";
        QCOMPARE(titles, QStringList({"Create a new database" + projects,
                                      "Open database" + projects, import, import}));

        menu(Qt::Key_F, Qt::Key_E);
        home.command("Exp");
        menu(Qt::Key_F, Qt::Key_P);
        home.command("Prn");
        menu(Qt::Key_T, Qt::Key_O);
        menu(Qt::Key_H, Qt::Key_Return);
        QCOMPARE(closer.seen.size(), 6);
        QCOMPARE(closer.seen[0], closer.seen[1]);
        QCOMPARE(closer.seen[2], closer.seen[3]);
        QVERIFY(closer.seen[0] != closer.seen[2] && closer.seen[2].startsWith("frmOutput "));
        QCOMPARE(closer.seen.mid(4), QStringList({"frmOptions", "frmAbout"}));

        home.dialogs.expectAnswer(Answer::No);
        menu(Qt::Key_T, Qt::Key_C);
        QVERIFY(home.dialogs.allUsed());
        menu(Qt::Key_F, Qt::Key_X);
        QVERIFY(modMain::ExitFlag);
        QVERIFY(!window.isVisible());
    }

    void tabOrderAndBuddies() {
        test::MainWindow home;
        QVERIFY(home.start());
        QVERIFY(QTest::qWaitForWindowActive(&home.window()));
        QStringList buddies;
        for (const char *name : {"lblStart", "lblEnd", "lblRange", "lblLeft", "lblGroup"})
            buddies << home.view<QLabel>(name)->buddy()->objectName();
        QCOMPARE(buddies, QStringList({"dtpStart", "dtpEnd", "cboRange", "cboLeft", "cboGroup"}));
        home.view("treeList")->setFocus();
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
        QCOMPARE(home.window().cboRange.ListIndex(), 1); // walking past is no edit
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
        test::MainWindow home;
        QFont font = before;
        font.setPointSize(points);
        QApplication::setFont(font);
        QVERIFY(home.start());
        frmMain &window = home.window();
        const QSize minimum = window.minimumSize();
        for (const QSize &size : {minimum, QSize(1300, 900), QSize(2600, 1500), QSize(10, 10)}) {
            window.resize(size);
            QCoreApplication::processEvents();
            QCOMPARE(window.size(), size.expandedTo(minimum));
            QVERIFY2(misplaced(window).isEmpty(), qPrintable(misplaced(window)));
        }
        // A font that changes under the open window.
        font.setPointSize(points == 9 ? 14 : 9);
        QApplication::setFont(font);
        QTRY_VERIFY2(misplaced(window).isEmpty(), qPrintable(misplaced(window)));
    }

    void minimised() {
        test::MainWindow home;
        QVERIFY(home.start());
        frmMain &window = home.window();
        const auto places = [&] {
            QList<QRect> places;
            for (const char *name :
                 {"Frame1", "Frame2", "Frame3", "flxStat", "mscMain", "cboGroup"})
                places << home.view(name)->geometry();
            return places;
        };
        const QList<QRect> before = places();
        window.showMinimized();
        QCoreApplication::processEvents();
        QCOMPARE(places(), before);
        window.showNormal();
        QCoreApplication::processEvents();
        QCOMPARE(places(), before);
        const int sideColumn = home.view("Frame3")->width() - home.view("mscMain")->width();
        window.resize(window.width() + 300, window.height());
        QCoreApplication::processEvents();
        QVERIFY(home.view("mscMain")->width() >= before[4].width() + 299);
        QVERIFY(qAbs(home.view("Frame3")->width() - home.view("mscMain")->width() - sideColumn) <=
                1);
    }

    void refreshKeepsPlace() {
        test::MainWindow home;
        QVERIFY(home.start());
        QStringList rows;
        for (int i = 0; i < 80; ++i)
            rows << QString("C %1|g|k|Exact|Search Only|2007-05-08|%1").arg(i, 2, 10, QChar(u'0'));
        home.importRows(rows);
        auto *grid = home.view<QTableView>("flxStat");
        QTRY_VERIFY(grid->verticalScrollBar()->maximum() > 0);
        QCOMPARE(grid->verticalScrollBar()->value(), 0); // nor does the first refresh scroll
        grid->verticalScrollBar()->setValue(grid->verticalScrollBar()->maximum() / 2);
        const int scrolled = grid->verticalScrollBar()->value();
        const QModelIndex cell = grid->indexAt({5, grid->viewport()->height() / 2});
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(cell).center());
        QTest::keyClick(grid, Qt::Key_Right, Qt::ShiftModifier);
        const QModelIndexList selected = grid->selectionModel()->selectedIndexes();
        QVERIFY(selected.size() > 1);
        home.selectNode({});
        QCOMPARE(grid->verticalScrollBar()->value(), scrolled);
        QCOMPARE(grid->selectionModel()->selectedIndexes(), selected);
    }

    void accessible() {
        QAccessible::setActive(true);
        test::MainWindow home;
        QVERIFY(home.start());
        home.importRows({"|g|k|Exact|Search Only|2007-05-08|7", "B & <b>|||||2007-05-07|"
                                                                "3"});
        home.window().cboLeft.setListIndex(3);
        QStringList names;
        for (const char *name : {"treeList", "dtpStart", "dtpEnd", "cboRange", "flxStat", "mscMain",
                                 "cboLeft", "cboGroup", "lblSum"}) {
            QAccessibleInterface *face = QAccessible::queryAccessibleInterface(home.view(name));
            // The bridge of this platform tells a label by its relation.
            const auto labels = face->relations(QAccessible::Label);
            names << (labels.isEmpty() ? face : labels.first().first)->text(QAccessible::Name);
            QVERIFY(!face->state().invisible);
        }
        QCOMPARE(names,
                 QStringList({"Account", "Start Date:", "End Date:", "Date Range:", "Statistics",
                              "Clicks", "Shown Values (bar):", "Group by:", "Campaign Summary"}));
        QCOMPARE(home.view<QLabel>("lblSum")->textFormat(), Qt::PlainText);

        QAccessibleInterface *tree = QAccessible::queryAccessibleInterface(home.view("treeList"));
        QStringList nodes;
        for (int child = 1; child < tree->childCount(); ++child) // behind the hidden heading
            nodes << tree->child(child)->text(QAccessible::Name);
        QCOMPARE(nodes, QStringList({"Veltrona", "(no name)", "B & <b>"}));
        auto *grid = QAccessible::queryAccessibleInterface(home.view("flxStat"))->tableInterface();
        QCOMPARE(grid->cellAt(0, 1)->text(QAccessible::Name), QString("7"));
        QVERIFY(grid->cellAt(0, 1)->text(QAccessible::Description).startsWith("Clicks"));
        auto *chart = QAccessible::queryAccessibleInterface(home.view("mscMain"))->tableInterface();
        QCOMPARE(chart->rowCount(), 7);
        QCOMPARE(chart->cellAt(2, 0)->text(QAccessible::Name), QString("May 08"));
        QCOMPARE(chart->cellAt(2, 1)->text(QAccessible::Name), QString("7"));
    }
};

QTEST_MAIN(MainWindowTest)
#include "mainWindowTest.moc"
