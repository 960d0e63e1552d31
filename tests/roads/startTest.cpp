// The start of the program: fresh home, remembered project, bad projects and their ways out, and
// the end of the run.
#include "ui/shell/start.h"
#include "core/database/projectFile.h"
#include "core/platform/desktop/endSignals.h"
#include "core/platform/desktop/paths.h"
#include "core/shell/modMain.h"
#include "support/dataTable.h"
#include "support/faults.h"
#include "support/mainWindow.h"
#include "support/projects.h"
#include "support/testFolder.h"
#include "ui/import/frmWait.h"

#include <QDir>
#include <QProcess>
#include <QProgressBar>
#include <QTemporaryFile>
#include <QTest>
#include <QTimer>

#include <csignal>

using namespace veltrona;

namespace {

enum Choice { OpenAnother, SecondWay, ThirdWay };

QString defaultProject(const test::MainWindow &home) {
    return home.file("data/Veltrona/Veltrona.vlt");
}

} // namespace

class StartTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { services().lockWait = 100; }

    void firstAndSecond() {
        test::MainWindow home;
        QVERIFY(home.start());
        QCOMPARE(modMain::DbFileName, defaultProject(home));
        QVERIFY(QFile::exists(defaultProject(home)));
        QCOMPARE(home.remembered(), "(none)");
        QCOMPARE(home.treeDump(), QStringList{"Veltrona"});
        QCOMPARE(home.window().windowTitle(), "Veltrona");
        home.dialogs.expectFile(home.file("client.2007"));
        home.command("mnuNew");
        QCOMPARE(home.treeDump(), QStringList{"client.2007"});
        // Another start comes back to the project made last.
        QVERIFY(home.restart());
        QCOMPARE(modMain::DbFileName, home.file("client.2007.vlt"));
        QCOMPARE(home.treeDump(), QStringList{"client.2007"});
        // The folder comes back at any start; it also takes the printed report.
        home.close();
        QVERIFY(QDir(home.file("data/Veltrona")).removeRecursively());
        QVERIFY(home.start());
        QVERIFY(QFile::exists(defaultProject(home)));
    }

    void badProject_data() {
        const test::DataTable<QByteArray, QString> row;
        row("missing", "(none)", "there is no such file");
        row("junk", QByteArray(5000, 'x'), "isn't a database");
    }

    void badProject() {
        const auto [content, reason] = test::row<QByteArray, QString>();
        test::MainWindow home;
        // A name that no text may take for a place to fill.
        const QString path = home.file("<b>%2 %3's.vlt");
        if (content != "(none)")
            home.writeFile("<b>%2 %3's.vlt", content);
        home.remember(path);

        home.dialogs.expectChoice(ThirdWay);
        QVERIFY(!home.start());
        const test::ShownBox box = home.dialogs.boxes().value(0);
        QCOMPARE(box.title, "Veltrona");
        QVERIFY(box.text.startsWith("The project \"" + path + "\" can't be opened.\r\rError "));
        QCOMPARE(box.text.count(path), 2);
        QVERIFY2(box.text.contains(reason), qPrintable(box.text));
        QCOMPARE(box.buttons.join(u'/'), "&Open another.../&Use the default project/&Quit");
        QCOMPARE(home.remembered(), path);

        home.close();
        home.dialogs.expectChoice(SecondWay);
        QVERIFY(home.start());
        QCOMPARE(home.treeDump(), QStringList{"Veltrona"});
        QCOMPARE(home.remembered(), QString());
        // The bad file is left as it was, and no file was made by opening.
        QCOMPARE(test::contents(path), content);
        home.close();
    }

    void openAnother() {
        test::MainWindow home;
        home.remember(home.file("gone.vlt"));
        makeProject(test::projectTemplate(), home.file("good.vlt"));
        home.writeFile("bad.vlt", "junk");
        // A cancelled file dialog asks again, and so does another bad file.
        for (int i = 0; i < 3; ++i)
            home.dialogs.expectChoice(OpenAnother);
        home.dialogs.expectFile("");
        home.dialogs.expectFile(home.file("bad.vlt"));
        home.dialogs.expectFile("  " + home.file("good.vlt") + " ");
        QVERIFY(home.start());
        QVERIFY(home.dialogs.boxes().value(2).text.contains(home.file("bad.vlt")));
        QCOMPARE(home.dialogs.fileDialogs().value(0).title, "Open database");
        QCOMPARE(home.remembered(), home.file("good.vlt"));
        QCOMPARE(home.treeDump(), QStringList{"good"});
    }

    void damagedDefault() {
        test::MainWindow home;
        QVERIFY(QDir().mkpath(home.file("data/Veltrona")));
        home.writeFile("data/Veltrona/Veltrona.vlt", "damaged");
        QVERIFY(QDir().mkpath(home.file("data/Veltrona/Veltrona.vlt-journal")));
        home.dialogs.expectChoice(SecondWay);
        QVERIFY(home.start());
        QCOMPARE(home.dialogs.boxes().value(0).buttons.join(u'/'),
                 "&Open another.../&Set it aside and make a new one/&Quit");
        QCOMPARE(home.treeDump(), QStringList{"Veltrona"});
        QCOMPARE(home.remembered(), "(none)");
        const QString aside = home.file("data/Veltrona/Veltrona set aside 2007-05-16 120000.vlt");
        QCOMPARE(test::contents(aside), QByteArray("damaged"));
        QVERIFY(QFile::exists(aside + "-journal"));
    }

    void argument() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("DISPLAY");
        environment.remove("WAYLAND_DISPLAY");
        for (const char *without : {"", "QT_QPA_PLATFORM"}) { // then there is no display
            environment.remove(without);
            QProcess program;
            program.setProcessEnvironment(environment);
            program.start(desktop::programFolder() + "/veltrona",
                          {"-style", "fusion", "a\nreport.xml"});
            QVERIFY(program.waitForFinished());
            QCOMPARE(program.exitCode(), 2);
            const QByteArray told = program.readAllStandardError();
            QVERIFY2(told.endsWith("veltrona: takes no argument \"a\\nreport.xml\"\n"), told);
        }
    }

    /// It leads to a drive that isn't there: no project is made there.
    void defaultThatLeadsNowhere() {
        test::MainWindow home;
        QVERIFY(QDir().mkpath(home.file("data/Veltrona")));
        QVERIFY(QFile::link(home.file("drive"), defaultProject(home)));
        home.dialogs.expectChoice(SecondWay);
        QVERIFY(home.start());
        QVERIFY(home.dialogs.boxes().value(0).text.contains("no such file"));
        QVERIFY(!QFile::exists(home.file("drive")));
        QVERIFY(!QFileInfo(defaultProject(home)).isSymLink());
    }

    void lockedProject_data() {
        const test::DataTable<bool, int, QString, QString> row;
        row("the default one", true, SecondWay, "Veltrona", "Try again/&Quit");
        const QString ways = "Try again/&Use the default project/&Quit";
        row("another one", false, SecondWay, "good", ways);
        row("not forgotten for the default one", false, ThirdWay, "Veltrona", ways);
    }

    void lockedProject() {
        const auto [isDefault, choice, opened, ways] = test::row<bool, int, QString, QString>();
        test::MainWindow home;
        QVERIFY(home.start());
        home.close();
        const QString path = isDefault ? defaultProject(home) : home.file("good.vlt");
        if (!isDefault) {
            makeProject(test::projectTemplate(), path);
            home.remember(path);
        }
        sqlite::Connection other;
        other.open(path);
        other.execute("BEGIN EXCLUSIVE");
        home.dialogs.expectChoice(choice);
        home.dialogs.whileOpen = [&] { other.execute("COMMIT"); };
        QVERIFY(home.start());
        const test::ShownBox box = home.dialogs.boxes().value(0);
        QVERIFY2(box.text.contains("locked by another program"), qPrintable(box.text));
        QCOMPARE(box.buttons.join(u'/'), "&Open another.../&" + ways);
        QCOMPARE(home.treeDump(), QStringList{opened});
        QCOMPARE(home.remembered(), isDefault ? "(none)" : path);
        QVERIFY(!other.hasMoved());
    }

    void defaultInAFolderThatCantBeWritten() {
        test::MainWindow home;
        QVERIFY(QDir().mkpath(home.file("data/Veltrona")));
        home.writeFile("data/Veltrona/Veltrona.vlt", "damaged");
        QVERIFY(QFile::setPermissions(home.home(), QFile::Permissions(0x5555)));
        const QString folder = home.file("data/Veltrona");
        QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x5555)));
        const auto writable = qScopeGuard([&] {
            QFile::setPermissions(folder, QFile::Permissions(0x7777));
            QFile::setPermissions(home.home(), QFile::Permissions(0x7777));
        });
        const AnotherUser user;
        QVERIFY(user.works());
        home.dialogs.expectChoice(ThirdWay);
        QVERIFY(!home.start());
        QCOMPARE(home.dialogs.boxes().value(0).buttons.join(u'/'),
                 "&Open another.../&Try again/&Quit");
    }

    void endOfTheRun() {
        test::MainWindow home;
        // What is no failure of SQLite, the parser or files ends the run.
        QTimer::singleShot(0, qApp, [] {
            for (QWidget *window : QApplication::topLevelWidgets()) {
                if (auto *form = qobject_cast<frmMain *>(window)) {
                    form->mscMain.onChange = [] { throw std::runtime_error("out of paper"); };
                    form->cboLeft.setListIndex(3);
                }
            }
        });
        home.dialogs.expectAnswer(Answer::Ok);
        QCOMPARE(modMain::Main(), 1);
        QVERIFY(home.dialogs.boxes().value(0).text.contains("out of paper"));
        QVERIFY(modMain::ExitFlag && !modMain::DbConn && !QApplication::overrideCursor());
    }

    void signalEndsTheQuestionsAtTheStart() {
        test::MainWindow home;
        home.remember(home.file("gone.vlt"));
        home.dialogs.expectChoice(OpenAnother);
        home.dialogs.expectFile("");
        home.dialogs.whileOpen = [] { std::raise(SIGTERM); };
        QCOMPARE(modMain::Main(), 0);
    }

    /// Another thread may still be in the handler when the program ends.
    void aLateSignalWritesToNoOtherFile() {
        struct sigaction caught {};
        {
            const desktop::EndSignals ends([] {});
            sigaction(SIGTERM, nullptr, &caught);
        }
        // They take the numbers of handles that were closed.
        QTemporaryFile files[2];
        for (QTemporaryFile &file : files)
            QVERIFY(file.open());
        caught.sa_handler(SIGTERM);
        services().endRequested = false;
        for (const QTemporaryFile &file : files)
            QCOMPARE(file.size(), 0);
    }

    void signalEndsTheRunInOrder_data() {
        const test::DataTable<int, bool> row;
        row("idle", SIGTERM, false);
        row("SIGTERM in an import", SIGTERM, true);
    }

    void signalEndsTheRunInOrder() {
        const auto [number, inAnImport] = test::row<int, bool>();
        test::MainWindow home;
        QStringList rows;
        for (int i = 0; i < 3000; ++i)
            rows << QString("c|g|k%1|Exact|Search Only|2007-05-07|1").arg(i);
        const QString report = home.writeFile("rows.xml", test::smallReport(rows));
        QTimer step;
        connect(&step, &QTimer::timeout, qApp, [signal = number, waits = inAnImport] {
            const auto *bar = frmWait::instance().findChild<QProgressBar *>("pbWait");
            if (!waits || bar->value() > 1500)
                std::raise(signal);
        });
        if (inAnImport) {
            home.dialogs.expectFile(report);
            QTimer::singleShot(0, qApp, [] {
                for (QWidget *window : QApplication::topLevelWidgets()) {
                    if (window->objectName() == QLatin1String("frmMain"))
                        window->findChild<QAction *>("mnuImport")->trigger();
                }
            });
        }
        step.start(0);
        QCOMPARE(modMain::Main(), 0);
        QVERIFY(home.dialogs.boxes().isEmpty());
        QCOMPARE(QDir(home.file("data/Veltrona")).entryList(QDir::Files),
                 QStringList("Veltrona.vlt"));
        // All rows before the one at hand.
        QCOMPARE(test::recordCount(*openProject(defaultProject(home))), inAnImport ? 1500 : 0);
    }
};

int main(int argc, char **argv) {
    Application application(argc, argv);
    StartTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "startTest.moc"
