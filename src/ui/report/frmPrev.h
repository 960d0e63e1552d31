// Print preview: shows a report and prints it through the system's print dialog. One instance is
// shared for the whole run; each Show loads the report again.
#pragma once

#include "core/report/report.h"
#include "ui/report/reportDocument.h"
#include "ui/views/dialogs/forms.h"

#include <memory>

class QPushButton;

namespace veltrona {

class ReportView;

class frmPrev : public desktop::DesignedDialog {
    Q_OBJECT

public:
    frmPrev();
    ~frmPrev() override;
    static frmPrev &instance();

    /// The file to show, and the report that was written to it.
    QString FileName;
    Report report;

    /// Loads the report and shows the preview modally on the whole screen; returns when it is
    /// closed.
    void Show();
    /// Whether a report is shown and can be printed.
    bool isLoaded() const { return m_page != nullptr; }

protected:
    void resizeEvent(QResizeEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Form_Load();
    void Form_Resize();
    void Form_Unload();
    void cmdPrint_Click();
    void cmdClose_Click();
    void Navigate(const QString &fileName);
    /// Zooms in by this many steps, out for a negative number; 0 restores the original size.
    void zoomBy(int steps);
    void fillScreen();
    void arrange() override;

    QPushButton *cmdPrint;
    QPushButton *cmdClose;
    ReportView *wbPP;
    int m_wheel = 0; // rest of a turn with Ctrl, in eighths of a degree
    QRect m_screen;  // that the window fills, including its frame
    std::unique_ptr<ReportDocument> m_page;
};

} // namespace veltrona
