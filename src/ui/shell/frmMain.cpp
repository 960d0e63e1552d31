#include "ui/shell/frmMain.h"

#include "core/analysis/dateRanges.h"
#include "core/analysis/grid/statisticsGrid.h"
#include "core/database/projectFile.h"
#include "core/import/importRows.h"
#include "core/platform/dialogs/errorFilter.h"
#include "core/platform/services.h"
#include "core/platform/xml/document.h"
#include "core/shell/modMain.h"
#include "core/shell/settings.h"
#include "ui/shell/frmAbout.h"
#include "ui/shell/frmOptions.h"

#include <QApplication>
#include <QCloseEvent>

namespace veltrona {

bool frmMain::Form_Load() {
    modMain::initDataFolder();
    modMain::DbFileName.clear();
    loadSetting(settingsKey, QStringLiteral("dbfname"), modMain::DbFileName);
    if (modMain::DbFileName.count(u' ') == modMain::DbFileName.size())
        useDefaultProject();
    else
        modMain::ProjectTitle = getFileName(modMain::DbFileName);
    frmOptions::instance().load();
    return openFirstProject();
}

void frmMain::Form_Unload() {
    if (m_unloaded)
        return;
    m_unloaded = true;
    modMain::RowSet.reset();
    modMain::Records.reset();
    modMain::DbConn.reset();
    modMain::ReportDoc.reset();
    modMain::ExitFlag = true;
    QApplication::quit();
}

void frmMain::initApp(bool first) {
    Q_ASSERT(first == !modMain::DbConn);
    m_viewStale = false;
    modMain::ConnectionText = modMain::DbFileName;
    auto connection = openProject(modMain::ConnectionText);
    auto reportDocument = std::make_unique<xml::Document>();
    auto rowSet = std::make_unique<sqlite::Statement>(prepareDuplicateTest(*connection));
    auto records = std::make_unique<ProjectRecords>(*connection);
    std::swap(modMain::DbConn, connection);
    std::swap(modMain::RowSet, rowSet);
    std::swap(modMain::Records, records);
    std::swap(modMain::ReportDoc, reportDocument);
    try {
        loadDefaults();
    } catch (...) {
        std::swap(modMain::DbConn, connection);
        std::swap(modMain::RowSet, rowSet);
        std::swap(modMain::Records, records);
        std::swap(modMain::ReportDoc, reportDocument);
        m_viewStale = true;
        throw;
    }
}

void frmMain::loadDefaults() {
    {
        // The last steps refresh everything, so the combos' own refreshes can be spared.
        const RefreshPause pause(*this);
        cboRange.setListIndex(static_cast<int>(RangePreset::LastWeek));
        cboLeft.setListIndex(0);
        cboGroup.setListIndex(0);
    }
    flxStat.setRedraw(false);
    initGrid(flxStat, modMain::GridColor);
    flxStat.setRedraw(true);
    rebuildViews();
}

void frmMain::closeEvent(QCloseEvent *event) {
    if (m_importing) {
        // The loader is at work on the project: it stops at its next step and closes then.
        services().endRequested = true;
        event->ignore();
        return;
    }
    Form_Unload();
    event->accept();
}

void frmMain::mnuImport_Click() {
    impRep();
}

void frmMain::mnuExport_Click() {
    expRep();
}

void frmMain::mnuPRint_Click() {
    prnRep();
}

void frmMain::mnuExit_Click() {
    close();
}

void frmMain::mnuOptions_Click() {
    frmOptions::instance().Show();
}

void frmMain::mnuAbout_Click() {
    frmAbout::instance().Show();
}

void frmMain::Toolbar1_ButtonClick(const QString &key) {
    if (key == QLatin1String("Imp"))
        impRep();
    else if (key == QLatin1String("Exp"))
        expRep();
    else if (key == QLatin1String("Prn"))
        prnRep();
}

} // namespace veltrona
