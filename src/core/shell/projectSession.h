// The open project as one value: opened, replaced and released as a whole. Also where projects are
// found, and the setting that remembers the last one.
#pragma once

#include "core/database/projectRecords.h"
#include "core/platform/sqlite/connection.h"
#include "core/platform/xml/document.h"

#include <QString>

#include <memory>

namespace veltrona {

/// What there is to read into memory after a slice.
enum class RecordsLeft { None, Some, Locked };

/// Members are released from the last to the first: what uses the connection before it.
struct ProjectSession {
    /// The full path of the project, open or to be opened next, and the text of the tree's root.
    QString path;
    QString title;
    QString connectionText;

    std::unique_ptr<sqlite::Connection> connection;
    std::unique_ptr<sqlite::Statement> duplicateTest;
    std::unique_ptr<ProjectRecords> records;
    /// Keeps the last report until the next one is loaded.
    std::unique_ptr<xml::Document> reportDocument;

    /// A session of the project at `path`, not opened yet.
    static ProjectSession at(const QString &path);

    /// Opens the project at `path`. Throws Failure and leaves an earlier connection as it was.
    void open();
    void release();

    /// Reads records into memory for a few milliseconds, ahead of the query that needs them. Waits
    /// for no lock, and leaves a failure to that query, which reports it.
    RecordsLeft readAhead();
};

QString defaultProjectPath(const QString &dataFolder);
/// The empty project that new ones are copied from.
QString projectTemplatePath();

/// Empty if there is none.
QString rememberedProject();
void rememberProject(const QString &path);

} // namespace veltrona
