// A temporary folder with projects in it, for the tests of project files.
#pragma once

#include "core/database/projectFile.h"
#include "support/projectTemplate.h"
#include "support/testFolder.h"

namespace veltrona {

class ProjectFolder : protected test::TestFolder {
protected:
    QString project(const QString &name = QStringLiteral("p.vlt")) const {
        makeProject(test::projectTemplate(), path(name));
        return path(name);
    }
};

} // namespace veltrona
