#include "core/shell/projectSession.h"

#include "core/database/projectFile.h"
#include "core/design/product.h"
#include "core/import/importRows.h"
#include "core/platform/desktop/paths.h"
#include "core/shell/settings.h"

#include <QDir>

namespace veltrona {

static const QString lastProject = QStringLiteral("dbfname");

ProjectSession ProjectSession::at(const QString &path) {
    ProjectSession session;
    session.path = path;
    session.title = projectTitle(path);
    return session;
}

void ProjectSession::open() {
    connectionText = path;
    auto opened = openProject(connectionText);
    auto test = std::make_unique<sqlite::Statement>(prepareDuplicateTest(*opened));
    release();
    connection = std::move(opened);
    duplicateTest = std::move(test);
    records = std::make_unique<ProjectRecords>(*connection);
    reportDocument = std::make_unique<xml::Document>();
}

void ProjectSession::release() {
    duplicateTest.reset();
    records.reset();
    connection.reset();
    reportDocument.reset();
}

QString defaultProjectPath(const QString &dataFolder) {
    return dataFolder + QDir::separator() + productName + QDir::separator() + productName +
           QStringLiteral(".vlt");
}

QString projectTemplatePath() {
    return desktop::programFolder() + QDir::separator() + QStringLiteral("data.dat");
}

QString rememberedProject() {
    QString path;
    loadSetting(settingsKey, lastProject, path);
    return path;
}

void rememberProject(const QString &path) {
    saveSetting(settingsKey, lastProject, path, textValue);
}

} // namespace veltrona
