// The main window: menu bar, tool bar, status bar and the surface with tree, grid and chart. Builds
// them and passes each command to the open project, the analysis view or a form.
#pragma once

#include "core/controls/commonDialog.h"
#include "core/picture/drawing.h"
#include "core/report/report.h"
#include "core/shell/analysisView.h"
#include "ui/shell/readAhead.h"

#include <QMainWindow>

#include <functional>

class QScrollArea;
class QToolBar;

namespace veltrona {

class Failure;
class MainSurface;

class frmMain : public QMainWindow, public AnalysisControls {
    Q_OBJECT

public:
    frmMain();
    ~frmMain() override;

    /// Opens `modMain::DbFileName` in place of the open project and puts the view into its starting
    /// state. `first` is true only at the start of the program. Throws Failure if the project can't
    /// be opened, and leaves the earlier connection open.
    void initApp(bool first);
    /// Puts the whole view into its starting state for the open project.
    void loadDefaults() { m_view.loadDefaults(); }
    QString getFileName(const QString &fname) const;
    void impRep();
    void expRep();
    void prnRep();
    void sumup() { m_view.sumup(); }

    /// Finds the folders, the project and the colour flags, and opens the project; false if the
    /// user quits at a project that can't be opened.
    bool Form_Load();

    CommonDialog cdMain;

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    enum class State { Open, Importing, Unloaded };

    void buildCommands();
    void buildToolBar();
    void buildStatusBar();
    /// Every command of menu and tool bar starts here.
    void runCommand(const std::function<void()> &command);
    /// The menu of the view that has the focus.
    void openContextMenu();

    void applyDesignSize();
    void applyScale();
    /// To another font or style.
    void refit();
    void applyMinimumSize();
    QSize surfaceSize() const;
    void Form_Resize();

    void Form_Unload();

    void mnuNew_Click();
    void mnuOpen_Click();
    void mnuClean_Click();
    void mnuPRint_Click() { prnRep(); }
    void mnuImport_Click() { impRep(); }
    void mnuExport_Click() { expRep(); }
    void mnuExit_Click() { close(); }
    void mnuOptions_Click();
    void mnuAbout_Click();
    void Toolbar1_ButtonClick(const QString &key);

    bool openFirstProject();
    bool askAboutBadProject(const Failure &failure);
    bool chooseProjectFile();
    void switchProject(const QString &path, const QString &newFromTemplate);

    /// False if the report wasn't read to its end; the message that says why ends with `note`.
    bool importReport(const QString &path, const QString &note);
    bool loadDocument(const QString &path, const QString &note);
    bool loadReport(const QString &note);
    /// One after the other, up to the first that fails.
    void importReports(const QStringList &paths);

    ReportSource reportSource();
    const drawing::Picture *copyChart();

    QToolBar *Toolbar1 = nullptr;
    MainSurface *m_surface;
    QScrollArea *m_scroll; // around the surface
    AnalysisView m_view;
    ReadAhead m_readAhead{m_view, this};
    drawing::Picture m_picture; // what picChart holds, for the report's graph
    State m_state = State::Open;
};

} // namespace veltrona
