// The dialog of the three colour switches. Loading it also reads the stored switches into the flags
// of modMain: the main window loads it at start without showing it. OK, Cancel and the close button
// unload it, so that it is loaded again before it is shown.
#pragma once

#include "ui/views/dialogs/forms.h"

#include <vector>

class QCheckBox;
class QPushButton;

namespace veltrona {

class frmOptions : public desktop::DesignedDialog {
    Q_OBJECT

public:
    frmOptions();
    static frmOptions &instance() { return desktop::sharedForm<frmOptions>(); }

    /// Reads the settings into boxes and flags, unless the form is loaded already.
    void load();
    bool isLoaded() const { return m_loaded; }
    /// Loads the form if necessary and shows it modally until it is unloaded.
    void Show();

    void done(int result) override;

private:
    void Form_Load();
    void chkCG_Click();
    void cmdOK_Click();
    void comCancel_Click() { unload(); }
    void unload() { done(Rejected); }

    std::vector<QCheckBox *> m_boxes; // chkCG, chkCE, chkCP
    QPushButton *cmdOK;
    QPushButton *comCancel;
    bool m_loaded = false;
};

} // namespace veltrona
