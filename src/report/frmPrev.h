// The print preview: shows a report's HTML file and prints it with the system's own dialog. One
// shared instance serves the whole run; each showing loads the file afresh. A long report is laid
// out in a thread of its own, so that the window can be closed meanwhile.
#pragma once

#include "report/reportDocument.h"

#include <QDialog>

#include <memory>

class QLabel;
class QPushButton;
class QTextBrowser;

namespace veltrona {

class frmPrev : public QDialog {
    Q_OBJECT

public:
    frmPrev();
    ~frmPrev() override;
    static frmPrev &instance();

    /// The file to show.
    QString FileName;

    /// Loads the file and shows the preview modally, filling the screen; returns when it is closed.
    void Show();
    /// Whether the page is on the screen.
    bool isReady() const { return m_page != nullptr; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Loading;

    void Form_Load();
    void Form_Resize();
    void cmdPrint_Click();
    void cmdClose_Click();
    void Navigate(const QString &fileName);
    void loadInBackground(const QString &fileName);
    void showPage(std::unique_ptr<ReportDocument> page);
    void showNotice(const QString &text);
    void fillScreen();
    void arrange();

    QPushButton *cmdPrint;
    QPushButton *cmdClose;
    QTextBrowser *wbPP;
    QLabel *m_notice; // over the browser while there is no page
    std::unique_ptr<ReportDocument> m_page;
    std::shared_ptr<Loading> m_loading;
};

} // namespace veltrona
