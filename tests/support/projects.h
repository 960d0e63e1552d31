// Projects for tests, made from the template that lies beside the test programs as beside the
// program.
#pragma once

#include "core/database/projectFile.h"
#include "support/testFolder.h"

#include <QCoreApplication>

namespace veltrona::test {

inline QString projectTemplate() {
    return QCoreApplication::applicationDirPath() + "/data.dat";
}

inline qint64 number(const sqlite::Connection &connection, std::string_view sql) {
    sqlite::Statement statement = connection.prepare(sql);
    return statement.step() ? statement.int64(0) : -1;
}

inline qint64 recordCount(const sqlite::Connection &connection) {
    return number(connection, "SELECT count(*) FROM tblGoogleDays");
}

class ProjectFolder : protected TestFolder {
protected:
    QString project(const QString &name = "p.vlt") const {
        makeProject(projectTemplate(), path(name));
        return path(name);
    }
};

} // namespace veltrona::test
