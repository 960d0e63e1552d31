// The print preview: what it shows and refuses to load, its keys, and long reports.
#include "support/dialogRecorder.h"
#include "support/pixels.h"
#include "support/shownForm.h"
#include "support/testFolder.h"
#include "support/writtenReport.h"
#include "ui/report/frmPrev.h"
#include "ui/report/printing.h"
#include "ui/report/reportSheet.h"

#include "core/base/failure.h"
#include "core/report/reportText.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QTextBrowser>
#include <QWheelEvent>

using namespace veltrona;
using namespace veltrona::test;

namespace {

class StubPrinting : public Printing {
public:
    StubPrinting() { services().printing = this; }
    ~StubPrinting() override { services().printing = nullptr; }

    bool isEnabled() override {
        if (asking)
            throw Failure(7, "no spooler");
        return enabled;
    }
    Paper paper() override { return a4Paper(); }
    void print(const ReportDocument &, QWidget *owner) override {
        QCOMPARE(owner, &frmPrev::instance());
        ++prints;
        if (printing)
            throw Failure(8, "out of paper");
    }

    bool enabled = true;
    bool asking = false;   // fails
    bool printing = false; // fails
    int prints = 0;
};

bool holdsColor(const QImage &image, const QColor &color) {
    const auto isLike = [&](const QColor &other) {
        return qAbs(other.red() - color.red()) + qAbs(other.green() - color.green()) +
                   qAbs(other.blue() - color.blue()) <
               40;
    };
    return !areaOf(image, isLike).isNull();
}

} // namespace

class PreviewTest : public QObject, TestFolder {
    Q_OBJECT

    frmPrev *m_form = nullptr;

    QTextBrowser *browser() const { return m_form->findChild<QTextBrowser *>("wbPP"); }
    QPushButton *button(const char *name) const { return m_form->findChild<QPushButton *>(name); }
    QString cellAtCaret() const {
        const QTextCursor caret = browser()->textCursor();
        const auto cell =
            caret.block().text().first(caret.positionInBlock()).count(QChar::LineSeparator);
        return caret.block().text().section(QChar::LineSeparator, cell, cell);
    }
    QImage screen() const { return browser()->viewport()->grab().toImage(); }

    void during(const std::function<void()> &script) {
        m_form->FileName = path("report.html");
        test::during<frmPrev>([this] { m_form->Show(); }, [&](frmPrev &) { script(); });
    }
    void show(const WrittenReport &report, const std::function<void()> &script) {
        m_form->report = report.write(path("report.html"));
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
        show({.names = {odd, "loss"}, .redNames = {"loss"}, .options = {}}, [&] {
            const QString text = browser()->toPlainText();
            QVERIFY(text.contains(QString::fromUtf8("Größe 5 € – „ok“ 日本 😀 & ")));
            QVERIFY(!text.contains("Stil5"));
            const auto colorOf = [&](const QString &word) {
                const QTextCursor found = browser()->document()->find(word);
                return found.isNull() ? QColor() : found.charFormat().foreground().color();
            };
            QCOMPARE(colorOf("loss"), QColor(0xFF, 0x33, 0x33));
            QCOMPARE(colorOf("Summary"), QColor(Qt::black));
            const QTextCursor link = browser()->document()->find("Veltrona", 60);
            QCOMPARE(link.charFormat().foreground().color(), QColor(0, 0, 0xEE));
            QCOMPARE(browser()->verticalScrollBar()->value(), 0);
            for (int i = 0; i < 4; ++i)
                QTest::keyClick(m_form, Qt::Key_Minus, Qt::ControlModifier);
            const QImage image = screen();
            const QRect paper = areaOf(image, [](QColor color) { return color == Qt::white; });
            QVERIFY(paper.top() == 16 && paper.width() < image.width() - 2);
            QVERIFY(qAbs(image.rect().center().x() - paper.center().x()) < 2);
            QVERIFY(holdsColor(image, QColor(200, 0, 200))); // the graph
            QVERIFY(!holdsColor(image, QColor(255, 255, 0)));
        });
        QApplication::setPalette(before);
    }

    void aFileThatWasChangedIsRefused() {
        const QString file = path("report.html");
        m_form->report = WrittenReport{.names = {"first"}}.write(file);
        WrittenReport{.names = {"other"}}.write(file);
        during([&] {
            QVERIFY(browser()->toPlainText().contains("has been changed by another program"));
            QVERIFY(!m_form->isLoaded());
            QTest::keyClick(m_form, Qt::Key_Escape);
        });
    }

