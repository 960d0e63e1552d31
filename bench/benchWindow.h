// The real main window on a project, used as a user would: each call returns when the result is on
// the screen.
#pragma once

#include "core/platform/dialogs/dialogs.h"
#include "ui/shell/frmMain.h"

#include <chrono>

namespace veltrona::bench {

/// Chooses one report; ends the benchmark on any other question.
class ChoosesReport : public Dialogs {
public:
    ChoosesReport() { services().dialogs = this; }
    ~ChoosesReport() override { services().dialogs = nullptr; }
    Answer message(MessageStyle, const QString &, const QString &text, const QString &) override;
    int choose(const QString &, const QString &text, const QStringList &) override;
    QString openFile(const FileDialogSetup &) override { return m_report; }
    QString saveFile(const FileDialogSetup &) override { return {}; }

    QString m_report;
};

class Window {
public:
    explicit Window(const QString &project);
    ~Window();

    void chooseAllDates();
    /// The user does nothing for so long; the event loop runs.
    void rest(std::chrono::nanoseconds duration);
    /// Nodes count from 1 in the order of the tree.
    void click(int node);
    void chooseMetric(int index);
    /// Data rows of the grid.
    int rows() const { return gridRow::dataRows(m_window.flxStat.Rows()); }
    /// Moves in the tree.
    void press(Qt::Key key);
    /// From the chosen file to the rebuilt views.
    void import(const QString &report);

private:
    ChoosesReport m_dialogs;
    frmMain m_window;
};

} // namespace veltrona::bench
