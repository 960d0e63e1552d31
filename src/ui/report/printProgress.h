// The box that shows how far printing has come, from one second on, so that it can be cancelled.
#pragma once

#include <QProgressDialog>

#include <chrono>
#include <memory>

namespace veltrona {

class OrdinaryCursor;

class PrintProgress {
public:
    explicit PrintProgress(QWidget *owner);
    ~PrintProgress();
    Q_DISABLE_COPY_MOVE(PrintProgress)

    /// Shows the text and dispatches events. Returns whether printing continues; false after
    /// Cancel, or if the program is to end.
    bool step(const QString &text, int done = 0, int all = 0);

private:
    QProgressDialog m_box;
    std::unique_ptr<OrdinaryCursor> m_cursor; // while the box is shown
    std::chrono::milliseconds m_begun;
};

} // namespace veltrona
