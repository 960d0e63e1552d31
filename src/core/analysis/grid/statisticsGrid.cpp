#include "core/analysis/grid/statisticsGrid.h"

#include "core/analysis/records/cellText.h"
#include "core/base/text.h"

#include <cmath>
#include <limits>
#include <string>
#include <unordered_map>
#include <vector>

namespace veltrona {

namespace {

constexpr float minWidth = 780; // twips; narrower texts count as `widthOfNarrow`
constexpr float widthOfNarrow = 770;
constexpr float padding = 120;

/// Finds the widest of many texts and measures few of them: of texts that differ in digits only, in
/// a font whose digits are equally wide, just one, and none that is clearly narrower than another.
class Widths {
public:
    explicit Widths(const TextWidth &textWidth) : m_textWidth(textWidth) {}

    /// For each of these columns. Row by row, since the texts of a row lie together.
    std::vector<float> widestOf(const Grid &grid, const std::vector<int> &columns) {
        const bool skips = m_isSumOfCharacters;
        std::vector<float> widest(columns.size());
        for (int row = 0; row < grid.Rows(); ++row) {
            for (std::size_t i = 0; i < columns.size(); ++i) {
                const QStringView text = grid.text(row, columns[i]);
                if (!skips || (1 + tolerance) * estimate(text) >= widest[i])
                    widest[i] = std::fmax(widest[i], width(text));
            }
        }
        return skips && !m_isSumOfCharacters ? widestOf(grid, columns) : widest;
    }

private:
    // Kerning and ligatures change a text by less.
    static constexpr float tolerance = 0.1F;
    // Verifying that digits are equally wide takes as long as measuring some hundred texts.
    static constexpr std::size_t manyTexts = 300;

    static bool isDigit(char16_t character) { return character >= u'0' && character <= u'9'; }
    /// Letters, digits and signs that are drawn one after the other: Latin, Greek, Cyrillic.
    static bool isPlain(char16_t character) {
        return (character >= 0x20 && character < 0x7F) ||
               (character > 0xA0 && character < 0x250 && character != 0xAD) ||
               (character >= 0x370 && character < 0x483);
    }

    float widthOf(char16_t first, char16_t second = 0) {
        const QChar characters[] = {first, second};
        return m_textWidth(QString(characters, second == 0 ? 1 : 2));
    }

    /// The sum of the widths of its characters; infinite where that says nothing.
    float estimate(QStringView text) {
        float sum = 0;
        for (const QChar character : text) {
            if (!isPlain(character.unicode()))
                return std::numeric_limits<float>::infinity();
            float &width = m_characters[character.unicode()];
            if (width < 0)
                width = widthOf(character.unicode());
            sum += width;
        }
        return sum;
    }

    float width(QStringView text) {
        m_shape.assign(text.utf16(), static_cast<std::size_t>(text.size()));
        if (m_known.size() > manyTexts)
            equalizeDigits();
        const auto known = m_known.find(m_shape);
        if (known != m_known.end())
            return known->second;
        const float width = m_textWidth(text.toString());
        const float sum = estimate(text);
        if (std::isfinite(sum) && std::abs(width - sum) > tolerance / 2 * width)
            m_isSumOfCharacters = false;
        return m_known.emplace(m_shape, width).first->second;
    }

    void equalizeDigits() {
        for (std::size_t i = 0; i < m_shape.size(); ++i) {
            if (isDigit(m_shape[i]) && (i == 0 || areDigitsAlikeBeside(m_shape[i - 1])) &&
                (i + 1 == m_shape.size() || areDigitsAlikeBeside(m_shape[i + 1])))
                m_shape[i] = u'0';
        }
    }

    bool areDigitsAlikeBeside(char16_t neighbour) {
        const auto known = m_alikeBeside.find(neighbour);
        if (known != m_alikeBeside.end())
            return known->second;
        bool alike = true;
        for (char16_t digit = u'1'; digit <= u'9'; ++digit) {
            alike = alike && widthOf(digit, neighbour) == widthOf(u'0', neighbour) &&
                    widthOf(neighbour, digit) == widthOf(neighbour, u'0');
        }
        m_alikeBeside.emplace(neighbour, alike);
        return alike;
    }

