// Finds the values of the declared columns among a row's attributes.
#pragma once

#include "core/import/reportColumns.h"
#include "core/platform/xml/document.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace veltrona {

class RowReader {
public:
    explicit RowReader(const ReportColumnNames &names);

    /// Reads the current element. The values are valid as long as the document.
    void read(const xml::NodeReader &nodes);
    /// Without blanks around it; empty where the column isn't declared or the row lacks it.
    std::string_view value(int column) const { return m_values[static_cast<std::size_t>(column)]; }

private:
    struct Place {
        std::string name;
        int column;
    };
    int columnOf(std::string_view name) const;

    std::array<std::string, reportColumnCount> m_spellings;
    // The attributes of the previous row by their places: most rows have the same ones.
    std::vector<Place> m_places;
    std::array<std::string_view, reportColumnCount> m_values;
};

} // namespace veltrona
