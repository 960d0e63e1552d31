#include "ui/report/reportSheet.h"

#include "core/base/text.h"
#include "core/report/reportText.h"
#include "ui/report/characterWidths.h"
#include "ui/views/plainText.h"

#include <QGuiApplication>
#include <QPainter>
#include <QTextBlock>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <set>

namespace veltrona {

namespace {

constexpr double paragraphMargin = 12;
constexpr double documentMargin = 4;

QFont cellFont(double zoom) {
    QFont font;
    font.setFamilies({u"Arial"_s, u"Helvetica"_s, u"sans-serif"_s}); // as in the style sheet
    font.setPixelSize(qRound(reportTextSize * zoom));
    return font;
}

/// At most as wide as the tables, without losing pixels.
QImage fitted(QImage graph, double zoom) {
    graph.setDevicePixelRatio(std::max(1.0, double(graph.width()) / reportTableWidth) / zoom);
    return graph;
}

/// Scaled smoothly beforehand, since rich text drops pixels when it draws a larger picture.
QImage forScreen(const QImage &graph, double zoom) {
    const int width = qRound(reportTableWidth * zoom * qGuiApp->devicePixelRatio());
    return fitted(
        graph.width() > width ? graph.scaledToWidth(width, Qt::SmoothTransformation) : graph, zoom);
}

/// For a missing picture. It can't be a null image: rich text would then try to read a file of that
/// name itself.
QImage noPicture() {
    QImage image(1, 1, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    return image;
}

void appendShown(std::string &html, QStringView value) {
    html += shownValue(value.toString()).toHtmlEscaped().toUtf8();
}

/// The few rows of the statistics that determine the layout of all of them: the rows with the
/// widest text or word of a column, which determine the columns' widths, a marked row, the first
/// and the last one, in their order. Fills the widths of all rows.
std::vector<ReportRow> sampleRows(const std::vector<ReportRow> &rows, const QFont &font,
                                  std::vector<CellWidths> &cellWidths) {
    if (rows.empty())
        return {};
    cellWidths.resize(rows.size());
    struct Widest {
        float width = -1;
        std::size_t row = 0;
        void see(float other, std::size_t otherRow) {
            if (other > width)
                width = other, row = otherRow;
        }
    };
    struct Column {
        Widest text, word;
    };
    std::array<Column, gridColumn::Shown> columns;
    CharacterWidths widths(font);
    std::size_t marked = 0;
    for (std::size_t row = rows.size(); row-- > 0;) {
        if (rows[row].isMarked)
            marked = row;
        for (std::size_t col = 0; col < columns.size(); ++col) {
            const TextWidths found = widths.of(shownValue(rows[row].cells[col]));
            constexpr float unknown = std::numeric_limits<float>::infinity();
            cellWidths[row][col] = found.areExact ? found.text : unknown;
            columns[col].text.see(found.text, row);
            columns[col].word.see(found.word, row);
        }
    }
    std::set<std::size_t> found{0, marked, rows.size() - 1};
    for (const Column &column : columns)
        found.insert({column.text.row, column.word.row});
    std::vector<ReportRow> samples;
    samples.reserve(found.size());
    for (const std::size_t row : found)
        samples.push_back(rows[row]);
    return samples;
}

QTextBlock blockOf(const QTextTable &table, int row, int col) {
    return table.cellAt(row, col).firstCursorPosition().block();
}

} // namespace

QString shownValue(const QString &text) {
    QString shown = shownLine(text);
    const auto isUsual = [](QChar c) {
        return c < QChar(QChar::ObjectReplacementCharacter) &&
               !(c >= QChar(0xD800) && c < QChar(0xFE00));
    };
    if (std::ranges::all_of(std::as_const(shown), isUsual)) // the text isn't copied
        return shown;
    for (qsizetype at = 0; at < shown.size(); ++at) {
        constexpr char16_t frameBegins = 0xFDD0, frameEnds = 0xFDD1;
        QChar &c = shown[at];
        if (c < u' ' || c == frameBegins || c == frameEnds ||
            c == QChar::ObjectReplacementCharacter || isLoneSurrogate(shown, at))
            c = QChar::ReplacementCharacter;
    }
    return shown;
}

/// Qt's rich text would ignore a style sheet between comment marks. Links have the usual colour on
/// white; values keep their blanks.
QString htmlOf(const Report &report, const std::vector<ReportRow> &rows, double zoom) {
    const QString style =
        u"a {color: #0000EE} td {white-space: pre-wrap} "
        "p {margin-top: %1px; margin-bottom: %1px} "_s.arg(qRound(paragraphMargin * zoom));
    return QString::fromUtf8(
        reportText(report, rows, {appendShown, style.toStdString(), "", zoom}));
}

/// Reads neither files nor the network; only the graph is ever requested.
class ReportSheet::Frame : public QTextDocument {
protected:
    QVariant loadResource(int type, const QUrl &) override {
        return type == ImageResource ? QVariant(noPicture()) : QVariant();
    }
};

ReportSheet::ReportSheet(const Report &report, const QImage &graph, Options options)
    : m_report(report) {
    std::vector<CellWidths> widths;
    const std::vector<ReportRow> samples = sampleRows(report.rows, cellFont(options.zoom), widths);
    makeFrame(htmlOf(report, samples, options.zoom), graph, options);
    if (!samples.empty()) {
        readTable(samples);
        estimateRows(widths);
    }
}

double ReportSheet::width() const {
    return m_frame->size().width();
}

QTextTable *ReportSheet::statisticsIn(const QTextDocument &document) {
    const QList<QTextFrame *> frames = document.rootFrame()->childFrames();
    return frames.size() < 2 ? nullptr : qobject_cast<QTextTable *>(frames[1]);
}

void ReportSheet::makeFrame(const QString &html, const QImage &graph, Options options) {
    m_frame = std::make_unique<Frame>();
    m_frame->setUndoRedoEnabled(false);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    m_frame->setDefaultTextOption(option);
    QFont font = m_frame->defaultFont();
    font.setPointSizeF(font.pointSizeF() * options.zoom);
    m_frame->setDefaultFont(font);
    m_frame->setDocumentMargin(documentMargin * options.zoom);
    if (!graph.isNull())
        m_frame->addResource(QTextDocument::ImageResource, QUrl(u"graph.jpg"_s),
                             options.forPaper ? fitted(graph, options.zoom)
                                              : forScreen(graph, options.zoom));
    m_frame->setHtml(html);
    m_frame->setTextWidth(pageWidth * options.zoom);
}

/// Reads positions and formats from the frame's rows.
void ReportSheet::readTable(const std::vector<ReportRow> &samples) {
    const QTextTable &table = *statisticsIn(*m_frame);
    const QAbstractTextDocumentLayout &layout = *m_frame->documentLayout();
    m_border = table.format().border();
    m_padding = table.format().cellPadding();
    for (int col = 0; col < table.columns(); ++col) {
        const QTextBlock block = blockOf(table, 1, col);
        m_columns.push_back({layout.blockBoundingRect(block).left(),
                             block.layout()->lineAt(0).width(), block.blockFormat()});
    }
    m_plain = m_marked = blockOf(table, 1, 0).charFormat();
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (samples[i].isMarked)
            m_marked =
                blockOf(table, int(i) + 1, gridColumn::Clicks).begin().fragment().charFormat();
    }
    const auto top = [&](int row) {
        return layout.blockBoundingRect(blockOf(table, row, 0)).top() - m_padding - m_border;
    };
    m_tops = {top(1)};
    m_frameRowsBottom = top(table.rows() - 1) + heightOfRow(int(m_report.rows.size()) - 1);
    m_table.setTop(top(0) - m_border);
    m_table.setBottom(m_frameRowsBottom + m_border);
    m_table.setLeft(cellLeft(m_columns.front()) - m_border);
    m_table.setRight(cellRight(m_columns.back()) + m_border);
}

/// Where all cells fit on one line, that is exact.
void ReportSheet::estimateRows(const std::vector<CellWidths> &widths) {
    CharacterWidths characters(m_plain.font());
    const double line = cellHeight(u"x"_s, 0, 0);
    const std::size_t rows = m_report.rows.size();
    m_tops.reserve(rows + 1);
    m_isMeasured.reserve(rows);
    for (std::size_t row = 0; row < rows; ++row) {
        int lines = 1;
        bool isExact = true;
        for (std::size_t col = 0; col < gridColumn::Shown; ++col) {
            constexpr double reserve = 2; // pixels
            const double width = m_columns[col].width;
            if (widths[row][col] + reserve < width)
                continue;
            const QString text = cellText(int(row), int(col));
            lines = std::max(lines, characters.lines(text, static_cast<float>(width)));
            isExact = false;
        }
        m_tops.push_back(m_tops.back() + lines * line + 2 * (m_padding + m_border));
        m_isMeasured.push_back(isExact);
    }
    m_rowsBelow = m_tops.back() - m_frameRowsBottom;
}

bool ReportSheet::measure(double top, double bottom) {
    if (rows() == 0)
        return false;
    double lowerBy = 0;
    bool haveMoved = false;
    int row = rowAt(top);
    for (; row < rows() && rowTop(row) + lowerBy < bottom; ++row) {
        const double estimate = rowTop(row + 1) - rowTop(row);
        m_tops[std::size_t(row)] += lowerBy;
        if (m_isMeasured[std::size_t(row)])
            continue;
        m_isMeasured[std::size_t(row)] = true;
        const double height = heightOfRow(row);
        haveMoved |= height != estimate;
        lowerBy += height - estimate;
    }
    for (; haveMoved && row <= rows(); ++row)
        m_tops[std::size_t(row)] += lowerBy;
    m_rowsBelow += lowerBy;
    return haveMoved;
}

double ReportSheet::cellHeight(const QString &text, int row, int col) const {
    QTextLayout layout(text, m_frame->defaultFont());
    layOutCell(layout, row, col);
    return layout.boundingRect().height();
}

double ReportSheet::heightOfRow(int row) const {
    double height = 0;
    for (int col = 0; col < gridColumn::Shown; ++col)
        height = std::max(height, cellHeight(cellText(row, col), row, col));
    return height + 2 * (m_padding + m_border);
}

int ReportSheet::rowAt(double y) const {
    const auto below = std::upper_bound(m_tops.begin(), m_tops.end(), y);
    return std::clamp(static_cast<int>(below - m_tops.begin()) - 1, 0, rows() - 1);
}

int ReportSheet::columnAt(double x) const {
    const auto right = std::find_if(m_columns.begin() + 1, m_columns.end(),
                                    [&](const Column &column) { return cellLeft(column) > x; });
    return static_cast<int>(right - m_columns.begin()) - 1;
}

QString ReportSheet::cellText(int row, int col) const {
    return shownValue(m_report.rows[std::size_t(row)].cells[std::size_t(col)]);
}

const QTextCharFormat &ReportSheet::rowFormat(int row) const {
    return m_report.rows[std::size_t(row)].isMarked ? m_marked : m_plain;
}

QPointF ReportSheet::cellPlace(int row, int col) const {
    return {m_columns[std::size_t(col)].left, rowTop(row) + m_padding + m_border};
}

void ReportSheet::layOutCell(QTextLayout &layout, int row, int col) const {
    const Column &column = m_columns[std::size_t(col)];
    QTextOption option = m_frame->defaultTextOption();
    option.setTextDirection(column.format.layoutDirection());
    option.setAlignment(column.format.alignment());
    layout.setTextOption(option);
    layout.setFormats({{0, static_cast<int>(layout.text().size()), rowFormat(row)}});
    layout.beginLayout();
    double y = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLeadingIncluded(true);
        line.setLineWidth(column.width);
        line.setPosition({0, y});
        // Rounded up as in rich text; the leading of a font may be negative.
        y += std::ceil(line.ascent() + line.descent() + line.leading());
    }
    layout.endLayout();
}

