// The state that the whole program shares: the parts of the open project's session, the report
// being imported and the colour flags. Only the shell reads it; other rooms get what they need as
// arguments.
#pragma once

#include "core/import/reportColumns.h"
#include "core/shell/projectSession.h"

#include <QString>

#include <memory>

namespace veltrona::modMain {

/// True once the main window has unloaded.
extern bool ExitFlag;

/// The user's local application data folder, or the program's own folder without one.
extern QString DataFolder;
/// Holds everything about the open project; the names below are its parts.
ProjectSession &session();

/// Full path of the open project.
extern QString &DbFileName;
/// Its title: the text of the tree's root.
extern QString &ProjectTitle;
/// Names the project to SQLite.
extern QString &ConnectionText;

/// The one open connection, the duplicate test of the row loader, and the records in memory.
extern std::unique_ptr<sqlite::Connection> &DbConn;
extern std::unique_ptr<sqlite::Statement> &RowSet;
extern std::unique_ptr<ProjectRecords> &Records;
/// Keeps the last report until the next one is loaded.
extern std::unique_ptr<xml::Document> &ReportDoc;

extern ReportColumnNames ReportColumns;
/// Row elements of the report, at most 32,767.
extern int ReportRowCount;

inline bool GridColor = false;
inline bool ExportColor = false;
inline bool PrintColor = false;

/// Sets DataFolder.
void initDataFolder();

/// The number of the documents folder, the only one in use.
inline constexpr int documentsFolder = 5;

/// The path of a shell folder, or the empty text on any failure.
QString getSpecialFolder(int csidl);

} // namespace veltrona::modMain
