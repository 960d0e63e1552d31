#include "core/report/report.h"

#include "core/base/text.h"
#include "core/platform/services.h"

namespace veltrona {

namespace {

ReportCells cellsOf(const Grid &grid, int row) {
    ReportCells cells;
    for (int col = 0; col < gridColumn::Shown; ++col)
        cells[std::size_t(col)] = withoutBlanks(grid.text(row, col)).toString();
    return cells;
}

} // namespace

Report makeReport(const ReportSource &source, bool doColor) {
    const QChar separator = dateSeparator(source.locale);
    Report report;
    report.now = source.locale.toString(services().now(), QLocale::ShortFormat);
    report.details = reportDetails(source.selected);
    report.start = reportDate(source.range.start, separator);
    report.end = reportDate(source.range.end, separator);
    report.metric = source.metric;
    report.options = source.options;
    if (!source.options.details)
        return report;
    const Grid &grid = *source.grid;
    report.headings = cellsOf(grid, gridRow::Heading);
    report.rows.reserve(std::size_t(grid.Rows() - gridRow::FirstData));
    for (int row = gridRow::FirstData; row < grid.Rows(); ++row)
        report.rows.push_back({cellsOf(grid, row), doColor && grid.isLoss(row)});
    return report;
}

QStringList reportDetails(const NodePath &path) {
    constexpr qsizetype levels = 5;
    return path.names + QStringList(levels - path.names.size(), u"All"_s);
}

QChar dateSeparator(const QLocale &locale) {
    const QString format = locale.dateFormat(QLocale::ShortFormat);
    bool quoted = false;
    for (const QChar each : format) {
        if (each == u'\'')
            quoted = !quoted;
        else if (!quoted && (each.isPunct() || each.isSymbol()))
            return each;
    }
    return u'/';
}

QString reportDate(DateValue date, QChar separator) {
    const CalendarDay day = calendarDay(dayNumber(date));
    return padded(day.month) + separator + padded(day.day) + separator + padded(day.year, 4);
}

} // namespace veltrona
