#include "core/database/projectFile.h"

namespace veltrona {

QString projectTitle(const QString &path, QChar separator) {
    const QString name = path.mid(path.lastIndexOf(separator) + 1);
    return name.left(name.lastIndexOf(QLatin1Char('.')));
}

void cleanProject(sqlite::Connection &connection) {
    sqlite::Transaction transaction(connection);
    connection.execute("DELETE FROM tblGoogleDays");
    transaction.commit();
    try {
        connection.execute("VACUUM");
    } catch (const Failure &) {
        // The records are gone; the space can stay with the file until the next time.
    }
}

} // namespace veltrona