void ReportSheet::draw(QPainter &painter, const QAbstractTextDocumentLayout::PaintContext &context,
                       const DrawCell &drawCell) const {
    const auto drawFrame = [&](double top, double bottom, double lowerBy) {
        const QRectF part = context.clip & QRectF(0, top + lowerBy, width(), bottom - top);
        if (part.isEmpty())
            return;
        auto inFrame = context;
        inFrame.clip = part.translated(0, -lowerBy);
        painter.save();
        painter.translate(0, lowerBy);
        painter.setClipRect(inFrame.clip, Qt::IntersectClip);
        m_frame->documentLayout()->draw(&painter, inFrame);
        painter.restore();
    };
    if (rows() == 0)
        return drawFrame(0, frameHeight(), 0);
    // From top to bottom: the order in which the text of a PDF is copied or read aloud.
    drawFrame(0, rowsTop(), 0);
    painter.save();
    painter.setPen(context.palette.color(QPalette::Text));
    for (int row = rowAt(context.clip.top()); row < rows() && rowTop(row) < context.clip.bottom() &&
                                              rowTop(row + 1) > context.clip.top();
         ++row) {
        drawRowLines(painter, row);
        for (int col = 0; col < gridColumn::Shown; ++col) {
            QTextLayout layout(cellText(row, col), m_frame->defaultFont());
            layOutCell(layout, row, col);
            drawCell(row, col, layout, cellPlace(row, col));
        }
    }
    painter.restore();
    drawFrame(m_frameRowsBottom, frameHeight(), m_rowsBelow);
}

