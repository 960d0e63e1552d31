// The dialog between a command and the report writer. In its export role the user names a file and
// may open the report in a browser; in its print role the report goes to its one fixed place and on
// to the preview. The caption of `cmdRun` tells the roles apart. Each command makes a dialog of its
// own.
#pragma once

#include "core/report/reportWriter.h"
#include "ui/views/twipScale.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace veltrona {

/// What the program's settings say of a report.
struct OutputSettings {
    QString documentsFolder; // where the choice of a file begins
    QString dataFolder;      // the printed report lies below it
    bool exportColor = false;
    bool printColor = false;
};

class frmOutput : public QDialog {
    Q_OBJECT

public:
    /// Comes up in the export role. What `source` points to must outlive the dialog; its options
    /// are set from the check boxes.
    explicit frmOutput(ReportSource source, OutputSettings settings = {});

    void setPrintRole();
    /// Shows the dialog modally; returns when it has been unloaded.
    void Show();

    /// Writes the report with the options ticked, and gives it; throws Failure.
    Report doExport(const QString &strFilename, bool doColor);

protected:
    void changeEvent(QEvent *event) override;

private:
    void cmdRun_Click();
    void cmdClose_Click();
    void comBrowse_Click();
    void showHtml(const QString &FileName);
    void runExport();
    void runPrint();
    void arrange();

    ReportSource m_source;
    OutputSettings m_settings;
    float m_raised = 0; // how far the print role has moved the lower controls up, in twips
    QLabel *lblFilename;
    QLineEdit *txtFilename;
    QPushButton *comBrowse;
    std::array<QCheckBox *, 4> chkOpts;
    QPushButton *cmdRun;
    QPushButton *cmdClose;
};

} // namespace veltrona
