// Reports printed to PDF files, as the tools of poppler read them.
#include "ui/report/printing.h"
#include "core/platform/services.h"
#include "support/faults.h"
#include "support/pixels.h"
#include "support/testFolder.h"
#include "support/writtenReport.h"
#include "ui/report/pagination.h"
#include "ui/report/reportDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QImage>
#include <QPrinter>
#include <QProcess>
#include <QProgressDialog>
#include <QPushButton>
#include <QScopeGuard>
#include <QTest>
#include <QTextBlock>
#include <QTimer>

#include <cmath>
#include <memory>

using namespace veltrona;
using namespace veltrona::test;

class PrintingTest : public QObject, TestFolder {
    Q_OBJECT

    std::unique_ptr<QPrinter> m_printer;
    Report m_report;

    std::unique_ptr<ReportDocument> load(const WrittenReport &report,
                                         const Paper &paper = a4Paper()) {
        const QString file = path("report.html");
        m_report = report.write(file);
        return std::make_unique<ReportDocument>(file, m_report, paper);
    }

    QByteArray run(const QString &program, const QStringList &arguments) const {
        QProcess process;
        process.start(program, arguments);
        if (!process.waitForFinished() || process.exitCode() != 0)
            QTest::qFail(qPrintable(program + u' ' + process.errorString() +
                                    QString::fromUtf8(process.readAllStandardError())),
                         __FILE__, __LINE__);
        return process.readAllStandardOutput();
    }
    /// The texts of a file's pages.
    QStringList pages() const {
        const QString text = QString::fromUtf8(run("pdftotext", {"-layout", path("out.pdf"), "-"}));
        return text.chopped(1).split(u'\f');
    }
    QStringList print(ReportDocument &document) const {
        printReport(document, *m_printer);
        return pages();
    }
    /// A page of the file, 72 pixels to the inch.
    QImage picture(int page) const {
        run("pdftoppm", {"-r", "72", "-f", QString::number(page), "-l", QString::number(page),
                         "-png", "-singlefile", path("out.pdf"), path("page")});
        return QImage(path("page.png"));
    }
    static bool isGraph(QColor color) {
        return color.blue() > 150 && color.red() > 150 && color.green() < 100;
    }
    static bool isRowRed(QColor color) {
        return color.red() > 220 && color.green() < 150 && color.blue() < 150;
    }

    void renewPrinter() {
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        m_printer->setOutputFormat(QPrinter::PdfFormat);
        m_printer->setPageSize(QPageSize(QPageSize::A4));
        m_printer->setOutputFileName(path("out.pdf"));
    }

private slots:
    void init() {
        renewFolder();
        renewPrinter();
    }

    void aSmallReport() {
        const auto document = load({.names = {QString::fromUtf8("Größe 5 € – „ok“"), "plain"},
                                    .redNames = {"plain"},
                                    .options = {}});
        const QStringList text = print(*document);
        QCOMPARE(text.size(), 1);
        for (const char *piece : {"Veltrona Report", "Created on", "Größe 5 € – „ok“", "Summary",
                                  "Transactions", "Graph: Clicks", "Created with Veltrona"})
            QVERIFY2(text[0].contains(QString::fromUtf8(piece)), piece);
        const QString inOrder = run("pdftotext", {"-raw", path("out.pdf"), "-"});
        QVERIFY(inOrder.indexOf("plain") < inOrder.indexOf("Summary") &&
                inOrder.indexOf("Summary") < inOrder.indexOf("Graph: Clicks"));
        const QImage page = picture(1);
        const QRect reds = areaOf(page, isRowRed);
        QVERIFY(reds.width() > page.width() / 2 && reds.height() < 14);
        // 600 of the page's 824 pixels, on paper of 595 points with its margins.
        const QRect graph = areaOf(page, isGraph);
        QVERIFY2(qAbs(graph.width() - 3 * graph.height()) < 8 && graph.width() > 390,
                 qPrintable(QString::number(graph.width())));
        // On low paper it is smaller, and whole.
        m_printer->setPageSize(QPageSize(QSizeF(595, 200), QPageSize::Point));
        QRect small;
        for (qsizetype number = print(*document).size(); number > 0; --number)
            small |= areaOf(picture(static_cast<int>(number)), isGraph);
        QVERIFY(qAbs(small.width() - 3 * small.height()) < 8 && small.height() > 70);
        // The margins of a label leave nothing, but printing ends.
        m_printer->setPageSize(QPageSize(QSizeF(90, 22), QPageSize::Millimeter));
        QVERIFY(print(*document).size() > 1);
    }

    void manyPages() {
        QStringList names = numberedNames(730);
        for (qsizetype i = 0; i < names.size(); i += 3)
            names[i] += " with many words that need a line below and a third";
        const auto document = load({.names = names, .options = {}});
        const QStringList text = print(*document);
        QVERIFY(text.size() > 3);
        auto &preview = *qobject_cast<ReportLayout *>(document->documentLayout());
        preview.measure(0, preview.documentSize().height());
        const int firstBlock = document->find("row 1").blockNumber();
        const double pages = static_cast<double>(text.size());
        const auto pageInPreview = [&](int number) {
            const QTextBlock block = document->findBlockByNumber(firstBlock + number - 1);
            return int(preview.blockBoundingRect(block).top() * pages /
                       preview.documentSize().height());
        };
        int row = 0;
        static const QRegularExpression rowName("\\brow (\\d+)\\b");
        static const QRegularExpression anyRow(rowName.pattern() + "|Summary");
        for (qsizetype page = 0; page < text.size(); ++page) {
            const QStringList lines = text[page].split(u'\n', Qt::SkipEmptyParts);
            QCOMPARE(text[page].count("Transactions"),
                     page == 0 || text[page].contains(anyRow) ? 1 : 0);
            if (page > 0 && text[page].contains(anyRow))
                QVERIFY(lines[0].contains("Clicks"));
            for (auto found = rowName.globalMatch(text[page]); found.hasNext();) {
                QCOMPARE(found.next().captured(1).toInt(), ++row);
                QCOMPARE(pageInPreview(row), page);
            }
        }
        QCOMPARE(row, names.size());
        QCOMPARE(text.join(QString()).count("Summary"), 1);
    }

