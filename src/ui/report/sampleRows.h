// The few rows of a report's statistics that decide how all of them are laid out.
#pragma once

#include "core/report/report.h"

#include <QFont>
#include <QString>

#include <array>
#include <vector>

namespace veltrona {

/// A value in the form in which a document can take it: one line, shortened where nobody could read
/// it, without characters that have a meaning of their own in documents.
QString shownValue(const QString &text);

/// Widths of texts added up from their characters: exact enough for Latin texts, and many times
/// quicker than laying them out.
class CharacterWidths {
public:
    explicit CharacterWidths(const QFont &font) : m_font(font) {}

    double of(QStringView text);
    static bool areExactFor(QStringView text);

private:
    QFont m_font;
    std::array<float, 0x10000> m_widths{}; // 0 where it hasn't been asked for
};

/// In their order: the rows that hold a column's longest text or longest word and so decide the
/// widths, a marked one, the first one and the last one.
std::vector<ReportRow> sampleRows(const std::vector<ReportRow> &rows, const QFont &font);

} // namespace veltrona
