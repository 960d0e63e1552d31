// The options and about dialogs, driven by keys and clicks through the real windows.
#include "platform/desktop/forms.h"
#include "shell/frmAbout.h"
#include "shell/frmOptions.h"
#include "shell/modMain.h"
#include "shell/settings.h"
#include "shell/version.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

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
    return QStringLiteral("%1 %2 %3")
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

// Shows a form and runs `script` when it is up; fails if the script has left it open.
template<class Form>
void during(Form &form, const std::function<void()> &script) {
    bool ran = false;
    QTimer::singleShot(0, &form, [&] {
        ran = true;
        QVERIFY(QTest::qWaitForWindowExposed(&form));
        QCoreApplication::processEvents(); // a changed font comes by an event
        script();
        if (form.isVisible()) {
            QTest::qFail("the script left the form open", __FILE__, __LINE__);
            form.done(0);
        }
    });
    form.Show();
    QVERIFY(ran);
}

void key(QWidget &form, Qt::Key key) {
    QWidget *target = form.focusWidget() ? form.focusWidget() : &form;
    QTest::keyClick(target, key);
}
} // namespace

class FormsTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_config = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_config->path()));
        modMain::GridColor = modMain::ExportColor = modMain::PrintColor = true;
        if (frmOptions::instance().isLoaded())
            frmOptions::instance().done(0);
    }

    void loading_data() {
        QTest::addColumn<QStringList>("settings");
        QTest::addColumn<QString>("boxesThen");
        QTest::addColumn<QString>("flagsThen");
        QTest::newRow("nothing stored") << QStringList{} << "0 (0) (0)"
                                        << "0 0 0";
        QTest::newRow("all on") << QStringList{"1", "1", "1"} << "1 1 1"
                                << "1 1 1";
        QTest::newRow("print alone") << QStringList{"1", "0", "1"} << "1 0 1"
                                     << "1 0 1";
        QTest::newRow("grid alone") << QStringList{"1", "0", "0"} << "1 0 0"
                                    << "1 0 0";
        QTest::newRow("contradicting") << QStringList{"0", "1", "1"} << "0 (0) (0)"
                                       << "0 1 1";
        QTest::newRow("like on") << QStringList{"11", "true", " 1"} << "0 (0) (0)"
                                 << "0 0 0";
    }

    void loading() {
        QFETCH(QStringList, settings);
        if (!settings.isEmpty())
            store(settings[0], settings[1], settings[2]);
        frmOptions::instance().load();
        QTEST(boxes(), "boxesThen");
        QTEST(flags(), "flagsThen");
        QVERIFY(!frmOptions::instance().isVisible());
    }

    void theFirstShowFindsTheFormAsLoadedAtStart() {
        frmOptions &form = frmOptions::instance();
        store("1", "1", "1");
        form.load();
        store("0", "0", "0");
        during(form, [&] {
            QCOMPARE(boxes(), QString("1 1 1"));
            key(form, Qt::Key_Escape);
        });
        QCOMPARE(stored(), QString("0 0 0"));
        during(form, [&] {
            QCOMPARE(boxes(), QString("0 (0) (0)"));
            form.close();
        });
        store("1", "0", "0");
        during(form, [&] {
            QCOMPARE(boxes(), QString("1 0 0"));
            key(form, Qt::Key_Escape);
        });
    }

    void theMasterSwitch() {
        frmOptions &form = frmOptions::instance();
        store("1", "1", "1");
        during(form, [&] {
            QTest::keyClick(box("chkCG"), Qt::Key_Space);
            QCOMPARE(boxes(), QString("0 (0) (0)"));
            QTest::keyClick(box("chkCG"), Qt::Key_Space);
            QCOMPARE(boxes(), QString("1 1 0"));
            box("chkCG")->setChecked(false); // a change by the program counts as well
            QCOMPARE(boxes(), QString("0 (0) (0)"));
            key(form, Qt::Key_Enter);
        });
        QCOMPARE(stored(), QString("0 0 0"));
        QCOMPARE(flags(), QString("0 0 0"));
    }

    void cancelLeavesFlagsAndSettingsAlone() {
        frmOptions &form = frmOptions::instance();
        store("1", "0", "1");
        during(form, [&] {
            QTest::mouseClick(box("chkCE"), Qt::LeftButton, {},
                              QPoint(8, box("chkCE")->height() / 2));
            QCOMPARE(boxes(), QString("1 1 1"));
            QTest::mouseClick(form.findChild<QPushButton *>("comCancel"), Qt::LeftButton);
        });
        QCOMPARE(stored(), QString("1 0 1"));
        QCOMPARE(flags(), QString("1 0 1"));
        during(form, [&] {
            QCOMPARE(boxes(), QString("1 0 1"));
            key(form, Qt::Key_Escape);
        });
    }

    void okWritesAllThree() {
        frmOptions &form = frmOptions::instance();
        store("yes", "", "1");
        during(form, [&] { key(form, Qt::Key_Return); });
        QCOMPARE(stored(), QString("0 0 0"));
        during(form, [&] {
            key(form, Qt::Key_Space); // the focus stands on the first box
            QTest::mouseClick(form.findChild<QPushButton *>("cmdOK"), Qt::LeftButton);
        });
        QCOMPARE(stored(), QString("1 1 0"));
        QCOMPARE(flags(), QString("1 1 0"));
    }

    void aLostWriteStillSetsTheFlagInMemory() {
        QFile file(m_config->filePath("file"));
        QVERIFY(file.open(QFile::WriteOnly));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(file.fileName()));
        frmOptions &form = frmOptions::instance();
        during(form, [&] {
            key(form, Qt::Key_Space);
            key(form, Qt::Key_Return);
        });
        QCOMPARE(stored(), QString("- - -"));
        QCOMPARE(flags(), QString("1 1 0"));
    }

    void tabOrder() {
        frmOptions &form = frmOptions::instance();
        store("1", "1", "1");
        during(form, [&] {
            QStringList visited;
            QWidget *at = box("chkCG");
            for (int i = 0; i < 5; ++i) {
                visited += at->objectName();
                do
                    at = at->nextInFocusChain();
                while (!(at->focusPolicy() & Qt::TabFocus));
            }
            QCOMPARE(visited.join(' '), QString("chkCG chkCE chkCP cmdOK comCancel"));
            QCOMPARE(at, static_cast<QWidget *>(box("chkCG")));
            key(form, Qt::Key_Escape);
        });
    }

    void aboutClosesByEachWay() {
        frmAbout &form = frmAbout::instance();
        during(form, [&] { key(form, Qt::Key_Return); });
        during(form, [&] { key(form, Qt::Key_Escape); });
        during(form, [&] { form.close(); });
        during(form, [&] { QTest::mouseClick(form.findChild<QPushButton *>(), Qt::LeftButton); });
        QVERIFY(form.findChild<QLabel *>("lblCP")->text().contains(programVersion()));
        QCOMPARE(form.findChildren<QWidget *>(Qt::FindDirectChildrenOnly).size(), 4);
    }

    void nothingIsCut_data() {
        QTest::addColumn<double>("points");
        QTest::addColumn<QString>("family");
        for (const double points : {8.0, 9.0, 11.0, 14.0, 20.0})
            for (const char *family : {"Sans", "Monospace"})
                QTest::addRow("%g points of %s", points, family) << points << QString(family);
    }

    void nothingIsCut() {
        QFETCH(double, points);
        QFETCH(QString, family);
        const QFont before = QApplication::font();
        QFont font(family);
        font.setPointSizeF(points);
        QApplication::setFont(font);
        const auto check = [](QWidget &form) {
            QList<QRect> taken;
            QCOMPARE(form.font().pointSizeF(), QApplication::font().pointSizeF());
            for (QWidget *control :
                 form.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
                const QSize wanted = control->sizeHint();
                QVERIFY2(control->width() >= wanted.width() && control->height() >= wanted.height(),
                         qPrintable(control->objectName()));
                QVERIFY2(form.rect().contains(control->geometry()),
                         qPrintable(control->objectName()));
                for (const QRect &other : taken)
                    QVERIFY2(!other.intersects(control->geometry()),
                             qPrintable(control->objectName()));
                taken += control->geometry();
            }
        };
        frmOptions &options = frmOptions::instance();
        during(options, [&] {
            check(options);
            key(options, Qt::Key_Escape);
        });
        frmAbout &about = frmAbout::instance();
        during(about, [&] {
            check(about);
            key(about, Qt::Key_Escape);
        });
        QApplication::setFont(before);
        QCoreApplication::processEvents();
    }

    void dialogsStandOverTheirOwner() {
        QWidget owner;
        owner.setGeometry(100, 100, 600, 400);
        owner.show();
        QVERIFY(QTest::qWaitForWindowExposed(&owner));
        frmAbout &form = frmAbout::instance();
        during(form, [&] {
            const QPoint off = form.frameGeometry().center() - owner.frameGeometry().center();
            QVERIFY2(off.manhattanLength() <= 40,
                     qPrintable(QStringLiteral("%1 %2").arg(off.x()).arg(off.y())));
            QCOMPARE(form.windowHandle()->transientParent(), owner.windowHandle());
            QCOMPARE(form.minimumSize(), form.maximumSize());
            key(form, Qt::Key_Escape);
        });
        // Near a corner it stays on the screen.
        owner.move(-500, -300);
        during(form, [&] {
            QVERIFY(form.screen()->availableGeometry().contains(form.geometry()));
            key(form, Qt::Key_Escape);
        });
    }

private:
    std::unique_ptr<QTemporaryDir> m_config;
};

QTEST_MAIN(FormsTest)
#include "formsTest.moc"
