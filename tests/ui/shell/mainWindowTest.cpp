// The main window as a user meets it: commands, keyboard, sizes and what a screen reader is told.
#include "support/mainWindow.h"
#include "core/shell/modMain.h"
#include "support/dataTable.h"
#include "support/shownForm.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QStyle>
#include <QStyleFactory>
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

QString misplacedControls(frmMain &window) {
    QString faults;
    for (const char *name : {"Frame1", "Frame2", "Frame3"}) {
        const auto *frame = window.findChild<QWidget *>(name);
        faults += test::misplaced(*frame, [](const QWidget &control) {
            const bool told = qobject_cast<const QComboBox *>(&control) ||
                              qobject_cast<const QDateEdit *>(&control) ||
                              qobject_cast<const QLabel *>(&control);
            return !told || control.objectName() == "lblSum"; // which elides
        });
        if (!frame->parentWidget()->rect().contains(frame->geometry()))
            faults += frame->objectName() + " leaves the surface";
    }
    return faults;
}

} // namespace

class MainWindowTest : public test::WindowTest {
    Q_OBJECT
private slots:
    void iconsAreAsFineAsTheScreen() {
        const frmMain &window = m_home->window();
        const auto *bar = window.findChild<QToolBar *>("Toolbar1");
        for (QAction *button : bar->actions()) {
            const qreal ratio = window.devicePixelRatio();
            QCOMPARE(button->icon().pixmap(bar->iconSize(), ratio).size(), bar->iconSize() * ratio);
        }
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
        QString titles;
        for (const FileDialogSetup &dialog : m_home->dialogs.fileDialogs().mid(1))
            titles += dialog.title.left(4) + '|';
        QCOMPARE(titles, "Crea|Open|Impo|Impo|");

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
        QCOMPARE(m_home->viewDump(), before); // nothing of all that was confirmed
        menu(Qt::Key_F, Qt::Key_X);
        QVERIFY(modMain::ExitFlag);
        QVERIFY(!window.isVisible());
    }

    void sizes() {
        const QFont before = QApplication::font();
        const auto restore = qScopeGuard([&] { QApplication::setFont(before); });
        QFont font = before;
        font.setPointSize(9);
        QApplication::setFont(font);
        QVERIFY(m_home->restart());
        frmMain &window = m_home->window();
        for (const QSize &size :
             {window.minimumSize(), QSize(1300, 900), QSize(2600, 1500), QSize(10, 10)}) {
            window.resize(size);
            QTRY_COMPARE(window.size(), size.expandedTo(window.minimumSize()));
            QVERIFY2(misplacedControls(window).isEmpty(), qPrintable(misplacedControls(window)));
        }
        // A font that changes under the open window.
        for (const int points : {11, 14}) {
            font.setPointSize(points);
            QApplication::setFont(font);
            QTRY_COMPARE(window.font().pointSize(), points);
            QTRY_VERIFY2(misplacedControls(window).isEmpty(),
                         qPrintable(misplacedControls(window)));
            // Laid out with the bars as high as they are now: once more changes nothing.
            for (int round = 0; round < 5; ++round)
                QCoreApplication::processEvents();
            const QRect chart = m_home->view("mscMain")->geometry();
            QResizeEvent again(window.size(), window.size());
            QCoreApplication::sendEvent(&window, &again);
            QCOMPARE(m_home->view("mscMain")->geometry(), chart);
            const auto *bar = window.findChild<QToolBar *>();
            QCOMPARE(bar->iconSize().width() > 32, points >= 14);
            // From there on the bars are as high as designed: 600 and 345 twips.
            const auto *frame = window.findChild<QWidget *>("Frame1");
            const int toFrame = frame->mapTo(&window, QPoint()).y() - bar->y();
            const double high = window.statusBar()->height() * 600. / 345;
            QCOMPARE(qAbs(bar->height() - toFrame) <= 1, points >= 14);
            QCOMPARE(qAbs(high - toFrame) <= 2, points >= 14);
        }
    }

    void staysOnTheScreen_data() {
        const test::DataTable<QString, int> row;
        for (const int points : {9, 11, 14, 20})
            row(qPrintable(QString::number(points)), QApplication::font().family(), points);
        row("wide letters", "Monospace", 20);
    }
    void staysOnTheScreen() {
        const auto [family, points] = test::row<QString, int>();
        checkPlaces("Fusion", QFont(family, points));
    }

    void servesEveryStyle_data() {
        const test::DataTable<QString, int> row;
        for (const QString &style : QStyleFactory::keys())
            for (const int points : {9, 14})
                row(qPrintable(QString("%1 %2").arg(style).arg(points)), style, points);
    }
    void servesEveryStyle() {
        const auto [style, points] = test::row<QString, int>();
        checkPlaces(style, QFont(QApplication::font().family(), points));
    }

    void accessible() {
        QAccessible::setActive(true);
        const QString marked = "<img src=x> & " + QString(400, 'w');
        m_home->importRows({"|g|k|||2007-05-08|7", marked + "|||||2007-05-07|3"});
        const auto *caption = QAccessible::queryAccessibleInterface(m_home->view("lblSum"));
        m_home->selectNode({marked});
        QCOMPARE(caption->text(QAccessible::Name), "Campain: '" + marked + "'"); // not elided
        QVERIFY(!caption->text(QAccessible::Description).contains("&lt;"));
        QAccessibleInterface *tree =
            QAccessible::queryAccessibleInterface(m_home->view("treeList"));
        QCOMPARE(tree->role(), QAccessible::Tree);
        QStringList nodes;
        for (int child = 1; child < tree->childCount(); ++child) // after the hidden heading
            nodes << tree->child(child)->text(QAccessible::Name);
        QCOMPARE(nodes, QStringList({"Veltrona", "(no name)", marked}));
    }

private:
    void checkPlaces(const QString &style, const QFont &font) {
        const QFont before = QApplication::font();
        const QString styleBefore = QApplication::style()->name();
        const auto restore = qScopeGuard([&] {
            QApplication::setFont(before);
            QApplication::setStyle(styleBefore);
        });
        QApplication::setFont(font);
        QVERIFY(m_home->restart());
        QApplication::setStyle(style); // under the open window
        frmMain &window = m_home->window();
        for (const QSize &size : {window.size(), QSize(10, 10)}) {
            window.resize(size);
            QTRY_COMPARE(window.size(), size.expandedTo(window.minimumSize()));
            QTRY_COMPARE(test::unreachable(window), QString());
            QTRY_COMPARE(misplacedControls(window), QString());
        }
        for (const char *command : {"mnuOptions", "mnuAbout", "Exp", "Prn"})
            test::during<QDialog>(
                [&] { m_home->command(command); },
                [&](QDialog &form) {
                    QCOMPARE(test::unreachable(form), QString());
                    for (const QCheckBox *box : form.findChildren<QCheckBox *>())
                        QVERIFY(
                            box->style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, box) >=
                            0.7 * box->fontMetrics().height());
                    const auto *button = form.findChild<QPushButton *>();
                    QCOMPARE(test::misplaced(*button->parentWidget(),
                                             [](const QWidget &control) {
                                                 return qobject_cast<const QLineEdit *>(&control);
                                             }),
                             QString());
                    form.reject();
                });
    }
};

QTEST_MAIN(MainWindowTest)
#include "mainWindowTest.moc"
