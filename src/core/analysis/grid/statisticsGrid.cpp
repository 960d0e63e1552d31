#include "core/analysis/grid/statisticsGrid.h"

#include "core/analysis/records/cellText.h"
#include "core/base/text.h"

#include <QHash>

#include <cmath>

namespace veltrona {

namespace {

constexpr float minWidth = 780; // twips; narrower texts count as `widthOfNarrow`
constexpr float widthOfNarrow = 770;
constexpr float padding = 120;

/// Caches the widths of numbers by their shape, if all digits of the font are equally wide next to
/// every character of a number.
class Widths {
public:
    explicit Widths(const TextWidth &textWidth)
        : m_textWidth(textWidth), m_digitsAlike(digitsAlike()) {}

    float of(const QString &text) {
        const quint64 shape = m_digitsAlike ? shapeOf(text) : 0;
        if (shape == 0)
            return m_textWidth(text);
        const auto known = m_known.constFind(shape);
        if (known != m_known.constEnd())
            return *known;
        return *m_known.insert(shape, m_textWidth(text));
    }

private:
    static constexpr QStringView signs = u".%-+E";

    static bool isDigit(QChar character) { return character >= u'0' && character <= u'9'; }

    bool digitsAlike() const {
        const auto width = [this](QChar first, QChar second) {
            const QChar pair[] = {first, second};
            return m_textWidth(QString(pair, 2));
        };
        for (const QChar beside : QStringView(u"0123456789.%-+E")) {
            for (char16_t digit = u'1'; digit <= u'9'; ++digit) {
                if (width(digit, beside) != width(u'0', beside) ||
                    width(beside, digit) != width(beside, u'0'))
                    return false;
            }
        }
        return true;
    }

    /// Four bits for each character, all digits the same; 0 for a long text or one that isn't a
    /// number.
    static quint64 shapeOf(const QString &text) {
        if (text.size() > 16)
            return 0;
        quint64 shape = 0;
        for (const QChar character : text) {
            const qsizetype sign = isDigit(character) ? 0 : signs.indexOf(character) + 1;
            if (sign == 0 && !isDigit(character))
                return 0;
            shape = shape << 4 | static_cast<quint64>(sign + 1);
        }
        return shape;
    }

