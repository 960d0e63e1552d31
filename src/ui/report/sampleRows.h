// The few rows of the statistics that determine the layout of all of them.
#pragma once

#include "core/report/report.h"

#include <QFont>
#include <QString>

#include <array>
#include <vector>

namespace veltrona {

/// A value as a document can hold it: on one line, shortened if very long, without characters that
/// have a special meaning in documents.
QString shownValue(const QString &text);

/// Adds up the widths of a text's characters: exact enough for Latin texts, and many times faster
/// than a layout.
class CharacterWidths {
public:
    explicit CharacterWidths(const QFont &font) : m_font(font) {}

    double of(QStringView text);
    static bool areExactFor(QStringView text);

private:
    QFont m_font;
    std::array<float, 0x10000> m_widths{}; // 0 if not yet measured
};

/// The rows with the widest text or word of a column, which determine the columns' widths, a marked
/// row, the first and the last one, in their order.
std::vector<ReportRow> sampleRows(const std::vector<ReportRow> &rows, const QFont &font);

} // namespace veltrona