    void noLineRowOrPictureIsCut() {
        const double height = 333, margin = 50, gap = 16;
        const double pitch = height + 2 * margin + gap; // of low pages in the preview
        const Paper paper{{924, height + 2 * margin}, {margin, margin, 824, height}};
        QStringList names = numberedNames(150);
        names[40] = "a name of so many words that its row is quite high, and more";
        const auto document = load({.names = names, .options = {}}, paper);
        auto &layout = *qobject_cast<ReportLayout *>(document->documentLayout());
        layout.measure(0, layout.documentSize().height());
        const ReportSheet &sheet = layout.sheet();
        const std::vector<ReportPage> pages = paginate(sheet, height);
        double end = 0;
        for (const ReportPage &page : pages) {
            QCOMPARE(page.top, end);
            end = page.bottom;
            const double headings =
                page.repeatsHeadings ? sheet.rowsTop() - sheet.statisticsTop() : 0;
            QVERIFY(page.bottom > page.top && page.bottom - page.top + headings <= height);
            QVERIFY(qAbs(end - sheet.rowsTop()) > 2); // headings without a row
        }
        int pictures = 0;
        for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
            const QRectF rect = layout.blockBoundingRect(block);
            const double top = std::fmod(rect.top() - gap, pitch) - margin; // in its page
            const ReportPage &page = pages[static_cast<std::size_t>((rect.top() - gap) / pitch)];
            const bool isBelowHeadings = page.repeatsHeadings && block.text().startsWith("row");
            QVERIFY2(top > (isBelowHeadings ? 10 : -1) && top + rect.height() < height + 1,
                     qPrintable(block.text()));
            pictures += block.text().contains(QChar::ObjectReplacementCharacter);
        }
        QCOMPARE(pictures, 1);
        QCOMPARE(layout.documentSize().height(), gap + static_cast<double>(pages.size()) * pitch);
    }

    void rangeOrderAndCopies() {
        const auto document = load({.names = numberedNames(320)});
        const QStringList all = print(*document);
        QVERIFY(all.size() >= 4);
        m_printer->setPrintRange(QPrinter::PageRange);
        m_printer->setPageRanges(QPageRanges::fromString("2,4-99"));
        QCOMPARE(print(*document), QStringList({all[1]}) + all.sliced(3));
        m_printer->setFromTo(2, 3);
        m_printer->setPageOrder(QPrinter::LastPageFirst);
        QCOMPARE(print(*document), QStringList({all[2], all[1]}));
        m_printer->setPageOrder(QPrinter::FirstPageFirst);
        m_printer->setCopyCount(2);
        m_printer->setCollateCopies(true);
        QCOMPARE(print(*document), QStringList({all[1], all[2], all[1], all[2]}));
        m_printer->setCollateCopies(false);
        QCOMPARE(print(*document), QStringList({all[1], all[1], all[2], all[2]}));
        m_printer->setFromTo(90, 99);
        QVERIFY(failureOf([&] { printReport(*document, *m_printer); }));
    }

    void cancelKeepsTheOlderFile() {
        const auto document = load({.names = numberedNames(600)});
        const QString older = write(path("out.pdf"), "older");
        const auto clock = services().steadyTime;
        const auto restored = qScopeGuard([&] { services().steadyTime = clock; });
        std::chrono::milliseconds now{};
        services().steadyTime = [&] { return now += std::chrono::milliseconds(200); };
        for (const int key : {Qt::Key_Escape, Qt::Key_Return}) {
            QString text;
            QTimer pressing;
            connect(&pressing, &QTimer::timeout, this, [&] {
                auto *box = qobject_cast<QProgressDialog *>(QApplication::activeModalWidget());
                auto *button = box ? box->findChild<QPushButton *>() : nullptr;
                if (!button || !box->labelText().startsWith("Page 5"))
                    return;
                text = box->labelText();
                QTest::keyClick(button, Qt::Key(key));
            });
            pressing.start(0);
            QVERIFY(!failureOf([&] { printReport(*document, *m_printer); }));
            QVERIFY2(text.startsWith("Page 5 of "), qPrintable(text));
            QCOMPARE(contents(older), "older");
            QCOMPARE(files(), QStringList({"out.pdf", "report.html"}));
        }
    }

    void failuresAreReportedAndOlderFilesKept() {
        const auto document = load({.names = numberedNames(100)});
        const auto failure = [&] { return failureOf([&] { printReport(*document, *m_printer); }); };
        m_printer->setOutputFileName(path("missing/out.pdf"));
        QVERIFY(failure() && failure()->text().contains(path("missing/out.pdf")));

        renewPrinter();
        const QString older = write(path("out.pdf"), "older");
        {
            const FileSizeLimit fullDisk(20000);
            QVERIFY(failure() && failure()->text().contains(older));
        }
        QCOMPARE(contents(older), "older");
        QCOMPARE(files(), QStringList({"out.pdf", "report.html"}));
        renewPrinter();
        QVERIFY(!failure());
        QVERIFY(pages().size() > 1);
    }
};

QTEST_MAIN(PrintingTest)
#include "printingTest.moc"
