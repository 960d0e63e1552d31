// The start of the program: fresh home, remembered project, bad projects and their ways out, and
// the end of the run.
#include "shell/start.h"
#include "database/projectFile.h"
#include "platform/desktop/folders.h"
#include "shell/modMain.h"
#include "shell/settings.h"
#include "support/anotherUser.h"
#include "support/mainWindow.h"

#include <QDir>
#include <QMenu>
#include <QTest>
#include <QTimer>

using namespace veltrona;

namespace {

enum Choice { OpenAnother, SecondWay, Quit };

QString remembered() {
    QString value = "(none)";
    loadSetting(settingsKey, "dbfname", value);
    return value;
}

void remember(const QString &path) {
    saveSetting(settingsKey, "dbfname", path, textValue);
}

QString projectTemplate() {
    return desktop::programFolder() + "/data.dat";
}

QString defaultProject(const test::MainWindow &home) {
    return home.file("data/Veltrona/Veltrona.vlt");
}

} // namespace

class StartTest : public QObject {
    Q_OBJECT
private slots:
    void firstAndSecond() {
        test::MainWindow home;
        QVERIFY(home.start());
        QCOMPARE(modMain::DbFileName, defaultProject(home));
        QVERIFY(QFile::exists(defaultProject(home)));
        QCOMPARE(remembered(), QString("(none)"));
        QCOMPARE(home.treeDump(), QStringList{"Veltrona"});
        QCOMPARE(home.window().windowTitle(), QString("Veltrona"));
        home.importRows({"C|G|K|T|Search Only|2007-05-08|4"});
        home.dialogs.expectFile(home.file("client.2007"));
        home.command("mnuNew");
        QCOMPARE(home.treeDump(), QStringList{"client.2007"});
        // Another start comes back to the project made last; without the setting to the first one.
        QVERIFY(home.restart());
        QCOMPARE(modMain::DbFileName, home.file("client.2007.vlt"));
        QCOMPARE(home.treeDump(), QStringList{"client.2007"});
        remember("  ");
        QVERIFY(home.restart());
        QCOMPARE(home.treeDump().value(1), QString("  C"));
        QVERIFY(home.gridDump().value(1).startsWith("C|4|"));
        // The folder comes back at any start; it also takes the printed report.
        remember(home.file("client.2007.vlt"));
        home.close();
        QVERIFY(QDir(home.file("data/Veltrona")).removeRecursively());
        QVERIFY(home.start());
        QVERIFY(QFile::exists(defaultProject(home)));
    }

