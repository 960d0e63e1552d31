// The progress window of an import. It can't be closed, runs the import once it is activated, and
// unloads itself when the import has ended, also by an exception.
#pragma once

#include "ui/views/dialogs/forms.h"

#include <exception>
#include <functional>

class QLabel;
class QProgressBar;

namespace veltrona {

class frmWait : public desktop::DesignedDialog {
    Q_OBJECT

public:
    frmWait();
    static frmWait &instance();

    /// Makes the bar anew, from `mn` to `mx`.
    void init(int mn, int mx);
    /// One step; paints the window and dispatches events at the steps of progressRepaints.
    void inc();

    /// Shows the window modally and runs `import` once it is on the screen; returns when both have
    /// ended. Rethrows what `import` throws, after the window has closed.
    void Show(std::function<void()> import);

    int Value() const { return m_value; }

    void reject() override {} // Esc closes other dialogs

protected:
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void activateOnce();
    void Form_Activate();

    QLabel *Label1;
    QProgressBar *pbWait;
    std::function<void()> m_import;
    std::exception_ptr m_failure;
    bool m_activated = false;
    int m_max = 0;
    int m_value = 0;
};

} // namespace veltrona