    const TextWidth &m_textWidth;
    bool m_isSumOfCharacters = true; // until a measured text disagrees
    std::vector<float> m_characters = std::vector<float>(0x483, -1.F); // -1: not measured yet
    std::unordered_map<char16_t, bool> m_alikeBeside;
    std::u16string m_shape;
    std::unordered_map<std::u16string, float> m_known; // by texts, digits replaced by 0
};

double cellNumber(const Grid &grid, int row, int col) {
    const QStringView text = grid.text(row, col);
    return gridColumn::at(col).isPercent ? percentNumberOfText(text) : numberOfText(text);
}

ColumnSums numbersOf(const Grid &grid, int row) {
    ColumnSums numbers;
    for (const GridColumn &column : gridColumn::table) {
        if (column.rule != CellRule::Name)
            numbers[column.column] = cellNumber(grid, row, column.column);
    }
    return numbers;
}

/// As precise as the texts of cells.
void average(ColumnSums &numbers) {
    for (const GridColumn &column : gridColumn::table) {
        if (column.rule != CellRule::Mean)
            continue;
        const double count = numbers[column.countColumn];
        double &number = numbers[column.column];
        if (count > 0)
            number = toFifteenDigits(number / (count * column.divisor));
    }
}

constexpr bool isAddedUp(const GridColumn &column) {
    return column.rule == CellRule::Sum || column.rule == CellRule::Mean ||
           column.rule == CellRule::Quotient;
}

void add(const ColumnSums &numbers, ColumnSums &sums) {
    for (const GridColumn &column : gridColumn::table) {
        if (isAddedUp(column))
            addAsCell(sums[column.column], numbers[column.column]);
    }
}

/// Each of the `rows` counts once in a mean, however many records it holds.
void writeSums(Grid &grid, int row, const ColumnSums &sums, int rows) {
    for (const GridColumn &column : gridColumn::table) {
        const double sum = sums[column.column];
        if (isAddedUp(column))
            grid.setTextMatrix(
                row, column.column,
                figureText(column.column, column.rule == CellRule::Mean ? sum / rows : sum));
    }
    grid.setTextMatrix(
        row, gridColumn::Roi,
        returnOnInvestment(sums[gridColumn::ConversionValue], sums[gridColumn::Cost]));
}

void writeRounded(Grid &grid, int row, const ColumnSums &numbers) {
    for (const GridColumn &column : gridColumn::table) {
        if (column.decimals < 0)
            continue;
        const int col = column.column;
        const double rounded = roundHalfToEven(numbers[col], column.decimals);
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
        ColumnSums numbers = numbersOf(grid, row);
        average(numbers);
        add(numbers, sums);
        writeRounded(grid, row, numbers);
        if (gridColor && earnedLessThanItsCost(grid, row))
            colorRow(grid, row, true);
    }
    const int summary = gridRow::summary(grid.Rows());
    if (rows > 0)
        writeSums(grid, summary, sums, rows);
    writeRounded(grid, summary, numbersOf(grid, summary));
    if (gridColor)
        colorRow(grid, summary, earnedLessThanItsCost(grid, summary));
}

void sizeColumns(Grid &grid, int col, const TextWidth &textWidth) {
    const RedrawPause pause(grid);
    const bool isOne = col >= 0 && col < grid.Cols();
    std::vector<int> columns;
    for (int each = 0; each < grid.Cols(); ++each) {
        if ((!isOne || each == col) && grid.ColWidth(each) != 0)
            columns.push_back(each);
    }
    const std::vector<float> widest = Widths(textWidth).widestOf(grid, columns);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const float width = widest[i] < minWidth ? widthOfNarrow : widest[i];
        grid.setColWidth(columns[i], static_cast<int>(std::nearbyint(width + padding)));
    }
}

} // namespace veltrona
