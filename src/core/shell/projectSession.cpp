#include "core/shell/projectSession.h"

#include "core/database/projectFile.h"
#include "core/design/product.h"
#include "core/import/importRows.h"
#include "core/platform/desktop/paths.h"
#include "core/platform/services.h"
#include "core/shell/settings.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QScopedValueRollback>

#include <chrono>

namespace veltrona {

static const QString lastProject = QStringLiteral("dbfname");

/// The end of a block of records comes on top of it, and nobody notices 16 ms.
static constexpr std::chrono::milliseconds slice{4};

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

RecordsLeft ProjectSession::readAhead() {
    if (!records)
        return RecordsLeft::None;
    const QScopedValueRollback<int> noWait(services().lockWait, 0);
    const QDeadlineTimer end(slice);
    try {
        const sqlite::ReadTransaction reading(*connection);
        const bool isMore = records->readAhead([&end] { return end.hasExpired(); });
        return isMore ? RecordsLeft::Some : RecordsLeft::None;
    } catch (const Failure &failure) {
        return sqlite::isLocked(failure) ? RecordsLeft::Locked : RecordsLeft::None;
    }
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
