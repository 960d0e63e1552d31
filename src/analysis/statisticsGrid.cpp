#include "analysis/statisticsGrid.h"

#include <array>
#include <cmath>

namespace veltrona {

namespace {

struct GridColumn {
    const char *heading;
    const char *zeroText;
};

constexpr std::array<GridColumn, 13> columns = {{
    {"Campaigns", "Summary"},
    {"Clicks", "0"},
    {"Impr.", "0"},
    {"CTR", "0.00%"},
    {"Avg.CPC", "0"},
    {"Cost", "0"},
    {"Conv.", "0"},
    {"Conv.Rate", "0.00%"},
    {"Cost/Conv.", "0.00"},
    {"Avg.Pos", "0.0"},
    {"Conv. Val.", ".00"},
    {"ROI", "0.00%"},
    {"Transactions", "0"},
}};

constexpr float narrowest = 780; // twips; texts below it give way to `widthOfNarrow`
constexpr float widthOfNarrow = 770;
constexpr float padding = 120;

void sizeColumn(Grid &grid, int col, const TextWidth &textWidth) {
    if (grid.ColWidth(col) == 0)
        return;
    float width = 0;
    for (int row = 0; row < grid.Rows(); ++row)
        width = std::fmax(width, textWidth(grid.TextMatrix(row, col)));
    if (width < narrowest)
        width = widthOfNarrow;
    grid.setColWidth(col, static_cast<int>(std::nearbyint(width + padding)));
}

} // namespace

void initGrid(Grid &grid, bool gridColor) {
    const RedrawPause pause(grid);
    grid.setColAlignment(gridColumn::Name, 0);
    grid.setColWidth(gridColumn::PositionCount, 0);
    grid.setColWidth(gridColumn::CpcCount, 0);
    // The summary keeps its cell colours here; those of a data row must not become the summary's.
    removeDataRows(grid);
    grid.setRows(3);
    for (int row = 1; row < grid.Rows(); ++row) {
        for (int col = 0; col < grid.Cols(); ++col)
            grid.setTextMatrix(row, col, QString());
    }
    for (std::size_t col = 0; col < columns.size(); ++col)
        grid.setTextMatrix(0, static_cast<int>(col), QLatin1String(columns[col].heading));
    grid.setForeColor(gridColor ? green : black);
}

void resetSummary(Grid &grid) {
    const RedrawPause pause(grid);
    for (std::size_t col = 0; col < columns.size(); ++col)
        grid.setTextMatrix(grid.Rows() - 1, static_cast<int>(col),
                           QLatin1String(columns[col].zeroText));
}

void removeDataRows(Grid &grid) {
    const RedrawPause pause(grid);
    while (grid.Rows() > 3)
        grid.RemoveItem(1);
}

void sizeColumns(Grid &grid, int col, const TextWidth &textWidth) {
    const RedrawPause pause(grid);
    if (col >= 0 && col < grid.Cols()) {
        sizeColumn(grid, col, textWidth);
        return;
    }
    for (int each = 0; each < grid.Cols(); ++each)
        sizeColumn(grid, each, textWidth);
}

} // namespace veltrona
