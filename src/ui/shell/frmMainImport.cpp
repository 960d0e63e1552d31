// frmMain: the import of a report.
#include "core/analysis/nodeStatistics.h"
#include "core/analysis/statisticsGrid.h"
#include "core/base/product.h"
#include "core/import/columnCheck.h"
#include "core/import/importRows.h"
#include "core/import/parserReport.h"
#include "core/platform/desktop/endSignals.h"
#include "core/platform/dialogs/dialogs.h"
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
    if (cdMain.FileName.isEmpty() || !loadDocument())
        return;
    removeDataRows(flxStat);
    modMain::ReportColumns = {};
    const std::exception_ptr failed = failureOf([this] { loadReport(); });
    if (desktop::endRequested())
        close();
    // The end of the session closes a message box and then this window, project and all.
    if (m_unloaded)
        return;
    // Whatever was stored before a failure is there, so the views show it before the message comes.
    const std::exception_ptr unshown = failureOf([this] { rebuildViews(); });
    if (unshown) // the summary of the rows that are gone must not stand there as if it were of any
        pourStatistics({}, flxStat, modMain::GridColor);
    if (failed || unshown)
        std::rethrow_exception(failed ? failed : unshown);
}

/// Tells why the chosen file can't be loaded.
bool frmMain::loadDocument() {
    {
        const Hourglass hourglass;
        if (modMain::ReportDoc->load(cdMain.FileName))
            return true;
    }
    dialogs().message(MessageStyle::OkExclamation, productName,
                      parserReport(modMain::ReportDoc->parseError()));
    return false;
}

void frmMain::loadReport() {
    const ColumnCheck check = checkColumns(*modMain::ReportDoc);
    modMain::ReportColumns = check.names;
    modMain::ReportRowCount = check.rowCount;
    if (!check.passed) {
        dialogs().message(
            MessageStyle::OkExclamation, QStringLiteral("Error"),
            QStringLiteral("Cannot load the XML file due to missing some report columns."));
        return;
    }
    frmWait &wait = frmWait::instance();
    wait.init(0, modMain::ReportRowCount);
    m_importing = true;
    const auto done = qScopeGuard([this] { m_importing = false; });
    wait.Show([&] {
        importRows(*modMain::DbConn, *modMain::RowSet, *modMain::ReportDoc, check, [&wait] {
            wait.inc();
            return !desktop::endRequested();
        });
    });
}

} // namespace veltrona
