#include "core/shell/modMain.h"

#include "core/platform/desktop/folders.h"
#include "core/platform/xml/document.h"

namespace veltrona::modMain {

bool ExitFlag = false;
QString DataFolder;
QString DbFileName;
QString ProjectTitle;
QString ConnectionText;
std::unique_ptr<sqlite::Connection> DbConn;
std::unique_ptr<sqlite::Statement> RowSet;
std::unique_ptr<ProjectRecords> Records;
std::unique_ptr<xml::Document> ReportDoc;
ReportColumnNames ReportColumns;
int ReportRowCount = 0;

void initDataFolder() {
    const QString folder = desktop::localDataFolder();
    DataFolder = folder.isEmpty() ? desktop::programFolder() : folder;
}

QString getSpecialFolder(int csidl) {
    return csidl == documentsFolder ? desktop::documentsFolder() : QString();
}

} // namespace veltrona::modMain