void ReportSheet::draw(QPainter &painter, const QRectF &piece) const {
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = piece;
    context.palette.setColor(QPalette::Text, Qt::black);
    draw(painter, context, [&](int, int, const QTextLayout &layout, const QPointF &place) {
        layout.draw(&painter, place);
    });
}

/// As in tables of rich text: the table's border is raised, those of the cells are sunken.
void ReportSheet::drawRowLines(QPainter &painter, int row) const {
    const QTextTable &table = *statisticsIn(*m_frame);
    const QColor dark = table.format().borderBrush().color();
    const QColor light = dark.lighter();
    const double top = rowTop(row), height = rowTop(row + 1) - top;
    const auto upright = [&](double x, const QColor &color) {
        painter.fillRect(QRectF(x, top, m_border, height), color);
    };
    const auto level = [&](const QRectF &cell, double y, const QColor &color) {
        painter.fillRect(QRectF(cell.left() + m_border, y, cell.width() - m_border, m_border),
                         color);
    };
    upright(m_table.left(), light);
    upright(m_table.right() - m_border, dark);
    for (const Column &column : m_columns) {
        const QRectF cell(QPointF(cellLeft(column), top), QPointF(cellRight(column), top + height));
        upright(cell.left(), dark);
        upright(cell.right() - m_border, light);
        level(cell, top, dark);
        level(cell, cell.bottom() - m_border, light);
    }
}

} // namespace veltrona
