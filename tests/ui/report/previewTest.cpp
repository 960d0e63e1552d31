// The print preview: what it shows and refuses to load, its keys, and long reports.
#include "support/dialogRecorder.h"
#include "support/shownForm.h"
#include "support/writtenReport.h"
#include "ui/report/frmPrev.h"
#include "ui/report/printing.h"

#include "core/base/failure.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTimer>

using namespace veltrona;
using namespace veltrona::test;

namespace {

class StubPrinting : public Printing {
public:
    StubPrinting() { setPrinting(this); }
    ~StubPrinting() override { setPrinting(nullptr); }

    bool isEnabled() override {
        if (asking)
            throw Failure(7, QStringLiteral("no spooler"));
        return enabled;
    }
    void print(ReportDocument &report, QWidget *owner) override {
        QVERIFY(report.isComplete() && owner == &frmPrev::instance());
        ++prints;
        if (printing)
            throw Failure(8, QStringLiteral("out of paper"));
    }

    bool enabled = true;
    bool asking = false;   // fails
    bool printing = false; // fails
    int prints = 0;
};

bool holdsColor(const QImage &image, QRgb color) {
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor found = image.pixelColor(x, y);
            if (qAbs(found.red() - qRed(color)) + qAbs(found.green() - qGreen(color)) +
                    qAbs(found.blue() - qBlue(color)) <
                40)
                return true;
        }
    }
    return false;
}

} // namespace

class PreviewTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    frmPrev *m_form = nullptr;

    QString path(const QString &name) const { return m_folder.filePath(name); }
    QTextBrowser *browser() const { return m_form->findChild<QTextBrowser *>("wbPP"); }
    QPushButton *button(const char *name) const { return m_form->findChild<QPushButton *>(name); }
    QImage screen() const { return browser()->viewport()->grab().toImage(); }

    void during(const std::function<void()> &script) {
        m_form->FileName = path(QStringLiteral("report.html"));
        test::during<frmPrev>([this] { m_form->Show(); }, [&](frmPrev &) { script(); });
    }
    void show(const WrittenReport &report, const std::function<void()> &script) {
        report.write(path(QStringLiteral("report.html")));
        during([&] {
            script();
            QTest::keyClick(m_form, Qt::Key_Escape);
        });
    }

