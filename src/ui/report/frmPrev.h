// The print preview: shows a report's HTML file and prints it with the system's own dialog. One
// shared instance serves the whole run; each showing loads the file afresh.
#pragma once

#include "core/report/report.h"
#include "ui/report/reportDocument.h"

#include <QDialog>

#include <memory>

class QPushButton;
class QTextBrowser;

namespace veltrona {

class frmPrev : public QDialog {
    Q_OBJECT

public:
    frmPrev();
    ~frmPrev() override;
    static frmPrev &instance();

    /// The file to show, and what was written to it.
    QString FileName;
    Report report;

    /// Loads the file and shows the preview modally, filling the screen; returns when it is closed.
    void Show();
    /// Whether the report is on the screen, so that it can be printed.
    bool isLoaded() const { return m_page != nullptr; }

protected:
    void resizeEvent(QResizeEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Form_Load();
    void Form_Resize();
    void Form_Unload();
    void cmdPrint_Click();
    void cmdClose_Click();
    void Navigate(const QString &fileName);
    /// By so many steps larger, or smaller below 0; back to the first size for 0.
    void zoomBy(int steps);
    void fillScreen();
    void arrange();

    QPushButton *cmdPrint;
    QPushButton *cmdClose;
    QTextBrowser *wbPP;
    int m_wheel = 0; // turned with Ctrl and not yet zoomed, in eighths of a degree
    QRect m_screen;  // what the window fills, its frame included
    std::unique_ptr<ReportDocument> m_page;
};

} // namespace veltrona
