// The export and print commands through the real main window, on a private desktop whose HTML
// handler is a stub that records what it is given.
#include "core/shell/modMain.h"
#include "support/dataTable.h"
#include "support/faults.h"
#include "support/mainWindow.h"
#include "support/shownForm.h"
#include "support/testFolder.h"
#include "ui/report/frmOutput.h"
#include "ui/report/frmPrev.h"

#include "core/picture/cJPEG.h"
#include "ui/views/clipboard.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>

using namespace veltrona;
using namespace veltrona::test;

class ExportTest : public QObject {
    Q_OBJECT

    std::unique_ptr<MainWindow> m_main;

    QString path(const QString &name) const { return m_main->file(name); }
    void installHandler(const QString &program) const {
        installRecorder(path("stub"));
        QVERIFY(QDir(m_main->home()).mkpath("data/applications"));
        m_main->writeFile("data/applications/stub.desktop",
                          QStringLiteral("[Desktop Entry]\nType=Application\nMimeType=text/html;\n"
                                         "Exec=%1 %f\n")
                              .arg(program)
                              .toUtf8());
    }

    void during(const QString &command, const std::function<void(frmOutput &)> &script) {
        test::during<frmOutput>([&] { m_main->command(command); }, script);
    }
    static void type(frmOutput &dialog, const QString &name) {
        dialog.findChild<QLineEdit *>("txtFilename")->setText(name);
    }
    static QString boxText(frmOutput &dialog) {
        return dialog.findChild<QLineEdit *>("txtFilename")->text();
    }
    static void click(frmOutput &dialog, const char *name) {
        dialog.findChild<QPushButton *>(name)->click();
    }
    void exportTo(const QString &name, Answer answer) {
        during("mnuExport", [&](frmOutput &dialog) {
            type(dialog, name);
            m_main->dialogs.expectAnswer(answer);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        });
    }

private slots:
    void init() {
        qputenv("XDG_DATA_DIRS", "/nowhere");
        qputenv("XDG_CONFIG_DIRS", "/nowhere");
        m_main = std::make_unique<MainWindow>();
        QVERIFY(m_main->start());
    }
    void cleanup() {
        QVERIFY(m_main->dialogs.allUsed());
        m_main.reset();
    }

    void namesOfReports_data() {
        const test::DataTable<QString, QString> row;
        const QString odd = "it's \"50%25\" #1?a=b & c.html";
        row("any case", "  Report.HtM ", "Report.HtM");
        row("odd characters", odd, odd);
        row("255 bytes", QString(250, u'n'), QString(250, u'n') + ".html");
    }
    void namesOfReports() {
        const auto [typed, final] = test::row<QString, QString>();
        installHandler(path("stub"));
        const QString folder = m_main->home() + u'/';
        const qsizetype blanks = typed.startsWith(u' ') ? 2 : 0;
        exportTo(typed.first(blanks) + folder + typed.sliced(blanks), Answer::Yes);
        QCOMPARE(m_main->dialogs.boxes().last().style, 36);
        QCOMPARE(m_main->dialogs.boxes().last().text,
                 "Report created!\rDo you want to open the report in your browser?");
        QVERIFY(contents(folder + final).startsWith("<html>"));
        QVERIFY(QFileInfo(folder + "graph.jpg").isFile());
        QTRY_VERIFY(QFileInfo::exists(path("record")));
        QVERIFY(contents(path("record")).endsWith('\n' + (folder + final).toUtf8() + '\n'));
    }

    void withoutBrowser() {
        exportTo(path("a"), Answer::No);
        QCOMPARE(m_main->dialogs.boxes().size(), 1);
        m_main->dialogs.expectAnswer(Answer::Yes);
        exportTo(path("a"), Answer::Ok);
        QCOMPARE(m_main->dialogs.boxes().last().style, 48);
        QCOMPARE(m_main->dialogs.boxes().last().title, "Browser Not Found");
        QCOMPARE(m_main->dialogs.boxes().last().text, "Could not find associated Browser");
        // One that exists and can't be started.
        installHandler(path("stub"));
        QVERIFY(QFile::remove(path("stub")));
        m_main->writeFile("stub", "\1no program");
        QFile::setPermissions(path("stub"), QFile::ReadOwner | QFile::ExeOwner);
        m_main->dialogs.expectAnswer(Answer::Yes);
        exportTo(path("a"), Answer::Ok);
        QCOMPARE(m_main->dialogs.boxes().last().title, "URL Failed");
        QCOMPARE(m_main->dialogs.boxes().last().text, "Web Page not Opened");
    }

