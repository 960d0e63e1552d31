#include "shell/modMain.h"

#include "platform/desktop/folders.h"
#if __has_include("platform/xml/document.h")
#include "platform/xml/document.h"
#else
namespace veltrona::xml {
class Document {};
} // namespace veltrona::xml
#endif

namespace veltrona::modMain {

bool ExitFlag = false;
QString DataFolder;
QString DbFileName;
QString ProjectTitle;
QString ConnectionText;
std::unique_ptr<sqlite::Connection> DbConn;
std::unique_ptr<sqlite::Statement> RowSet;
std::unique_ptr<xml::Document> ReportDoc;
ReportColumnNames ReportColumns;
int ReportRowCount = 0;
bool GridColor = false;
bool ExportColor = false;
bool PrintColor = false;

void initDataFolder() {
    const QString folder = desktop::localDataFolder();
    DataFolder = folder.isEmpty() ? desktop::programFolder() : folder;
}

QString getSpecialFolder(int csidl) {
    constexpr int documents = 5;
    return csidl == documents ? desktop::documentsFolder() : QString();
}

} // namespace veltrona::modMain
