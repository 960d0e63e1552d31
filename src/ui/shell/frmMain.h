// The main window: menu bar, tool bar, status bar and the surface with tree, grid and chart. It
// builds them, listens, and hands each command over: to the open project, to the analysis view, to
// a form.
#pragma once

#include "core/controls/commonDialog.h"
#include "core/picture/drawing.h"
#include "core/report/report.h"
#include "core/shell/analysisView.h"

#include <QMainWindow>

#include <functional>

class QToolBar;

namespace veltrona {

class Failure;
class MainSurface;

class frmMain : public QMainWindow, public AnalysisControls {
    Q_OBJECT

public:
    frmMain();
    ~frmMain() override;

    /// Opens `modMain::DbFileName` in the place of the project that was open, and puts the view
    /// into its starting state. `first` is true only at the start of the program. If the open
    /// fails, the connection that was open stays, and the Failure comes out.
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
    void resizeEvent(QResizeEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    struct MenuEntry {
        const char *name;
        const char *caption;
        void (frmMain::*handler)();
    };
    enum class State { Open, Importing, Unloaded };

    void buildCommands();
    void addMenu(const char *name, const QString &title, std::initializer_list<MenuEntry> entries);
    void buildToolBar();
    void buildStatusBar();
    /// Every command of menu and tool bar starts here.
    void runCommand(const std::function<void()> &command);
    /// The menu of the view that has the focus.
    void openContextMenu();

    void applyDesignSize();
    void applyScale();
    void applyMinimumSize();
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
    /// One after the other; one that fails ends the rest.
    void importReports(const QStringList &paths);

    ReportSource reportSource();
    const drawing::Picture *copyChart();

    QToolBar *Toolbar1 = nullptr;
    MainSurface *m_surface;
    AnalysisView m_view;
    drawing::Picture m_picture; // what picChart holds, for the report's graph
    State m_state = State::Open;
};

} // namespace veltrona
