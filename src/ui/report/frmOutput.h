// Dialog of the export and print commands. In the export role the user names a file and may open
// the report in a browser; in the print role the report is written to its fixed path and shown in
// the preview. The caption of `cmdRun` distinguishes the roles. Each command creates its own
// dialog.
#pragma once

#include "core/report/reportWriter.h"
#include "ui/views/dialogs/forms.h"

#include <array>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace veltrona {

/// The settings that concern reports.
struct OutputSettings {
    QString documentsFolder; // initial folder of the file dialog
    QString dataFolder;      // the printed report's path is below it
    bool exportColor = false;
    bool printColor = false;
};

class frmOutput : public desktop::DesignedDialog {
    Q_OBJECT

public:
    /// Starts in the export role. What `source` points to must outlive the dialog; its options are
    /// set from the check boxes.
    explicit frmOutput(ReportSource source, OutputSettings settings = {});

    void setPrintRole();
    /// Shows the dialog modally; returns when it is closed.
    void Show();

    /// Writes a report with the checked options and returns it; throws Failure.
    Report doExport(const QString &strFilename, bool doColor);

private:
    void cmdRun_Click();
    void cmdClose_Click();
    void comBrowse_Click();
    void showHtml(const QString &FileName);
    void runExport();
    void runPrint();
    void arrange() override;

    ReportSource m_source;
    OutputSettings m_settings;
    float m_raised = 0; // of the lower controls in the print role, in twips
    QLabel *lblFilename;
    QLineEdit *txtFilename;
    QPushButton *comBrowse;
    std::array<QCheckBox *, 4> chkOpts;
    QPushButton *cmdRun;
    QPushButton *cmdClose;
};

} // namespace veltrona
