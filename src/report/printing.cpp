#include "report/printing.h"

#include "platform/desktop/hourglass.h"
#include "platform/failure.h"
#include "report/reportDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>

#include <memory>

namespace veltrona {

namespace {

class SystemPrinting : public Printing {
public:
    // Without any printer the dialog still prints to a file.
    bool isEnabled() override { return true; }

    void print(const QTextDocument &page, QWidget *owner) override {
        QPrinter printer(QPrinter::HighResolution);
        printer.setDocName(QStringLiteral("Veltrona Report"));
        printer.setCreator(QStringLiteral("Veltrona"));
        QPrintDialog dialog(&printer, owner);
        if (dialog.exec() != QDialog::Accepted)
            return;
        const Hourglass hourglass;
        printPage(page, printer);
    }
};

Printing *installed = nullptr;

Failure printFailure(const QPrinter &printer) {
    return {
        static_cast<int>(printer.printerState()),
        printer.outputFileName().isEmpty()
            ? QStringLiteral("the printer \"%1\" doesn't take the report.")
                  .arg(printer.printerName())
            : QStringLiteral("the file \"%1\" can't be written.").arg(printer.outputFileName())};
}

void drawPage(QPainter &painter, const QTextDocument &document, int page) {
    const QSizeF size = document.pageSize();
    const QRectF part(0, page * size.height(), size.width(), size.height());
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = part;
    context.palette.setColor(QPalette::Text, Qt::black);
    painter.save();
    painter.translate(0, -part.top());
    painter.setClipRect(part);
    document.documentLayout()->draw(&painter, context);
    painter.restore();
}

/// The pages that the user has asked for, from 1.
std::pair<int, int> pagesToPrint(const QPrinter &printer, int pages) {
    if (printer.printRange() != QPrinter::PageRange || printer.fromPage() == 0)
        return {1, pages};
    return {printer.fromPage(), qMin(qMax(printer.toPage(), printer.fromPage()), pages)};
}

} // namespace

Printing &printing() {
    static SystemPrinting system;
    return installed ? *installed : system;
}

void setPrinting(Printing *printing) {
    installed = printing;
}

void printPage(const QTextDocument &page, QPrinter &printer) {
    QPainter painter;
    if (!painter.begin(&printer))
        throw printFailure(printer);
    const QRectF paper = printer.pageLayout().paintRectPixels(printer.resolution());
    const double scale = paper.width() / ReportDocument::pageWidth;
    painter.scale(scale, scale);

    const std::unique_ptr<QTextDocument> document(page.clone());
    document->setPageSize(QSizeF(ReportDocument::pageWidth, paper.height() / scale));
    const auto [first, last] = pagesToPrint(printer, document->pageCount());
    for (int number = first; number <= last; ++number) {
        if (number > first && !printer.newPage())
            throw printFailure(printer);
        drawPage(painter, *document, number - 1);
    }
    if (!painter.end() || printer.printerState() == QPrinter::Error)
        throw printFailure(printer);
}

} // namespace veltrona
