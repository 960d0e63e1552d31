// A temporary folder with projects in it, for the tests of project files.
#pragma once

#include "core/database/projectFile.h"
#include "support/testFolder.h"

#include <QCoreApplication>

namespace veltrona {

class ProjectFolder : protected test::TestFolder {
protected:
    /// Beside the test program, like the program's own.
    static QString templatePath() {
        return QCoreApplication::applicationDirPath() + QStringLiteral("/data.dat");
    }

    QString project(const QString &name = QStringLiteral("p.vlt")) const {
        makeProject(templatePath(), path(name));
        return path(name);
    }
};

} // namespace veltrona
