// The options, about and export dialogs, driven by keys and clicks through the real windows.
#include "ui/views/dialogs/forms.h"
#include "core/design/product.h"
#include "core/shell/modMain.h"
#include "core/shell/settings.h"
#include "support/dataTable.h"
#include "support/shownForm.h"
#include "support/testFolder.h"
#include "ui/report/frmOutput.h"
#include "ui/shell/frmAbout.h"
#include "ui/shell/frmOptions.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <functional>

using namespace veltrona;

namespace {
void store(const QString &grid, const QString &exported, const QString &printed) {
    saveSetting(settingsKey, "grdcolor", grid, textValue);
    saveSetting(settingsKey, "expcolor", exported, textValue);
    saveSetting(settingsKey, "prncolor", printed, textValue);
}

QString stored() {
    QStringList values;
    for (const char *name : {"grdcolor", "expcolor", "prncolor"}) {
        QString value = "-";
        loadSetting(settingsKey, name, value);
        values += value;
    }
    return values.join(' ');
}

QString flags() {
    return QString("%1 %2 %3")
        .arg(modMain::GridColor)
        .arg(modMain::ExportColor)
        .arg(modMain::PrintColor);
}

QCheckBox *box(const char *name) {
    return frmOptions::instance().findChild<QCheckBox *>(name);
}

// Values of the three boxes; a disabled one in brackets.
QString boxes() {
    QStringList values;
    for (const char *name : {"chkCG", "chkCE", "chkCP"}) {
        const QString value = box(name)->isChecked() ? "1" : "0";
        values += box(name)->isEnabled() ? value : '(' + value + ')';
    }
    return values.join(' ');
}

template<class Form>
void during(Form &form, const std::function<void()> &script) {
    test::during<Form>([&] { form.Show(); }, [&](Form &) { script(); });
}

void key(QWidget &form, Qt::Key key) {
    QWidget *target = form.focusWidget() ? form.focusWidget() : &form;
    QTest::keyClick(target, key);
}

// The boxes of the options dialog as it opens next; Escape closes it.
QString boxesOnShow() {
    QString shown;
    during(frmOptions::instance(), [&] {
        shown = boxes();
        key(frmOptions::instance(), Qt::Key_Escape);
    });
    return shown;
}
} // namespace

class FormsTest : public QObject, test::TestFolder {
    Q_OBJECT

private slots:
    void init() {
        renewFolder();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder()));
        modMain::GridColor = modMain::ExportColor = modMain::PrintColor = true;
        if (frmOptions::instance().isLoaded())
            frmOptions::instance().done(0);
    }

    void loading_data() {
        const test::DataTable<QStringList, QString, QString> row;
        row("nothing stored", {}, "0 (0) (0)", "0 0 0");
        row("print alone", {"1", "0", "1"}, "1 0 1", "1 0 1");
        row("contradicting", {"0", "1", "1"}, "0 (0) (0)", "0 1 1");
        row("like on", {"11", "true", " 1"}, "0 (0) (0)", "0 0 0");
    }
    void loading() {
        const auto [settings, boxesThen, flagsThen] = test::row<QStringList, QString, QString>();
        if (!settings.isEmpty())
            store(settings[0], settings[1], settings[2]);
        frmOptions::instance().load();
        QCOMPARE(boxes(), boxesThen);
        QCOMPARE(flags(), flagsThen);
        QVERIFY(!frmOptions::instance().isVisible());
    }

    void theFirstShowFindsTheFormAsLoadedAtStart() {
        store("1", "1", "1");
        frmOptions::instance().load();
        store("0", "0", "0");
        QCOMPARE(boxesOnShow(), "1 1 1");
        QCOMPARE(stored(), "0 0 0");
        QCOMPARE(boxesOnShow(), "0 (0) (0)");
        store("1", "0", "0");
        QCOMPARE(boxesOnShow(), "1 0 0");
    }

    void theMasterSwitch() {
        frmOptions &form = frmOptions::instance();
        store("1", "1", "1");
        during(form, [&] {
            QTest::keyClick(box("chkCG"), Qt::Key_Space);
            QCOMPARE(boxes(), "0 (0) (0)");
            QTest::keyClick(box("chkCG"), Qt::Key_Space);
            QCOMPARE(boxes(), "1 1 0");
            box("chkCG")->setChecked(false); // a change by the program counts as well
            QCOMPARE(boxes(), "0 (0) (0)");
            key(form, Qt::Key_Enter);
        });
        QCOMPARE(stored(), "0 0 0");
        QCOMPARE(flags(), "0 0 0");
    }

    void cancelLeavesFlagsAndSettingsAlone() {
        frmOptions &form = frmOptions::instance();
        store("1", "0", "1");
        during(form, [&] {
            QTest::mouseClick(box("chkCE"), Qt::LeftButton, {},
                              QPoint(8, box("chkCE")->height() / 2));
            QCOMPARE(boxes(), "1 1 1");
            QTest::keyClick(box("chkCG"), Qt::Key_Space);
            QTest::mouseClick(form.findChild<QPushButton *>("comCancel"), Qt::LeftButton);
        });
        QCOMPARE(stored(), "1 0 1");
        QCOMPARE(flags(), "1 0 1");
        QCOMPARE(boxesOnShow(), "1 0 1");
    }

    void okWritesAllThree() {
        frmOptions &form = frmOptions::instance();
        store("yes", "", "1");
        during(form, [&] { key(form, Qt::Key_Return); });
        QCOMPARE(stored(), "0 0 0");
        during(form, [&] {
            key(form, Qt::Key_Space); // the focus stands on the first box
            QTest::mouseClick(form.findChild<QPushButton *>("cmdOK"), Qt::LeftButton);
        });
        QCOMPARE(stored(), "1 1 0");
        QCOMPARE(flags(), "1 1 0");
    }

    void aLostWriteStillSetsTheFlagInMemory() {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(test::write(path("file"), {})));
        frmOptions &form = frmOptions::instance();
        during(form, [&] {
            key(form, Qt::Key_Space);
            key(form, Qt::Key_Return);
        });
        QCOMPARE(stored(), "- - -");
        QCOMPARE(flags(), "1 1 0");
    }

    void aboutClosesByEachWay() {
        frmAbout &form = frmAbout::instance();
        during(form, [&] { key(form, Qt::Key_Return); });
        during(form, [&] { QTest::mouseClick(form.findChild<QPushButton *>(), Qt::LeftButton); });
        QVERIFY(form.findChild<QLabel *>("lblCP")->text().contains(programVersion()));
    }

    void exportByKeys() {
        frmOutput form({});
        during(form, [&] {
            // A blank name: nothing happens at all.
            form.findChild<QLineEdit *>("txtFilename")->setText("   ");
            key(form, Qt::Key_Return);
            QVERIFY(form.isVisible());
            form.findChild<QPushButton *>("cmdClose")->setFocus();
            key(form, Qt::Key_Return);
        });
    }
};

QTEST_MAIN(FormsTest)
#include "formsTest.moc"
