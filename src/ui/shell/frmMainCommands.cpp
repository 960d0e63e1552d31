// frmMain: the commands on projects and reports.
#include "core/analysis/tree/navigationTexts.h"
#include "core/base/command.h"
#include "core/base/text.h"
#include "core/database/projectFile.h"
#include "core/design/product.h"
#include "core/import/columnCheck.h"
#include "core/import/importRows.h"
#include "core/platform/dialogs/dialogs.h"
#include "core/platform/dialogs/errorFilter.h"
#include "core/platform/services.h"
#include "core/shell/modMain.h"
#include "core/shell/projectSession.h"
#include "ui/import/frmWait.h"
#include "ui/report/frmOutput.h"
#include "ui/shell/frmAbout.h"
#include "ui/shell/frmMain.h"
#include "ui/shell/frmOptions.h"
#include "ui/shell/mainSurface.h"
#include "ui/views/busyCursor.h"
#include "ui/views/dialogs/qtDialogs.h"

#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QScopeGuard>

#include <vector>

namespace veltrona {

namespace {

CommonDialog projectDialog(const QString &title) {
    return {.DefaultExt = u"vlt"_s,
            .Filter = productName + u" Data files (*.vlt)|*.vlt"_s,
            .DialogTitle = title,
            .InitDir = modMain::getSpecialFolder(modMain::documentsFolder)};
}

bool isDefaultProject() {
    return modMain::DbFileName == defaultProjectPath(modMain::DataFolder);
}

OutputSettings outputSettings() {
    return {.documentsFolder = modMain::getSpecialFolder(modMain::documentsFolder),
            .dataFolder = modMain::DataFolder,
            .exportColor = modMain::ExportColor,
            .printColor = modMain::PrintColor};
}

/// The Failure of a step, to be reported when the next ones have run; null if there is none.
template<class Step>
std::exception_ptr failureOf(Step &&step) {
    try {
        step();
        return nullptr;
    } catch (const Failure &) {
        return std::current_exception();
    }
}

/// The end of a message about the report at `place`, if there is more than one.
QString noteAbout(const QStringList &reports, qsizetype place) {
    if (reports.size() == 1)
        return {};
    const auto quoted = [](const QString &path) {
        return u'"' + QFileInfo(path).fileName() + u'"';
    };
    QStringList left;
    for (const QString &path : reports.sliced(place + 1))
        left.append(quoted(path));
    QString note = u"\r\rThis was the report "_s + quoted(reports[place]) + u'.';
    if (!left.isEmpty())
        note += u" Not read any more: "_s + left.join(u", "_s) + u'.';
    return note;
}

} // namespace

QString frmMain::getFileName(const QString &fname) const {
    return projectTitle(fname);
}

void frmMain::initApp(bool first) {
    Q_ASSERT(!first || !modMain::DbConn);
    modMain::session().open();
    loadDefaults();
}

bool frmMain::openFirstProject() {
    for (;;) {
        try {
            const CommandScope command; // locks are waited for anew in each round
            // The folder also takes the printed report, so it has to be there for any project.
            try {
                makeMissingProject(projectTemplatePath(), defaultProjectPath(modMain::DataFolder));
            } catch (const Failure &) {
                if (isDefaultProject())
                    throw;
            }
            initApp(true);
            return true;
        } catch (const Failure &failure) {
            if (services().endRequested || !askAboutBadProject(failure))
                return false;
        }
    }
}

bool frmMain::askAboutBadProject(const Failure &failure) {
    const bool isDefault = isDefaultProject();
    const QString text = u"The project \"%1\" can't be opened.\r\rError %2: %3"_s.arg(
        QDir::toNativeSeparators(modMain::DbFileName), QString::number(failure.number()),
        failure.text());
    const bool isLocked = sqlite::isLocked(failure);
    enum Way { OpenAnother, TryAgain, UseDefault, SetAside, Quit };
    // Renaming it would take file and journal away from the program that is writing.
    const bool canSetAside = isDefault && !isLocked && canRenameAside(modMain::DbFileName);
    const struct {
        Way way;
        QString button;
        bool isOffered;
    } ways[] = {{OpenAnother, u"&Open another..."_s, true},
                {TryAgain, u"&Try again"_s, isLocked || (isDefault && !canSetAside)},
                {UseDefault, u"&Use the default project"_s, !isDefault},
                {SetAside, u"&Set it aside and make a new one"_s, canSetAside},
                {Quit, u"&Quit"_s, true}};
    std::vector<Way> offered;
    QStringList buttons;
    for (const auto &each : ways) {
        if (!each.isOffered)
            continue;
        offered.push_back(each.way);
        buttons.append(each.button);
    }
    switch (offered[static_cast<std::size_t>(dialogs().choose(productName, text, buttons))]) {
    case OpenAnother:
        if (chooseProjectFile()) {
            const QString path = withoutBlanks(cdMain.FileName).toString();
            rememberProject(path);
            modMain::session() = ProjectSession::at(path);
        }
        break;
    case TryAgain:
        break;
    case UseDefault:
        if (!isLocked) // else it is there again at the next start
            rememberProject(QString());
        modMain::session() = ProjectSession::at(defaultProjectPath(modMain::DataFolder));
        break;
    case SetAside:
        filtered([] { renameAside(modMain::DbFileName); });
        break;
    case Quit:
        return false;
    }
    return true;
}

bool frmMain::chooseProjectFile() {
    cdMain = projectDialog(u"Open database"_s);
    cdMain.ShowOpen();
    return !cdMain.FileName.isEmpty();
}

void frmMain::mnuOpen_Click() {
    if (chooseProjectFile())
        switchProject(withoutBlanks(cdMain.FileName).toString(), QString());
}

void frmMain::mnuNew_Click() {
    cdMain = projectDialog(u"Create a new database"_s);
    cdMain.Flags = CommonDialog::overwriteAndCreatePrompt;
    cdMain.ShowSave();
    if (cdMain.FileName.isEmpty())
        return;
    const QString path = withExtension(withoutBlanks(cdMain.FileName).toString(), u"vlt"_s);
    if (isSameFile(path, modMain::DbFileName)) {
        dialogs().message(MessageStyle::OkExclamation, productName,
                          u"\"%1\" is the project that is open. Choose another name "
                          "for the new project."_s.arg(QDir::toNativeSeparators(path)));
        return;
    }
    switchProject(path, projectTemplatePath());
}

/// The setting takes the new path whatever follows. If the switch fails, the session before is in
/// force again when the failure is reported.
void frmMain::switchProject(const QString &path, const QString &newFromTemplate) {
    rememberProject(path);
    ProjectSession before = std::exchange(modMain::session(), ProjectSession::at(path));
    auto restore = qScopeGuard([&] {
        std::swap(modMain::session(), before);
        const bool wasOpened = before.connection != nullptr;
        before.release();
        if (wasOpened) // so the view may be its own in part
            filtered([this] { loadDefaults(); });
    });
    if (!newFromTemplate.isEmpty())
        makeProject(newFromTemplate, path);
    initApp(false);
    restore.dismiss();
}

void frmMain::mnuClean_Click() {
    const Answer answer =
        dialogs().message(MessageStyle::YesNoCancelCriticalDefaultNo, u"Delete all the data"_s,
                          u"Are you sure you want to erase all of the database contents?"_s);
    if (answer != Answer::Yes)
        return;
    const BusyCursor busy;
    cleanProject(*modMain::DbConn);
    loadDefaults();
}

void frmMain::impRep() {
    cdMain = {.DefaultExt = u"xml"_s,
              .Filter = u"XML files (*.xml)|*.xml"_s,
              .DialogTitle = u"Import a Google Report XML file"_s,
              .InitDir = modMain::getSpecialFolder(modMain::documentsFolder)};
    cdMain.ShowOpen();
    if (!cdMain.FileName.isEmpty())
        importReport(cdMain.FileName, QString());
}

void frmMain::importReports(const QStringList &paths) {
    for (qsizetype i = 0; i < paths.size(); ++i) {
        const QString note = noteAbout(paths, i);
        try {
            if (!importReport(paths[i], note))
                return;
        } catch (const Failure &failure) {
            throw Failure(failure.number(), failure.text() + note);
        }
    }
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
    if (m_state == State::Unloaded)
        return false;
    // Rows stored before a failure stay, so the views show them before the message comes.
    const std::exception_ptr unshown = failureOf([this] { m_view.rebuild(); });
    if (unshown) // else the summary would still be that of the rows that are gone
        m_view.clearStatistics();
    if (failed || unshown)
        std::rethrow_exception(failed ? failed : unshown);
    return passed;
}

/// Reports why the file can't be loaded.
bool frmMain::loadDocument(const QString &path, const QString &note) {
    {
        const BusyCursor busy;
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
        dialogs().message(MessageStyle::OkExclamation, u"Error"_s,
                          u"Cannot load the XML file due to missing some report columns."_s + note);
        return false;
    }
    frmWait &wait = frmWait::instance();
    wait.init(0, modMain::ReportRowCount);
    m_state = State::Importing;
    const auto done = qScopeGuard([this] { m_state = State::Open; });
    wait.Show([&] {
        importRows(*modMain::DbConn, *modMain::RowSet, *modMain::ReportDoc, check, [&wait] {
            wait.inc();
            return !services().endRequested;
        });
    });
    return true;
}

/// Also copies the chart to the clipboard and `picChart`. The report uses `m_picture` and works
/// without a clipboard.
const drawing::Picture *frmMain::copyChart() {
    const QImage image = m_surface->copyChart();
    if (image.isNull())
        return nullptr;
    QGuiApplication::clipboard()->setImage(image);
    m_picture = drawing::Picture(drawing::createBitmap(image.width(), image.height(),
                                                       image.constBits(), image.bytesPerLine()));
    return &m_picture;
}

/// A report takes node and dates from the controls and the figures from the view. After a failed
/// refresh these differ, so it is repeated first.
ReportSource frmMain::reportSource() {
    m_view.makeCurrent();
    ReportSource source;
    if (const TreeNode *node = treeList.SelectedItem())
        source.selected = pathOf(*node);
    source.range = m_view.dateRange();
    source.grid = &flxStat;
    source.metric = cboLeft.Text();
    source.copyChart = [this] { return copyChart(); };
    return source;
}

// A window manager may lose the focus where a dialog closes together with the one above it, so the
// main window asks for it.
void frmMain::expRep() {
    frmOutput(reportSource(), outputSettings()).Show();
    activateWindow();
}

void frmMain::prnRep() {
    frmOutput output(reportSource(), outputSettings());
    output.setPrintRole();
    output.Show();
    activateWindow();
}

void frmMain::mnuOptions_Click() {
    frmOptions::instance().Show();
}

void frmMain::mnuAbout_Click() {
    frmAbout::instance().Show();
}

void frmMain::Toolbar1_ButtonClick(const QString &key) {
    if (key == "Imp"_L1)
        impRep();
    else if (key == "Exp"_L1)
        expRep();
    else if (key == "Prn"_L1)
        prnRep();
}

} // namespace veltrona
