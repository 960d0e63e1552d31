#include "ui/report/printing.h"

#include "core/base/failure.h"
#include "core/base/text.h"
#include "core/design/product.h"
#include "core/platform/desktop/replacementFile.h"
#include "core/platform/desktop/spooler.h"
#include "core/platform/services.h"
#include "ui/report/pagination.h"
#include "ui/report/paper.h"
#include "ui/report/printProgress.h"
#include "ui/report/reportDocument.h"
#include "ui/views/busyCursor.h"

#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QScopeGuard>

#include <algorithm>

namespace veltrona {

namespace {

class SystemPrinting : public Printing {
public:
    // Without a printer the dialog still prints to a file; while CUPS doesn't respond, it would not
    // even open.
    bool isEnabled() override {
        desktop::requireSpooler();
        return true;
    }

    Paper paper() override {
        try {
            desktop::requireSpooler();
        } catch (const Failure &) {
            return a4Paper();
        }
        QPrinter printer(QPrinter::HighResolution);
        const Paper paper = paperOf(printer);
        const double least = printer.resolution(); // an inch; labels have no room for a report
        return std::min(paper.body().width(), paper.body().height()) < least ? a4Paper() : paper;
    }

    void print(const ReportDocument &report, QWidget *owner) override {
        QPrinter printer(QPrinter::HighResolution);
        printer.setDocName(productName + u" Report"_s);
        printer.setCreator(productName);
        QPrintDialog dialog(&printer, owner);
        if (dialog.exec() != QDialog::Accepted)
            return;
        const BusyCursor busy;
        printReport(report, printer, owner);
    }
};

void drawPiece(QPainter &painter, const ReportSheet &sheet, const QRectF &piece) {
    painter.save();
    painter.translate(0, -piece.top());
    painter.setClipRect(piece);
    sheet.draw(painter, piece);
    painter.restore();
    painter.translate(0, piece.height());
}

void drawPage(QPainter &painter, const ReportSheet &sheet, const ReportPage &page) {
    painter.save();
    if (page.repeatsHeadings) {
        const double top = sheet.statisticsTop();
        drawPiece(painter, sheet, {0, top, sheet.width(), sheet.rowsTop() - top});
    }
    drawPiece(painter, sheet, {0, page.top, sheet.width(), page.bottom - page.top});
    painter.restore();
}

/// The numbers of the selected pages, in printing order.
std::vector<int> pagesToPrint(const QPrinter &printer, int pages) {
    std::vector<int> numbers;
    for (int number = 1; number <= pages; ++number) {
        if (printer.printRange() != QPrinter::PageRange || printer.pageRanges().isEmpty() ||
            printer.pageRanges().contains(number))
            numbers.push_back(number);
    }
    if (printer.pageOrder() == QPrinter::LastPageFirst)
        std::reverse(numbers.begin(), numbers.end());
    const int copies = printer.supportsMultipleCopies() ? 1 : printer.copyCount();
    std::vector<int> all;
    if (printer.collateCopies()) {
        for (int copy = 0; copy < copies; ++copy)
            all.insert(all.end(), numbers.begin(), numbers.end());
    } else {
        for (const int number : numbers)
            all.insert(all.end(), std::size_t(copies), number);
    }
    return all;
}

constexpr int noSuchPage = 0; // the number of that failure

enum class Outcome { Drawn, Failed, Cancelled };

/// False if the user cancels.
bool measureRows(ReportSheet &sheet, PrintProgress &progress) {
    constexpr double step = 2000;
    double top = sheet.rowsTop();
    while (top < sheet.rowsBottom()) {
        sheet.measure(top, top + step);
        top += step;
        if (!progress.step(u"The pages are being prepared."_s))
            return false;
    }
    return true;
}

Outcome drawPages(const ReportDocument &report, QPrinter &printer, PrintProgress &progress) {
    ReportSheet sheet = report.paperSheet();
    if (!measureRows(sheet, progress))
        return Outcome::Cancelled;
    const Paper paper = paperOf(printer);
    const double scale = scaleFor(sheet, paper.body());
    const std::vector<ReportPage> pages = paginate(sheet, paper.body().height() / scale);
    const int last = static_cast<int>(pages.size());
    const std::vector<int> numbers = pagesToPrint(printer, last);
    if (numbers.empty()) // Qt would print an empty page
        throw Failure(noSuchPage, u"The report's last page is number %1."_s.arg(last));

    QPainter painter;
    if (!painter.begin(&printer))
        return Outcome::Failed;
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setFont(footFont());
    int done = 0;
    for (const int number : numbers) {
        const QString foot = footText(number, last);
        if (!progress.step(foot, done, static_cast<int>(numbers.size()))) {
            printer.abort();
            return Outcome::Cancelled;
        }
        if (done++ > 0 && !printer.newPage())
            return Outcome::Failed;
        painter.save();
        painter.scale(scale, scale);
        drawPage(painter, sheet, pages[std::size_t(number - 1)]);
        painter.restore();
        painter.drawText(QRectF({}, paper.printed.size()), Qt::AlignHCenter | Qt::AlignBottom,
                         foot);
    }
    const bool isDrawn = painter.end() && printer.printerState() != QPrinter::Error &&
                         printer.printerState() != QPrinter::Aborted;
    return isDrawn ? Outcome::Drawn : Outcome::Failed;
}

/// Qt's PDF engine doesn't report a full disk.
bool isWhole(const QString &pdf) {
    QFile file(pdf);
    return file.open(QIODevice::ReadOnly) && file.seek(qMax<qint64>(0, file.size() - 16)) &&
           file.readAll().contains("%%EOF");
}

void printToFile(const ReportDocument &report, QPrinter &printer, PrintProgress &progress) {
    const QString target = printer.outputFileName();
    desktop::ReplacementFile file(target);
    printer.setOutputFileName(file.path());
    const auto restored = qScopeGuard([&] { printer.setOutputFileName(target); });
    const Outcome outcome = drawPages(report, printer, progress);
    if (outcome == Outcome::Cancelled)
        return;
    const bool isDevice = file.path() == target; // can't be read back
    if (outcome == Outcome::Failed || !(isDevice || isWhole(file.path())))
        throw Failure(static_cast<int>(printer.printerState()),
                      u"The file \"%1\" can't be written. Its folder may be missing "
                      "or closed, or the disk full."_s.arg(target));
    file.commit();
}

} // namespace

Printing &printing() {
    static SystemPrinting system;
    return services().printing ? *services().printing : system;
}

void printReport(const ReportDocument &report, QPrinter &printer, QWidget *owner) {
    PrintProgress progress(owner);
    if (!printer.outputFileName().isEmpty())
        return printToFile(report, printer, progress);
    const QString name = printer.printerName();
    desktop::requireReadyPrinter(name);
    const int newestBefore = desktop::newestJob(name);
    switch (drawPages(report, printer, progress)) {
    case Outcome::Drawn:
        return desktop::requireTakenJob(name);
    case Outcome::Cancelled:
        // Qt can't abort a job for CUPS: it has sent what was drawn when the painter ended.
        return desktop::withdrawJobs(name, printer.docName(), newestBefore);
    case Outcome::Failed:
        throw Failure(static_cast<int>(printer.printerState()),
                      u"The printer \"%1\" doesn't take the report."_s.arg(name));
    }
}

} // namespace veltrona
