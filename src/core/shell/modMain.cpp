#include "core/shell/modMain.h"

#include "core/platform/desktop/paths.h"

namespace veltrona::modMain {

bool ExitFlag = false;
QString DataFolder;

static ProjectSession openSession;
QString &DbFileName = openSession.path;
QString &ProjectTitle = openSession.title;
QString &ConnectionText = openSession.connectionText;
std::unique_ptr<sqlite::Connection> &DbConn = openSession.connection;
std::unique_ptr<sqlite::Statement> &RowSet = openSession.duplicateTest;
std::unique_ptr<ProjectRecords> &Records = openSession.records;
std::unique_ptr<xml::Document> &ReportDoc = openSession.reportDocument;

ReportColumnNames ReportColumns;
int ReportRowCount = 0;

ProjectSession &session() {
    return openSession;
}

void initDataFolder() {
    const QString folder = desktop::localDataFolder();
    DataFolder = folder.isEmpty() ? desktop::programFolder() : folder;
}

QString getSpecialFolder(int csidl) {
    return csidl == documentsFolder ? desktop::documentsFolder() : QString();
}

} // namespace veltrona::modMain
