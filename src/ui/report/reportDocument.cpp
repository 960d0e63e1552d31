#include "ui/report/reportDocument.h"

#include "core/base/failure.h"
#include "core/report/reportNames.h"
#include "core/report/reportText.h"

#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImageReader>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>
#include <QUrl>

#include <set>
#include <vector>

namespace veltrona {

namespace {

/// A report of more rows comes in parts of so many rows.
constexpr qsizetype longReport = 500;
constexpr qsizetype partSize = 50;
/// A wider graph is shown as wide as the tables.
constexpr int tableWidth = 800;
constexpr int cellFontPixels = 12;
constexpr double paragraphMargin = 12;

QString fileText(const QString &path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw Failure(
            file.error(),
            QStringLiteral("Can't read the report \"%1\": %2.").arg(path, file.errorString()));
    const QByteArray bytes = file.readAll();
    if (file.error() != QFile::NoError)
        throw Failure(
            file.error(),
            QStringLiteral("Can't read the report \"%1\": %2.").arg(path, file.errorString()));
    return textOfAnsi(bytes);
}

/// At most as wide as the tables, however many pixels that takes.
QImage fitted(QImage graph) {
    if (graph.width() > tableWidth)
        graph.setDevicePixelRatio(double(graph.width()) / tableWidth);
    return graph;
}

/// The drawing of rich text leaves pixels out where there are too many.
QImage forScreen(const QImage &graph) {
    const int width = qRound(tableWidth * qGuiApp->devicePixelRatio());
    return fitted(graph.width() > width ? graph.scaledToWidth(width, Qt::SmoothTransformation)
                                        : graph);
}

/// What stands for a picture that isn't there. A null image won't do: the drawing of rich text
/// would then read a file of that name by itself.
QImage noPicture() {
    QImage image(1, 1, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    return image;
}

/// The rows that hold a column's longest text or longest word: they alone decide the widths.
QStringList decisiveRows(const QStringList &rows) {
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(cellFontPixels);
    const QFontMetricsF metrics(font);
    struct Widest {
        double text = 0, word = 0;
        qsizetype textRow = 0, wordRow = 0;
    };
    std::vector<Widest> columns;
    for (qsizetype row = 0; row < rows.size(); ++row) {
        const QStringList texts = cellTexts(rows[row]);
        columns.resize(std::max(columns.size(), std::size_t(texts.size())));
        for (qsizetype col = 0; col < texts.size(); ++col) {
            Widest &widest = columns[std::size_t(col)];
            const auto width = [&](const QString &text) {
                return col == 0 ? metrics.horizontalAdvance(text) : double(text.size());
            };
            if (const double text = width(texts[col]); text > widest.text)
                widest.text = text, widest.textRow = row;
            for (const QString &word : texts[col].split(u' ')) {
                if (const double length = width(word); length > widest.word)
                    widest.word = length, widest.wordRow = row;
            }
        }
    }
    std::set<qsizetype> decisive;
    for (const Widest &widest : columns)
        decisive.insert({widest.textRow, widest.wordRow});
    QStringList found;
    for (const qsizetype row : decisive)
        found << rows[row];
    return found;
}

QList<double> widthsOf(const QTextTable &table) {
    const QAbstractTextDocumentLayout &layout = *table.document()->documentLayout();
    const QRectF outer = layout.frameBoundingRect(const_cast<QTextTable *>(&table));
    const double padding = table.format().cellPadding();
    const double border = table.format().border();
    QList<double> lefts;
    for (int col = 0; col < table.columns(); ++col)
        lefts
            << layout.blockBoundingRect(table.cellAt(0, col).firstCursorPosition().block()).left();
    QList<double> widths;
    for (int col = 0; col + 1 < table.columns(); ++col)
        widths << lefts[col + 1] - lefts[col] - 2 * border;
    const double edge = lefts.first() - outer.left();
    widths << outer.right() - edge - lefts.last() + 2 * padding;
    return widths;
}

} // namespace

ReportDocument::ReportDocument(QObject *parent) : QTextDocument(parent) {
    setUndoRedoEnabled(false);
    // As the view sets it: a document that is shown with another one is laid out twice.
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setDefaultTextOption(option);
}

void ReportDocument::load(const QString &path) {
    m_parts = reportParts(tamedReport(fileText(path)));
    m_graph = QImageReader(graphPath(path), "jpg").read();
    showGraphFor(false);
    if (rows() <= longReport) {
        setHtml(page(m_parts.before + m_parts.rows.join(QString()) + m_parts.after));
        m_loadedRows = rows();
        m_complete = true;
    } else {
        measureColumns();
        setHtml(page(m_parts.before + m_parts.rows.first(partSize).join(QString())));
        m_loadedRows = partSize;
    }
    for (QTextFrame *frame : rootFrame()->childFrames()) {
        auto *table = qobject_cast<QTextTable *>(frame);
        if (m_firstTable || !table || table->columns() <= 2 || m_parts.headings.isEmpty())
            continue;
        m_firstTable = m_lastTable = table;
        if (!m_complete)
            takeColumnWidths(*table, false);
    }
    setTextWidth(pageWidth);
}

/// The reader of rich text takes a style sheet between comment marks for a comment; links have the
/// colour that they have on light paper.
QString ReportDocument::page(const QString &body) const {
    return QStringLiteral("<html><head><style>a {color: #0000EE} ") + m_parts.styles +
           QStringLiteral("</style></head>") +
           body.sliced(qMax<qsizetype>(0, body.indexOf(QLatin1String("<body>"))));
}

void ReportDocument::measureColumns() {
    ReportDocument sample;
    sample.m_parts.styles = m_parts.styles;
    sample.setHtml(sample.page(m_parts.tableHead + m_parts.headings +
                               decisiveRows(m_parts.rows).join(QString()) +
                               QStringLiteral("</table>")));
    sample.setTextWidth(pageWidth);
    if (const QTextTable *table = sample.lastTable())
        m_columnWidths = widthsOf(*table);
}

void ReportDocument::loadMore() {
    if (m_loadedRows < rows()) {
        appendRows(qMin(partSize, rows() - m_loadedRows));
        return;
    }
    QTextCursor cursor(this);
    cursor.movePosition(QTextCursor::End);
    QTextCursor seam = cursor;
    seam.setKeepPositionOnInsert(true);
    cursor.insertHtml(page(m_parts.after.sliced(m_parts.after.indexOf(u'>') + 1)));
    if (cursor.position() > seam.position()) {
        // The first paragraph has become one with the empty one that was there.
        QTextBlockFormat format;
        format.setTopMargin(paragraphMargin);
        format.setBottomMargin(paragraphMargin);
        seam.mergeBlockFormat(format);
    }
    m_complete = true;
}

void ReportDocument::appendRows(qsizetype count) {
    QTextCursor cursor(this);
    cursor.movePosition(QTextCursor::End);
    cursor.insertHtml(page(m_parts.tableHead +
                           m_parts.rows.sliced(m_loadedRows, count).join(QString()) +
                           QStringLiteral("</table>")));
    m_loadedRows += count;
    if (QTextTable *table = lastTable()) {
        takeColumnWidths(*table, true);
        m_lastTable = table;
    }
}

void ReportDocument::takeColumnWidths(QTextTable &table, bool continues) {
    QTextTableFormat format = table.format();
    QList<QTextLength> widths;
    for (const double width : m_columnWidths)
        widths << QTextLength(QTextLength::FixedLength, width);
    format.setColumnWidthConstraints(widths);
    if (continues) // its first line lies on the last one of the table before
        format.setTopMargin(-2 * format.border());
    table.setFormat(format);
}

QTextTable *ReportDocument::lastTable() const {
    const QList<QTextFrame *> frames = rootFrame()->childFrames();
    return frames.isEmpty() ? nullptr : qobject_cast<QTextTable *>(frames.last());
}

ReportDocument::Statistics ReportDocument::statistics() const {
    if (!m_firstTable)
        return {};
    const QAbstractTextDocumentLayout &layout = *documentLayout();
    Statistics place;
    place.top = layout.frameBoundingRect(m_firstTable).top();
    place.bottom = layout.frameBoundingRect(m_lastTable).bottom();
    for (int col = 0; col < m_firstTable->columns(); ++col) {
        const QTextBlock last = m_firstTable->cellAt(0, col).lastCursorPosition().block();
        place.headingsEnd = qMax(place.headingsEnd, layout.blockBoundingRect(last).bottom());
    }
    place.headingsEnd += m_firstTable->format().cellPadding() + m_firstTable->format().border();
    return place;
}

void ReportDocument::showGraphFor(bool paper) {
    if (!m_graph.isNull())
        addResource(ImageResource, QUrl(QStringLiteral("graph.jpg")),
                    paper ? fitted(m_graph) : forScreen(m_graph));
}

/// Asked for everything but the graph.
QVariant ReportDocument::loadResource(int type, const QUrl &) {
    return type == ImageResource ? QVariant(noPicture()) : QVariant();
}

} // namespace veltrona
