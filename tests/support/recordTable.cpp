#include "support/recordTable.h"

#include "core/database/projectFile.h"
#include "support/projects.h"

namespace veltrona::test {

RecordTable::RecordTable() {
    const QString path = m_folder.filePath("records.vlt");
    makeProject(projectTemplate(), path);
    m_connection = openProject(path);
    m_connection->execute("PRAGMA synchronous = OFF");
    m_connection->execute("PRAGMA journal_mode = MEMORY");
}

void RecordTable::insert(std::map<std::string, QVariant> values) {
    values.emplace("CreativeId", ++m_creativeId);
    std::string columns;
    std::string marks;
    for (const auto &[column, value] : values) {
        columns += (columns.empty() ? "" : ", ") + column;
        marks += marks.empty() ? "?" : ", ?";
    }
    sqlite::Statement statement =
        m_connection->prepare("INSERT INTO tblGoogleDays (" + columns + ") VALUES (" + marks + ")");
    int parameter = 0;
    for (const auto &[column, value] : values) {
        ++parameter;
        if (value.typeId() == QMetaType::QString)
            statement.bind(parameter, value.toString());
        else if (value.typeId() == QMetaType::Double)
            statement.bind(parameter, value.toDouble());
        else
            statement.bind(parameter, value.toLongLong());
    }
    statement.step();
}

} // namespace veltrona::test
