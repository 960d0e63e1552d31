// Names into preview and print: each line of the input is a name, and the first one is the selected
// campaign too. The document must hold every one as text in a cell of its own, be as high as its
// lines, and come onto pages that hold all of it; the file must hold the names unescaped.
#include "attack/finding.h"

#include "core/base/text.h"
#include "core/report/reportText.h"
#include "support/writtenReport.h"
#include "ui/report/pagination.h"
#include "ui/report/reportDocument.h"
#include "ui/report/reportSheet.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QFile>
#include <QPainter>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextTable>

#include <algorithm>

using namespace veltrona;

namespace {

QString reportPath() {
    static const QTemporaryDir folder;
    return folder.filePath(QStringLiteral("report.html"));
}

/// Line ends of a name are written as "\n".
QStringList namesOf(QByteArrayView input) {
    QStringList names = QString::fromUtf8(input.toByteArray()).split(u'\n').mid(0, 60);
    for (QString &name : names)
        name.replace(QLatin1String("\\n"), QLatin1String("\r\n"));
    return names;
}

QString textOf(const QTextTable &table, int row, int col) {
    return table.cellAt(row, col).firstCursorPosition().block().text();
}

/// Without a picture the sheet for paper would be the same, laid out a second time.
void checkPages(const ReportDocument &document) {
    const ReportSheet &sheet =
        qobject_cast<const ReportLayout *>(document.documentLayout())->sheet();
    double end = 0;
    for (const ReportPage &page : paginate(sheet, 1100)) {
        FINDING_UNLESS(page.top == end && page.bottom > page.top, "a page begins at %g", page.top);
        end = page.bottom;
    }
    FINDING_UNLESS(end >= sheet.height() - 24, "the pages end at %g of %g", end, sheet.height());
}

void checkDrawing(const ReportDocument &document) {
    static QImage image(850, 1100, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = image.rect();
    document.documentLayout()->draw(&painter, context);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv) {
    static QApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, size_t size) {
    const QStringList names =
        namesOf({reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)});
    const Report report =
        test::WrittenReport{.names = names, .campaign = names.first(), .redNames = names.mid(0, 1)}
            .write(reportPath());
    ReportDocument document(reportPath(), report);
    qobject_cast<ReportLayout *>(document.documentLayout())->measure(0, 1e9);
    const auto *details = qobject_cast<QTextTable *>(document.rootFrame()->childFrames().value(0));
    FINDING_UNLESS(details && textOf(*details, 0, 1) ==
                                  (names.first().isEmpty() ? "All" : shownValue(names.first())),
                   "the details");
    const QTextTable *table = ReportSheet::statisticsIn(document);
    FINDING_UNLESS(table && table->rows() == 1 && table->columns() == 13, "a table");
    QFile file(reportPath());
    FINDING_UNLESS(file.open(QIODevice::ReadOnly), "the file");
    const QByteArray bytes = file.readAll();
    QTextBlock block = document.findBlock(table->lastPosition() + 1);
    for (int row = 0; row < names.size(); ++row, block = block.next()) {
        const QString name = withoutBlanks(names[row]).toString();
        const QStringList cells = block.text().split(QChar::LineSeparator);
        FINDING_UNLESS(cells.size() == 13 && cells[0] == shownValue(name), "row %d shows \"%s\"",
                       row, qPrintable(block.text()));
        std::string written = ">";
        appendAnsi(written, name);
        FINDING_UNLESS(bytes.contains((written + "</").c_str()) || name.contains(QChar(0)),
                       "the file lacks a name");
        const QRectF place = document.documentLayout()->blockBoundingRect(block);
        const QPointF middle(place.left() + 1, place.center().y());
        const int hit = document.documentLayout()->hitTest(middle, Qt::FuzzyHit);
        FINDING_UNLESS(hit >= block.position() && hit < block.position() + block.length(),
                       "row %d lies elsewhere", row);
    }
    checkPages(document);
    checkDrawing(document);
    return 0;
}