    void failuresKeepTheDialogOpen_data() {
        const test::DataTable<QString, QString> row;
        row("a folder", "data.html", "directory");
        row("full disk", "older", "File too large");
    }
    void failuresKeepTheDialogOpen() {
        const auto [name, reason] = test::row<QString, QString>();
        m_main->writeFile("older.html", "older");
        QVERIFY(QDir(m_main->home()).mkpath("data.html"));
        const QStringList before = QDir(m_main->home()).entryList(QDir::AllEntries | QDir::Hidden);
        during("mnuExport", [&, file = path(name), part = reason](frmOutput &dialog) {
            type(dialog, file);
            m_main->dialogs.expectAnswer(Answer::Ok);
            {
                const FileSizeLimit limit(part.endsWith("large") ? 500 : 100'000'000);
                click(dialog, "cmdRun");
            }
            QCOMPARE(m_main->dialogs.boxes().size(), 1);
            const QString text = m_main->dialogs.boxes().last().text;
            QVERIFY2(text.contains(part) && text.contains(boxText(dialog)), qPrintable(text));
            QVERIFY(dialog.isVisible() && boxText(dialog).endsWith(".html"));
            QVERIFY(!QApplication::overrideCursor());
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        QCOMPARE(contents(path("older.html")), QByteArray("older"));
        QCOMPARE(QDir(m_main->home()).entryList(QDir::AllEntries | QDir::Hidden), before);
    }

    void browsing() {
        during("Exp", [&](frmOutput &dialog) {
            m_main->dialogs.expectFile(" /tmp/a.txt ");
            click(dialog, "comBrowse");
            QCOMPARE(boxText(dialog), "/tmp/a.txt.html");
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        const FileDialogSetup &setup = m_main->dialogs.fileDialogs().first();
        QCOMPARE(setup.title, "Export the Report");
        QCOMPARE(setup.filter, "HTML file (*.html)|*.html");
        QCOMPARE(setup.initialFolder, modMain::getSpecialFolder(modMain::documentsFolder));
        QVERIFY(setup.confirmsOverwrite);
    }

    void theRoadToThePreview() {
        const QString report = path("data/Veltrona/Report.html");
        for (const bool graph : {true, false}) {
            bool previewed = false;
            during("Prn", [&](frmOutput &dialog) {
                type(dialog, path("ignored"));
                dialog.findChild<QCheckBox *>("chkOpts(0)")->setChecked(graph);
                const auto run = [&] { QTest::keyClick(&dialog, Qt::Key_Return); };
                test::during<frmPrev>(run, [&](frmPrev &preview) {
                    previewed = dialog.isVisible() && preview.isLoaded();
                    QCOMPARE(preview.FileName, report);
                    const QString text = preview.findChild<QTextBrowser *>()->toPlainText();
                    QVERIFY(text.contains("Transactions"));
                    QCOMPARE(text.contains(QChar::ObjectReplacementCharacter), graph);
                    QTest::keyClick(&preview, Qt::Key_Escape);
                });
            });
            QVERIFY(previewed);
            QCOMPARE(contents(report).contains("graph.jpg"), graph);
        }
        QVERIFY(!QFileInfo::exists(path("ignored.html")));
        QVERIFY(m_main->dialogs.boxes().isEmpty());
    }

    void eachCommandHasItsColourFlag() {
        m_main->importReport(QFINDTESTDATA("../../../samples/report.xml"));
        modMain::GridColor = true;
        m_main->window().cboRange.setListIndex(4); // All
        const auto marks = [](const QByteArray &html) { return html.count("class=\"Stil8\""); };
        for (const bool exported : {true, false}) {
            modMain::ExportColor = exported;
            modMain::PrintColor = !exported;
            exportTo(path("a"), Answer::No);
            during("mnuPRint", [&](frmOutput &dialog) {
                QTimer::singleShot(0, &frmPrev::instance(), &frmPrev::reject);
                click(dialog, "cmdRun");
            });
            // One campaign has made a loss: its row of 13 cells.
            QCOMPARE(marks(contents(path("a.html"))), exported ? 13 : 0);
            QCOMPARE(marks(contents(path("data/Veltrona/Report.html"))), exported ? 0 : 13);
        }
    }

    void theChartGoesByTheClipboard() {
        QGuiApplication::clipboard()->clear();
        exportTo(path("a"), Answer::No);
        const QImage copied = QGuiApplication::clipboard()->image();
        QCOMPARE(copied.size(), QImageReader(path("graph.jpg")).size());
        QCOMPARE(m_main->view<QLabel>("picChart")->pixmap().size(), copied.size());

        // cJPEG copies a picture there in the same way.
        const std::uint8_t pixels[] = {0, 0, 255, 0, 255, 0, 255, 0, 0, 9, 9, 9};
        const drawing::Picture bitmap(drawing::createBitmap(2, 2, pixels, 6));
        cJPEG picture;
        picture.CreateFromPicture(bitmap);
        services().clipboard = drawing::toSystemClipboard;
        QVERIFY(picture.CopyToClipboard());
        services().clipboard = {};
        const QImage image = QGuiApplication::clipboard()->image();
        QCOMPARE(image.size(), QSize(2, 2));
        QCOMPARE(image.pixelColor(0, 0), QColor(255, 0, 0));
        QCOMPARE(image.pixelColor(0, 1), QColor(0, 0, 255));
    }
};

QTEST_MAIN(ExportTest)
#include "exportTest.moc"
