// The export dialog's own looks and keys in both roles.
#include "report/frmOutput.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace veltrona;

class TestOutputForm : public QObject {
    Q_OBJECT

    /// Shows a new dialog and runs the script in it, which must leave it closed.
    template<typename Script>
    void during(bool printRole, Script script) {
        frmOutput dialog({});
        if (printRole)
            dialog.setPrintRole();
        bool ran = false;
        QTimer::singleShot(0, this, [&] {
            QVERIFY(QTest::qWaitForWindowExposed(&dialog));
            ran = true;
            script(dialog);
            if (dialog.isVisible()) {
                QTest::qFail("the script left the dialog open", __FILE__, __LINE__);
                dialog.reject();
            }
        });
        dialog.Show();
        QVERIFY(ran);
    }

private slots:
    void thePrintRoleHidesTheFileName() {
        during(false, [&](frmOutput &dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Export the Report"));
            QVERIFY(dialog.findChild<QLineEdit *>("txtFilename")->text().isEmpty());
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        during(true, [&](frmOutput &dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Print the Report"));
            QCOMPARE(dialog.findChild<QPushButton *>("cmdRun")->text(),
                     QStringLiteral("&Print Preview"));
            for (const char *name : {"lblFilename", "txtFilename", "comBrowse"})
                QVERIFY(!dialog.findChild<QWidget *>(name)->isVisible());
            QTest::keyClick(&dialog, Qt::Key_C, Qt::AltModifier);
            QTRY_VERIFY(!dialog.isVisible());
        });
    }

    void tabOrderAndDefault() {
        during(false, [&](frmOutput &dialog) {
            QStringList visited;
            QCOMPARE(dialog.focusWidget()->objectName(), QStringLiteral("txtFilename"));
            for (int i = 0; i < 8; ++i) {
                visited << dialog.focusWidget()->objectName();
                QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            }
            QCOMPARE(visited.join(u' '),
                     QStringLiteral("txtFilename comBrowse chkOpts(0) chkOpts(1) chkOpts(2) "
                                    "chkOpts(3) cmdRun cmdClose"));
            QVERIFY(dialog.findChild<QPushButton *>("cmdRun")->isDefault());
            // An empty name: nothing happens at all.
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
            auto *box = dialog.findChild<QLineEdit *>("txtFilename");
            box->setText(QStringLiteral("   "));
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
            QVERIFY(dialog.isVisible() && box->text() == QStringLiteral("   "));
            dialog.findChild<QPushButton *>("cmdClose")->setFocus();
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        });
    }

    void nothingIsCut() {
        const QFont before = QApplication::font();
        QFont font = before;
        font.setPointSizeF(20);
        QApplication::setFont(font);
        for (const bool printRole : {false, true}) {
            during(printRole, [&](frmOutput &dialog) {
                QRegion taken;
                for (auto *control :
                     dialog.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
                    if (!control->isVisible())
                        continue;
                    const QByteArray name = control->objectName().toUtf8();
                    const QRect place = control->geometry();
                    QVERIFY2(dialog.rect().contains(place) && !taken.intersects(place), name);
                    QVERIFY2(qobject_cast<QLineEdit *>(control) ||
                                 place.width() >= control->sizeHint().width(),
                             name);
                    QVERIFY2(place.height() >= control->sizeHint().height(), name);
                    taken += place;
                }
                QTest::keyClick(&dialog, Qt::Key_Escape);
            });
        }
        QApplication::setFont(before);
        QCoreApplication::processEvents();
    }
};

QTEST_MAIN(TestOutputForm)
#include "outputFormTest.moc"