    const TextWidth &m_textWidth;
    bool m_digitsAlike;
    QHash<quint64, float> m_known;
};

void sizeColumn(Grid &grid, int col, Widths &widths) {
    if (grid.ColWidth(col) == 0)
        return;
    float width = 0;
    for (int row = 0; row < grid.Rows(); ++row)
        width = std::fmax(width, widths.of(grid.TextMatrix(row, col)));
    if (width < minWidth)
        width = widthOfNarrow;
    grid.setColWidth(col, static_cast<int>(std::nearbyint(width + padding)));
}

double cellNumber(const Grid &grid, int row, int col) {
    const QString &text = grid.TextMatrix(row, col);
    return gridColumn::at(col).isPercent ? percentNumberOfText(text) : numberOfText(text);
}

void setCellNumber(Grid &grid, int row, int col, double number) {
    grid.setTextMatrix(row, col, figureText(col, number));
}

void averageRow(Grid &grid, int row) {
    for (const GridColumn &column : gridColumn::table) {
        if (column.rule != CellRule::Mean)
            continue;
        const double count = cellNumber(grid, row, column.countColumn);
        if (count > 0)
            setCellNumber(grid, row, column.column,
                          cellNumber(grid, row, column.column) / (count * column.divisor));
    }
}

constexpr bool isAddedUp(const GridColumn &column) {
    return column.rule == CellRule::Sum || column.rule == CellRule::Mean ||
           column.rule == CellRule::Quotient;
}

void addRow(const Grid &grid, int row, ColumnSums &sums) {
    for (const GridColumn &column : gridColumn::table) {
        if (isAddedUp(column)) {
            double &sum = sums[column.column];
            sum = toFifteenDigits(sum + cellNumber(grid, row, column.column));
        }
    }
}

/// Each of the `rows` counts once in a mean, however many records it holds.
void writeSums(Grid &grid, int row, const ColumnSums &sums, int rows) {
    for (const GridColumn &column : gridColumn::table) {
        const double sum = sums[column.column];
        if (isAddedUp(column))
            setCellNumber(grid, row, column.column,
                          column.rule == CellRule::Mean ? sum / rows : sum);
    }
    grid.setTextMatrix(
        row, gridColumn::Roi,
        returnOnInvestment(sums[gridColumn::ConversionValue], sums[gridColumn::Cost]));
}

void roundRow(Grid &grid, int row) {
    for (const GridColumn &column : gridColumn::table) {
        if (column.decimals < 0)
            continue;
        const int col = column.column;
        const double rounded = roundHalfToEven(cellNumber(grid, row, col), column.decimals);
        const QString text = figureText(col, rounded);
        grid.setTextMatrix(row, col, column.hasLeadingZero ? withLeadingZero(text) : text);
    }
}

bool earnedLessThanItsCost(const Grid &grid, int row) {
    return isLoss(cellNumber(grid, row, gridColumn::ConversionValue),
                  cellNumber(grid, row, gridColumn::Cost));
}

void colorRow(Grid &grid, int row, bool isLoss) {
    grid.setRow(row);
    for (int col = 0; col < grid.Cols(); ++col) {
        grid.setCol(col);
        grid.setCellForeColor(isLoss ? red : green);
    }
    grid.setLoss(row, isLoss);
}

} // namespace

void initGrid(Grid &grid, bool gridColor) {
    const RedrawPause pause(grid);
    grid.setColAlignment(gridColumn::Name, 0);
    for (int col = gridColumn::Shown; col < gridColumn::Count; ++col)
        grid.setColWidth(col, 0);
    // The summary row must keep its own colours, not get those of a data row.
    removeDataRows(grid);
    grid.setRows(gridRow::Fixed);
    for (int row = gridRow::FirstData; row < grid.Rows(); ++row) {
        for (int col = 0; col < grid.Cols(); ++col)
            grid.setTextMatrix(row, col, QString());
    }
    for (int col = 0; col < gridColumn::Shown; ++col)
        grid.setTextMatrix(gridRow::Heading, col, QLatin1String(gridColumn::at(col).heading));
    grid.setForeColor(gridColor ? green : black);
}

QString columnNote(int col) {
    if (col < 0 || col >= gridColumn::Shown)
        return {};
    const GridColumn &column = gridColumn::at(col);
    const QString rate = gridColumn::addsUpRates(column)
                             ? u" The true rate stands in each figure's tooltip."_s
                             : QString();
    return u"%1%2\nUnit: %3."_s.arg(QLatin1String(column.note), rate, QLatin1String(column.unit));
}

QString figureText(int col, double figure) {
    const QString text = numberText(figure);
    return gridColumn::at(col).isPercent ? text + u'%' : text;
}

void resetSummary(Grid &grid) {
    const RedrawPause pause(grid);
    for (int col = 0; col < gridColumn::Shown; ++col)
        grid.setTextMatrix(gridRow::summary(grid.Rows()), col,
                           QLatin1String(gridColumn::at(col).zeroText));
}

void removeDataRows(Grid &grid) {
    const RedrawPause pause(grid);
    while (gridRow::dataRows(grid.Rows()) > 0)
        grid.RemoveItem(gridRow::FirstData);
}

QString returnOnInvestment(double conversionValue, double cost) {
    if (cost == 0)
        return u"0.00%"_s;
    const double percent = (conversionValue / cost) * 100;
    // A negative cost may give two signs; such a text is read as 0.
    if (conversionValue < cost)
        return u'-' + numberText(100 - percent) + u'%';
    return numberText(percent - 100) + u'%';
}

bool isLoss(double conversionValue, double cost) {
    const auto shown = [](double sum) { return toFifteenDigits(roundHalfToEven(sum, 2)); };
    return shown(conversionValue) < shown(cost);
}

void sumUp(Grid &grid, bool gridColor) {
    const RedrawPause pause(grid);
    resetSummary(grid);
    const int rows = gridRow::dataRows(grid.Rows());
    ColumnSums sums;
    for (int row = gridRow::FirstData; row <= rows; ++row) {
        averageRow(grid, row);
        addRow(grid, row, sums);
        roundRow(grid, row);
        if (gridColor && earnedLessThanItsCost(grid, row))
            colorRow(grid, row, true);
    }
    const int summary = gridRow::summary(grid.Rows());
    if (rows > 0)
        writeSums(grid, summary, sums, rows);
    roundRow(grid, summary);
    if (gridColor)
        colorRow(grid, summary, earnedLessThanItsCost(grid, summary));
}

void sizeColumns(Grid &grid, int col, const TextWidth &textWidth) {
    const RedrawPause pause(grid);
    Widths widths(textWidth);
    const bool isOne = col >= 0 && col < grid.Cols();
    for (int each = 0; each < grid.Cols(); ++each) {
        if (!isOne || each == col)
            sizeColumn(grid, each, widths);
    }
}

} // namespace veltrona
