// frmMain: the import of a report.
#include "core/analysis/grid/nodeStatistics.h"
#include "core/analysis/grid/statisticsGrid.h"
#include "core/base/product.h"
#include "core/import/columnCheck.h"
#include "core/import/importRows.h"
#include "core/import/parserReport.h"
#include "core/platform/dialogs/dialogs.h"
#include "core/platform/services.h"
#include "core/platform/xml/document.h"
#include "core/shell/modMain.h"
#include "ui/import/frmWait.h"
#include "ui/shell/frmMain.h"
#include "ui/views/hourglass.h"

#include <QScopeGuard>

namespace veltrona {

/// What a step has failed by, to be told when the next ones have run.
template<class Step>
static std::exception_ptr failureOf(Step &&step) {
    try {
        step();
        return nullptr;
    } catch (const Failure &) {
        return std::current_exception();
    }
}

void frmMain::impRep() {
    cdMain = {.DefaultExt = QStringLiteral("xml"),
              .Filter = QStringLiteral("XML files (*.xml)|*.xml"),
              .DialogTitle = QStringLiteral("Import a Google Report XML file"),
              .InitDir = modMain::getSpecialFolder(modMain::documentsFolder)};
    cdMain.ShowOpen();
    if (!cdMain.FileName.isEmpty())
        importReport(cdMain.FileName, QString());
}

bool frmMain::importReport(const QString &path, const QString &note) {
    if (!loadDocument(path, note))
        return false;
    removeDataRows(flxStat);
    modMain::ReportColumns = {};
    bool passed = false;
    const std::exception_ptr failed = failureOf([&] { passed = loadReport(note); });
    if (services().endRequested)
        close();
    // The end of the session closes a message box and then this window, project and all.
    if (m_unloaded)
        return false;
    // Whatever was stored before a failure is there, so the views show it before the message comes.
    const std::exception_ptr unshown = failureOf([this] { rebuildViews(); });
    if (unshown) // the summary of the rows that are gone must not stand there as if it were of any
        fillGrid({}, flxStat, modMain::GridColor);
    if (failed || unshown)
        std::rethrow_exception(failed ? failed : unshown);
    return passed;
}

/// Tells why the file can't be loaded.
bool frmMain::loadDocument(const QString &path, const QString &note) {
    {
        const Hourglass hourglass;
        if (modMain::ReportDoc->load(path))
            return true;
    }
    dialogs().message(MessageStyle::OkExclamation, productName,
                      parserReport(modMain::ReportDoc->parseError()) + note);
    return false;
}

bool frmMain::loadReport(const QString &note) {
    const ColumnCheck check = checkColumns(*modMain::ReportDoc);
    modMain::ReportColumns = check.names;
    modMain::ReportRowCount = check.rowCount;
    if (!check.passed) {
        dialogs().message(
            MessageStyle::OkExclamation, QStringLiteral("Error"),
            QStringLiteral("Cannot load the XML file due to missing some report columns.") + note);
        return false;
    }
    frmWait &wait = frmWait::instance();
    wait.init(0, modMain::ReportRowCount);
    m_importing = true;
    const auto done = qScopeGuard([this] { m_importing = false; });
    wait.Show([&] {
        importRows(*modMain::DbConn, *modMain::RowSet, *modMain::ReportDoc, check, [&wait] {
            wait.inc();
            return !services().endRequested;
        });
    });
    return true;
}

} // namespace veltrona
