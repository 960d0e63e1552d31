#include "core/import/rowReader.h"

#include "core/base/blanks.h"

namespace veltrona {

RowReader::RowReader(const ReportColumnNames &names) {
    for (std::size_t i = 0; i < names.size(); ++i)
        m_spellings[i] = names[i].toStdString();
}

void RowReader::read(const xml::NodeReader &nodes) {
    m_values.fill({});
    std::size_t place = 0;
    for (const xml::Attribute &attribute : nodes.attributes()) {
        if (place == m_places.size())
            m_places.push_back({std::string(attribute.name), columnOf(attribute.name)});
        else if (m_places[place].name != attribute.name)
            m_places[place] = {std::string(attribute.name), columnOf(attribute.name)};
        const int column = m_places[place++].column;
        if (column >= 0)
            m_values[static_cast<std::size_t>(column)] = withoutBlanks(attribute.value);
    }
}

int RowReader::columnOf(std::string_view name) const {
    for (std::size_t i = 0; i < m_spellings.size(); ++i) {
        if (m_spellings[i] == name)
            return static_cast<int>(i);
    }
    return -1;
}

} // namespace veltrona
