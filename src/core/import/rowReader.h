// Picks the values of the declared columns out of a row's attributes.
#pragma once

#include "core/import/reportColumns.h"
#include "core/platform/xml/document.h"

#include <string>
#include <vector>

namespace veltrona {

class RowReader {
public:
    explicit RowReader(const ReportColumnNames &names);

    /// Reads the row at which the walk stands. The values live as long as the document.
    void read(const xml::Walk &walk);
    /// Without blanks around it; empty where the column isn't declared or the row lacks it.
    std::string_view value(int column) const { return m_values[static_cast<std::size_t>(column)]; }

private:
    struct Place {
        std::string name;
        int column;
    };
    int columnOf(std::string_view name) const;

    std::array<std::string, reportColumnCount> m_spellings;
    // What stood at each place in the row before: rows of a report resemble each other.
    std::vector<Place> m_places;
    std::array<std::string_view, reportColumnCount> m_values;
};

} // namespace veltrona
