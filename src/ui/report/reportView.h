// The view of a report in the preview. Rows are measured when they are first shown; what the user
// looks at stays in its place then.
#pragma once

#include <QTextBrowser>

namespace veltrona {

class ReportView : public QTextBrowser {
    Q_OBJECT

public:
    using QTextBrowser::QTextBrowser;

    /// Measures the rows that are shown.
    void measureShown();

protected:
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    QMimeData *createMimeDataFromSelection() const override;

private:
    bool m_isMeasuring = false;
};

} // namespace veltrona