    void noLinkIsFollowed() {
        show({.names = {}, .options = {}}, [&] {
            const QTextCursor link = browser()->document()->find("Veltrona", 60);
            QTest::mouseClick(browser()->viewport(), Qt::LeftButton, {},
                              browser()->cursorRect(link).center() - QPoint(4, 0));
            browser()->setTextCursor(link);
            QTest::keyClick(browser(), Qt::Key_Return);
            QVERIFY(browser()->toPlainText().contains("Veltrona Report"));
            QVERIFY(browser()->source().isEmpty());
        });
    }

    void keys() {
        StubPrinting stub;
        m_form->report = WrittenReport{.names = {}}.write(path("report.html"));
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
        const auto shownBox = [&](Answer answer) {
            recorder.expectAnswer(answer);
            button("cmdPrint")->click();
            const ShownBox &box = recorder.boxes().last();
            return QStringLiteral("%1 %2: %3").arg(box.style).arg(box.title, box.text);
        };
        show({.names = {}}, [&] {
            stub.enabled = false;
            QCOMPARE(shownBox(Answer::Cancel),
                     "49 Veltrona: The Print command is currently disabled.");
            QCOMPARE(stub.prints, 0);
            stub.asking = true;
            QCOMPARE(shownBox(Answer::Ok), "49 Veltrona: Print command Error: no spooler");
            stub.asking = false;
            stub.enabled = stub.printing = true;
            QCOMPARE(shownBox(Answer::Ok), "49 Veltrona: Print command Error: out of paper");
            stub.printing = false;
            button("cmdPrint")->click(); // usable again
            QCOMPARE(stub.prints, 2);
        });
        QVERIFY(recorder.allUsed());
    }

    void aLongReportIsThereAtOnce() {
        StubPrinting stub;
        for (int opening = 0; opening < 2; ++opening) {
            show({.names = numberedNames(2000), .options = {}}, [&] {
                button("cmdPrint")->click();
                QTest::keyClick(browser(), Qt::Key_End, Qt::ControlModifier);
                QScrollBar *bar = browser()->verticalScrollBar();
                QVERIFY(bar->value() > 30'000 &&
                        browser()->viewport()->rect().contains(browser()->cursorRect()));
                QVERIFY(holdsColor(screen(), QColor(200, 0, 200)));
                browser()->setTextCursor(browser()->document()->find("row 2000"));
                QVERIFY(browser()->viewport()->rect().contains(browser()->cursorRect()));
                const auto textAfter = [&](Qt::Key key) {
                    QTest::keyClick(browser(), key);
                    return cellAtCaret();
                };
                QCOMPARE(textAfter(Qt::Key_Up), "row 1999");
                QCOMPARE(textAfter(Qt::Key_Down), "row 2000");
                QCOMPARE(textAfter(Qt::Key_Home), "row 2000");
                QCOMPARE(textAfter(Qt::Key_Left), "77.14"); // 1999 * 12 % 977 / 7
                QCOMPARE(textAfter(Qt::Key_Up), "75.43");   // 1998 * 12 % 977 / 7
                const QTextCursor other = browser()->document()->find("row 1998");
                QTest::mouseClick(browser()->viewport(), Qt::LeftButton, {},
                                  browser()->cursorRect(other).center());
                QCOMPARE(textAfter(Qt::Key_Home), "row 1998");
            });
            QVERIFY(browser()->toPlainText().isEmpty());
        }
        QCOMPARE(stub.prints, 2);
    }

    void zoom() {
        show({.names = numberedNames(60), .options = {}}, [&] {
            const QTextDocument &page = *browser()->document();
            const QSizeF size = page.size();
            const auto isLargerBy = [&](double factor) {
                return qAbs(page.size().width() / size.width() - factor) < 0.02 &&
                       qAbs(page.size().height() / size.height() - factor) < 0.05;
            };
            // At this zoom texts of one size are as high as those of another size were before.
            for (int i = 0; i < 2; ++i) {
                QTest::keyClick(m_form, Qt::Key_Plus, Qt::ControlModifier);
                QTest::keyClick(browser(), Qt::Key_Equal, Qt::ControlModifier);
            }
            QVERIFY(isLargerBy(1.46));
            browser()->setTextCursor(page.find("row 60"));
            QVERIFY(browser()->viewport()->rect().contains(browser()->cursorRect()));
            const QScrollBar &bar = *browser()->verticalScrollBar();
            const auto place = [&] { return double(bar.value()) / bar.maximum(); };
            browser()->verticalScrollBar()->setValue(bar.maximum() / 2);
            QWheelEvent back({9, 9}, {9, 9}, {}, {0, -360}, {}, Qt::ControlModifier,
                             Qt::NoScrollPhase, false);
            QApplication::sendEvent(browser()->viewport(), &back);
            QVERIFY(isLargerBy(1.1));
            QVERIFY2(qAbs(place() - 0.5) < 0.01, qPrintable(QString::number(place())));
            QTest::keyClick(m_form, Qt::Key_0, Qt::ControlModifier);
            QCOMPARE(page.size(), size);
        });
    }