private slots:
    void initTestCase() { m_form = &frmPrev::instance(); }

    void theColouredReportOnLightPaper() {
        const QPalette before = QApplication::palette();
        QPalette dark(Qt::white, Qt::black, Qt::gray, Qt::darkGray, Qt::gray, Qt::white, Qt::black);
        dark.setColor(QPalette::Link, Qt::yellow);
        QApplication::setPalette(dark);
        const QString odd = QString::fromUtf8("Größe 5 € – „ok“ 日本 😀 & <i>");
        show({.names = {odd, QStringLiteral("loss")},
              .redNames = {QStringLiteral("loss")},
              .options = {}},
             [&] {
                 const QString text = browser()->toPlainText();
                 QVERIFY(text.contains(QString::fromUtf8("Größe 5 € – „ok“ 日本 😀 & ")));
                 QVERIFY(!text.contains(QStringLiteral("Stil5")));
                 const auto colorOf = [&](const QString &word) {
                     const QTextCursor found = browser()->document()->find(word);
                     return found.isNull() ? QColor() : found.charFormat().foreground().color();
                 };
                 QCOMPARE(colorOf(QStringLiteral("loss")), QColor(0xFF, 0x33, 0x33));
                 QCOMPARE(colorOf(QStringLiteral("Summary")), QColor(Qt::black));
                 const QTextCursor link =
                     browser()->document()->find(QStringLiteral("Veltrona"), 60);
                 QCOMPARE(link.charFormat().foreground().color(), QColor(0, 0, 0xEE));
                 const QImage image = screen();
                 QCOMPARE(image.pixelColor(image.width() - 2, image.height() - 2),
                          QColor(Qt::white));
                 QVERIFY(holdsColor(image, qRgb(200, 0, 200))); // the graph
                 QVERIFY(!holdsColor(image, qRgb(255, 255, 0)));
             });
        QApplication::setPalette(before);
    }

    void nothingElseIsLoaded_data() {
        QTest::addColumn<QString>("name");
        for (const char *name :
             {"<img src=\"%1\">", "<img src=\"file://%1\">", "<img src=\"secret.png\">",
              "<img src=\"../secret.png\">", "<td background=\"%1\">x",
              "<span style=\"background-image:url(%1)\">x</span>",
              "<link rel=stylesheet href=\"file://%1.css\">",
              "<style>@import url(\"%1.css\");</style>", "<img src=\"http://127.0.0.1:9/x.png\">",
              "<script>document.write('<img src=\"%1\">')</script>", "<td colspan=100000000>"})
            QTest::newRow(name) << QString::fromUtf8(name);
    }
    void nothingElseIsLoaded() {
        QFETCH(QString, name);
        const QTemporaryDir outside;
        QImage secret(300, 300, QImage::Format_RGB32);
        secret.fill(qRgb(0, 200, 0));
        const QString file = outside.filePath(QStringLiteral("secret.png"));
        QVERIFY(secret.save(file) && secret.save(path(QStringLiteral("secret.png"))));
        QFile styles(file + QStringLiteral(".css"));
        QVERIFY(styles.open(QIODevice::WriteOnly));
        styles.write("td, p, body { background-color: #00C800; color: #00C800 }");
        styles.close();
        const QString before = QDir::currentPath();
        QDir::setCurrent(outside.path());
        const QString value = name.contains(u'%') ? name.arg(file) : name;
        // The second breaks out of its cell, where its attributes count.
        const QString free = name.contains(u"colspan") ? QString() : "</td>\r\n" + value;
        show({.names = {value, free, QStringLiteral("next row")}}, [&] {
            QVERIFY(browser()->toPlainText().contains(QStringLiteral("next row")));
            QVERIFY(!holdsColor(screen(), qRgb(0, 200, 0)));
        });
        QDir::setCurrent(before);
    }

    void noLinkIsFollowed() {
        const QUrl other = QUrl::fromLocalFile(path(QStringLiteral("other.html")));
        WrittenReport{.names = {QStringLiteral("other page")}}.write(other.toLocalFile());
        show({.names = {QStringLiteral("<a href=\"%1\">click</a>").arg(other.toString())}}, [&] {
            const QTextCursor link = browser()->document()->find(QStringLiteral("click"));
            QTest::mouseClick(browser()->viewport(), Qt::LeftButton, {},
                              browser()->cursorRect(link).center() - QPoint(4, 0));
            browser()->setTextCursor(link);
            QTest::keyClick(browser(), Qt::Key_Return);
            QVERIFY(!browser()->toPlainText().contains(QStringLiteral("other page")));
            QVERIFY(browser()->source().isEmpty());
        });
    }

    void keys() {
        StubPrinting stub;
        WrittenReport{.names = {}}.write(path(QStringLiteral("report.html")));
        during([&] {
            QCOMPARE(m_form->focusWidget(), button("cmdPrint"));
            QTest::keyClick(m_form->focusWidget(), Qt::Key_Return);
            QTest::keyClick(m_form, Qt::Key_P, Qt::AltModifier);
            QTRY_COMPARE(stub.prints, 2);
            QTest::keyClick(m_form->focusWidget(), Qt::Key_Tab);
            QCOMPARE(m_form->focusWidget(), button("cmdClose"));
            QTest::keyClick(m_form->focusWidget(), Qt::Key_Tab);
            QCOMPARE(m_form->focusWidget(), browser());
            QTest::keyClick(browser(), Qt::Key_Return);
            QCOMPARE(stub.prints, 2);
            QTest::keyClick(m_form, Qt::Key_C, Qt::AltModifier);
            QTRY_VERIFY(!m_form->isVisible());
        });
    }

    void printingThatIsDisabledOrFails() {
        StubPrinting stub;
        DialogRecorder recorder;
        const auto told = [&](Answer answer) {
            recorder.expectAnswer(answer);
            button("cmdPrint")->click();
            const ShownBox &box = recorder.boxes().last();
            return QStringLiteral("%1 %2: %3").arg(box.style).arg(box.title, box.text);
        };
        show({.names = {}}, [&] {
            stub.enabled = false;
            QCOMPARE(told(Answer::Cancel),
                     QStringLiteral("49 Veltrona: The Print command is currently disabled."));
            QCOMPARE(stub.prints, 0);
            stub.asking = true;
            QCOMPARE(told(Answer::Ok),
                     QStringLiteral("49 Veltrona: Print command Error: no spooler"));
            stub.asking = false;
            stub.enabled = stub.printing = true;
            QCOMPARE(told(Answer::Ok),
                     QStringLiteral("49 Veltrona: Print command Error: out of paper"));
            stub.printing = false;
            button("cmdPrint")->click(); // usable again
            QCOMPARE(stub.prints, 2);
        });
        QVERIFY(recorder.allUsed());
    }

    void aLongReportCanBeClosedAndOpenedAgain() {
        StubPrinting stub;
        DialogRecorder recorder;
        auto *progress = m_form->findChild<QLabel *>();
        WrittenReport{.names = numberedNames(2000)}.write(path(QStringLiteral("report.html")));
        for (int opening = 0; opening < 2; ++opening) {
            during([&] {
                QVERIFY(!m_form->isComplete());
                QVERIFY(browser()->toPlainText().contains(QStringLiteral("row 1")));
                QTRY_VERIFY(progress->text().endsWith(QStringLiteral("of 2,002 rows")));
                recorder.expectAnswer(Answer::Ok);
                button("cmdPrint")->click();
                QCOMPARE(recorder.boxes().last().text,
                         QStringLiteral("The Print command is currently disabled."));
                QVERIFY(!m_form->isComplete());
                QTest::keyClick(m_form, Qt::Key_Escape);
            });
            QTest::qWait(50); // nothing goes on behind a closed window
            QVERIFY(browser()->toPlainText().isEmpty());
        }
        during([&] {
            QTRY_VERIFY_WITH_TIMEOUT(m_form->isComplete(), 60'000);
            QTRY_COMPARE(progress->text(), QString());
            button("cmdPrint")->click();
            QCOMPARE(stub.prints, 1);
            QCOMPARE(browser()->document()->find(QStringLiteral("row 2000")).isNull(), false);
            QTest::keyClick(m_form, Qt::Key_Escape);
        });
        // The program ends while it loads.
        QTimer::singleShot(0, m_form, [&] {
            QVERIFY(!m_form->isComplete());
            QCoreApplication::exit(1);
        });
        m_form->Show();
        QVERIFY(!m_form->isComplete());
        delete m_form;
        m_form = &frmPrev::instance();
    }

    void partsLookLikeOneTable() {
        QStringList names = numberedNames(640);
        names[500] = QStringLiteral("onelongwordthatneedsitsplace");
        names[620] = QStringLiteral("a name of several words that has to be wrapped somewhere");
        WrittenReport{.names = names}.write(path(QStringLiteral("report.html")));
        ReportDocument parts;
        parts.load(path(QStringLiteral("report.html")));
        while (!parts.isComplete())
            parts.loadMore();
        QTextDocument whole;
        whole.setDefaultTextOption(parts.defaultTextOption());
        QFile file(path(QStringLiteral("report.html")));
        QVERIFY(file.open(QIODevice::ReadOnly));
        whole.setHtml(QString::fromLatin1(file.readAll()).remove("<!--").remove("-->"));
        whole.setTextWidth(ReportDocument::pageWidth);

        // Each text stands at the same place, whether it came in parts or not.
        const auto places = [](const QTextDocument &document) {
            QStringList lines;
            for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
                const QRectF rect = document.documentLayout()->blockBoundingRect(block);
                if (!block.text().trimmed().isEmpty() && block.text().front().isPrint())
                    lines << QStringLiteral("%1 at %2,%3")
                                 .arg(block.text())
                                 .arg(qRound(rect.left()))
                                 .arg(qRound(rect.top()));
            }
            return lines;
        };
        QCOMPARE(places(parts), places(whole));
    }
};

QTEST_MAIN(PreviewTest)
#include "previewTest.moc"
