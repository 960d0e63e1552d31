// The export dialog's own looks and keys in both roles.
#include "report/frmOutput.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
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
    void thePrintRoleMovesAndHides() {
        QMap<QString, QRect> exportPlaces;
        const auto places = [](frmOutput &dialog) {
            QMap<QString, QRect> found;
            for (auto *control :
                 dialog.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly))
                found[control->objectName()] = control->geometry();
            return found;
        };
        int height = 0;
        during(false, [&](frmOutput &dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Export the Report"));
            QCOMPARE(dialog.findChild<QLabel *>("lblFilename")->text(),
                     QStringLiteral("Export to:"));
            QVERIFY(dialog.findChild<QLineEdit *>("txtFilename")->text().isEmpty());
            exportPlaces = places(dialog);
            height = dialog.height();
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        QCOMPARE(exportPlaces.size(), 9);
        during(true, [&](frmOutput &dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Print the Report"));
            QCOMPARE(dialog.findChild<QPushButton *>("cmdRun")->text(),
                     QStringLiteral("&Print Preview"));
            const int rise = TwipScale(dialog.font()).toPixels(510.F);
            QVERIFY(qAbs(height - dialog.height() - rise) <= 1);
            const auto found = places(dialog);
            for (auto place = found.begin(); place != found.end(); ++place) {
                const bool hidden =
                    QStringList({"lblFilename", "txtFilename", "comBrowse"}).contains(place.key());
                QCOMPARE(dialog.findChild<QWidget *>(place.key())->isVisible(), !hidden);
                if (!hidden)
                    QVERIFY(qAbs(exportPlaces[place.key()].top() - place->top() - rise) <= 1);
            }
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

    void nothingIsCut_data() {
        QTest::addColumn<double>("points");
        for (const double points : {9.0, 11.0, 14.0, 20.0})
            QTest::addRow("%g points", points) << points;
    }
    void nothingIsCut() {
        QFETCH(double, points);
        const QFont before = QApplication::font();
        QFont font = before;
        font.setPointSizeF(points);
        QApplication::setFont(font);
        for (const bool printRole : {false, true}) {
            during(printRole, [&](frmOutput &dialog) {
                QList<QRect> taken;
                for (auto *control :
                     dialog.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
                    if (!control->isVisible())
                        continue;
                    const QByteArray name = control->objectName().toUtf8();
                    const QRect place = control->geometry();
                    QVERIFY2(dialog.rect().contains(place), name);
                    QVERIFY2(qobject_cast<QLineEdit *>(control) ||
                                 place.width() >= control->sizeHint().width(),
                             name);
                    QVERIFY2(place.height() >= control->sizeHint().height(), name);
                    for (const QRect &other : taken)
                        QVERIFY2(!other.intersects(place), name);
                    taken << place;
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