    /// What is looked at is measured then, and stays where it is.
    void rowsOfManyLines() {
        QStringList names = numberedNames(1000);
        for (QString &name : names)
            name += QString(" \u65e5\u672c and iiiiiiii WWWWWWWW").repeated(5);
        show({.names = names, .options = {}}, [&] {
            const QScrollBar &bar = *browser()->verticalScrollBar();
            const auto isShown = [&] {
                return browser()->viewport()->rect().contains(browser()->cursorRect());
            };
            QTest::keyClick(browser(), Qt::Key_End, Qt::ControlModifier);
            QVERIFY(isShown() && bar.value() > bar.maximum() / 2);
            QTest::keyClick(browser(), Qt::Key_PageUp);
            browser()->setTextCursor(browser()->document()->find("row 500 "));
            QVERIFY(isShown());
            for (int row = 501; row < 540; ++row) {
                while (!cellAtCaret().startsWith(QString("row %1 ").arg(row)))
                    QTest::keyClick(browser(), Qt::Key_Down);
                QVERIFY(isShown());
            }
            QTest::keyClick(browser(), Qt::Key_PageDown);
            QVERIFY(isShown());
        });
    }

    void rowsAreCopiedAsATable() {
        show({.names = {"first", "<i>second"}, .options = {}}, [&] {
            browser()->setTextCursor(browser()->document()->find("first"));
            QTest::keyClick(browser(), Qt::Key_Down, Qt::ShiftModifier);
            QTest::keyClick(browser(), Qt::Key_C, Qt::ControlModifier);
            const QMimeData &copied = *QApplication::clipboard()->mimeData();
            QVERIFY(copied.html().contains("<table") && copied.html().contains("&lt;i&gt;second"));
            QCOMPARE(copied.text().trimmed(), "first\n<i>second");
        });
    }

    /// The rows look as if rich text had laid out all of them, which it does here.
    void rowsLookLikeATable() {
        QStringList names = numberedNames(40);
        names[0] = "the first name doesn't tell how high a row of one line is either";
        names[3].clear();
        names[10] = "onelongwordthatneedsitsplace";
        names[20] = "a name of several words that has to be wrapped somewhere";
        names[21] = "\u05d0\u05d1 right to left";
        names[22] = "J\u00e4ger 'Sch\u00f6n' \u65e5";
        const Report report =
            WrittenReport{.names = names, .redNames = {names[3]}, .options = {}}.write(
                path("report.html"));
        const QImage graph(path("graph.jpg"));
        ReportSheet sheet(report, graph, {});
        sheet.measureAll();
        QTextDocument whole;
        whole.setDefaultTextOption(sheet.frame().defaultTextOption());
        whole.addResource(QTextDocument::ImageResource, QUrl("graph.jpg"), graph);
        const auto appendEscaped = [](std::string &out, QStringView value) {
            out += value.toString().toHtmlEscaped().toStdString();
        };
        whole.setHtml(QString::fromStdString(
            reportText(report, report.rows, {appendEscaped, "a {color: #0000EE} ", ""})));
        whole.setTextWidth(ReportSheet::pageWidth);

        const auto picture = [&](const auto &draw) {
            QImage image(whole.size().toSize(), QImage::Format_RGB32);
            image.fill(Qt::white);
            QPainter painter(&image);
            draw(painter, QRectF(image.rect()));
            return image;
        };
        const QImage found =
            picture([&](QPainter &painter, const QRectF &clip) { sheet.draw(painter, clip); });
        const QImage expected = picture([&](QPainter &painter, const QRectF &clip) {
            QAbstractTextDocumentLayout::PaintContext context;
            context.palette.setColor(QPalette::Text, Qt::black);
            context.clip = clip;
            whole.documentLayout()->draw(&painter, context);
        });
        QCOMPARE(found, expected);
    }
};

QTEST_MAIN(PreviewTest)
#include "previewTest.moc"
