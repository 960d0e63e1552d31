// The real main window on a fresh home folder: settings, data folder, dialogs and clock are the
// test's own. Dumps of tree, grid and chart as texts.
#pragma once

#include "support/dialogRecorder.h"
#include "support/smallReport.h"
#include "ui/shell/frmMain.h"

#include <QDateTime>
#include <QTemporaryDir>

#include <memory>

namespace veltrona::test {

class MainWindow {
public:
    /// Noon of the day that the clock stands at.
    explicit MainWindow(const QDate &today = QDate(2007, 5, 16));
    ~MainWindow();

    /// Loads and shows the window; false if the start was given up at a bad project.
    bool start();
    /// Closes the window and makes a new one on the same home folder, as a second start does.
    bool restart();
    void close();

    frmMain &window() { return *m_window; }
    QString home() const { return m_home.path(); }
    QString file(const QString &name) const { return m_home.filePath(name); }
    /// The setting that names the project; "(none)" if there is none.
    static QString remembered();
    static void remember(const QString &path);
    /// Writes a file into the home folder and gives its path.
    QString writeFile(const QString &name, const QByteArray &content) const;

    /// Runs a command by its action's name: "mnuImport", or "Imp" for the tool bar.
    void command(const QString &action);
    /// Answers the file dialog with the path and runs the import.
    void importReport(const QString &path);
    /// The same for a small report made of these lines.
    void importRows(const QStringList &lines, const QStringList &columns = smallReportColumns);
    /// The control's view, by the control's name.
    template<class View = QWidget>
    View *view(const QString &name) {
        return m_window->findChild<View *>(name);
    }
    /// Selects by clicking through the texts from the root down.
    void selectNode(const QStringList &texts);
    TreeNode *node(const QStringList &texts);

    /// A line for each node, indented by its level.
    QStringList treeDump() const;
    /// A line for each grid row, its visible cells parted by "|".
    QStringList gridDump() const;
    /// "label=value" for each bar.
    QStringList chartDump() const;
    QString caption() const;
    /// All four of the above.
    QStringList viewDump() const;

    DialogRecorder dialogs;

private:
    QTemporaryDir m_home;
    std::unique_ptr<frmMain> m_window;
};

/// A test whose functions each have a started window on a home of their own.
class WindowTest : public QObject {
    Q_OBJECT
protected:
    virtual void prepare() {}
    std::unique_ptr<MainWindow> m_home;

private slots:
    void init();
    void cleanup();
};

} // namespace veltrona::test
