#include "core/database/dayTable.h"

namespace veltrona {

std::string dayInsertStatement() {
    std::string names;
    std::string values;
    for (const DayColumn &column : dayColumns) {
        names += names.empty() ? "" : ",";
        names += column.name;
        values += values.empty() ? "?" : ",?";
    }
    return "INSERT INTO tblGoogleDays (" + names + ") VALUES (" + values +
           ") ON CONFLICT (Campaign,Adgroup,KeyWord,kwType,GoogleDate,CreativeId) DO NOTHING";
}

} // namespace veltrona