    void badProject_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("reason");
        QFile file(projectTemplate());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray good = file.readAll();
        QByteArray newer = good;
        newer[63] = 9; // the schema version's last byte
        QByteArray foreign = good;
        foreign[70] = 0; // in the application id
        QTest::newRow("missing") << QByteArray() << "there is no such file";
        QTest::newRow("junk") << QByteArray(5000, 'x') << "isn't a database";
        QTest::newRow("foreign") << foreign << "not one of Veltrona";
        QTest::newRow("newer") << newer << "newer";
        QTest::newRow("cut off") << good.first(good.size() / 2) << "damaged";
    }

    void badProject() {
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        test::MainWindow home;
        // A name that no text may take for a place to fill.
        const QString path = home.file("<b>%2 %3's.vlt");
        if (!content.isEmpty())
            home.writeFile("<b>%2 %3's.vlt", content);
        remember(path);

        home.dialogs.expectChoice(Quit);
        QVERIFY(!home.start());
        const test::ShownBox box = home.dialogs.boxes().value(0);
        QCOMPARE(box.title, QString("Veltrona"));
        QVERIFY(box.text.startsWith("The project \"" + path + "\" can't be opened.\r\rError "));
        QCOMPARE(box.text.count(path), 2);
        QVERIFY2(box.text.contains(reason), qPrintable(box.text));
        QCOMPARE(box.buttons,
                 QStringList({"&Open another...", "&Use the default project", "&Quit"}));
        QCOMPARE(remembered(), path);
        QVERIFY(!modMain::DbConn);

        home.close();
        home.dialogs.expectChoice(SecondWay);
        QVERIFY(home.start());
        QCOMPARE(modMain::DbFileName, defaultProject(home));
        QCOMPARE(home.treeDump(), QStringList{"Veltrona"});
        QCOMPARE(remembered(), QString());
        // The bad file is left as it was, and no file was made by opening.
        QFile file(path);
        QCOMPARE(file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray(), content);
        QVERIFY(home.dialogs.allUsed());
    }

    void lockedProject() {
        test::MainWindow home;
        makeProject(projectTemplate(), home.file("locked.vlt"));
        remember(home.file("locked.vlt"));
        sqlite::Connection other;
        other.open(home.file("locked.vlt"));
        other.execute("BEGIN EXCLUSIVE");
        // Free by the time the user tries the same file again.
        home.dialogs.whileOpen = [&] { other.execute("COMMIT"); };
        home.dialogs.expectChoice(OpenAnother);
        home.dialogs.expectFile(home.file("locked.vlt"));
        QVERIFY(home.start());
        QVERIFY(home.dialogs.boxes().value(0).text.contains("locked by another program"));
        QCOMPARE(home.treeDump(), QStringList{"locked"});
    }

    void readOnlyProject() {
        test::MainWindow home;
        const QString path = home.file("readonly.vlt");
        makeProject(projectTemplate(), path);
        // All but the project belongs to the user without root's rights.
        QVERIFY(QDir().mkpath(home.file("data")) && QDir().mkpath(home.file("config")));
        for (const QString &folder : {home.home(), home.file("data"), home.file("config")})
            QFile::setPermissions(folder, QFile::Permissions(0x7777));
        QFile::setPermissions(path, QFile::Permissions(0x4444));
        const AnotherUser user;
        if (!user.works())
            QSKIP("root's rights can't be laid down here");
        remember(path);
        home.dialogs.expectChoice(SecondWay);
        QVERIFY(home.start());
        QVERIFY(home.dialogs.boxes().value(0).text.contains("read-only"));
        QCOMPARE(home.treeDump(), QStringList{"Veltrona"});
        home.close();
    }

    void openAnother() {
        test::MainWindow home;
        remember(home.file("gone.vlt"));
        makeProject(projectTemplate(), home.file("good.vlt"));
        home.writeFile("bad.vlt", "junk");
        // A cancelled file dialog asks again, and so does another bad file, which is remembered.
        for (int i = 0; i < 3; ++i)
            home.dialogs.expectChoice(OpenAnother);
        home.dialogs.expectFile("");
        home.dialogs.expectFile(home.file("bad.vlt"));
        home.dialogs.expectFile("  " + home.file("good.vlt") + " ");
        QStringList settings;
        home.dialogs.whileOpen = [&] { settings << remembered(); };
        QVERIFY(home.start());
        QCOMPARE(settings,
                 QStringList({home.file("gone.vlt"), home.file("gone.vlt"), home.file("bad.vlt")}));
        QVERIFY(home.dialogs.boxes().value(2).text.contains(home.file("bad.vlt")));
        QCOMPARE(home.dialogs.fileDialogs().value(0).title, QString("Open database"));
        QCOMPARE(remembered(), home.file("good.vlt"));
        QCOMPARE(home.treeDump(), QStringList{"good"});
        QVERIFY(home.dialogs.allUsed());
    }

    void damagedDefault() {
        test::MainWindow home;
        QVERIFY(QDir().mkpath(home.file("data/Veltrona")));
        home.writeFile("data/Veltrona/Veltrona.vlt", "damaged");
        QVERIFY(QDir().mkpath(home.file("data/Veltrona/Veltrona.vlt-journal")));
        home.dialogs.expectChoice(SecondWay);
        QVERIFY(home.start());
        QCOMPARE(home.dialogs.boxes().value(0).buttons,
                 QStringList({"&Open another...", "&Set it aside and make a new one", "&Quit"}));
        QCOMPARE(home.treeDump(), QStringList{"Veltrona"});
        QCOMPARE(remembered(), QString("(none)"));
        const QString aside = home.file("data/Veltrona/Veltrona set aside 2007-05-16 120000");
        QFile file(aside + ".vlt");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("damaged"));
        QVERIFY(QFile::exists(aside + ".vlt-journal"));
        home.close();
        // Within the same second a name of its own.
        home.writeFile("data/Veltrona/Veltrona.vlt", "damaged again");
        home.dialogs.expectChoice(SecondWay);
        QVERIFY(home.start());
        QVERIFY(QFile::exists(aside + " 2.vlt"));
    }

    void endOfTheRun() {
        test::MainWindow home;
        const auto duringTheRun = [](void (*act)(frmMain &)) {
            QTimer::singleShot(0, qApp, [act] {
                for (QWidget *window : QApplication::topLevelWidgets()) {
                    if (auto *form = qobject_cast<frmMain *>(window))
                        act(*form);
                }
            });
        };
        duringTheRun([](frmMain &form) { form.findChild<QAction *>("mnuExit")->trigger(); });
        QCOMPARE(modMain::Main(), 0);
        QVERIFY(modMain::ExitFlag && !modMain::DbConn && !modMain::ReportDoc);
        QCOMPARE(remembered(), QString("(none)"));

        // What is no failure of engine, parser or files ends the run.
        duringTheRun([](frmMain &form) {
            form.mscMain.onChange = [] { throw std::runtime_error("out of paper"); };
            form.cboLeft.setListIndex(3);
        });
        home.dialogs.expectAnswer(Answer::Ok);
        QCOMPARE(modMain::Main(), 1);
        QVERIFY(home.dialogs.boxes().value(0).text.contains("out of paper"));
        QVERIFY(modMain::ExitFlag && !modMain::DbConn && !QApplication::overrideCursor());

        remember(home.file("gone.vlt"));
        home.dialogs.expectChoice(Quit);
        QCOMPARE(modMain::Main(), 0);
    }
};

int main(int argc, char **argv) {
    Application application(argc, argv);
    StartTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "startTest.moc"
